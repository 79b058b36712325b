#include "audio/audio_engine.h"
#include "host/user_dsp_filter.h"
#include "support/allocation_guard.h"
#include "support/test_plugins.h"
#include "support/test_support.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace velmora {
namespace {

using test::CScalingPlugIn;

constexpr float IN_GAIN_DB = -6.0F;
constexpr float OUT_GAIN_DB = 3.0F;

float linear(float fDB)
{
    return static_cast<float>(std::pow(10.0, fDB / 20.0));
}

std::vector<float> noise(std::size_t uCount)
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<float> distribution(-1.0F, 1.0F);
    std::vector<float> samples(uCount);
    for (float& fSample : samples)
        fSample = distribution(generator);
    return samples;
}

struct CFrame
{
    float m_fLeft;
    float m_fRight;
};

// What one frame becomes, worked out from the meaning of each mode. wet is what the filter makes of a
// left and a right sample; of a mono source only left counts.
template <typename Wet>
CFrame expectedFrame(unsigned uMode, int nChannels, CFrame in, Wet wet)
{
    const float fGain = linear(OUT_GAIN_DB);
    const bool bAddsDry = uMode >= 3;
    if (nChannels == 1) {
        const float fWet = fGain * wet(in.m_fLeft, in.m_fLeft).m_fLeft;
        return {fWet + (bAddsDry ? in.m_fLeft : 0.0F), 0.0F};
    }
    const float fMono = 0.5F * in.m_fLeft + 0.5F * in.m_fRight;
    const bool bStereoIn = uMode == 2 || uMode == 5;
    CFrame out = bStereoIn ? wet(in.m_fLeft, in.m_fRight) : wet(fMono, fMono);
    if (uMode == 0 || uMode == 3)
        out.m_fRight = out.m_fLeft;
    const CFrame dry = bStereoIn ? in : CFrame{fMono, fMono};
    return {fGain * out.m_fLeft + (bAddsDry ? dry.m_fLeft : 0.0F),
            fGain * out.m_fRight + (bAddsDry ? dry.m_fRight : 0.0F)};
}

class AudioEngineTest : public testing::Test
{
  protected:
    AudioEngineTest()
    {
        m_transport.setState(TRANSPORT_PLAY);
        m_filter.m_bReady = true;
    }

    std::vector<float> run(std::vector<float> in, int nChannels, int nBlock)
    {
        const CSoundFileInfo info{
            .m_nFrames = 0, .m_nChannels = nChannels, .m_nSampleRate = 44100, .m_nFormat = 0};
        std::vector<float> out(in.size(), 99.0F);
        for (std::size_t i = 0; i < in.size(); i += static_cast<std::size_t>(nBlock)) {
            const int nCount = std::min(nBlock, static_cast<int>(in.size() - i));
            EXPECT_TRUE(m_engine.processPortAudioFile(in.data() + i, out.data() + i, nCount, true, &info));
        }
        return out;
    }

    CTransport m_transport;
    CSidechain m_sidechain;
    CAudioEngine m_engine{m_transport, m_sidechain};
    CUserDSPFilter m_filter;
};

TEST_F(AudioEngineTest, EachModeRoutesMixesAndScalesOnEachPathOfThePlugIn)
{
    const auto wet = [](float fLeft, float fRight) { return CFrame{2.0F * fLeft, 3.0F * fRight}; };
    m_engine.m_fInputGain_dB = IN_GAIN_DB;
    m_engine.m_fOutputGain_dB = OUT_GAIN_DB;
    const auto in = noise(1024);
    for (const auto ePath :
         {CScalingPlugIn::EPath::frames, CScalingPlugIn::EPath::interleaved, CScalingPlugIn::EPath::planes}) {
        CScalingPlugIn plugIn(ePath);
        m_filter.attachPlugIn(&plugIn);
        m_engine.setFilter(&m_filter);
        for (unsigned uMode = 0; uMode <= 5; ++uMode) {
            for (const int nChannels : {1, 2}) {
                SCOPED_TRACE(testing::Message() << "path " << static_cast<int>(ePath) << ", mode " << uMode
                                                << ", channels " << nChannels);
                m_engine.m_uChannelMode = uMode;
                const auto out = run(in, nChannels, 256);
                const auto uStep = static_cast<std::size_t>(nChannels);
                for (std::size_t i = 0; i < in.size(); i += uStep) {
                    const CFrame frame{linear(IN_GAIN_DB) * in[i], linear(IN_GAIN_DB) * in[i + uStep - 1]};
                    const CFrame expected = expectedFrame(uMode, nChannels, frame, wet);
                    ASSERT_NEAR(out[i], expected.m_fLeft, 1e-5F) << "at " << i;
                    if (nChannels == 2) {
                        ASSERT_NEAR(out[i + 1], expected.m_fRight, 1e-5F) << "at " << i;
                    }
                }
            }
        }
    }
}

TEST_F(AudioEngineTest, BypassAndAMissingFilterFollowTheSameMixingSteps)
{
    m_engine.m_fOutputGain_dB = OUT_GAIN_DB;
    const float fGain = linear(OUT_GAIN_DB);
    CScalingPlugIn plugIn;
    m_filter.attachPlugIn(&plugIn);
    for (const bool bWithFilter : {true, false}) {
        m_engine.setFilter(bWithFilter ? &m_filter : nullptr);
        m_engine.m_bBypass = bWithFilter;
        const auto frameOf = [&](unsigned uMode) {
            m_engine.m_uChannelMode = uMode;
            const auto out = run({0.5F, 0.25F}, 2, 2);
            return CFrame{out[0], out[1]};
        };
        const float fMono = 0.375F;
        const CFrame expected[] = {{fGain * 0.5F, fGain * 0.5F},
                                   {fGain * 0.5F, fGain * 0.25F},
                                   {fGain * 0.5F, fGain * 0.25F},
                                   {fGain * 0.5F + fMono, fGain * 0.5F + fMono},
                                   {fGain * 0.5F + fMono, fGain * 0.25F + fMono},
                                   {fGain * 0.5F + 0.5F, fGain * 0.25F + 0.25F}};
        for (unsigned uMode = 0; uMode <= 5; ++uMode) {
            const CFrame frame = frameOf(uMode);
            EXPECT_NEAR(frame.m_fLeft, expected[uMode].m_fLeft, 1e-6F) << "mode " << uMode;
            EXPECT_NEAR(frame.m_fRight, expected[uMode].m_fRight, 1e-6F) << "mode " << uMode;
        }
    }
}

TEST_F(AudioEngineTest, TheSizeOfTheBlocksDoesNotChangeTheResult)
{
    test::COnePoleAndDelayPlugIn plugIn;
    m_filter.attachPlugIn(&plugIn);
    m_engine.setFilter(&m_filter);
    const auto in = noise(20000);
    std::vector<float> first;
    for (const int nBlock : {2, 128, 8192, 16384}) {
        m_filter.prepareForPlay();
        const auto out = run(in, 2, nBlock);
        if (first.empty())
            first = out;
        EXPECT_EQ(out, first) << "blocks of " << nBlock;
    }
}

TEST_F(AudioEngineTest, AMonoBufferOfAnOddLengthIsProcessedToItsEnd)
{
    CScalingPlugIn plugIn;
    m_filter.attachPlugIn(&plugIn);
    m_engine.setFilter(&m_filter);
    m_engine.m_fInputGain_dB = IN_GAIN_DB;
    m_engine.m_fOutputGain_dB = OUT_GAIN_DB;
    for (unsigned uMode = 0; uMode <= 5; ++uMode) {
        m_engine.m_uChannelMode = uMode;
        const auto out = run({0.1F, 0.2F, 0.3F}, 1, 3);
        const float fIn = linear(IN_GAIN_DB) * 0.3F;
        EXPECT_NEAR(out[2], linear(OUT_GAIN_DB) * 2.0F * fIn + (uMode >= 3 ? fIn : 0.0F), 1e-6F);
    }
}

TEST_F(AudioEngineTest, MetersFollowInputAndOutput)
{
    CScalingPlugIn plugIn;
    m_filter.attachPlugIn(&plugIn);
    m_engine.setFilter(&m_filter);
    std::vector<float> in(8192);
    for (std::size_t i = 0; i < in.size(); i += 2) {
        in[i] = 0.1F;           // -20 dB
        in[i + 1] = 0.0316228F; // -30 dB
    }
    run(in, 2, 8192);
    EXPECT_NEAR(m_engine.meter(METER_INPUT_LEFT), 40.0F / 60.0F, 1e-3F);
    EXPECT_NEAR(m_engine.meter(METER_INPUT_RIGHT), 30.0F / 60.0F, 1e-3F);
    EXPECT_NEAR(m_engine.meter(METER_OUTPUT_LEFT), (60.0F - 20.0F + 6.0206F) / 60.0F, 1e-3F);
    EXPECT_NEAR(m_engine.meter(METER_OUTPUT_RIGHT), (60.0F - 30.0F + 9.5424F) / 60.0F, 1e-3F);
    EXPECT_EQ(m_engine.meter(METER_SIDECHAIN_LEFT), 0.0F);

    m_engine.prepare(44100.0);
    EXPECT_EQ(m_engine.meter(METER_INPUT_LEFT), 0.0F);
}

TEST_F(AudioEngineTest, ABufferWaitsForTheRunGateAndLeavesItOpen)
{
    float in[2] = {0.5F, 0.5F};
    float out[2] = {};
    EXPECT_FALSE(m_engine.processPortAudioFile(in, nullptr, 1, true, nullptr));
    EXPECT_TRUE(m_engine.hasDriverError());
    m_engine.processPortAudioFile(in, out, 2, true, nullptr);
    EXPECT_FALSE(m_engine.bufferDone().tryWait()) << "offline, nobody waits for it";
    std::atomic<bool> bDone{false};
    m_engine.runGate().reset();
    std::thread audio([&] {
        m_engine.processPortAudioFile(in, out, 2, false, nullptr);
        bDone = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(bDone);
    m_engine.runGate().set();
    m_engine.bufferDone().wait();
    audio.join();
    EXPECT_TRUE(m_engine.runGate().tryWait());
}

TEST_F(AudioEngineTest, ABufferTakesNoMemory)
{
    CScalingPlugIn plugIn;
    m_filter.attachPlugIn(&plugIn);
    m_engine.setFilter(&m_filter);
    auto in = noise(8192);
    std::vector<float> out(in.size());
    for (unsigned uMode = 0; uMode <= 5; ++uMode) {
        m_engine.m_uChannelMode = uMode;
        const test::CAllocationGuard guard;
        m_engine.processPortAudioFile(in.data(), out.data(), 8192, true, nullptr);
        EXPECT_EQ(guard.count(), 0U) << "mode " << uMode;
    }
}

} // namespace
} // namespace velmora
