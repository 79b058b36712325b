#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace velmora {

// What the oscillator sounds like. The codes are those of the buttons that choose it.
enum EOscillatorKind : unsigned
{
    OSCILLATOR_SINUSOID = 703,
    OSCILLATOR_WHITE_NOISE = 704,
    OSCILLATOR_IMPULSES = 705,
    OSCILLATOR_PULSED_SINUSOID = 707,
    OSCILLATOR_SQUARE = 713,
    OSCILLATOR_SINGLE_IMPULSE = 714,
    OSCILLATOR_PULSED_NOISE = 715,
};

// Whether the kind sounds, or a sine that sweeps.
enum EOscillatorClass : unsigned
{
    OSCILLATOR_STANDARD = 0,
    OSCILLATOR_SWEEP = 712,
};

struct COscillatorKind
{
    EOscillatorKind m_eKind;
    const char* m_pLabel;     // on its button
    std::string_view m_sName; // on the command line
    bool m_bUsesFrequency;
    bool m_bPulsed; // sounds for the duty cycle of the pulse rate only
};

// Every kind, in the order of the buttons; the first one is the default.
inline constexpr std::array<COscillatorKind, 7> OSCILLATOR_KINDS = {{
    {OSCILLATOR_SINUSOID, "Sinusoid", "sinusoid", true, false},
    {OSCILLATOR_SQUARE, "Square", "square", true, false},
    {OSCILLATOR_IMPULSES, "Impulses", "impulses", true, false},
    {OSCILLATOR_WHITE_NOISE, "White Noise", "white-noise", false, false},
    {OSCILLATOR_PULSED_NOISE, "Pulsed Noise", "pulsed-noise", false, true},
    {OSCILLATOR_PULSED_SINUSOID, "Pulsed Sinusoid", "pulsed-sinusoid", true, true},
    {OSCILLATOR_SINGLE_IMPULSE, "Single Impulse", "single-impulse", false, false},
}};

struct COscillatorClass
{
    EOscillatorClass m_eClass;
    const char* m_pLabel;
};

inline constexpr std::array<COscillatorClass, 2> OSCILLATOR_CLASSES = {{
    {OSCILLATOR_STANDARD, "Standard Oscillator"},
    {OSCILLATOR_SWEEP, "Sweep Oscillator"},
}};

} // namespace velmora
