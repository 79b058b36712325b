#pragma once

#include "dsp/modules/frequency_sweep.h"
#include "dsp/modules/impulse_train.h"
#include "dsp/modules/noise_source.h"
#include "dsp/modules/oscillator_kinds.h"
#include "dsp/modules/pulse_gate.h"
#include "dsp/modules/sine_resonator.h"

namespace velmora {

// The half of the oscillator that belongs to the audio thread: all that moves from sample to sample.
// [audio]; start(): [main, not in use]
class COscillatorGenerator
{
  public:
    // What holds for one buffer.
    struct CSettings
    {
        const COscillatorKind& m_kind;
        bool m_bSweeps;     // then the kind does not matter
        float m_fFrequency; // Hz
        float m_fAmplitude; // dBFS
        float m_fPulseRate; // Hz
        float m_fDutyCycle; // percent
        CFrequencySweep::CBounds m_sweep;
        float m_fImpulse; // a single impulse's height at the first sample; 0 for none
    };

    // Begins everything from its start at a rate in Hz: phases, clocks, the sweep from fLow, the noise from
    // its seed.
    void start(int nSampleRate, float fFrequency, float fLow, unsigned uSeed);

    // Makes the next uFrames frames of 1 or 2 channels, all alike, at a full scale of fFullScale.
    void generate(const CSettings& settings, float* pOut, unsigned uChannels, unsigned uFrames,
                  float fFullScale);

  private:
    void takeUpFrequency(float fFrequency);
    [[nodiscard]] float amplitudeScale(float f_dB);
    void makeSound(const CSettings& settings, float* pOut, unsigned uChannels, unsigned uFrames,
                   float fScale);
    void applyPulse(const CSettings& settings, float* pOut, unsigned uChannels, unsigned uFrames);

    int m_nSampleRate = 44100; // Hz
    CSineResonator m_sine;
    float m_fSineFrequency = 0.0F; // that the resonator runs at
    CFrequencySweep m_sweep;
    CImpulseTrain m_impulses;
    CNoiseSource m_noise;
    CPulseGate m_pulse;
    float m_fScale_dB = 0.0F;
    float m_fScale = 1.0F; // of m_fScale_dB
};

} // namespace velmora
