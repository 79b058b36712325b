#include "dsp/modules/pulse_gate.h"

#include <algorithm>

namespace velmora {

void CPulseGate::apply(float* pSamples, unsigned uChannels, unsigned uFrames, int nPeriodSamples,
                       int nOnSamples)
{
    for (unsigned uDone = 0; uDone < uFrames;) {
        const bool bSounds = m_nCount < nOnSamples;
        enter(bSounds ? EState::sounding : EState::silent);
        const int nEnd = bSounds ? std::min(nOnSamples, nPeriodSamples) : nPeriodSamples;
        const auto uRun = std::min(static_cast<unsigned>(std::max(nEnd - m_nCount, 1)), uFrames - uDone);
        if (!bSounds)
            std::fill_n(pSamples + uDone * uChannels, uRun * uChannels, 0.0F);
        uDone += uRun;
        m_nRunningIndex += uRun;
        m_nCount += static_cast<int>(uRun);
        if (m_nCount >= nPeriodSamples)
            m_nCount = 0;
    }
}

void CPulseGate::enter(EState eState)
{
    if (m_eState == EState::silent && eState == EState::sounding)
        m_nFirstIndex = m_nRunningIndex;
    if (m_eState == EState::sounding && eState == EState::silent)
        m_nLastIndex = m_nRunningIndex;
    m_eState = eState;
}

} // namespace velmora
