#include "audio/output_check.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace velmora {

void COutputCheck::add(std::span<const float> samples)
{
    // Without its sign a float sorts like the integer of its bits, with infinity and what is not a number
    // on top; so one pass, which the compiler vectorises, tells whether a closer look is needed.
    std::int32_t nLargest = 0;
    for (const float fSample : samples)
        nLargest = std::max(nLargest, std::bit_cast<std::int32_t>(fSample) & INT32_MAX);
    if (nLargest <= std::bit_cast<std::int32_t>(1.0F)) {
        m_fPeak = std::max(m_fPeak, std::bit_cast<float>(nLargest));
        return;
    }
    for (const float fSample : samples) {
        const float fSize = std::abs(fSample);
        if (!std::isfinite(fSize)) {
            ++m_nNotFinite;
            continue;
        }
        m_fPeak = std::max(m_fPeak, fSize);
        m_nOvers += fSize > 1.0F;
    }
}

} // namespace velmora
