#pragma once

#include "pluginconstants.h"

#include <algorithm>

namespace velmora {

// A waveshaper that leaves soft sounds as they are and rounds loud ones off, which adds odd harmonics:
//     y = t(2 x) / 2,  t(u) = u (27 + u^2) / (27 + 9 u^2) for u within -3 to +3, and -1 or +1 beyond,
// the Pade approximation of the hyperbolic tangent, which reaches 1 with a slope of 0 at 3. So y is odd and
// rises steadily, has the slope 1 at 0 and stays within -0.5 to +0.5; a sine of 0.5 gets 6.2 % of third
// harmonic. Full scale is 1. [any]
[[nodiscard]] inline float softShaped(float fIn)
{
    const float fDriven = std::clamp(2.0F * fIn, -3.0F, 3.0F);
    const float fSquare = fDriven * fDriven;
    return 0.5F * fDriven * (27.0F + fSquare) / (27.0F + 9.0F * fSquare);
}

// The same for a buffer at another full scale, in place. [audio]
inline void shapeSoftly(float* pBuffer, UINT uSamples, float fFullScale)
{
    const float fToShaper = 1.0F / fFullScale;
    for (UINT u = 0; u < uSamples; ++u)
        pBuffer[u] = softShaped(pBuffer[u] * fToShaper) * fFullScale;
}

} // namespace velmora
