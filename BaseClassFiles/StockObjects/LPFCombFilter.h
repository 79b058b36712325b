// LPFCombFilter.h: CLPFCombFilter, the echo that grows darker.

#ifndef VELMORA_LPFCOMBFILTER_H
#define VELMORA_LPFCOMBFILTER_H

#include "pluginconstants.h"

// A comb filter with a low-pass in its feedback, as the air and the walls of a room are: high tones die away
// first. The building blocks' rules of pluginconstants.h hold.
//   y(n) = x(n - D) + g l(n - D), l the output y behind COnePoleFilter's low-pass L
//   H(z) = z^-D / (1 - g L(z) z^-D), stable because |L| <= 1
// The delay D is rounded to whole samples, at least one. For a reverb time of the low tones, in which they
// fall by 60 dB, take g = dBToLinear(-60.0 * delay / reverb time). Before its first prepare() the filter is
// silent. Source: J. A. Moorer, "About This Reverberation Business", Computer Music Journal 3 (2), 1979.
class CLPFCombFilter
{
  public:
    CLPFCombFilter(); // 30 ms, feedback 0.7, 5000 Hz

    // Takes memory for delays of up to dMaxDelay_ms, 0 to 60000 ms, and clears it. False, and the filter is
    // as it was, without memory. [main]
    bool prepare(double dSampleRate, double dMaxDelay_ms);

    // The delay is at most what prepare() was told; the feedback runs from -0.9999 to 0.9999. The low-pass
    // takes 3 dB at its cutoff with each echo.
    void set(double dDelay_ms, double dFeedback, double dCutoff_Hz);
    void reset();

    float process(float fInput)
    {
        const float fOutput = m_line.read(m_dDelay);
        m_line.write(cleanSample(fInput) + m_fFeedback * m_lowPass.process(fOutput));
        return fOutput;
    }

  private:
    CDelayLine m_line;
    COnePoleFilter m_lowPass;
    double m_dSampleRate;
    double m_dDelay_ms;
    double m_dDelay; // samples
    float m_fFeedback;
    double m_dCutoff_Hz;
};

#endif
