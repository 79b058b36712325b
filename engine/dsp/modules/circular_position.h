#pragma once

#include <algorithm>

namespace velmora {

// Positions in a circular buffer of nSize samples, which is at least 1. [any]

[[nodiscard]] inline int nextIndex(int nIndex, int nSize)
{
    return nIndex + 1 == nSize ? 0 : nIndex + 1;
}

// The index that lies the integer part of fSamples behind another, at most once round.
[[nodiscard]] inline int indexBehind(int nIndex, float fSamples, int nSize)
{
    const int nBehind = std::min(static_cast<int>(std::min(fSamples, static_cast<float>(nSize))), nSize);
    return nIndex - nBehind + (nIndex < nBehind ? nSize : 0);
}

} // namespace velmora
