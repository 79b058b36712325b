#include "dsp/biquad.h"

#include <cfloat>
#include <gtest/gtest.h>

namespace velmora {
namespace {

// The impulse response by hand: y = x + 2 x1 + 3 x2 - 0.5 y1 - 0.25 y2.
TEST(BiQuad, FollowsItsDifferenceEquation)
{
    CBiQuad filter;
    filter.m_fA0 = 1.0f;
    filter.m_fA1 = 2.0f;
    filter.m_fA2 = 3.0f;
    filter.m_fB1 = 0.5f;
    filter.m_fB2 = 0.25f;
    for (int nRun = 0; nRun < 2; ++nRun) {
        EXPECT_FLOAT_EQ(filter.process(1.0f), 1.0f);
        EXPECT_FLOAT_EQ(filter.process(0.0f), 1.5f);
        EXPECT_FLOAT_EQ(filter.process(0.0f), 2.0f);
        EXPECT_FLOAT_EQ(filter.process(0.0f), -1.375f);
        filter.flushDelays(); // the second run starts afresh
    }
}

TEST(BiQuad, DecaysToZeroWithoutDenormals)
{
    CBiQuad filter;
    filter.m_fA0 = 1.0f;
    filter.m_fB1 = -0.5f;
    float fOutput = filter.process(1.0f);
    int nSamples = 0;
    for (; fOutput != 0.0f && nSamples < 1000; ++nSamples) {
        EXPECT_GE(fOutput, FLT_MIN);
        fOutput = filter.process(0.0f);
    }
    EXPECT_EQ(nSamples, 127); // 2^-126 is the least normal float
    EXPECT_EQ(filter.m_fYz1, 0.0f);
}

} // namespace
} // namespace velmora
