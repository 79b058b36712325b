#pragma once

#include "pluginconstants.h"

#include <cstddef>
#include <optional>

namespace velmora {

// How many channels a plug-in gets and makes in one process call, and how many the caller's output has.
struct CChannelLayout
{
    UINT m_uIn;
    UINT m_uOut;
    UINT m_uStream;

    // The layout of a channel mode:
    //     0, 3    one channel in, one out
    //     1, 4    one in, two out
    //     2, 5    two in, two out
    // None if the mode is unknown or makes more channels than the output has. [any]
    [[nodiscard]] static constexpr std::optional<CChannelLayout> ofMode(UINT uChannelMode,
                                                                        UINT uNumOutputChannels)
    {
        if (uChannelMode > 5)
            return std::nullopt;
        const UINT uKind = uChannelMode % 3;
        const CChannelLayout layout = {uKind == 2 ? 2U : 1U, uKind == 0 ? 1U : 2U,
                                       uNumOutputChannels == 2 ? 2U : 1U};
        if (layout.m_uOut > layout.m_uStream)
            return std::nullopt;
        return layout;
    }

    // Brings a mono result that stands at the front of a stereo output to both channels. [audio]
    void spread(float* pOut, UINT uFrames) const
    {
        if (m_uOut == m_uStream)
            return;
        for (std::size_t i = uFrames; i-- > 0;)
            pOut[2 * i] = pOut[2 * i + 1] = pOut[i];
    }
};

} // namespace velmora
