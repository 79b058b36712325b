#include "dsp/modules/frequency_sweep.h"
#include "dsp/modules/table_oscillator.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <vector>

namespace velmora {
namespace {

std::vector<float> samplesOf(CTableOscillator& oscillator, int nCount, float fFrequency)
{
    auto run = oscillator.begin();
    std::vector<float> samples;
    for (int n = 0; n < nCount; ++n)
        samples.push_back(run.next(fFrequency));
    oscillator.end(run, fFrequency);
    return samples;
}

TEST(TableOscillator, ReadsEachWaveBetweenItsEntries)
{
    struct CCase
    {
        EWaveCode m_eWave;
        int m_nFirst; // entry that a reset begins at
        std::vector<std::pair<int, float>> m_entries;
    };
    const CCase cases[] = {
        {WAVE_SAWTOOTH, 127, {{0, -1.0F}, {256, -0.5F}, {512, 0.0F}, {1023, 0.998046875F}}},
        {WAVE_SINE, 0, {{0, 0.0F}, {128, 0.70710678F}, {256, 1.0F}, {768, -1.0F}}},
        {WAVE_TRIANGLE,
         127,
         {{0, -1.0F}, {256, 0.0F}, {511, 0.99609375F}, {512, 0.99609375F}, {767, 0.0F}, {1023, -1.0F}}},
        {WAVE_SQUARE, 127, {{0, -1.0F}, {511, -1.0F}, {512, 1.0F}, {1023, 1.0F}}},
    };
    for (const auto& [eWave, nFirst, entries] : cases) {
        SCOPED_TRACE(eWave);
        CTableOscillator oscillator;
        oscillator.setSampleRate(1024.0F); // one entry per sample and Hz
        oscillator.setWaveCode(eWave);
        oscillator.reset();
        const auto whole = samplesOf(oscillator, 2048, 1.0F);
        for (const auto& [nEntry, fValue] : entries)
            EXPECT_NEAR(whole[static_cast<std::size_t>(nEntry - nFirst + 1024) % 1024], fValue, 1e-6)
                << nEntry;
        oscillator.reset();
        const auto halves = samplesOf(oscillator, 4096, 0.5F);
        for (std::size_t u = 0; u < 2047; ++u)
            ASSERT_NEAR(halves[2 * u + 1], (whole[u] + whole[u + 1]) / 2.0F, 1e-6) << u;
    }
}

TEST(TableOscillator, ShapesItsOutput)
{
    CTableOscillator oscillator;
    oscillator.setWaveCode(WAVE_SINE);
    oscillator.setSampleRate(1024.0F);
    oscillator.reset();
    const auto at = [&](float fDegrees) { // the sample at this place of the wave
        oscillator.setPhaseOffset(0.0F);
        oscillator.reset();
        oscillator.setPhaseOffset(fDegrees);
        return samplesOf(oscillator, 1, 1.0F)[0];
    };
    const auto sine = [](double dDegrees) { return std::sin(dDegrees * std::numbers::pi / 180.0); };
    for (const float fDegrees : {0.0F, 30.0F, 90.0F, -90.0F, -179.0F, 180.0F})
        EXPECT_NEAR(at(fDegrees), sine(fDegrees), 1e-5) << fDegrees;
    EXPECT_NEAR(at(400.0F), sine(180.0), 1e-5); // held to 180
    EXPECT_EQ(at(0.005F), 0.0F);                // too small a change
    EXPECT_GT(at(0.02F), 0.0F);
    oscillator.setAmplitude(0.5F);
    EXPECT_NEAR(at(30.0F), 0.25, 1e-5);
    oscillator.setInverted(true);
    EXPECT_NEAR(at(30.0F), -0.25, 1e-5);
    oscillator.setUnipolar(true);
    EXPECT_NEAR(at(30.0F), -0.375, 1e-5);
    oscillator.setAmplitude(7.0F);
    oscillator.setInverted(false);
    EXPECT_NEAR(at(-90.0F), 0.0, 1e-5);
    EXPECT_NEAR(at(90.0F), 1.0, 1e-5);
}

TEST(TableOscillator, NoFrequencyLeavesTheTable)
{
    constexpr float HUGE_FREQUENCY = std::numeric_limits<float>::max();
    CTableOscillator oscillator;
    oscillator.setWaveCode(WAVE_SINE);
    for (const float fFrequency : {-1000.0F, -1e-6F, 44100.0F, 1e9F, HUGE_FREQUENCY,
                                   std::numeric_limits<float>::infinity(), std::nanf("")}) {
        for (const float fSample : samplesOf(oscillator, 5000, fFrequency))
            ASSERT_LE(std::abs(fSample), 1.0F) << fFrequency;
    }
    CFrequencySweep sweep;
    sweep.start(20.0F, 44100.0);
    for (const CFrequencySweep::CBounds bounds :
         {CFrequencySweep::CBounds{20.0F, 20.0F, 0.0F}, {20.0F, 20000.0F, 0.0F}, {2000.0F, 20.0F, 1.0F}}) {
        auto run = sweep.begin(bounds);
        for (int n = 0; n < 1000; ++n)
            ASSERT_TRUE(std::abs(run.next()) <= 1.0F);
        sweep.end(run);
    }
}

} // namespace
} // namespace velmora
