// Delay.h: CDelay, a signal played later by a time in milliseconds.

#ifndef VELMORA_DELAY_H
#define VELMORA_DELAY_H

#include "pluginconstants.h"

// Hands its input on after a time, fractions of a sample included; the building blocks' rules of
// pluginconstants.h hold.
//   y(n) = (1 - f) x(n - D) + f x(n - D - 1), D whole samples and a fraction f
// The straight line between two samples costs treble: at most 3.0 dB at a quarter of the sample rate,
// half-way between them. Before its first prepare() the delay is silent. Source: T. I. Laakso, V. Valimaki,
// M. Karjalainen, U. K. Laine, "Splitting the Unit Delay", IEEE Signal Processing Magazine 13 (1), 1996.
class CDelay
{
  public:
    CDelay(); // 0 ms

    // Takes memory for delays of up to dMaxDelay_ms, 0 to 60000 ms, and clears it. False, and the delay is as
    // it was, without memory. [main]
    bool prepare(double dSampleRate, double dMaxDelay_ms);
    void reset() { m_line.reset(); }

    // From 0 ms to what prepare() was told. A delay that moves is heard as a change of pitch, one that jumps
    // as a click; CParameterSmoother makes the one of the other.
    void setDelay(double dDelay_ms);

    float process(float fInput)
    {
        m_line.write(fInput);
        return cleanSample(m_line.read(m_dDelay + 1.0));
    }

    // One more tap on the same memory, after process(): the input of dDelay_ms ago.
    float tap(double dDelay_ms) const { return m_line.read(samples(dDelay_ms) + 1.0); }

  private:
    double samples(double dDelay_ms) const;

    CDelayLine m_line;
    double m_dSampleRate;
    double m_dMaxDelay_ms;
    double m_dDelay_ms;
    double m_dDelay; // samples
};

#endif
