#include "examples/example_plugin.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>

namespace velmora::test {
namespace {

enum
{
    LEFT_TIME = 0,
    RIGHT_TIME = 1,
    FEEDBACK = 2,
    MIX = 3,
    DUCK_THRESHOLD = 4,
    DUCK_DEPTH = 5,
    DUCK_RELEASE = 6,
    DUCK_METER = 50
};

std::vector<float> impulse(size_t uFrames, UINT uChannels)
{
    std::vector<float> samples(uFrames * uChannels);
    for (UINT c = 0; c < uChannels; ++c)
        samples[c] = 1.0f;
    return samples;
}

} // namespace

TEST(StereoDelay, placesEchoesToTheSample)
{
    for (int nRate : {44100, 48000, 96000}) {
        for (UINT uInputs : {1U, 2U}) {
            CExamplePlugIn plugIn("StereoDelay");
            plugIn.set(LEFT_TIME, 100.0);
            plugIn.set(RIGHT_TIME, 30.0);
            plugIn.set(FEEDBACK, 50.0);
            plugIn.set(MIX, 100.0);
            plugIn.prepare(nRate, uInputs, 2);
            const auto output = plugIn.process(impulse(static_cast<size_t>(nRate), uInputs));
            const double dDelays[] = {0.1 * nRate, 0.03 * nRate};
            for (size_t c = 0; c < 2; ++c) {
                auto channel = channelOf(output, c);
                const auto uDelay = static_cast<size_t>(std::lround(dDelays[c]));
                for (size_t k = 1; k <= 4; ++k) {
                    EXPECT_NEAR(channel[k * uDelay], std::pow(0.5, static_cast<double>(k - 1)), 1e-6)
                        << "echo " << k << " of channel " << c << " at " << nRate;
                    channel[k * uDelay] = 0.0f;
                }
                channel.resize(4 * uDelay);
                EXPECT_LT(peakOf(channel), 1e-6) << "nothing between the echoes";
            }
        }
    }
}

TEST(StereoDelay, mixesDryAndWet)
{
    for (double dMix : {0.0, 25.0, 100.0}) {
        CExamplePlugIn plugIn("StereoDelay");
        plugIn.set(LEFT_TIME, 10.0);
        plugIn.set(FEEDBACK, 0.0);
        plugIn.set(MIX, dMix);
        plugIn.prepare(48000);
        const auto left = channelOf(plugIn.process(impulse(1000, 2)), 0);
        EXPECT_NEAR(left[0], 1.0 - dMix / 100.0, 1e-6);
        EXPECT_NEAR(left[480], dMix / 100.0, 1e-6);
    }
}

TEST(StereoDelay, glidesToANewTimeAndArrives)
{
    CExamplePlugIn plugIn("StereoDelay");
    plugIn.set(MIX, 100.0);
    plugIn.set(FEEDBACK, 0.0);
    plugIn.set(LEFT_TIME, 50.0);
    plugIn.prepare(48000);
    plugIn.processSilence(4800);
    plugIn.set(LEFT_TIME, 20.0);
    plugIn.processSilence(4 * 48000);
    const auto left = channelOf(plugIn.process(impulse(4800, 2)), 0);
    EXPECT_NEAR(left[960], 1.0, 1e-6);
}

TEST(StereoDelay, sidechainLowersTheEchoesByWhatIsAboveTheThreshold)
{
    const std::tuple<double, bool, double> rows[] = {
        {-10.0, true, -10.0}, {-25.0, true, 0.0}, {0.0, true, -15.0}, {-10.0, false, 0.0}};
    for (const auto& [dSidechain_dB, bEnabled, dExpected_dB] : rows) {
        CExamplePlugIn plugIn("StereoDelay");
        plugIn.set(LEFT_TIME, 10.0);
        plugIn.set(RIGHT_TIME, 10.0);
        plugIn.set(FEEDBACK, 0.0);
        plugIn.set(MIX, 100.0);
        plugIn.set(DUCK_THRESHOLD, -20.0);
        plugIn.set(DUCK_DEPTH, 15.0);
        plugIn.set(DUCK_RELEASE, 100.0);
        plugIn.prepare(48000);
        const std::vector<float> input(2 * 24000, 0.5f);
        const std::vector<float> sidechain(24000, static_cast<float>(std::pow(10.0, dSidechain_dB / 20.0)));
        const auto output = plugIn.process(input, sidechain, 64, bEnabled);
        EXPECT_NEAR(decibels(output.back() / 0.5), dExpected_dB, 0.01) << dSidechain_dB;
        EXPECT_NEAR(plugIn.meter(DUCK_METER), -dExpected_dB / 40.0, 0.001);

        const auto after = plugIn.process(std::vector<float>(2 * 96000, 0.5f));
        EXPECT_EQ(after.back(), 0.5f) << "without a sidechain the echoes come back";
    }
}

} // namespace velmora::test
