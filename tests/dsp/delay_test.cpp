#include "dsp/delay.h"

#include <gtest/gtest.h>
#include <limits>
#include <tuple>
#include <vector>

namespace velmora {
namespace {

// 1000 Hz: a millisecond is a sample.
void prepare(CDelay& delay, int nSize, float fDelayInSamples)
{
    delay.m_nSampleRate = 1000;
    delay.init(nSize);
    delay.setDelay_mSec(fDelayInSamples);
}

std::vector<float> processed(CDelay& delay, const std::vector<float>& input)
{
    std::vector<float> output(input.size());
    for (std::size_t i = 0; i < input.size(); ++i)
        delay.processAudio(&input[i], &output[i]);
    return output;
}

TEST(Delay, DelaysByWholeAndFractionalSamples)
{
    const std::vector<float> input{1.0f, 2.0f, 4.0f, 8.0f, 16.0f, 32.0f};
    const std::tuple<float, std::vector<float>> cases[] = {{0.0f, input},
                                                           {1.0f, {0.0f, 1.0f, 2.0f, 4.0f, 8.0f, 16.0f}},
                                                           {1.5f, {0.0f, 0.5f, 1.5f, 3.0f, 6.0f, 12.0f}},
                                                           {2.25f, {0.0f, 0.0f, 0.75f, 1.75f, 3.5f, 7.0f}},
                                                           {3.0f, {0.0f, 0.0f, 0.0f, 1.0f, 2.0f, 4.0f}}};
    for (const auto& [fDelay, output] : cases) {
        CDelay delay;
        prepare(delay, 5, fDelay);
        EXPECT_EQ(processed(delay, input), output) << fDelay;
        delay.resetDelay();
        EXPECT_EQ(processed(delay, input), output) << fDelay << " after a reset";
    }
    CDelay delay;
    prepare(delay, 4, 1.0f);
    delay.setOutputAttenuation_dB(-20.0f);
    EXPECT_FLOAT_EQ(processed(delay, {1.0f, 0.0f})[1], 0.1f);
}

TEST(Delay, ReadsTapsOfTheirOwn)
{
    CDelay delay;
    prepare(delay, 4, 0.0f);
    for (const float fSample : {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f}) // around the end
        delay.writeDelayAndInc(fSample);
    EXPECT_FLOAT_EQ(delay.readDelayAt(1.0f), 6.0f);
    EXPECT_FLOAT_EQ(delay.readDelayAt(1.5f), 5.5f);
    EXPECT_FLOAT_EQ(delay.readDelayAt(3.0f), 4.0f) << "the tap lies before the buffer's start";
    EXPECT_FLOAT_EQ(delay.readAt(0), 5.0f);
}

// Whatever the delay, no read leaves the buffer (the address sanitizer watches).
TEST(Delay, ReadsWrappedDataBeyondTheBuffer)
{
    CDelay delay;
    prepare(delay, 4, 0.0f);
    for (const float fSample : {1.0f, 2.0f, 3.0f, 4.0f, 5.0f})
        delay.writeDelayAndInc(fSample);
    EXPECT_FLOAT_EQ(delay.readDelayAt(6.0f), delay.readDelayAt(2.0f));
    delay.setDelay_mSec(9.0f);
    EXPECT_FLOAT_EQ(delay.readDelay(), 5.0f);
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    for (const float fDelay :
         {-1.0f, -7.5f, 1e30f, -1e30f, INFINITE, std::numeric_limits<float>::quiet_NaN()}) {
        delay.setDelay_mSec(fDelay);
        (void)delay.readDelay();
        (void)delay.readDelayAt(fDelay);
        EXPECT_GE(delay.m_nReadIndex, 0) << fDelay;
        EXPECT_LT(delay.m_nReadIndex, 4) << fDelay;
    }
}

TEST(Delay, ScansAroundTheEnd)
{
    CDelay delay;
    delay.init(3);
    for (const float fSample : {1.0f, 2.0f, 3.0f})
        delay.writeDelay(fSample);
    int nIndex = 1;
    float pair[2];
    delay.readPair(nIndex, pair, false);
    EXPECT_EQ(nIndex, 1);
    EXPECT_EQ(std::vector(pair, pair + 2), (std::vector{2.0f, 3.0f}));
    delay.readPair(nIndex, pair, true);
    delay.readPair(nIndex, pair, true);
    EXPECT_EQ(std::vector(pair, pair + 2), (std::vector{3.0f, 1.0f}));
    EXPECT_EQ(nIndex, 0);
    nIndex = 2;
    float triple[3];
    delay.readTriple(nIndex, triple, true);
    EXPECT_EQ(std::vector(triple, triple + 3), (std::vector{3.0f, 1.0f, 2.0f}));
    EXPECT_EQ(nIndex, 0);
}

} // namespace
} // namespace velmora
