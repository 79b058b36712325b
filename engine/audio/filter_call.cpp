#include "audio/filter_call.h"

#include "audio/engine_buffer.h"
#include "host/plugin_call_marker.h"
#include "host/user_dsp_filter.h"

#include <algorithm>

namespace velmora {

void callFilter(CDSPFilter* pFilter, const CEngineBuffer& buffer)
{
    if (!pFilter) {
        copyInput(buffer);
        return;
    }
    std::ranges::fill(buffer.out(), 0.0F);
    const CPlugInCallMarker marker(*pFilter, EPlugInCall::processing);
    const auto uSamples = static_cast<UINT>(buffer.m_in.size());
    const auto uChannels = static_cast<UINT>(buffer.m_nChannels);
    bool bDone;
    if (!pFilter->m_pPlugIn) {
        bDone = pFilter->processInterleaved(buffer.m_in.data(), buffer.m_pOut, uChannels, uSamples, 0);
    } else {
        const bool bMono = buffer.isMonoMixed();
        bDone = static_cast<CUserDSPFilter*>(pFilter)->processUserBuffer(
            bMono ? buffer.m_pMono : buffer.m_in.data(), buffer.m_pOut,
            plugInMode(buffer.m_uMode, buffer.m_nChannels), uChannels, bMono ? uSamples / 2 : uSamples,
            uSamples, buffer.m_pSidechain, static_cast<UINT>(buffer.m_nSidechainChannels),
            buffer.m_bSidechainEnabled);
    }
    if (!bDone)
        std::ranges::fill(buffer.out(), 0.0F);
}

void copyInput(const CEngineBuffer& buffer) noexcept
{
    std::ranges::copy(buffer.m_in, buffer.m_pOut);
}

void copySidechain(const CEngineBuffer& buffer) noexcept
{
    const float* pSidechain = buffer.m_pSidechain;
    float* pOut = buffer.m_pOut;
    if (buffer.m_nSidechainChannels == buffer.m_nChannels) {
        std::copy_n(pSidechain, buffer.m_in.size(), pOut);
        return;
    }
    const std::size_t uFrames = buffer.frames();
    if (buffer.m_nChannels == 2)
        for (std::size_t i = 0; i < uFrames; ++i)
            pOut[2 * i] = pOut[2 * i + 1] = pSidechain[i];
    else
        for (std::size_t i = 0; i < uFrames; ++i)
            pOut[i] = 0.5F * pSidechain[2 * i] + 0.5F * pSidechain[2 * i + 1];
}

} // namespace velmora
