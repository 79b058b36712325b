#pragma once

#include <algorithm>
#include <atomic>

namespace velmora {

// What a build and those who wait for it tell one another. [any]
struct CBuildControl
{
    std::atomic<bool> m_bStop{false};     // the build is to end as soon as it can
    std::atomic<unsigned> m_uSteps{0};    // calls of the compiler and the linker that are known to come
    std::atomic<unsigned> m_uFinished{0}; // of these

    // The finished part, 0.0 to 1.0; 0.0 as long as no steps are known.
    [[nodiscard]] double part() const
    {
        const unsigned uSteps = m_uSteps;
        return uSteps ? std::min(1.0, static_cast<double>(m_uFinished) / uSteps) : 0.0;
    }
};

} // namespace velmora
