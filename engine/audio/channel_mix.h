#pragma once

#include <span>

namespace velmora {

struct CEngineBuffer;

// samples[i] *= fGain. [audio]
void scale(std::span<float> samples, float fGain) noexcept;

// Scales the input by a linear gain and makes the mono mix, if the mode uses one. [audio]
void mixInput(const CEngineBuffer& buffer, float fGain) noexcept;

// Makes the output of what the filter left in it, scaled by a linear gain, and of the dry signal, as the
// channel mode says. [audio]
void mixOutput(const CEngineBuffer& buffer, float fGain) noexcept;

} // namespace velmora
