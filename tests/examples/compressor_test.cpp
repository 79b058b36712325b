#include "examples/example_plugin.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>

namespace velmora::test {
namespace {

enum
{
    THRESHOLD = 0,
    RATIO = 1,
    KNEE = 2,
    ATTACK = 3,
    RELEASE = 4,
    MAKEUP = 5,
    DETECTOR = 41,
    REDUCTION_METER = 50,
    LEVEL_METER = 51
};

double fromDecibels(double dB)
{
    return std::pow(10.0, dB / 20.0);
}

std::vector<float> square(double dAmplitude, size_t uFrames)
{
    std::vector<float> samples(uFrames);
    for (size_t n = 0; n < uFrames; ++n)
        samples[n] = static_cast<float>(n / 50 % 2 ? -dAmplitude : dAmplitude);
    return samples;
}

// Output level in dB of the static curve: two straight lines, joined over the knee by the parabola that
// meets both with their own slope.
double curve(double dInput_dB, double dThreshold_dB, double dRatio, double dKnee_dB)
{
    if (dInput_dB < dThreshold_dB - dKnee_dB / 2.0)
        return dInput_dB;
    if (dInput_dB > dThreshold_dB + dKnee_dB / 2.0)
        return dThreshold_dB + (dInput_dB - dThreshold_dB) / dRatio;
    const double dInto = dInput_dB - dThreshold_dB + dKnee_dB / 2.0;
    return dKnee_dB > 0.0 ? dInput_dB + (1.0 / dRatio - 1.0) * dInto * dInto / (2.0 * dKnee_dB) : dInput_dB;
}

} // namespace

TEST(Compressor, followsItsStaticCurve)
{
    const std::tuple<double, double, double> settings[] = {
        {-24.0, 4.0, 0.0}, {-24.0, 4.0, 12.0}, {-40.0, 20.0, 6.0}, {-10.0, 1.0, 24.0}};
    for (const auto& [dThreshold_dB, dRatio, dKnee_dB] : settings) {
        for (double dInput_dB = -60.0; dInput_dB <= 0.0; dInput_dB += 3.0) {
            CExamplePlugIn plugIn("Compressor");
            plugIn.set(THRESHOLD, dThreshold_dB);
            plugIn.set(RATIO, dRatio);
            plugIn.set(KNEE, dKnee_dB);
            plugIn.set(ATTACK, 1.0);
            plugIn.prepare(48000);
            const auto output = plugIn.process(bothChannels(square(fromDecibels(dInput_dB), 4800)));
            const double dExpected_dB = curve(dInput_dB, dThreshold_dB, dRatio, dKnee_dB);
            EXPECT_NEAR(decibels(std::abs(output.back())), dExpected_dB, 0.001)
                << dInput_dB << " dB into " << dRatio << ":1, knee " << dKnee_dB;
            EXPECT_NEAR(plugIn.meter(REDUCTION_METER), std::min(1.0, (dInput_dB - dExpected_dB) / 24.0),
                        1e-3);
            EXPECT_NEAR(plugIn.meter(LEVEL_METER), 1.0 + dInput_dB / 60.0, 1e-3);
        }
    }
}

TEST(Compressor, rmsDetectorHearsTheEffectiveValueOfASine)
{
    CExamplePlugIn plugIn("Compressor");
    plugIn.set(DETECTOR, 1.0);
    plugIn.set(THRESHOLD, -30.0);
    plugIn.set(KNEE, 0.0);
    plugIn.set(RATIO, 3.0);
    plugIn.set(ATTACK, 100.0);
    plugIn.set(RELEASE, 100.0);
    plugIn.set(MAKEUP, 5.0);
    plugIn.prepare(48000);
    const auto output = channelOf(plugIn.process(bothChannels(sine(1000.0, 0.5, 48000, 96000))), 0);
    const double dEffective_dB = decibels(0.5 / std::sqrt(2.0));
    const double dReduction_dB = dEffective_dB - curve(dEffective_dB, -30.0, 3.0, 0.0);
    EXPECT_NEAR(decibels(amplitudeAt(std::span(output).subspan(48000), 1000.0, 48000) / 0.5),
                5.0 - dReduction_dB, 0.1);
}

TEST(Compressor, attackAndReleaseAreTimeConstantsOfTheLevel)
{
    CExamplePlugIn plugIn("Compressor");
    plugIn.set(THRESHOLD, -60.0);
    plugIn.set(KNEE, 0.0);
    plugIn.set(RATIO, 2.0);
    plugIn.set(ATTACK, 20.0);
    plugIn.set(RELEASE, 200.0);
    plugIn.prepare(48000);
    const auto attack = channelOf(plugIn.process(bothChannels(square(1.0, 48000))), 0);
    const double dLevel_dB = decibels(1.0 - std::exp(-1.0));
    EXPECT_NEAR(decibels(std::abs(attack[959])), -(dLevel_dB + 60.0) / 2.0, 0.02);

    // From 0 dB to -40 dB: the level after one time constant is 0.01 + 0.99 / e.
    const auto release = channelOf(plugIn.process(bothChannels(square(0.01, 9600))), 0);
    const double dFallen_dB = decibels(0.01 + 0.99 * std::exp(-1.0));
    EXPECT_NEAR(decibels(std::abs(release[9599])), -40.0 - (dFallen_dB + 60.0) / 2.0, 0.02);
}

TEST(Compressor, linksTheChannelsAndTakesAnyBlock)
{
    std::vector<float> input;
    for (float fSample : sine(440.0, 0.8, 44100, 8000))
        input.insert(input.end(), {fSample, 0.1f * fSample});
    CExamplePlugIn plugIn("Compressor");
    plugIn.prepare(44100);
    const auto output = plugIn.process(input, {}, 512);
    for (size_t i = 0; i < output.size(); i += 2)
        ASSERT_NEAR(output[i + 1], 0.1f * output[i], 1e-6f) << "the picture stays where it is";
    EXPECT_LT(peakOf(std::span(output).subspan(8000)), 0.5);

    plugIn.prepare(44100);
    EXPECT_EQ(plugIn.process(input, {}, 1), output);
    plugIn.prepare(44100);
    EXPECT_EQ(plugIn.process(input, {}, 77), output);

    plugIn.prepare(44100, 1, 2);
    const auto fromMono = plugIn.process(sine(440.0, 0.8, 44100, 8000));
    EXPECT_EQ(channelOf(fromMono, 0), channelOf(output, 0));
    EXPECT_EQ(channelOf(fromMono, 1), channelOf(output, 0));
}

} // namespace velmora::test
