#include "dsp/modules/smoothing_filter.h"
#include "noise_samples.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(SmoothingFilter, IsTheMeanOfTheLastSamples)
{
    const auto samples = test::noise(2 * 1500, 32768.0F);
    for (const double dLength : {0.0, 1.0, 2.9, 5.0, 255.0, 1024.0})
        for (const UINT uBlock : {1U, 64U, 700U}) {
            SCOPED_TRACE(testing::Message() << dLength << " in blocks of " << uBlock);
            CSmoothingFilter filter;
            filter.setControlText(600, std::to_string(dLength), false);
            filter.prepareForPlay();
            auto buffer = samples; // in place
            for (UINT uDone = 0; uDone < 1500; uDone += uBlock)
                filter.processBuffer(buffer.data() + 2 * uDone, buffer.data() + 2 * uDone, 2,
                                     2 * std::min(uBlock, 1500 - uDone), 0);
            const int nLength = static_cast<int>(dLength);
            for (int n = 0; n < 1500; n += 7)
                for (const int c : {0, 1}) {
                    float fSum = 0.0F;
                    for (int i = std::max(0, n - nLength + 1); i <= n; ++i)
                        fSum += samples[static_cast<std::size_t>(2 * i + c)] / 32768.0F;
                    const float fMean = nLength ? fSum / static_cast<float>(nLength) * 32768.0F
                                                : samples[static_cast<std::size_t>(2 * n + c)];
                    ASSERT_EQ(buffer[static_cast<std::size_t>(2 * n + c)], fMean) << n;
                }
        }
}

TEST(SmoothingFilter, ReachesAConstantInputAfterItsLengthAlsoWhenThatChanges)
{
    CSmoothingFilter filter;
    filter.prepareForPlay();
    std::vector<float> in(2000, 0.7F), out(2000);
    filter.setParameter(CSmoothingFilter::SAMPLES, 100.0F);
    filter.processInterleaved(in.data(), out.data(), 1, 2000, 0);
    EXPECT_NEAR(out[49], 0.35F, 1e-5F);
    EXPECT_LT(out[98], 0.695F);
    EXPECT_NEAR(out[99], 0.7F, 1e-5F);
    filter.setParameter(CSmoothingFilter::SAMPLES, 1000.0F); // all of them are there already
    filter.processInterleaved(in.data(), out.data(), 1, 1, 0);
    EXPECT_NEAR(out[0], 0.7F, 1e-4F);
    EXPECT_EQ(filter.trace().count(), 64);
    filter.reset();
    filter.processInterleaved(in.data(), out.data(), 1, 1, 0);
    EXPECT_FLOAT_EQ(out[0], 0.0007F);
}

} // namespace
} // namespace velmora
