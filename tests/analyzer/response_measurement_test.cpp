#include "analyzer/response_measurement.h"
#include "host/user_dsp_filter.h"
#include "support/test_plugins.h"

#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <numbers>

namespace velmora {
namespace {

constexpr double RATE = 44100.0;
const double PEAK_DB = 20.0 * std::log10(32767.0 / 32768.0);

class CPassThroughPlugIn : public CPlugIn
{
  public:
    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT) override
    {
        std::copy_n(pIn, uIn, pOut);
        return true;
    }
};

// y = -x/2: negative, so that only a signed maximum tells it from its mirror image.
class CInvertingPlugIn : public CPlugIn
{
  public:
    bool processAudioFrame(float* pIn, float* pOut, UINT, UINT) override
    {
        pOut[0] = -0.5F * pIn[0] + 0.25F;
        pOut[1] = 0.0F;
        return true;
    }
};

TEST(ResponseMeasurementTest, WithoutAFilterOrFramesNothingIsMeasured)
{
    CResponseMeasurement measurement;
    CUserDSPFilter filter;
    EXPECT_FALSE(measurement.measureImpulse(nullptr, false, RATE));
    EXPECT_FALSE(measurement.measureStepLong(&filter, false, 0, RATE));
    EXPECT_TRUE(measurement.response().empty());
}

TEST(ResponseMeasurementTest, APassThroughIsFlatJustBelowZeroDecibels)
{
    CPassThroughPlugIn plugIn;
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    CResponseMeasurement measurement;
    ASSERT_TRUE(measurement.measureImpulse(&filter, false, RATE));
    ASSERT_EQ(measurement.response().size(), 2048U);
    for (int nChannel = 0; nChannel < 2; ++nChannel) {
        const auto response = frequencyResponse(measurement.channel(nChannel), RATE);
        ASSERT_EQ(response.m_dB.size(), 512U);
        for (const double dB : response.m_dB)
            ASSERT_NEAR(dB, PEAK_DB, 1e-9);
        EXPECT_NEAR(response.m_dDCdB, PEAK_DB, 1e-9);
        for (const double dDegrees : phaseResponse(measurement.channel(nChannel)))
            ASSERT_NEAR(dDegrees, 0.0, 1e-9);
    }
}

TEST(ResponseMeasurementTest, StepBeginsWithOneSilentFrame)
{
    CPassThroughPlugIn plugIn;
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    CResponseMeasurement measurement;
    for (const bool bNormalise : {false, true}) {
        const double dHeight = bNormalise ? 1.0 : 32767.0 / 32768.0;
        ASSERT_TRUE(measurement.measureStep(&filter, bNormalise, RATE));
        const auto left = measurement.channel(0);
        EXPECT_EQ(left.front(), 0.0);
        for (std::size_t i = 1; i < left.size(); ++i)
            ASSERT_NEAR(left[i], dHeight, 1e-7);
    }
}

TEST(ResponseMeasurementTest, MagnitudeAndPhaseAgreeWithTheTransferFunctions)
{
    test::COnePoleAndDelayPlugIn plugIn;
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    CResponseMeasurement measurement;
    for (const int nFrames : {1024, 131072}) {
        ASSERT_TRUE(measurement.measureImpulseLong(&filter, false, nFrames, RATE));
        const auto onePole = frequencyResponse(measurement.channel(0), RATE);
        const auto delayPhase = phaseResponse(measurement.channel(1));
        const double a = test::COnePoleAndDelayPlugIn::A;
        for (std::size_t k = 0; k < onePole.m_dB.size(); ++k) {
            const double dOmega = 2.0 * std::numbers::pi * static_cast<double>(k) / nFrames;
            const auto H = a / (1.0 - (1.0 - a) * std::polar(1.0, -dOmega));
            ASSERT_NEAR(onePole.m_dB[k], PEAK_DB + 20.0 * std::log10(std::abs(H)), 1e-3) << "bin " << k;
            const double dExpected =
                std::remainder(-dOmega * test::COnePoleAndDelayPlugIn::DELAY, 2.0 * std::numbers::pi) *
                180.0 / std::numbers::pi;
            ASSERT_NEAR(std::remainder(delayPhase[k] - dExpected, 360.0), 0.0, 1e-5) << "bin " << k;
        }
        EXPECT_NEAR(onePole.m_dMaxdB, PEAK_DB, 1e-4);
        EXPECT_EQ(onePole.m_dMaxHz, 0.0);
        EXPECT_EQ(onePole.m_dMindB, onePole.m_dB.back());
    }
}

TEST(ResponseMeasurementTest, NormalisingDividesByTheLargestSignedSample)
{
    CInvertingPlugIn plugIn;
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    CResponseMeasurement measurement;
    ASSERT_TRUE(measurement.measureImpulse(&filter, true, RATE));
    const auto left = measurement.channel(0);
    EXPECT_NEAR(left[0], (-0.5 * 32767.0 / 32768.0 + 0.25) / 0.25, 1e-4);
    EXPECT_NEAR(left[1], 1.0, 1e-6);
}

TEST(ResponseMeasurementTest, ASilentFilterIsInfinitelyLow)
{
    CInvertingPlugIn plugIn;
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    CResponseMeasurement measurement;
    ASSERT_TRUE(measurement.measureImpulse(&filter, false, RATE));
    const auto silent = frequencyResponse(measurement.channel(1), RATE);
    EXPECT_EQ(silent.m_dMaxdB, -std::numeric_limits<double>::infinity());
}

TEST(ResponseMeasurementTest, TheFilterIsPreparedForTheRunAndItsFormatPutBack)
{
    test::CScalingPlugIn plugIn;
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    filter.m_nSampleRate = 32000;
    filter.m_nChannels = 1;
    filter.setBitDepth(24);
    CResponseMeasurement measurement;
    ASSERT_TRUE(measurement.measureStepMs(&filter, false, 10, 96000.0));
    EXPECT_EQ(measurement.response().size(), 2U * 960U);
    EXPECT_EQ(plugIn.m_nPrepared, 1);
    EXPECT_EQ(plugIn.m_nRateWhenPrepared, 96000);
    EXPECT_EQ(plugIn.m_nChannelsWhenPrepared, 2);
    EXPECT_EQ(filter.m_nSampleRate, 32000);
    EXPECT_EQ(filter.m_nChannels, 1);
    EXPECT_EQ(filter.m_nBitDepth, 24);
}

TEST(ResponseMeasurementTest, EveryPathOfAPlugInMeasuresTheSame)
{
    for (const auto ePath : {test::CScalingPlugIn::EPath::frames, test::CScalingPlugIn::EPath::interleaved,
                             test::CScalingPlugIn::EPath::planes}) {
        test::CScalingPlugIn plugIn(ePath);
        CUserDSPFilter filter;
        filter.attachPlugIn(&plugIn);
        CResponseMeasurement measurement;
        ASSERT_TRUE(measurement.measureStepLong(&filter, false, 20000, RATE));
        const auto right = measurement.channel(1);
        EXPECT_NEAR(right[1], 3.0 * 32767.0 / 32768.0, 1e-6);
        EXPECT_NEAR(right.back(), 3.0 * 32767.0 / 32768.0, 1e-6);
    }
}

TEST(ResponseMeasurementTest, LengthsThatAreNoPowerOfTwoHaveNoFrequencyResponse)
{
    const std::vector<double> odd(1000);
    EXPECT_TRUE(frequencyResponse(odd, RATE).m_dB.empty());
    EXPECT_TRUE(phaseResponse(odd).empty());
}

} // namespace
} // namespace velmora
