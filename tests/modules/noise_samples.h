#pragma once

#include "dsp/modules/noise_source.h"

#include <algorithm>
#include <vector>

namespace velmora::test {

// The same white noise each time, up to fScale.
inline std::vector<float> noise(std::size_t uSamples, float fScale = 1.0F)
{
    CNoiseSource source;
    source.seed(7);
    std::vector<float> samples(uSamples);
    std::ranges::generate(samples, [&source, fScale] { return fScale * source.next(); });
    return samples;
}

} // namespace velmora::test
