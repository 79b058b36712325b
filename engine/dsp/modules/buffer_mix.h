#pragma once

#include "pluginconstants.h"

#include <initializer_list>

namespace velmora {

// [audio]
inline void scaleBuffer(float* pBuffer, UINT uSamples, float fFactor)
{
    for (UINT u = 0; u < uSamples; ++u)
        pBuffer[u] *= fFactor;
}

// The sum of buffers of the same length, each weighted by 1 or, if bNormalise, by 1 through their number. The
// first one may be the output. [audio]
inline void mixBuffers(std::initializer_list<const float*> buffers, float* pOut, UINT uSamples,
                       bool bNormalise)
{
    const float fWeight = bNormalise ? 1.0F / static_cast<float>(buffers.size()) : 1.0F;
    bool bFirst = true;
    for (const float* pBuffer : buffers) {
        if (bFirst)
            for (UINT u = 0; u < uSamples; ++u)
                pOut[u] = fWeight * pBuffer[u];
        else
            for (UINT u = 0; u < uSamples; ++u)
                pOut[u] += fWeight * pBuffer[u];
        bFirst = false;
    }
}

} // namespace velmora
