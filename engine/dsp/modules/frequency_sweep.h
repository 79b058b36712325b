#pragma once

#include "dsp/modules/table_oscillator.h"

namespace velmora {

// A sine whose frequency rises linearly from a low to a high bound and then begins anew at the low one, with
// its phase at 0. [audio]; start(): [main, not in use]
class CFrequencySweep
{
  public:
    // Begins at fLow Hz at a rate of dSampleRate Hz.
    void start(float fLow, double dSampleRate);

    // What holds for one buffer.
    struct CBounds
    {
        float m_fLow;    // Hz
        float m_fHigh;   // Hz
        float m_fPeriod; // seconds from low to high
    };

    // Some samples of the sweep, with all that changes in registers; give it back with end(). The frequency
    // is a double: a single-precision one would stand still where the step is small beside it.
    class CRun
    {
      public:
        [[nodiscard]] float next()
        {
            const float fSample = m_table.next(static_cast<float>(m_dFrequency));
            m_dFrequency += m_dStep;
            if (!(m_dFrequency <= m_dHigh)) {
                m_dFrequency = m_dLow;
                m_table.reset();
            }
            return fSample;
        }

      private:
        friend class CFrequencySweep;

        CTableOscillator::CRun m_table;
        double m_dFrequency;
        double m_dStep; // Hz per sample
        double m_dLow;
        double m_dHigh;
    };

    [[nodiscard]] CRun begin(const CBounds& bounds) const;
    void end(const CRun& run);

  private:
    CTableOscillator m_table;
    double m_dFrequency = 0.0; // Hz
    double m_dSampleRate = 44100.0;
};

} // namespace velmora
