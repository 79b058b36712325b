#include "audio/output_check.h"

#include "dsp/segmented_follower.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace velmora {

namespace {

// Without its sign a float sorts like the integer of its bits, with infinity and what is not a number on
// top. The compiler makes a few vector instructions of this loop.
[[gnu::always_inline]] inline std::int32_t largestBits(std::span<const float> samples)
{
    std::int32_t nLargest = 0;
    for (const float fSample : samples) {
        const std::int32_t nBits = std::bit_cast<std::int32_t>(fSample) & INT32_MAX;
        nLargest = nBits > nLargest ? nBits : nLargest;
    }
    return nLargest;
}

std::int32_t largestBitsPortable(std::span<const float> samples)
{
    return largestBits(samples);
}

[[gnu::target("avx2")]] std::int32_t largestBitsAVX2(std::span<const float> samples)
{
    return largestBits(samples);
}

} // namespace

void COutputCheck::add(std::span<const float> samples)
{
    static const auto LARGEST_BITS = hasAVX2() ? &largestBitsAVX2 : &largestBitsPortable;
    const std::int32_t nLargest = LARGEST_BITS(samples);
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
