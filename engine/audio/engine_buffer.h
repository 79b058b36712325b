#pragma once

#include "audio/channel_mode.h"

#include <cstddef>
#include <span>

namespace velmora {

// One buffer on its way through the engine: what stays the same from the first step to the last. Samples are
// interleaved, -1.0 to +1.0. [audio]
struct CEngineBuffer
{
    std::span<float> m_in;
    float* m_pOut = nullptr;       // as many samples as the input
    float* m_pMono = nullptr;      // work space: the mono mix of the input, when the mode uses it
    int m_nChannels = 2;           // 1 or 2
    unsigned m_uMode = 0;          // EChannelMode
    float* m_pSidechain = nullptr; // as many frames as the input; null for none
    int m_nSidechainChannels = 0;
    bool m_bSidechainEnabled = false;

    [[nodiscard]] std::size_t frames() const { return m_in.size() / static_cast<std::size_t>(m_nChannels); }
    [[nodiscard]] std::span<float> out() const { return {m_pOut, m_in.size()}; }
    [[nodiscard]] bool isMonoMixed() const { return usesMonoMix(m_uMode, m_nChannels); }
    [[nodiscard]] std::span<float> sidechain() const
    {
        return {m_pSidechain, m_pSidechain ? frames() * static_cast<std::size_t>(m_nSidechainChannels) : 0};
    }
};

} // namespace velmora
