#include "audio/filter_crossfade.h"

#include "audio/engine_buffer.h"
#include "audio/filter_call.h"
#include "audio/output_guard.h"

#include <algorithm>
#include <cmath>

namespace velmora {

// The sidechain may have two channels beside a source of one.
CFilterCrossfade::CFilterCrossfade(std::size_t uMaxSamples)
    : m_in(uMaxSamples), m_mono(uMaxSamples / 2), m_sidechain(2 * uMaxSamples), m_out(uMaxSamples)
{
}

void CFilterCrossfade::begin(CDSPFilter* pOld) noexcept
{
    m_pOld = pOld;
    m_uPosition.store(0, std::memory_order_relaxed);
    m_bRunning.store(true, std::memory_order_release);
}

void CFilterCrossfade::process(CDSPFilter* pNew, const CEngineBuffer& buffer)
{
    const CEngineBuffer copy = copyOf(buffer);
    callFilter(m_pOld, copy);
    callFilter(pNew, buffer);
    if (!std::isfinite(COutputGuard::largestSize(copy.out())))
        std::ranges::fill(copy.out(), 0.0F);
    mix(buffer);
    const unsigned uDone = position() + static_cast<unsigned>(buffer.frames());
    m_uPosition.store(uDone, std::memory_order_relaxed);
    if (uDone >= m_uLength)
        end();
}

CEngineBuffer CFilterCrossfade::copyOf(const CEngineBuffer& buffer) noexcept
{
    CEngineBuffer copy = buffer;
    copy.m_in = {m_in.data(), buffer.m_in.size()};
    copy.m_pOut = m_out.data();
    copy.m_pMono = m_mono.data();
    std::ranges::copy(buffer.m_in, copy.m_in.begin());
    if (buffer.isMonoMixed())
        std::copy_n(buffer.m_pMono, buffer.frames(), copy.m_pMono);
    if (buffer.m_pSidechain) {
        copy.m_pSidechain = m_sidechain.data();
        std::ranges::copy(buffer.sidechain(), copy.m_pSidechain);
    }
    return copy;
}

void CFilterCrossfade::mix(const CEngineBuffer& buffer) noexcept
{
    const int nShift = buffer.m_nChannels == 2 ? 1 : 0; // from a sample to its frame
    const auto uFrames = std::min<std::size_t>(buffer.frames(), m_uLength - position());
    const int nSamples = static_cast<int>(uFrames) << nShift;
    const float fStep = 1.0F / static_cast<float>(m_uLength);
    const auto fFirst = static_cast<float>(position());
    const float* pOld = m_out.data();
    float* __restrict pOut = buffer.m_pOut;
    for (int i = 0; i < nSamples; ++i) {
        const float fPart = (fFirst + static_cast<float>(i >> nShift)) * fStep;
        pOut[i] = pOld[i] + fPart * (pOut[i] - pOld[i]);
    }
}

} // namespace velmora
