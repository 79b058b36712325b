#include "examples/example_plugin.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>

namespace velmora::test {
namespace {

enum
{
    CUTOFF = 0,
    RESONANCE = 1,
    LEVEL = 2,
    MODE = 41
};

enum
{
    LP,
    BP,
    HP,
    Notch
};

// Gain in dB for a sine, after half a second to settle.
double gainAt(CExamplePlugIn& plugIn, double dHz, int nRate)
{
    const auto uHalf = static_cast<size_t>(nRate) / 2;
    const auto output = channelOf(plugIn.process(bothChannels(sine(dHz, 0.05, nRate, 2 * uHalf))), 1);
    return decibels(amplitudeAt(std::span(output).subspan(uHalf), dHz, nRate) / 0.05);
}

} // namespace

TEST(ResonantFilter, hasTheResponseOfItsModeAtEveryRate)
{
    const double dQ = 5.0;
    const std::tuple<int, double, double, double> rows[] = {
        {LP, 2000.0, decibels(dQ), 0.05}, {LP, 60.0, 0.0, 0.05},   {LP, 200.0, 0.1, 0.1},
        {HP, 2000.0, decibels(dQ), 0.05}, {HP, 200.0, -40.0, 0.3}, {HP, 20.0, -80.0, 0.6},
        {BP, 2000.0, 0.0, 0.05},          {BP, 200.0, -33.9, 0.3}, {Notch, 60.0, 0.0, 0.05},
        {Notch, 2000.0, -170.0, 90.0},    {HP, 16000.0, 0.1, 0.2},
    };
    for (int nRate : {44100, 48000, 96000}) {
        for (const auto& [nMode, dHz, dExpected_dB, dTolerance_dB] : rows) {
            CExamplePlugIn plugIn("ResonantFilter");
            plugIn.set(CUTOFF, 2000.0);
            plugIn.set(RESONANCE, dQ);
            plugIn.set(MODE, nMode);
            plugIn.prepare(nRate);
            EXPECT_NEAR(gainAt(plugIn, dHz, nRate), dExpected_dB, dTolerance_dB)
                << "mode " << nMode << ", " << dHz << " Hz at " << nRate;
        }
    }
}

TEST(ResonantFilter, keepsChannelsApartAndIsLinearAtAnyScale)
{
    std::vector<float> input;
    for (float fSample : sine(900.0, 0.5, 44100, 4410))
        input.insert(input.end(), {fSample, 0.0f});
    CExamplePlugIn plain("ResonantFilter");
    plain.prepare(44100);
    const auto output = plain.process(input);
    EXPECT_GT(peakOf(channelOf(output, 0)), 1.0);
    EXPECT_EQ(peakOf(channelOf(output, 1)), 0.0);

    for (float& fSample : input)
        fSample *= 32768.0f;
    CExamplePlugIn scaled("ResonantFilter");
    scaled.prepare(44100);
    const auto scaledOutput = scaled.process(input);
    for (size_t i = 0; i < output.size(); ++i)
        ASSERT_NEAR(scaledOutput[i] / 32768.0f, output[i], 1e-6f);
}

TEST(ResonantFilter, movesWithoutClicksAndArrives)
{
    CExamplePlugIn plugIn("ResonantFilter");
    plugIn.set(CUTOFF, 20480.0);
    plugIn.set(RESONANCE, 0.7071);
    plugIn.prepare(44100);
    const auto tone = bothChannels(sine(100.0, 0.5, 44100, 22050));
    plugIn.process(tone);
    plugIn.set(CUTOFF, 1000.0); // ten times above the tone: to be heard at most as a click
    plugIn.set(LEVEL, -6.0);
    const auto output = channelOf(plugIn.process(tone), 0);
    double dSharpest = 0.0; // second difference: that of the tone itself is 0.5 w^2 = 0.0001
    for (size_t n = 2; n < output.size(); ++n)
        dSharpest = std::max(dSharpest, std::abs(output[n] - 2.0 * output[n - 1] + output[n - 2]));
    EXPECT_LT(dSharpest, 0.002);
    EXPECT_NEAR(gainAt(plugIn, 1000.0, 44100), -3.01 - 6.0, 0.05);

    plugIn.set(MODE, BP);
    EXPECT_NEAR(gainAt(plugIn, 1000.0, 44100), -6.0, 0.05);
    EXPECT_LT(gainAt(plugIn, 30.0, 44100), -30.0);
}

} // namespace velmora::test
