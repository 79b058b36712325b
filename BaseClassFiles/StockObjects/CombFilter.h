// CombFilter.h: CCombFilter, the echo that feeds itself.

#ifndef VELMORA_COMBFILTER_H
#define VELMORA_COMBFILTER_H

#include "pluginconstants.h"

// A train of echoes, each as much softer than the one before as the feedback says; the building blocks' rules
// of pluginconstants.h hold.
//   y(n) = x(n - D) + g y(n - D), H(z) = z^-D / (1 - g z^-D)
// The delay D is rounded to whole samples, at least one. Between its peaks, at multiples of fs / D, and its
// valleys the response lies within 1 / (1 - |g|) and 1 / (1 + |g|). For a reverb time, in which the echoes
// fall by 60 dB, take g = dBToLinear(-60.0 * delay / reverb time). Before its first prepare() the filter is
// silent. Source: M. R. Schroeder, "Natural Sounding Artificial Reverberation", J. Audio Eng. Soc. 10 (3),
// 1962.
class CCombFilter
{
  public:
    CCombFilter(); // 30 ms, feedback 0.7

    // Takes memory for delays of up to dMaxDelay_ms, 0 to 60000 ms, and clears it. False, and the filter is
    // as it was, without memory. [main]
    bool prepare(double dSampleRate, double dMaxDelay_ms);

    // The delay is at most what prepare() was told; the feedback runs from -0.9999 to 0.9999.
    void set(double dDelay_ms, double dFeedback);
    void reset() { m_line.reset(); }

    float process(float fInput)
    {
        const float fOutput = m_line.read(m_dDelay);
        m_line.write(cleanSample(fInput) + m_fFeedback * fOutput);
        return fOutput;
    }

  private:
    CDelayLine m_line;
    double m_dSampleRate;
    double m_dDelay_ms;
    double m_dDelay; // samples
    float m_fFeedback;
};

#endif
