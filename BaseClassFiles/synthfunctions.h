// synthfunctions.h: what a synth plug-in needs: MIDI conversions, envelopes and oscillators.
//
// What pluginconstants.h says of its building blocks holds here, too: prepare() with the sample rate in
// Hz, settings held to their ranges, and everything [audio]. The objects can be copied, so that a voice
// is a plain struct of them.

#ifndef VELMORA_SYNTHFUNCTIONS_H
#define VELMORA_SYNTHFUNCTIONS_H

#include "lookuptables.h"
#include "pluginconstants.h"

// Frequency in Hz of a MIDI note, in equal temperament: 440 * 2^((note - 69) / 12). Fractions are cents.
inline double midiNoteToHz(double dNote)
{
    return 440.0 * pow(2.0, (dNote - 69.0) / 12.0);
}

// The MIDI note of a frequency above 0 Hz, with a fraction: 69 + 12 log2(f / 440).
inline double hzToMidiNote(double dFrequency_Hz)
{
    return 69.0 + 12.0 * log(dFrequency_Hz / 440.0) / log(2.0);
}

// Linear gain, 0.0 to 1.0, of a velocity from 0 to 127: (velocity / 127)^2.
// Source: R. B. Dannenberg, "The Interpretation of MIDI Velocity", Proc. ICMC, 2006: the square law.
inline double midiVelocityToGain(UINT uVelocity)
{
    const double dLinear = (uVelocity < 127 ? uVelocity : 127) / 127.0;
    return dLinear * dLinear;
}

// Frequency ratio of a pitch bend from -1.0 to +1.0 over a range in semitones: 2^(bend * range / 12).
inline double pitchBendToRatio(double dNormalizedBend, double dRange_semitones)
{
    return pow(2.0, dNormalizedBend * dRange_semitones / 12.0);
}

// Envelope of a note: attack to 1.0, decay to the sustain level, and release to 0.0 after the key is up.
//   y(n) = aim + c (y(n-1) - aim), aim = end + r (end - start), c = (r / (1 + r))^(1 / samples)
// Every segment is the part of a capacitor's charging curve that ends exactly at its level after exactly
// its time, wherever it starts; r is 0.3 for the attack and 0.001, nearly the whole curve, for the rest.
// Times are 0 to 60000 ms and take effect at the next segment; the sustain level is 0.0 to 1.0 and, when
// it is moved during a note, is approached at the pace of the decay.
// Source: H. Chamberlin, "Musical Applications of Microprocessors", 2nd edition, 1985 (envelope generators
// as RC circuits).
class CEnvelopeGenerator
{
  public:
    enum EState
    {
        idle,
        attack,
        decay,
        sustain,
        release
    };

    CEnvelopeGenerator(); // 5 ms, 50 ms, 0.7, 200 ms, at 44100 Hz

    void prepare(double dSampleRate);
    void set(double dAttack_ms, double dDecay_ms, double dSustainLevel, double dRelease_ms);
    void reset(); // silent at once

    void noteOn();    // attack from where the envelope stands, without a click
    void retrigger(); // attack from 0.0
    void noteOff();   // release

    float next(); // level for the next sample, 0.0 to 1.0

    EState state() const { return m_eState; }
    bool isActive() const { return m_eState != idle; }

  private:
    void begin(EState eState, double dEnd, double dTime_ms, double dRatio);

    EState m_eState;
    double m_dSampleRate;
    double m_dAttack_ms;
    double m_dDecay_ms;
    double m_dSustainLevel;
    double m_dRelease_ms;
    double m_dLevel;
    double m_dAim;
    double m_dCoefficient;
    UINT m_uSamplesLeft;
};

// Low frequency oscillator, -1.0 to +1.0. Its shapes have sharp corners; for audible tones take
// CBandLimitedOscillator. The phase p runs from 0.0 to 1.0 in a period:
//   sine sin(2 pi p), triangle from 0 up, saw 2 p - 1, square +1 then -1,
//   sample and hold: a new random number at the start of each period
// The rate is 0 Hz to half the sample rate. The random numbers are the same in each run: a 32-bit linear
// congruential generator (D. E. Knuth, "The Art of Computer Programming", volume 2, 3rd edition, 1997,
// section 3.3.4), its upper 24 bits.
class CLFO
{
  public:
    enum EShape
    {
        sine,
        triangle,
        saw,
        square,
        sampleAndHold
    };

    CLFO(); // sine, 1 Hz, at 44100 Hz

    void prepare(double dSampleRate);
    void set(EShape eShape, double dRate_Hz);
    void reset(double dPhase = 0.0); // phase from 0.0 to 1.0

    float next();

  private:
    float nextRandom();

    EShape m_eShape;
    double m_dSampleRate;
    double m_dRate_Hz;
    double m_dIncrement;
    double m_dPhase;
    UINT m_uRandom;
    float m_fHeld;
};

// Oscillator for audible tones, -1.0 to +1.0, whose edges and corners are rounded so that less of what lies
// above half the sample rate folds back. Each sample is the plain shape averaged over the two samples'
// width around it, with the weight 1 - |x| at the distance x in samples. What that changes is worked out:
// an upward edge of height 1 is corrected by
//   (1 + x)^2 / 2 ahead of it, -(1 - x)^2 / 2 behind it           (polynomial band-limited step)
// and a corner, where the slope grows by 1 per sample, by its integral
//   (1 - |x|)^3 / 6                                               (polynomial band-limited ramp)
// From 441 Hz to 8.6 kHz at 44.1 kHz the folded power is 14 dB or more below that of a plain saw, 13 dB for
// the square and 10 dB for the triangle; the price is 1.8 dB of the harmonics at a quarter of the rate.
// The sine comes from the table. Frequencies are 0 Hz to 0.45 times the sample rate. The square's pulse
// width is 0.01 to 0.99 of the period, and never less than one sample.
// Sources: V. Valimaki, A. Huovilainen, "Antialiasing Oscillators in Subtractive Synthesis", IEEE Signal
// Processing Magazine 24 (2), 2007; F. Esqueda, V. Valimaki, S. Bilbao, "Rounding Corners with BLAMP",
// Proc. DAFx, 2016.
class CBandLimitedOscillator
{
  public:
    enum EShape
    {
        sine,
        saw,
        square,
        triangle
    };

    CBandLimitedOscillator(); // sine, 440 Hz, pulse width 0.5, at 44100 Hz

    void prepare(double dSampleRate);
    void set(EShape eShape, double dFrequency_Hz);
    void setFrequency(double dFrequency_Hz) { set(m_eShape, dFrequency_Hz); }
    void setPulseWidth(double dWidth);
    void reset(double dPhase = 0.0); // phase from 0.0 to 1.0

    float next();

  private:
    double step(double dPhase) const; // correction of an upward edge of height 1 at phase 0
    double ramp(double dPhase) const; // correction of a corner of slope 1 at phase 0

    EShape m_eShape;
    double m_dSampleRate;
    double m_dFrequency_Hz;
    double m_dPulseWidth;
    double m_dIncrement;
    double m_dPhase;
};

// ------------------------------------------------------------------------------------------------
// How they work
// ------------------------------------------------------------------------------------------------

inline CEnvelopeGenerator::CEnvelopeGenerator()
    : m_eState(idle), m_dSampleRate(44100.0), m_dAttack_ms(5.0), m_dDecay_ms(50.0), m_dSustainLevel(0.7),
      m_dRelease_ms(200.0), m_dLevel(0.0), m_dAim(0.0), m_dCoefficient(0.0), m_uSamplesLeft(0)
{
}

inline void CEnvelopeGenerator::prepare(double dSampleRate)
{
    m_dSampleRate = limitValue(dSampleRate, 1.0, 1.0e7);
    reset();
}

inline void CEnvelopeGenerator::set(double dAttack_ms, double dDecay_ms, double dSustainLevel,
                                    double dRelease_ms)
{
    m_dAttack_ms = limitValue(dAttack_ms, 0.0, 60000.0);
    m_dDecay_ms = limitValue(dDecay_ms, 0.0, 60000.0);
    m_dSustainLevel = limitValue(dSustainLevel, 0.0, 1.0);
    m_dRelease_ms = limitValue(dRelease_ms, 0.0, 60000.0);
}

inline void CEnvelopeGenerator::reset()
{
    m_eState = idle;
    m_dLevel = 0.0;
}

inline void CEnvelopeGenerator::noteOn()
{
    begin(attack, 1.0, m_dAttack_ms, 0.3);
}

inline void CEnvelopeGenerator::retrigger()
{
    m_dLevel = 0.0;
    noteOn();
}

inline void CEnvelopeGenerator::noteOff()
{
    if (m_eState != idle)
        begin(release, 0.0, m_dRelease_ms, 0.001);
}

inline void CEnvelopeGenerator::begin(EState eState, double dEnd, double dTime_ms, double dRatio)
{
    const double dSamples = floor(millisecondsToSamples(dTime_ms, m_dSampleRate) + 0.5);
    m_eState = eState;
    m_uSamplesLeft = static_cast<UINT>(dSamples > 1.0 ? dSamples : 1.0);
    m_dAim = dEnd + dRatio * (dEnd - m_dLevel);
    m_dCoefficient = pow(dRatio / (1.0 + dRatio), 1.0 / m_uSamplesLeft);
}

inline float CEnvelopeGenerator::next()
{
    if (m_eState == idle)
        return 0.0f;
    if (m_eState == sustain)
        m_dAim = m_dSustainLevel;
    m_dLevel = cleanState(m_dAim + m_dCoefficient * (m_dLevel - m_dAim));

    if (m_eState != sustain && --m_uSamplesLeft == 0) {
        if (m_eState == attack) {
            m_dLevel = 1.0;
            begin(decay, m_dSustainLevel, m_dDecay_ms, 0.001);
        } else if (m_eState == decay) {
            m_eState = sustain;
        } else {
            reset();
        }
    }
    return static_cast<float>(m_dLevel);
}

inline CLFO::CLFO() : m_eShape(sine), m_dSampleRate(44100.0), m_dRate_Hz(1.0)
{
    prepare(m_dSampleRate);
}

inline void CLFO::prepare(double dSampleRate)
{
    m_dSampleRate = limitValue(dSampleRate, 1.0, 1.0e7);
    set(m_eShape, m_dRate_Hz);
    m_uRandom = 1;
    reset();
}

inline void CLFO::set(EShape eShape, double dRate_Hz)
{
    m_eShape = eShape;
    m_dRate_Hz = limitValue(dRate_Hz, 0.0, 1.0e7);
    m_dIncrement = limitValue(m_dRate_Hz / m_dSampleRate, 0.0, 0.5);
}

inline void CLFO::reset(double dPhase)
{
    const double dLimited = limitValue(dPhase, 0.0, 1.0);
    m_dPhase = dLimited < 1.0 ? dLimited : 0.0;
    m_fHeld = nextRandom();
}

inline float CLFO::nextRandom()
{
    m_uRandom = (m_uRandom * 1664525u + 1013904223u) & 0xFFFFFFFFu;
    return static_cast<float>((m_uRandom >> 8) / 8388607.5 - 1.0);
}

inline float CLFO::next()
{
    const double p = m_dPhase;
    double dOutput = m_fHeld;
    if (m_eShape == sine)
        dOutput = sineFromTable(g_sineTable, p);
    else if (m_eShape == triangle)
        dOutput = p < 0.25 ? 4.0 * p : (p < 0.75 ? 2.0 - 4.0 * p : 4.0 * p - 4.0);
    else if (m_eShape == saw)
        dOutput = 2.0 * p - 1.0;
    else if (m_eShape == square)
        dOutput = p < 0.5 ? 1.0 : -1.0;

    m_dPhase += m_dIncrement;
    if (m_dPhase >= 1.0) {
        m_dPhase -= 1.0;
        m_fHeld = nextRandom();
    }
    return static_cast<float>(dOutput);
}

inline CBandLimitedOscillator::CBandLimitedOscillator()
    : m_eShape(sine), m_dSampleRate(44100.0), m_dFrequency_Hz(440.0), m_dPulseWidth(0.5)
{
    prepare(m_dSampleRate);
}

inline void CBandLimitedOscillator::prepare(double dSampleRate)
{
    m_dSampleRate = limitValue(dSampleRate, 1.0, 1.0e7);
    set(m_eShape, m_dFrequency_Hz);
    reset();
}

inline void CBandLimitedOscillator::set(EShape eShape, double dFrequency_Hz)
{
    m_eShape = eShape;
    m_dFrequency_Hz = limitValue(dFrequency_Hz, 0.0, 1.0e7);
    m_dIncrement = limitValue(m_dFrequency_Hz / m_dSampleRate, 0.0, 0.45);
}

inline void CBandLimitedOscillator::setPulseWidth(double dWidth)
{
    m_dPulseWidth = limitValue(dWidth, 0.01, 0.99);
}

inline void CBandLimitedOscillator::reset(double dPhase)
{
    const double dLimited = limitValue(dPhase, 0.0, 1.0);
    m_dPhase = dLimited < 1.0 ? dLimited : 0.0;
}

inline double CBandLimitedOscillator::step(double dPhase) const
{
    if (dPhase < m_dIncrement) {
        const double x = 1.0 - dPhase / m_dIncrement;
        return -0.5 * x * x;
    }
    if (dPhase > 1.0 - m_dIncrement) {
        const double x = 1.0 - (1.0 - dPhase) / m_dIncrement;
        return 0.5 * x * x;
    }
    return 0.0;
}

inline double CBandLimitedOscillator::ramp(double dPhase) const
{
    const double dDistance = dPhase < 0.5 ? dPhase : 1.0 - dPhase;
    if (dDistance >= m_dIncrement)
        return 0.0;
    const double x = 1.0 - dDistance / m_dIncrement;
    return x * x * x / 6.0;
}

inline float CBandLimitedOscillator::next()
{
    const double p = m_dPhase;
    double dOutput = 0.0;
    if (m_eShape == sine) {
        dOutput = sineFromTable(g_sineTable, p);
    } else if (m_eShape == saw) {
        dOutput = 2.0 * p - 1.0 - 2.0 * step(p);
    } else if (m_eShape == square) {
        const double dWidth = limitValue(m_dPulseWidth, m_dIncrement, 1.0 - m_dIncrement);
        const double dSinceFall = p < dWidth ? p - dWidth + 1.0 : p - dWidth;
        dOutput = (p < dWidth ? 1.0 : -1.0) + 2.0 * step(p) - 2.0 * step(dSinceFall);
    } else {
        const double dSincePeak = p < 0.5 ? p + 0.5 : p - 0.5;
        dOutput =
            (p < 0.5 ? 4.0 * p - 1.0 : 3.0 - 4.0 * p) + 8.0 * m_dIncrement * (ramp(p) - ramp(dSincePeak));
    }

    m_dPhase += m_dIncrement;
    if (m_dPhase >= 1.0)
        m_dPhase -= 1.0;
    return static_cast<float>(dOutput);
}

#endif
