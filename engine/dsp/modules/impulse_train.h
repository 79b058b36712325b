#pragma once

#include <cmath>

namespace velmora {

// Single samples of 1.0 in a silence, the first one at once. With the phase c in samples, which begins at 0,
// a sample is 1.0 if c = 0 or if the next step would take c beyond the spacing; where the spacing is no whole
// number, neighbours are a sample nearer or farther so that the mean is kept. [audio]
class CImpulseTrain
{
  public:
    void reset() { m_fPhase = 0.0F; }

    // The mean number of samples from one impulse to the next. One that is shorter than the time since the
    // last impulse leaves of that time what goes beyond whole spacings; the impulses that it would have had
    // by then are not made up for.
    void setSpacing(float fSpacing)
    {
        m_fSpacing = fSpacing;
        if (m_fPhase > m_fSpacing)
            m_fPhase = std::fmod(m_fPhase, m_fSpacing);
    }

    [[nodiscard]] float next()
    {
        const float fSample = m_fPhase == 0.0F || m_fSpacing < m_fPhase + 1.0F ? 1.0F : 0.0F;
        m_fPhase += 1.0F;
        if (m_fPhase > m_fSpacing)
            m_fPhase -= m_fSpacing;
        return fSample;
    }

  private:
    float m_fSpacing = 0.0F;
    float m_fPhase = 0.0F;
};

} // namespace velmora
