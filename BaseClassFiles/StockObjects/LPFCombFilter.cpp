#include "LPFCombFilter.h"

CLPFCombFilter::CLPFCombFilter() : m_dSampleRate(44100.0)
{
    set(30.0, 0.7, 5000.0);
}

bool CLPFCombFilter::prepare(double dSampleRate, double dMaxDelay_ms)
{
    const double dSamples = ceil(millisecondsToSamples(limitValue(dMaxDelay_ms, 0.0, 60000.0), dSampleRate));
    if (!m_line.prepare(static_cast<UINT>(limitValue(dSamples, 1.0, 1e9))))
        return false;
    m_dSampleRate = dSampleRate;
    m_lowPass.prepare(dSampleRate);
    set(m_dDelay_ms, m_fFeedback, m_dCutoff_Hz);
    return true;
}

void CLPFCombFilter::set(double dDelay_ms, double dFeedback, double dCutoff_Hz)
{
    m_dDelay_ms = dDelay_ms;
    m_dDelay = floor(millisecondsToSamples(limitValue(dDelay_ms, 0.0, 60000.0), m_dSampleRate) + 0.5);
    m_fFeedback = static_cast<float>(limitValue(dFeedback, -0.9999, 0.9999));
    m_dCutoff_Hz = dCutoff_Hz;
    m_lowPass.set(COnePoleFilter::lowPass, dCutoff_Hz);
}

void CLPFCombFilter::reset()
{
    m_line.reset();
    m_lowPass.reset();
}
