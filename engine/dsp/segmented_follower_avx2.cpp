// Compiled for processors with AVX2 and FMA; see CMakeLists.txt.
#define VELMORA_VECTOR_FLOATS 8
#include "dsp/segmented_follower_kernel.h"

namespace velmora {

int followSegmentsAVX2(const CSegmentedSteps& steps, const float* pSamples, int nFrames, float* pEnvelopes)
{
    return followVectors(steps, pSamples, nFrames, pEnvelopes);
}

} // namespace velmora
