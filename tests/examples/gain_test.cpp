#include "examples/example_plugin.h"

#include <cmath>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

enum
{
    GAIN = 0,
    MUTE = 45,
    LEFT_METER = 50,
    RIGHT_METER = 51
};

} // namespace

TEST(Gain, glidesAndMutesToExactSilence)
{
    CExamplePlugIn plugIn("Gain");
    plugIn.prepare(44100);
    const std::vector<float> input(44100, 1.0f);
    EXPECT_EQ(plugIn.process(input), input) << "0 dB changes nothing, from the first sample on";

    plugIn.set(MUTE, 1.0);
    const auto output = channelOf(plugIn.process(input), 0);
    double dLargestStep = 0.0;
    for (size_t n = 1; n < output.size(); ++n)
        dLargestStep = std::max(dLargestStep, std::abs(static_cast<double>(output[n]) - output[n - 1]));
    EXPECT_LT(dLargestStep, 1.0 / (0.02 * 44100.0) * 1.01) << "no step above that of a 20 ms time constant";
    EXPECT_EQ(output.back(), 0.0f);
    EXPECT_NEAR(output[881], std::exp(-1.0), 0.001) << "after one time constant";

    plugIn.set(MUTE, 0.0);
    plugIn.set(GAIN, -6.0);
    EXPECT_NEAR(plugIn.process(input).back(), std::pow(10.0, -6.0 / 20.0), 1e-6);
}

TEST(Gain, metersShowEachChannelInDecibels)
{
    CExamplePlugIn plugIn("Gain");
    plugIn.prepare(48000);
    std::vector<float> input;
    for (float fSample : sine(1000.0, 0.1, 48000, 24000))
        input.insert(input.end(), {fSample, 10.0f * fSample}); // -20 and 0 dB
    plugIn.process(input);
    EXPECT_NEAR(plugIn.meter(LEFT_METER), 40.0 / 60.0, 0.01);
    EXPECT_NEAR(plugIn.meter(RIGHT_METER), 1.0, 0.01);

    plugIn.processSilence(48000 * 3);
    EXPECT_EQ(plugIn.meter(LEFT_METER), 0.0f);
}

TEST(Gain, servesMonoFiles)
{
    CExamplePlugIn plugIn("Gain");
    plugIn.prepare(44100, 1, 2);
    EXPECT_EQ(plugIn.process({0.25f, -0.5f}), (std::vector<float>{0.25f, 0.25f, -0.5f, -0.5f}));
    plugIn.prepare(44100, 1, 1);
    EXPECT_EQ(plugIn.process({0.25f, -0.5f}), (std::vector<float>{0.25f, -0.5f}));
}

} // namespace velmora::test
