#include "dsp/level_detector.h"
#include "support/allocation_guard.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <span>
#include <tuple>
#include <vector>

namespace velmora {
namespace {

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float INFINITE = std::numeric_limits<float>::infinity();

CLevelDetector detector(float fAttack_mSec, float fRelease_mSec, unsigned uMode, bool bLog)
{
    CLevelDetector made;
    made.init(44100.0f, fAttack_mSec, fRelease_mSec, true, uMode, bLog);
    return made;
}

CLevelDetector meter()
{
    return detector(0.0f, 100.0f, CLevelDetector::PEAK, true);
}

// Bursts at very different levels, some above full scale, with silence between.
std::vector<float> bursts(std::size_t uCount, unsigned uSeed)
{
    std::mt19937 generator(uSeed);
    std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
    std::vector<float> samples(uCount);
    float fLevel = 0.0f;
    for (float& fSample : samples) {
        if (generator() % 50 == 0)
            fLevel = generator() % 3 == 0 ? 0.0f : std::pow(10.0f, 4.0f * uniform(generator) - 3.5f);
        fSample = fLevel * uniform(generator);
    }
    return samples;
}

// In one time constant an analog envelope falls to 36.7 %, a digital one to 1 %.
TEST(LevelDetector, ReleasesInItsTime)
{
    for (const bool bAnalog : {true, false}) {
        CLevelDetector made;
        made.init(1000.0f, 0.0f, 200.0f, bAnalog, CLevelDetector::PEAK, false);
        EXPECT_FLOAT_EQ(made.detect(-1.0f), 1.0f);
        const std::vector<float> silence(200, 0.0f);
        EXPECT_NEAR(made.detectBlock(silence.data(), 1, 200), bAnalog ? 0.367f : 0.01f, 1e-4f);
    }
}

TEST(LevelDetector, ReadsByModeAndScale)
{
    const float fHalf_dB = 20.0f * std::log10(0.5f);
    const struct
    {
        unsigned m_uMode;
        bool m_bLog;
        float m_fLevel; // of a steady -0.5
    } cases[] = {{CLevelDetector::PEAK, false, 0.5f},
                 {CLevelDetector::MEAN_SQUARE, false, 0.25f},
                 {CLevelDetector::ROOT_MEAN_SQUARE, false, 0.25f}, // without the root
                 {3, false, 0.5f},
                 {CLevelDetector::PEAK, true, (60.0f + fHalf_dB) / 60.0f},
                 {CLevelDetector::MEAN_SQUARE, true, (60.0f + 2.0f * fHalf_dB) / 60.0f},
                 {CLevelDetector::ROOT_MEAN_SQUARE, true, (60.0f + fHalf_dB) / 60.0f}};
    for (const auto& each : cases) {
        CLevelDetector made = detector(0.0f, 100.0f, each.m_uMode, each.m_bLog);
        EXPECT_NEAR(made.detect(-0.5f), each.m_fLevel, 1e-6f) << each.m_uMode << each.m_bLog;
        const std::vector<float> steady(100, -0.5f);
        EXPECT_NEAR(made.detectBlock(steady.data(), 1, 100), each.m_fLevel, 1e-6f)
            << each.m_uMode << each.m_bLog;
    }
}

TEST(LevelDetector, HoldsItsScaleToTheEnds)
{
    CLevelDetector made = meter();
    EXPECT_EQ(made.detect(0.0f), 0.0f);
    EXPECT_EQ(made.detect(0.0005f), 0.0f) << "below -60 dB";
    EXPECT_EQ(made.detect(3.0f), 1.0f);
    EXPECT_EQ(made.m_fEnvelope, 1.0f);
    made.reset();
    EXPECT_EQ(made.m_fEnvelope, 0.0f);
}

TEST(LevelDetector, SilenceEndsAtZeroWithoutDenormals)
{
    for (const bool bBlock : {false, true}) {
        CLevelDetector made = detector(0.0f, 1.0f, CLevelDetector::PEAK, false);
        made.detect(1.0f);
        const std::vector<float> silence(8192, 0.0f);
        float fLevel = 1.0f;
        if (bBlock)
            fLevel = made.detectBlock(silence.data(), 1, 8192);
        else
            std::ranges::for_each(silence, [&](float fSample) { fLevel = made.detect(fSample); });
        EXPECT_EQ(fLevel, 0.0f) << bBlock;
        EXPECT_EQ(made.m_fEnvelope, 0.0f) << bBlock;
    }
}

// The exact envelope: the stated formula in double precision.
double exactEnvelope(const CLevelDetector& made, std::span<const float> samples, int nStride,
                     double dEnvelope)
{
    const bool bSquare = made.m_uDetectMode == 1 || made.m_uDetectMode == 2;
    for (std::size_t i = 0; i < samples.size(); i += static_cast<std::size_t>(nStride)) {
        const double dSample = samples[i];
        const double dValue = bSquare ? dSample * dSample : std::abs(dSample);
        const double dCoefficient = dEnvelope < dValue ? made.m_fAttackCoeff : made.m_fReleaseCoeff;
        dEnvelope = std::clamp(dCoefficient * (dEnvelope - dValue) + dValue, 0.0, 1.0);
    }
    return dEnvelope;
}

// Block after block of every length around the chunk sizes: one sample at a time, by blocks, by stereo
// blocks and by the formula. Single precision leaves some 1e-6 of full scale in the slow envelopes.
TEST(LevelDetector, BlocksAgreeWithSingleSamples)
{
    const std::tuple<float, float, unsigned> cases[] = {{0.0f, 100.0f, CLevelDetector::PEAK},
                                                        {0.0f, 0.01f, CLevelDetector::PEAK},
                                                        {0.0f, 0.0f, CLevelDetector::PEAK},
                                                        {0.0f, 1.0f, CLevelDetector::MEAN_SQUARE},
                                                        {0.0f, 10.0f, CLevelDetector::ROOT_MEAN_SQUARE},
                                                        {5.0f, 50.0f, CLevelDetector::PEAK},
                                                        {1.0f, 2.0f, CLevelDetector::ROOT_MEAN_SQUARE}};
    constexpr float TOLERANCE = 5e-6f;
    for (const auto& [fAttack_mSec, fRelease_mSec, uMode] : cases) {
        const CLevelDetector fresh = detector(fAttack_mSec, fRelease_mSec, uMode, false);
        CLevelDetector single = fresh;
        CLevelDetector strided = fresh;
        CLevelDetector left = fresh;
        CLevelDetector right = fresh;
        double dExact = 0.0;
        for (int nFrames = 0; nFrames < 300; ++nFrames) {
            const auto samples =
                bursts(static_cast<std::size_t>(nFrames) * 2, static_cast<unsigned>(nFrames));
            float fSingle = single.m_fEnvelope;
            for (std::size_t i = 0; i < samples.size(); i += 2)
                fSingle = single.detect(samples[i]);
            dExact = exactEnvelope(fresh, samples, 2, dExact);
            ASSERT_NEAR(fSingle, dExact, TOLERANCE) << nFrames;
            ASSERT_NEAR(strided.detectBlock(samples.data(), 2, nFrames), dExact, TOLERANCE) << nFrames;
            float fLeft = 0.0f;
            float fRight = 0.0f;
            CLevelDetector alone = right;
            CLevelDetector::detectStereoBlock(left, right, samples.data(), nFrames, fLeft, fRight);
            ASSERT_NEAR(fLeft, dExact, TOLERANCE) << nFrames;
            for (std::size_t i = 1; i < samples.size(); i += 2)
                alone.detect(samples[i]);
            ASSERT_NEAR(fRight, alone.m_fEnvelope, TOLERANCE) << nFrames;
        }
    }
}

TEST(LevelDetector, StereoChannelsMayDiffer)
{
    const auto samples = bursts(1000, 5);
    for (const float fRelease_mSec : {100.0f, 20.0f}) {
        CLevelDetector left = meter();
        CLevelDetector right = detector(0.0f, fRelease_mSec, CLevelDetector::MEAN_SQUARE, false);
        CLevelDetector leftAlone = left;
        CLevelDetector rightAlone = right;
        float fLeft = 0.0f;
        float fRight = 0.0f;
        CLevelDetector::detectStereoBlock(left, right, samples.data(), 500, fLeft, fRight);
        EXPECT_NEAR(fLeft, leftAlone.detectBlock(samples.data(), 2, 500), 1e-6f);
        EXPECT_NEAR(fRight, rightAlone.detectBlock(samples.data() + 1, 2, 500), 1e-6f);
    }
}

TEST(LevelDetector, RecoversFromWhatIsNoNumber)
{
    for (const float fBad : {NOT_A_NUMBER, -NOT_A_NUMBER, INFINITE, -INFINITE, 3e38f}) {
        for (const unsigned uMode : {CLevelDetector::PEAK, CLevelDetector::MEAN_SQUARE}) {
            for (const float fAttack_mSec : {0.0f, 1.0f}) {
                std::vector<float> samples(200, 0.25f);
                samples[60] = samples[61] = fBad;
                CLevelDetector single = detector(fAttack_mSec, 0.1f, uMode, false);
                CLevelDetector block = single;
                for (const float fSample : samples) {
                    const float fLevel = single.detect(fSample);
                    ASSERT_TRUE(fLevel >= 0.0f && fLevel <= 1.0f);
                }
                EXPECT_NEAR(block.detectBlock(samples.data(), 1, 200), single.m_fEnvelope, 1e-6f);
                EXPECT_NEAR(single.m_fEnvelope, uMode == CLevelDetector::PEAK ? 0.25f : 0.0625f, 0.02f);
                CLevelDetector last = detector(fAttack_mSec, 100.0f, uMode, false);
                last.detectBlock(samples.data(), 1, 61); // the bad one at the very end
                EXPECT_EQ(last.m_fEnvelope > 0.9f, !std::isnan(fBad));
            }
        }
    }
}

TEST(LevelDetector, TakesNoMemoryOnTheAudioThread)
{
    const auto samples = bursts(2000, 6);
    CLevelDetector left = meter();
    CLevelDetector right = detector(1.0f, 10.0f, CLevelDetector::ROOT_MEAN_SQUARE, true);
    float fLeft = 0.0f;
    float fRight = 0.0f;
    const test::CAllocationGuard guard;
    left.detect(0.5f);
    left.detectBlock(samples.data(), 1, 2000);
    CLevelDetector::detectStereoBlock(left, right, samples.data(), 1000, fLeft, fRight);
    EXPECT_EQ(guard.count(), 0u);
}

// The resonator has unit gain at its centre and rejects what lies two octaves away, DC above all.
TEST(LevelDetector, TheBandPassPassesItsBand)
{
    const auto level = [](float fSignal, bool bFilter) {
        CLevelDetector made = detector(0.0f, 10.0f, CLevelDetector::PEAK, false);
        made.m_bUseFilter = bFilter;
        made.setBandPass(1000.0f, 100.0f);
        std::vector<float> samples(88200);
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = static_cast<float>(std::cos(2.0 * std::numbers::pi * fSignal * i / 44100.0));
        return made.detectBlock(samples.data(), 1, 88200);
    };
    EXPECT_NEAR(level(1000.0f, true), 1.0f, 0.02f);
    EXPECT_LT(level(4000.0f, true), 0.01f);
    EXPECT_LT(level(0.0f, true), 1e-4f);
    EXPECT_GT(level(4000.0f, false), 0.9f);
}

TEST(LevelDetector, TheBandPassRecoversFromWhatIsNoNumber)
{
    CLevelDetector made = detector(0.0f, 10.0f, CLevelDetector::PEAK, false);
    made.m_bUseFilter = true;
    made.setBandPass(1000.0f, 10.0f);
    for (const float fBad : {NOT_A_NUMBER, INFINITE, 3e38f, -3e38f, 3e38f}) {
        EXPECT_TRUE(std::isfinite(made.detect(fBad)));
        EXPECT_TRUE(std::isfinite(made.m_fYz1));
    }
    made.m_fB2 = NOT_A_NUMBER; // a coefficient that went wrong
    EXPECT_EQ(made.detect(1.0f), made.m_fEnvelope);
    made.setBandPass(1000.0f, 10.0f);
    const std::vector<float> silence(44100, 0.0f);
    EXPECT_LT(made.detectBlock(silence.data(), 1, 44100), 0.1f);
}

} // namespace
} // namespace velmora
