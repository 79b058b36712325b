#include "dsp/modules/oscillator_generator.h"

#include "dsp/numeric.h"
#include "host/control_law.h"

#include <algorithm>

namespace velmora {

namespace {

// Writes the samples of a generator to every channel of each frame. The generator is worked on as a copy,
// which the compiler keeps in registers.
template <class Generator, class Next>
void fill(Generator& generator, float* pOut, unsigned uChannels, unsigned uFrames, float fScale, Next next)
{
    Generator copy = generator;
    if (uChannels == 1) {
        for (unsigned u = 0; u < uFrames; ++u)
            pOut[u] = next(copy) * fScale;
    } else {
        for (unsigned u = 0; u < uFrames; ++u)
            pOut[2 * u] = pOut[2 * u + 1] = next(copy) * fScale;
    }
    generator = copy;
}

} // namespace

void COscillatorGenerator::start(int nSampleRate, float fFrequency, float fLow, unsigned uSeed)
{
    m_nSampleRate = nSampleRate;
    m_noise.seed(uSeed);
    m_sine.start(fFrequency, nSampleRate);
    m_fSineFrequency = fFrequency;
    m_impulses.reset();
    m_sweep.start(fLow, nSampleRate);
    m_pulse.reset();
}

void COscillatorGenerator::generate(const CSettings& settings, float* pOut, unsigned uChannels,
                                    unsigned uFrames, float fFullScale)
{
    const float fScale = amplitudeScale(settings.m_fAmplitude) * fFullScale;
    takeUpFrequency(settings.m_fFrequency);
    if (settings.m_bSweeps) {
        CFrequencySweep::CRun run = m_sweep.begin(settings.m_sweep);
        fill(run, pOut, uChannels, uFrames, fScale, [](auto& sweep) { return sweep.next(); });
        m_sweep.end(run);
        return;
    }
    makeSound(settings, pOut, uChannels, uFrames, fScale);
    if (settings.m_kind.m_bPulsed)
        applyPulse(settings, pOut, uChannels, uFrames);
}

void COscillatorGenerator::takeUpFrequency(float fFrequency)
{
    if (fFrequency == m_fSineFrequency)
        return;
    m_sine.setFrequency(fFrequency, m_nSampleRate);
    m_fSineFrequency = fFrequency;
}

// The power is taken only when the amplitude has changed.
float COscillatorGenerator::amplitudeScale(float f_dB)
{
    if (f_dB != m_fScale_dB) {
        m_fScale = dB2Lin(f_dB);
        m_fScale_dB = f_dB;
    }
    return m_fScale;
}

void COscillatorGenerator::makeSound(const CSettings& settings, float* pOut, unsigned uChannels,
                                     unsigned uFrames, float fScale)
{
    switch (settings.m_kind.m_eKind) {
    case OSCILLATOR_SINUSOID:
    case OSCILLATOR_PULSED_SINUSOID:
        fill(m_sine, pOut, uChannels, uFrames, fScale,
             [](auto& sine) { return static_cast<float>(sine.next()); });
        break;
    case OSCILLATOR_SQUARE:
        fill(m_sine, pOut, uChannels, uFrames, fScale,
             [](auto& sine) { return sine.next() >= 0.0 ? 1.0F : -1.0F; });
        break;
    case OSCILLATOR_WHITE_NOISE:
    case OSCILLATOR_PULSED_NOISE:
        fill(m_noise, pOut, uChannels, uFrames, fScale, [](auto& noise) { return noise.next(); });
        break;
    case OSCILLATOR_IMPULSES:
        m_impulses.setSpacing(static_cast<float>(m_nSampleRate) / settings.m_fFrequency);
        fill(m_impulses, pOut, uChannels, uFrames, fScale, [](auto& impulses) { return impulses.next(); });
        break;
    case OSCILLATOR_SINGLE_IMPULSE:
        std::fill_n(pOut, uFrames * uChannels, 0.0F);
        if (uFrames > 0)
            std::fill_n(pOut, uChannels, settings.m_fImpulse * fScale);
        break;
    }
}

void COscillatorGenerator::applyPulse(const CSettings& settings, float* pOut, unsigned uChannels,
                                      unsigned uFrames)
{
    const float fPeriod = static_cast<float>(m_nSampleRate) / settings.m_fPulseRate;
    const float fOn = fPeriod * settings.m_fDutyCycle / 100.0F;
    m_pulse.apply(pOut, uChannels, uFrames, truncatedToInt(fPeriod), truncatedToInt(fOn));
}

} // namespace velmora
