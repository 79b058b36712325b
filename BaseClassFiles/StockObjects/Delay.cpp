#include "Delay.h"

CDelay::CDelay() : m_dSampleRate(44100.0), m_dMaxDelay_ms(0.0), m_dDelay_ms(0.0), m_dDelay(0.0) {}

bool CDelay::prepare(double dSampleRate, double dMaxDelay_ms)
{
    const double dLimited_ms = limitValue(dMaxDelay_ms, 0.0, 60000.0);
    const double dSamples = ceil(millisecondsToSamples(dLimited_ms, dSampleRate)) + 1.0;
    if (!m_line.prepare(static_cast<UINT>(limitValue(dSamples, 1.0, 1e9))))
        return false;
    m_dSampleRate = dSampleRate;
    m_dMaxDelay_ms = dLimited_ms;
    setDelay(m_dDelay_ms);
    return true;
}

void CDelay::setDelay(double dDelay_ms)
{
    m_dDelay_ms = dDelay_ms;
    m_dDelay = samples(dDelay_ms);
}

double CDelay::samples(double dDelay_ms) const
{
    return millisecondsToSamples(limitValue(dDelay_ms, 0.0, m_dMaxDelay_ms), m_dSampleRate);
}
