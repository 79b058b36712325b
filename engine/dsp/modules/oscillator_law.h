#pragma once

#include "dsp/numeric.h"

namespace velmora {

// The law of the oscillator's frequency slider, exactly; the control of the same name goes by the
// approximations of every control with this law. [any]

// The frequency in Hz at a slider position of 0..1: low (high / low)^position; linear if low is 0.
[[nodiscard]] inline float frequencyAtPosition(float fLow, float fHigh, float fPosition)
{
    return fLow == 0.0F ? mapLinear(fLow, fHigh, fPosition) : mapLog(fLow, fHigh, fPosition);
}

// The position of a frequency: log(f / low) / log(high / low); linear if low is 0.
[[nodiscard]] inline float positionOfFrequency(float fLow, float fHigh, float fFrequency)
{
    return fLow == 0.0F ? mapLinearInverse(fLow, fHigh, fFrequency) : mapLogInverse(fLow, fHigh, fFrequency);
}

} // namespace velmora
