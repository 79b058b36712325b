#include "dsp/modules/delay_line.h"
#include "dsp/modules/stereo_delay.h"
#include "noise_samples.h"

#include <gtest/gtest.h>
#include <numeric>

namespace velmora {
namespace {

std::vector<float> ramp(std::size_t uSize)
{
    std::vector<float> samples(uSize);
    std::iota(samples.begin(), samples.end(), 1.0F);
    return samples;
}

TEST(DelayLine, DelaysByWholeSamplesOnBothPaths)
{
    constexpr int SIZE = 16;
    for (const auto& [fDelay, nBehind] : {std::pair{0.0F, 0}, {1.0F, 1}, {5.9F, 5}, {16.0F, 16}, {99.0F, 16}})
        for (const bool bScaled : {false, true}) {
            CDelayLine line;
            line.setDelay(fDelay);
            line.init(SIZE);
            auto in = ramp(100);
            std::vector<float> out(in.size());
            for (UINT u = 0; u < in.size(); u += 10) // two channels are one line all the same
                (line.*(bScaled ? &CDSPFilter::processBuffer : &CDSPFilter::processInterleaved))(
                    &in[u], &out[u], 2, 10, 0);
            for (int n = 0; n < 100; ++n)
                ASSERT_EQ(out[n], n < nBehind ? 0.0F : in[n - nBehind]) << fDelay << " at " << n;
            line.reset();
            std::vector<float> buffer(SIZE);
            for (int n = 0; n < 100; ++n)
                ASSERT_EQ(line.tick(in[n], buffer.data()), n < nBehind ? 0.0F : in[n - nBehind]);
        }
}

TEST(DelayLine, MirrorsOffsetsBeyondTheEndAndKeepsATap)
{
    CDelayLine line;
    line.init(8);
    line.setDelay(3.0F);
    EXPECT_EQ(line.readIndex(), 5);
    line.fill(7.0F, 0, 3); // 5, 6, 7
    line.writeAt(1.0F, 3); // 8 - 8 is 0
    line.writeAt(2.0F, 5); // 8 - 10 is 2 from the end: 6
    const float expected[] = {7.0F, 2.0F, 7.0F, 1.0F, 7.0F, 2.0F};
    for (int nOffset = 0; nOffset < 6; ++nOffset)
        EXPECT_EQ(line.readAt(nOffset), expected[nOffset]) << nOffset;
    line.reset(); // read 5, tap 8 - 1 = 7
    line.fill(7.0F, 0, 3);
    bool bWrapped = true;
    for (const bool bExpected : {false, true, false, true, false, true, false, true}) {
        (void)line.advanceTap(true, bWrapped);
        EXPECT_EQ(bWrapped, bExpected) << line.readIndex();
    }
    for (int nOffset = 0; nOffset < 8; ++nOffset)
        EXPECT_EQ(line.readAt(nOffset), 0.0F); // cleared on the way
}

struct CEcho
{
    float m_fDelay, m_fFeedback, m_fLevel, m_fMix;
};

// The described steps with an unlimited past.
std::vector<double> echoed(const std::vector<float>& in, UINT uChannels, const CEcho& echo)
{
    std::vector<double> line(in.size()), out(in.size());
    const auto uBack = uChannels * static_cast<std::size_t>(echo.m_fDelay);
    for (std::size_t u = 0; u < in.size(); ++u) {
        const double dDelayed = uBack == 0 ? in[u] : u < uBack ? 0.0 : line[u - uBack];
        line[u] = in[u] + (uBack == 0 ? 0.0 : echo.m_fFeedback * dDelayed);
        out[u] = in[u] * (1.0 - echo.m_fMix) + dDelayed * echo.m_fLevel * echo.m_fMix;
    }
    return out;
}

TEST(StereoDelay, FollowsItsEquationInBuffersOfAnySize)
{
    const CEcho echoes[] = {{0.0F, 0.9F, 0.5F, 1.0F},  {1.0F, 0.5F, 1.0F, 0.5F},   {37.8F, -0.7F, 0.3F, 0.8F},
                            {20.0F, 1.0F, 1.0F, 1.0F}, {800.0F, 0.9F, 1.0F, 0.5F}, {50.0F, 0.5F, 1.0F, 0.0F}};
    const auto in = test::noise(8000);
    for (const CEcho& echo : echoes)
        for (const UINT uChannels : {1U, 2U})
            for (const float fScale : {1.0F, 32768.0F}) {
                CStereoDelay delay;
                delay.m_nSampleRate = 800;
                delay.prepareForPlay();
                delay.setDelay(echo.m_fDelay);
                delay.setParameter(STEREODELAY_FEEDBACK, echo.m_fFeedback);
                delay.setParameter(STEREODELAY_LEVEL, echo.m_fLevel);
                delay.setParameter(STEREODELAY_MIX, echo.m_fMix);
                const auto expected = echoed(in, uChannels, echo);
                std::vector<float> out(in);
                for (float& fSample : out)
                    fSample *= fScale;
                for (UINT uDone = 0, uSize = 0; uDone < out.size(); uDone += uSize) {
                    uSize = std::min<UINT>(static_cast<UINT>(out.size()) - uDone, 2 + uDone % 254 / 2 * 2);
                    const auto pOperation =
                        fScale > 1.0F ? &CDSPFilter::processBuffer : &CDSPFilter::processInterleaved;
                    ASSERT_TRUE((delay.*pOperation)(&out[uDone], &out[uDone], uChannels, uSize, 0));
                }
                for (std::size_t u = 0; u < out.size(); ++u)
                    ASSERT_NEAR(out[u] / fScale, expected[u], 2e-4) << echo.m_fDelay << " at " << u;
            }
}

TEST(StereoDelay, HasTwoSetsOfDefaultsAndShowsPercentAndDecibels)
{
    CStereoDelay delay;
    delay.m_nSampleRate = 48000;
    delay.prepareForPlay();
    EXPECT_EQ(delay.bufferSize(), 48000);
    EXPECT_EQ(delay.parameter(STEREODELAY_DELAY), 22050.0F); // as constructed; the limit follows the rate
    EXPECT_EQ(delay.range(STEREODELAY_DELAY).m_fHigh, 48000.0F);
    EXPECT_EQ(delay.range(STEREODELAY_FEEDBACK).m_fLow, -1.0F);
    EXPECT_EQ(delay.readIndex(1), 48000 - 22050);
    EXPECT_TRUE(delay.setControlText(601, "-25", false));
    EXPECT_EQ(delay.parameter(STEREODELAY_FEEDBACK), -0.25F);
    EXPECT_TRUE(delay.setControlPosition(603, 64));
    EXPECT_EQ(delay.getControlById(603)->m_sValue, "25");
    EXPECT_TRUE(delay.setControlPosition(602, 0));
    EXPECT_EQ(delay.getControlById(602)->m_sValue, "-96.0");
    delay.resetToDefaults();
    EXPECT_EQ(delay.parameter(STEREODELAY_DELAY), 24000.0F);
    EXPECT_EQ(delay.parameter(STEREODELAY_FEEDBACK), 0.5F);
    EXPECT_EQ(delay.range(STEREODELAY_FEEDBACK).m_fLow, 0.0F);
    float fIn = 0.25F, fOut = 0.0F;
    delay.processInterleaved(&fIn, &fOut, 1, 1, 0);
    EXPECT_EQ(delay.trace().count(), 1);
    EXPECT_EQ(delay.trace().table().get(1, CTraceTable::COLUMNS - 1), 0.125F);
}

} // namespace
} // namespace velmora
