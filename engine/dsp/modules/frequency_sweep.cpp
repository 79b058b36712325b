#include "dsp/modules/frequency_sweep.h"

namespace velmora {

void CFrequencySweep::start(float fLow, double dSampleRate)
{
    m_dFrequency = fLow;
    m_dSampleRate = dSampleRate;
    m_table.setWaveCode(WAVE_SINE);
    m_table.setFrequency(fLow);
    m_table.setAmplitude(1.0F);
    m_table.setPhaseOffset(0.0F);
    m_table.setInverted(false);
    m_table.setUnipolar(false);
    m_table.setSampleRate(static_cast<float>(dSampleRate));
    m_table.reset();
}

CFrequencySweep::CRun CFrequencySweep::begin(const CBounds& bounds) const
{
    CRun run;
    run.m_table = m_table.begin();
    run.m_dFrequency = m_dFrequency;
    run.m_dLow = bounds.m_fLow;
    run.m_dHigh = bounds.m_fHigh;
    run.m_dStep = (run.m_dHigh - run.m_dLow) / bounds.m_fPeriod / m_dSampleRate;
    return run;
}

void CFrequencySweep::end(const CRun& run)
{
    m_dFrequency = run.m_dFrequency;
    m_table.end(run.m_table, static_cast<float>(run.m_dFrequency));
}

} // namespace velmora
