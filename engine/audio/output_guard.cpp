#include "audio/output_guard.h"

#include "audio/audio_notices.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace velmora {

void COutputGuard::apply(std::span<float> out, bool bLimit) noexcept
{
    const float fLargest = largestSize(out);
    if (fLargest <= LIMIT)
        return;
    if (!std::isfinite(fLargest)) {
        std::ranges::fill(out, 0.0F);
        if (!m_bNotFiniteTold)
            m_notices.post(EAudioNotice::notFinite);
        m_bNotFiniteTold = true;
    } else if (bLimit) {
        for (float& fSample : out)
            fSample = std::clamp(fSample, -LIMIT, LIMIT);
        if (!m_bLimitedTold)
            m_notices.post(EAudioNotice::limited, fLargest);
        m_bLimitedTold = true;
    }
}

// Without their signs floats are ordered as their bits are, with infinity and then NaN at the top; and whole
// numbers have a maximum that the compiler vectorises.
float COutputGuard::largestSize(std::span<const float> samples) noexcept
{
    constexpr std::int32_t SIZE_BITS = 0x7FFFFFFF;
    std::int32_t nLargest = 0;
    for (const float fSample : samples)
        nLargest = std::max(nLargest, std::bit_cast<std::int32_t>(fSample) & SIZE_BITS);
    return std::bit_cast<float>(nLargest);
}

} // namespace velmora
