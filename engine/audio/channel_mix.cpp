#include "audio/channel_mix.h"

#include "audio/engine_buffer.h"

namespace velmora {

void scale(std::span<float> samples, float fGain) noexcept
{
    if (fGain == 1.0F)
        return;
    for (float& fSample : samples)
        fSample *= fGain;
}

void mixInput(const CEngineBuffer& buffer, float fGain) noexcept
{
    scale(buffer.m_in, fGain);
    if (!buffer.isMonoMixed())
        return;
    const float* pIn = buffer.m_in.data();
    float* __restrict pMono = buffer.m_pMono;
    const std::size_t uFrames = buffer.frames();
    for (std::size_t i = 0; i < uFrames; ++i)
        pMono[i] = 0.5F * pIn[2 * i] + 0.5F * pIn[2 * i + 1];
}

void mixOutput(const CEngineBuffer& buffer, float fGain) noexcept
{
    const std::size_t uFrames = buffer.frames();
    float* __restrict pOut = buffer.m_pOut;
    if (copiesLeftToRight(buffer.m_uMode, buffer.m_nChannels))
        for (std::size_t i = 0; i < uFrames; ++i)
            pOut[2 * i + 1] = pOut[2 * i];
    if (!addsDrySignal(buffer.m_uMode)) {
        scale(buffer.out(), fGain);
    } else if (buffer.isMonoMixed()) {
        const float* pMono = buffer.m_pMono;
        for (std::size_t i = 0; i < uFrames; ++i) {
            pOut[2 * i] = fGain * pOut[2 * i] + pMono[i];
            pOut[2 * i + 1] = fGain * pOut[2 * i + 1] + pMono[i];
        }
    } else {
        const float* pDry = buffer.m_in.data();
        for (std::size_t i = 0; i < buffer.m_in.size(); ++i)
            pOut[i] = fGain * pOut[i] + pDry[i];
    }
}

} // namespace velmora
