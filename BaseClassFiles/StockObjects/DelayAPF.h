// DelayAPF.h: CDelayAPF, the all-pass that makes one click into many.

#ifndef VELMORA_DELAYAPF_H
#define VELMORA_DELAYAPF_H

#include "pluginconstants.h"

// Spreads a sound in time and leaves every frequency as loud as it was; the building blocks' rules of
// pluginconstants.h hold.
//   w(n) = x(n) + g w(n - D), y(n) = w(n - D) - g w(n)
//   H(z) = (z^-D - g) / (1 - g z^-D), |H| = 1
// The delay D is rounded to whole samples, at least one. Before its first prepare() the filter only hands on
// -g x(n).
// Source: M. R. Schroeder, "Natural Sounding Artificial Reverberation", J. Audio Eng. Soc. 10 (3), 1962.
class CDelayAPF
{
  public:
    CDelayAPF(); // 5 ms, gain 0.7

    // Takes memory for delays of up to dMaxDelay_ms, 0 to 60000 ms, and clears it. False, and the filter is
    // as it was, without memory. [main]
    bool prepare(double dSampleRate, double dMaxDelay_ms);

    // The delay is at most what prepare() was told; the gain runs from -0.9999 to 0.9999.
    void set(double dDelay_ms, double dGain);
    void reset() { m_line.reset(); }

    float process(float fInput)
    {
        const float fDelayed = m_line.read(m_dDelay);
        const float fInner = cleanSample(cleanSample(fInput) + m_fGain * fDelayed);
        m_line.write(fInner);
        return cleanSample(fDelayed - m_fGain * fInner);
    }

  private:
    CDelayLine m_line;
    double m_dSampleRate;
    double m_dDelay_ms;
    double m_dDelay; // samples
    float m_fGain;
};

#endif
