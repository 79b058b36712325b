#include "dsp/modules/oscillator.h"

#include <algorithm>
#include <chrono>

namespace velmora {

namespace {

template <class Table, class Code>
constexpr auto optionsOf(const Table& table, Code tCode)
{
    std::array<CModuleOption, std::tuple_size_v<Table>> options{};
    for (std::size_t u = 0; u < options.size(); ++u)
        options[u] = {table[u].*tCode, table[u].m_pLabel};
    return options;
}

constexpr auto CLASS_OPTIONS = optionsOf(OSCILLATOR_CLASSES, &COscillatorClass::m_eClass);
constexpr auto KIND_OPTIONS = optionsOf(OSCILLATOR_KINDS, &COscillatorKind::m_eKind);
constexpr CModuleChoice CHOICES[] = {{"Class", CLASS_OPTIONS}, {"Kind", KIND_OPTIONS}};

const COscillatorKind& rowOf(EOscillatorKind eKind)
{
    return *std::ranges::find(OSCILLATOR_KINDS, eKind, &COscillatorKind::m_eKind);
}

} // namespace

COscillator::COscillator() : CModuleFilter("Oscillator", FILTER_ID, OSCILLATOR_PARAMETERS, CHOICES)
{
    COscillator::createControls();
    COscillator::prepareForPlay();
}

void COscillator::setFrequencyRange(float fLow, float fHigh)
{
    m_fFrequencyLow.store(fLow, std::memory_order_relaxed);
    m_fFrequencyHigh.store(fHigh, std::memory_order_relaxed);
    setRange(OSCILLATOR_FREQUENCY, {range(OSCILLATOR_FREQUENCY).m_fDefault, fLow, fHigh});
}

bool COscillator::resetToDefaults()
{
    const CModuleRange& frequency = OSCILLATOR_PARAMETERS[OSCILLATOR_FREQUENCY].m_afterReset;
    setFrequencyRange(frequency.m_fLow, frequency.m_fHigh);
    return CModuleFilter::resetToDefaults();
}

bool COscillator::prepareForPlay()
{
    const auto uClock = static_cast<unsigned>(std::chrono::system_clock::now().time_since_epoch().count());
    m_generator.start(m_nSampleRate, getFrequency(), frequencyLow(), m_uSeed.value_or(uClock));
    return true;
}

bool COscillator::processBuffer(float*, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return generate(pOut, uChannels, uSamples, FULL_SCALE);
}

bool COscillator::processInterleaved(float*, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return generate(pOut, uChannels, uSamples, 1.0F);
}

bool COscillator::generate(float* pOut, UINT uChannels, UINT uSamples, float fFullScale)
{
    if (uChannels != 1 && uChannels != 2)
        return false;
    const UINT uFrames = uSamples / uChannels;
    const COscillatorKind& kind = rowOf(this->kind());
    const bool bSweeps = oscillatorClass() == OSCILLATOR_SWEEP;
    m_generator.generate({kind,
                          bSweeps,
                          getFrequency(),
                          getAmplitude(),
                          parameter(OSCILLATOR_PULSE_RATE),
                          parameter(OSCILLATOR_DUTY_CYCLE),
                          {frequencyLow(), frequencyHigh(), parameter(OSCILLATOR_SWEEP_PERIOD)},
                          takeImpulse(!bSweeps && kind.m_eKind == OSCILLATOR_SINGLE_IMPULSE && uFrames > 0)},
                         pOut, uChannels, uFrames, fFullScale);
    return true;
}

// The height of the impulse that waits to be heard; 0 for none.
float COscillator::takeImpulse(bool bIsHeard)
{
    return bIsHeard && m_bImpulsePending.exchange(false, std::memory_order_relaxed)
               ? parameter(OSCILLATOR_IMPULSE_HEIGHT)
               : 0.0F;
}

} // namespace velmora
