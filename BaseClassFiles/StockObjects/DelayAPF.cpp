#include "DelayAPF.h"

CDelayAPF::CDelayAPF() : m_dSampleRate(44100.0)
{
    set(5.0, 0.7);
}

bool CDelayAPF::prepare(double dSampleRate, double dMaxDelay_ms)
{
    const double dSamples = ceil(millisecondsToSamples(limitValue(dMaxDelay_ms, 0.0, 60000.0), dSampleRate));
    if (!m_line.prepare(static_cast<UINT>(limitValue(dSamples, 1.0, 1e9))))
        return false;
    m_dSampleRate = dSampleRate;
    set(m_dDelay_ms, m_fGain);
    return true;
}

void CDelayAPF::set(double dDelay_ms, double dGain)
{
    m_dDelay_ms = dDelay_ms;
    m_dDelay = floor(millisecondsToSamples(limitValue(dDelay_ms, 0.0, 60000.0), m_dSampleRate) + 0.5);
    m_fGain = static_cast<float>(limitValue(dGain, -0.9999, 0.9999));
}
