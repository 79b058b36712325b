#define VELMORA_VECTOR_FLOATS 4
#include "dsp/segmented_follower_kernel.h"

namespace velmora {

int followSegmentsPortable(const CSegmentedSteps& steps, const float* pSamples, int nFrames,
                           float* pEnvelopes)
{
    return followVectors(steps, pSamples, nFrames, pEnvelopes);
}

bool hasAVX2()
{
    static const bool HAS_AVX2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    return HAS_AVX2;
}

int followSegments(const CSegmentedSteps& steps, const float* pSamples, int nFrames, float* pEnvelopes)
{
    static const auto FOLLOW = hasAVX2() ? &followSegmentsAVX2 : &followSegmentsPortable;
    return FOLLOW(steps, pSamples, nFrames, pEnvelopes);
}

} // namespace velmora
