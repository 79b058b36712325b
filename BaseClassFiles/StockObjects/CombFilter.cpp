#include "CombFilter.h"

CCombFilter::CCombFilter() : m_dSampleRate(44100.0)
{
    set(30.0, 0.7);
}

bool CCombFilter::prepare(double dSampleRate, double dMaxDelay_ms)
{
    const double dSamples = ceil(millisecondsToSamples(limitValue(dMaxDelay_ms, 0.0, 60000.0), dSampleRate));
    if (!m_line.prepare(static_cast<UINT>(limitValue(dSamples, 1.0, 1e9))))
        return false;
    m_dSampleRate = dSampleRate;
    set(m_dDelay_ms, m_fFeedback);
    return true;
}

void CCombFilter::set(double dDelay_ms, double dFeedback)
{
    m_dDelay_ms = dDelay_ms;
    m_dDelay = floor(millisecondsToSamples(limitValue(dDelay_ms, 0.0, 60000.0), m_dSampleRate) + 0.5);
    m_fFeedback = static_cast<float>(limitValue(dFeedback, -0.9999, 0.9999));
}
