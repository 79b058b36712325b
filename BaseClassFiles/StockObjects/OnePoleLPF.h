// OnePoleLPF.h: COnePoleLPF, the smallest low-pass there is.

#ifndef VELMORA_ONEPOLELPF_H
#define VELMORA_ONEPOLELPF_H

#include "pluginconstants.h"

// A running average that forgets: one multiplication to damp a reverb or to calm a control. The building
// blocks' rules of pluginconstants.h hold.
//   y(n) = (1 - g) x(n) + g y(n - 1), H(z) = (1 - g) / (1 - g z^-1)
// The gain is 1 at 0 Hz and (1 - g) / (1 + g) at half the sample rate, where it ends; COnePoleFilter, with a
// zero there, closes fully. Source: J. O. Smith, "Introduction to Digital Filters with Audio Applications",
// 2007, appendix on one-pole filters.
class COnePoleLPF
{
  public:
    COnePoleLPF(); // 1000 Hz, at 44100 Hz

    void prepare(double dSampleRate);

    // -3.01 dB at this frequency, 0.01 Hz to 0.49 times the sample rate:
    //   g = c - sqrt(c^2 - 1), c = 2 - cos(2 pi fc / fs)
    void setCutoff(double dCutoff_Hz);

    // The g of the equation itself, 0 (no filter) to 0.999999, until setCutoff() is called.
    void setCoefficient(double dCoefficient);

    void reset() { m_dState = 0.0; }

    float process(float fInput)
    {
        const double dInput = cleanSample(fInput);
        m_dState = cleanState(dInput + m_dCoefficient * (m_dState - dInput));
        return static_cast<float>(m_dState);
    }

  private:
    bool m_bCalculated; // false: the coefficient is the caller's own
    double m_dSampleRate;
    double m_dCutoff_Hz;
    double m_dCoefficient;
    double m_dState;
};

#endif
