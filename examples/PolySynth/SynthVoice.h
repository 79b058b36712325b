// CSynthVoice: one note of the synth: two oscillators, a low-pass filter, an envelope. All [audio].

#pragma once

#include "synthfunctions.h"

#include <cmath>

// What all voices share. Times in ms, levels linear.
struct SVoiceSettings
{
    CBandLimitedOscillator::EShape eShape = CBandLimitedOscillator::saw;
    double dDetune_cents = 0.0; // between the two oscillators
    double dAttack_ms = 5.0;
    double dDecay_ms = 200.0;
    double dSustain = 0.7;
    double dRelease_ms = 200.0;
    double dCutoff_Hz = 4000.0;
    double dResonance = 1.0;     // Q
    double dSweep_octaves = 0.0; // how far the envelope lifts the cutoff
};

class CSynthVoice
{
  public:
    void prepare(double dSampleRate)
    {
        for (CBandLimitedOscillator& oscillator : m_oscillators)
            oscillator.prepare(dSampleRate);
        m_filter.prepare(dSampleRate);
        m_envelope.prepare(dSampleRate);
        m_gain.prepare(dSampleRate);
        m_gain.setTime(5.0);
        m_bHeld = false;
        m_fEnvelope = 0.0f;
    }

    // Begins a note. A voice that still sounds goes on from where its envelope stands, so that taking it
    // over does not click; uAge is the number of the note since the start.
    void start(UINT uNote, double dVelocityGain, unsigned long uAge, const SVoiceSettings& settings)
    {
        m_uNote = uNote;
        m_gain.setTarget(dVelocityGain);
        m_uAge = uAge;
        m_bHeld = true;
        setEnvelope(settings);
        if (!isSounding()) {
            m_gain.reset();
            m_filter.reset();
            for (CBandLimitedOscillator& oscillator : m_oscillators)
                oscillator.reset();
        }
        m_envelope.noteOn();
    }

    void release(const SVoiceSettings& settings)
    {
        m_bHeld = false;
        setEnvelope(settings);
        m_envelope.noteOff();
    }

    // Takes the settings up; once in a few samples is enough. dPitchRatio is bend and vibrato.
    void update(const SVoiceSettings& settings, double dPitchRatio)
    {
        const double dHz = midiNoteToHz(m_uNote) * dPitchRatio;
        const double dApart = std::exp2(settings.dDetune_cents / 2400.0); // half up, half down
        m_oscillators[0].set(settings.eShape, dHz / dApart);
        m_oscillators[1].set(settings.eShape, dHz * dApart);
        setEnvelope(settings);
        m_filter.set(CStateVariableFilter::lowPass,
                     settings.dCutoff_Hz * std::exp2(settings.dSweep_octaves * m_fEnvelope),
                     settings.dResonance);
    }

    float next()
    {
        m_fEnvelope = m_envelope.next();
        const float fTone = 0.5f * (m_oscillators[0].next() + m_oscillators[1].next());
        return static_cast<float>(m_gain.next() * m_fEnvelope) * m_filter.process(fTone);
    }

    bool isSounding() const { return m_envelope.isActive(); }
    bool isHeld() const { return m_bHeld; } // the key is down
    UINT note() const { return m_uNote; }
    unsigned long age() const { return m_uAge; }
    float envelope() const { return m_fEnvelope; }

  private:
    void setEnvelope(const SVoiceSettings& settings)
    {
        m_envelope.set(settings.dAttack_ms, settings.dDecay_ms, settings.dSustain, settings.dRelease_ms);
    }

    CBandLimitedOscillator m_oscillators[2];
    CStateVariableFilter m_filter;
    CEnvelopeGenerator m_envelope;
    CParameterSmoother m_gain; // of the velocity
    UINT m_uNote = 69;
    unsigned long m_uAge = 0;
    bool m_bHeld = false;
    float m_fEnvelope = 0.0f;
};
