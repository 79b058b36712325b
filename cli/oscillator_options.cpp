#include "cli/oscillator_options.h"

#include "base/text.h"
#include "cli/command_line.h"
#include "dsp/modules/oscillator.h"

#include <algorithm>

namespace velmora::cli {

namespace {

// Options that are a parameter of the oscillator. Their limits are wider than those of its sliders.
struct CParameterOption
{
    EOscillatorParameter m_eParameter;
    COption m_option;
};

const std::vector<CParameterOption>& parameterOptions()
{
    static const std::vector<CParameterOption> OPTIONS = {
        {OSCILLATOR_FREQUENCY,
         {"--frequency",
          "HZ",
          "Frequency of the sine, the square or the impulses in Hz; 1000 unless given.",
          {EValueKind::Number, 0.001, 5e6}}},
        {OSCILLATOR_AMPLITUDE,
         {"--amplitude", "DB", "Peak amplitude in dBFS; -6 unless given.", {EValueKind::Number, -200, 0}}},
        {OSCILLATOR_PULSE_RATE,
         {"--pulse-rate",
          "HZ",
          "Pulses per second of the pulsed kinds; 2 unless given.",
          {EValueKind::Number, 0.001, 5e6}}},
        {OSCILLATOR_DUTY_CYCLE,
         {"--duty",
          "PERCENT",
          "Part of each pulse that sounds, 1 to 99; 50 unless given.",
          {EValueKind::Number, 1, 99}}},
        {OSCILLATOR_IMPULSE_HEIGHT,
         {"--impulse-height",
          "H",
          "Height of the single impulse ahead of the amplitude, 0 to 1; 1 unless given.",
          {EValueKind::Number, 0, 1}}},
        {OSCILLATOR_SWEEP_PERIOD,
         {"--period",
          "S",
          "Seconds from --low to --high; 20 unless given.",
          {EValueKind::Number, 0.001, 1e6},
          false,
          {},
          "--sweep"}},
    };
    return OPTIONS;
}

CValueRule oneOfTheKinds()
{
    CValueRule rule = {.m_eKind = EValueKind::Choice};
    for (const COscillatorKind& kind : OSCILLATOR_KINDS)
        rule.m_choices.push_back(kind.m_sName);
    return rule;
}

const COscillatorKind& kindOf(const CCommandLine& line)
{
    const auto name = line.text("--kind");
    return name ? *std::ranges::find(OSCILLATOR_KINDS, *name, &COscillatorKind::m_sName)
                : OSCILLATOR_KINDS[0];
}

double valueOf(const CCommandLine& line, EOscillatorParameter eParameter)
{
    const CParameterOption& row =
        *std::ranges::find(parameterOptions(), eParameter, &CParameterOption::m_eParameter);
    return line.number(row.m_option.m_sName, OSCILLATOR_PARAMETERS[eParameter].m_atConstruction.m_fDefault);
}

double lowOf(const CCommandLine& line)
{
    return line.number("--low", OSCILLATOR_PARAMETERS[OSCILLATOR_FREQUENCY].m_atConstruction.m_fLow);
}

double highOf(const CCommandLine& line)
{
    return line.number("--high", OSCILLATOR_PARAMETERS[OSCILLATOR_FREQUENCY].m_atConstruction.m_fHigh);
}

std::string faultOfSweep(const CCommandLine& line, double dHalfRate)
{
    if (lowOf(line) >= highOf(line))
        return formatted("The sweep rises: --low, %.10g Hz, must be below --high, %.10g Hz.", lowOf(line),
                         highOf(line));
    if (highOf(line) > dHalfRate)
        return formatted("The high end of the sweep, %.10g Hz, is above half the sample rate, %.10g Hz. Give "
                         "a lower --high or a higher --rate.",
                         highOf(line), dHalfRate);
    return {};
}

} // namespace

std::vector<COption> oscillatorOptions()
{
    const CValueRule anyFrequency = {EValueKind::Number, 0.001, 5e6};
    std::vector<COption> options = {
        {"--kind", "KIND",
         "sinusoid (the default), square, impulses, white-noise, pulsed-noise, pulsed-sinusoid or "
         "single-impulse.",
         oneOfTheKinds()},
        {"--sweep", "", "In place of the kind, a sine that rises from --low to --high again and again."},
        {"--low", "HZ", "Low end of the sweep in Hz; 20 unless given.", anyFrequency, false, {}, "--sweep"},
        {"--high",
         "HZ",
         "High end of the sweep in Hz; 22050 unless given.",
         anyFrequency,
         false,
         {},
         "--sweep"},
    };
    for (const CParameterOption& row : parameterOptions())
        options.push_back(row.m_option);
    options.push_back({"--seed",
                       "N",
                       "Begins the noise from this number; the same number gives the same noise. From the "
                       "clock unless given.",
                       {EValueKind::WholeNumber, 0, 4294967295.0}});
    return options;
}

std::string oscillatorFault(const CCommandLine& line, int nSampleRate)
{
    const double dHalfRate = nSampleRate / 2.0;
    if (line.has("--sweep"))
        return faultOfSweep(line, dHalfRate);
    const COscillatorKind& kind = kindOf(line);
    if (const double dFrequency = valueOf(line, OSCILLATOR_FREQUENCY);
        kind.m_bUsesFrequency && dFrequency > dHalfRate)
        return formatted("The frequency, %.10g Hz, is above half the sample rate, %.10g Hz. Give a lower "
                         "--frequency or a higher --rate.",
                         dFrequency, dHalfRate);
    if (const double dPulseRate = valueOf(line, OSCILLATOR_PULSE_RATE);
        kind.m_bPulsed && dPulseRate > dHalfRate)
        return formatted("The pulse rate, %.10g Hz, is above half the sample rate, %.10g Hz. Give a lower "
                         "--pulse-rate or a higher --rate.",
                         dPulseRate, dHalfRate);
    return {};
}

void applyOscillatorOptions(const CCommandLine& line, COscillator& oscillator)
{
    oscillator.setKind(kindOf(line).m_eKind);
    oscillator.setClass(line.has("--sweep") ? OSCILLATOR_SWEEP : OSCILLATOR_STANDARD);
    for (const CParameterOption& row : parameterOptions())
        oscillator.setParameter(row.m_eParameter, static_cast<float>(valueOf(line, row.m_eParameter)));
    oscillator.setFrequencyRange(static_cast<float>(lowOf(line)), static_cast<float>(highOf(line)));
    if (line.has("--seed"))
        oscillator.setSeed(static_cast<unsigned>(line.number("--seed", 0)));
    if (oscillator.kind() == OSCILLATOR_SINGLE_IMPULSE)
        oscillator.fireImpulse();
}

} // namespace velmora::cli
