#include "audio/callback_statistics.h"
#include "base/audio_system.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using std::chrono::microseconds;
using std::chrono::nanoseconds;

TEST(CallbackStatistics, CountsAndMeasuresAgainstTheBuffersLength)
{
    CCallbackStatistics statistics;
    statistics.reset(48000.0);
    statistics.add(48, 0, microseconds(500), microseconds(250)); // a buffer lasts 1 ms
    statistics.add(48, AUDIO_OUTPUT_LOST, microseconds(2000), microseconds(1500));
    statistics.add(48, AUDIO_OUTPUT_LOST | AUDIO_INPUT_LOST, microseconds(1000), microseconds(0));
    const auto figures = statistics.figures();
    EXPECT_EQ(figures.m_uBuffers, 3U);
    EXPECT_EQ(figures.m_uHostUnderruns, 2U);
    EXPECT_EQ(figures.m_uInputLosses, 1U);
    EXPECT_EQ(figures.m_uOverruns, 1U) << "all of a buffer's time is not too much";
    EXPECT_NEAR(figures.m_dPeakLoad, 2.0, 1e-9);
    EXPECT_NEAR(figures.m_dPeakFilterLoad, 1.5, 1e-9);
    for (int i = 0; i < 1000; ++i)
        statistics.add(48, 0, microseconds(300), microseconds(0));
    EXPECT_NEAR(statistics.figures().m_dLoad, 0.3, 1e-3) << "settles";
    statistics.reset(48000.0);
    EXPECT_EQ(statistics.figures().m_uBuffers + statistics.figures().m_uOverruns, 0U);
    EXPECT_EQ(statistics.figures().m_dLoad, 0.0);
    EXPECT_EQ(statistics.percentileMicroseconds(0.5), 0.0);
}

// A step's upper bound lies above what is in it, by an eighth of its octave at most.
TEST(CallbackStatistics, PercentilesAreUpperBoundsOfTheHistogramsSteps)
{
    CCallbackStatistics statistics;
    for (long long nNanoseconds = 0; nNanoseconds < 10'000'000'000;
         nNanoseconds = nNanoseconds * 17 / 16 + 1) {
        statistics.reset(48000.0);
        statistics.add(64, 0, nanoseconds(nNanoseconds), {});
        const double dBound = statistics.percentileMicroseconds(1.0);
        const double dMicroseconds = 1e-3 * static_cast<double>(nNanoseconds);
        EXPECT_GT(dBound, dMicroseconds);
        EXPECT_LE(dBound, dMicroseconds * 1.125 + 0.125 + 1e-9);
    }
    statistics.reset(48000.0);
    for (int i = 0; i < 9990; ++i)
        statistics.add(64, 0, microseconds(10), {});
    for (int i = 0; i < 10; ++i)
        statistics.add(64, 0, microseconds(1000), {});
    EXPECT_LT(statistics.percentileMicroseconds(0.0), 12.0);
    EXPECT_LT(statistics.percentileMicroseconds(0.999), 12.0);
    EXPECT_GT(statistics.percentileMicroseconds(0.9999), 1000.0);
    statistics.add(64, 0, std::chrono::hours(5), {}); // beyond the last step
    EXPECT_GT(statistics.percentileMicroseconds(1.0), 1e9);
}

} // namespace
} // namespace velmora
