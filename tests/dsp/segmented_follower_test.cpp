#include "dsp/segmented_follower.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace velmora {
namespace {

using CFollower = int (*)(const CSegmentedSteps&, const float*, int, float*);

std::vector<CFollower> followers()
{
    std::vector<CFollower> list = {&followSegmentsPortable, &followSegments};
    if (hasAVX2())
        list.push_back(&followSegmentsAVX2);
    return list;
}

// e' = max(v, r e + (1 - r) v), step by step in double precision.
double followed(double dEnvelope, const CSegmentedSteps& steps, const float* pSamples, int nFrames)
{
    const double r = steps.m_fRelease;
    for (int i = 0; i < nFrames; ++i) {
        double dValue = pSamples[i * steps.m_nStride];
        dValue =
            std::isnan(dValue) ? 0.0 : std::min(steps.m_bSquare ? dValue * dValue : std::abs(dValue), 1.0);
        dEnvelope = std::max(dValue, r * dEnvelope + (1.0 - r) * dValue);
    }
    return dEnvelope;
}

TEST(SegmentedFollowerTest, EveryFormFollowsLikeStepByStep)
{
    std::mt19937 generator(3);
    std::uniform_real_distribution<float> distribution(-1.2f, 1.2f);
    std::vector<float> samples(4000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = distribution(generator) * std::exp(-static_cast<float>(i % 700) / 100.0f);
    samples[100] = std::numeric_limits<float>::quiet_NaN();
    samples[901] = std::numeric_limits<float>::infinity();

    for (const CFollower follow : followers()) {
        for (const int nChannels : {1, 2}) {
            for (const float fRelease : {0.0f, 0.9f, 0.9998f, 1.0f}) {
                for (const bool bSquare : {false, true}) {
                    for (const int nFrames : {0, 1, 3, 4, 15, 16, 64, 257, 1999}) {
                        const CSegmentedSteps steps{fRelease, bSquare, nChannels, 2};
                        float envelopes[2] = {0.3f, 0.7f};
                        const int nDone = follow(steps, samples.data(), nFrames, envelopes);
                        ASSERT_LE(nDone, nFrames);
                        ASSERT_LT(nFrames - nDone, 32);
                        for (int c = 0; c < nChannels; ++c)
                            ASSERT_NEAR(envelopes[c],
                                        followed(c == 0 ? 0.3f : 0.7f, steps, samples.data() + c, nDone),
                                        5e-6)
                                << nFrames << " frames, release " << fRelease;
                    }
                }
            }
        }
    }
}

} // namespace
} // namespace velmora
