#pragma once

#include "base/patience.h"

#include <functional>
#include <string>
#include <vector>

namespace velmora::test {

// Passes no time: records the waits, and does in each what the test wants done.
class CRecordingPatience : public IPatience
{
  public:
    bool wait(std::chrono::milliseconds duration, std::string_view sFor) override
    {
        m_waits.push_back(duration);
        m_reasons.emplace_back(sFor);
        if (m_during)
            m_during();
        return m_waits.size() < m_uGivesUpAt;
    }

    std::size_t m_uGivesUpAt = static_cast<std::size_t>(-1); // the wait that answers false
    std::vector<std::chrono::milliseconds> m_waits;
    std::vector<std::string> m_reasons;
    std::function<void()> m_during;

  private:
    CPatienceScope m_scope{*this};
};

} // namespace velmora::test
