#include "OnePoleLPF.h"

COnePoleLPF::COnePoleLPF() : m_dSampleRate(44100.0), m_dState(0.0)
{
    setCutoff(1000.0);
}

void COnePoleLPF::prepare(double dSampleRate)
{
    m_dSampleRate = dSampleRate;
    if (m_bCalculated)
        setCutoff(m_dCutoff_Hz);
    reset();
}

// With e = 1 - cos, c^2 - 1 is e (2 + e), which keeps its digits where c comes close to 1.
void COnePoleLPF::setCutoff(double dCutoff_Hz)
{
    m_bCalculated = true;
    m_dCutoff_Hz = dCutoff_Hz;
    const double dLimited_Hz = limitValue(dCutoff_Hz, 0.01, 0.49 * m_dSampleRate);
    const double dSine = sin(VELMORA_PI * dLimited_Hz / m_dSampleRate);
    const double e = 2.0 * dSine * dSine;
    m_dCoefficient = 1.0 + e - sqrt(e * (2.0 + e));
}

void COnePoleLPF::setCoefficient(double dCoefficient)
{
    m_bCalculated = false;
    m_dCoefficient = limitValue(dCoefficient, 0.0, 0.999999);
}
