#pragma once

#include "dsp/modules/module_parameter.h"

#include <array>

namespace velmora {

// The numbers that the oscillator is set with, in the order of its controls.
enum EOscillatorParameter : unsigned
{
    OSCILLATOR_OUTPUT_MIX, // kept, and used by nothing
    OSCILLATOR_FREQUENCY,
    OSCILLATOR_PULSE_RATE,
    OSCILLATOR_DUTY_CYCLE,
    OSCILLATOR_AMPLITUDE,
    OSCILLATOR_SWEEP_PERIOD,
    OSCILLATOR_IMPULSE_HEIGHT, // 1.0 is full scale, before the amplitude is applied
    OSCILLATOR_PARAMETER_COUNT
};

// The ranges at construction and after a reset to defaults differ.
inline constexpr std::array<CModuleParameter, OSCILLATOR_PARAMETER_COUNT> OSCILLATOR_PARAMETERS = {{
    {"OutputMix", "", {0.5F, 0.0F, 1.0F}, {0.5F, 0.0F, 1.0F}, false},
    {"Frequency", "Hz", {1000.0F, 20.0F, 22050.0F}, {1000.0F, 2.0F, 2000.0F}, true},
    {"Frequency", "Hz", {2.0F, 0.1F, 10.0F}, {2.0F, 0.1F, 10.0F}, false},
    {"Duty Cycle", "%", {50.0F, 1.0F, 99.0F}, {50.0F, 1.0F, 99.0F}, false},
    {"Amplitude", "dBFS", {-6.0F, -60.0F, 0.0F}, {-6.0F, -96.0F, 0.0F}, false},
    {"Sweep Period", "Sec", {20.0F, 2.0F, 60.0F}, {10.0F, 0.0F, 1.0F}, false},
    {"Impulse Ht", "%", {1.0F, 0.0F, 1.0F}, {1.0F, 0.0F, 1.0F}, false, EModuleText::percent},
}};

} // namespace velmora
