#include "dsp/biquad.h"

#include <cfloat>
#include <cmath>

namespace velmora {

float CBiQuad::process(float fInput)
{
    float fOutput = m_fA0 * fInput + m_fA1 * m_fXz1 + m_fA2 * m_fXz2 - m_fB1 * m_fYz1 - m_fB2 * m_fYz2;
    if (std::abs(fOutput) < FLT_MIN)
        fOutput = 0.0f;
    m_fXz2 = m_fXz1;
    m_fXz1 = fInput;
    m_fYz2 = m_fYz1;
    m_fYz1 = fOutput;
    return fOutput;
}

void CBiQuad::flushDelays()
{
    m_fXz1 = m_fXz2 = m_fYz1 = m_fYz2 = 0.0f;
}

} // namespace velmora
