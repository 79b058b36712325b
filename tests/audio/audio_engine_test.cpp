#include "audio/level_meters.h"
#include "base/platform_denormals.h"
#include "engine_fixture.h"
#include "support/allocation_guard.h"
#include "support/lock_guard_counter.h"
#include "support/test_plugins.h"

#include <chrono>
#include <cmath>
#include <mutex>
#include <thread>

namespace velmora {
namespace {

using test::CScalingPlugIn;

class AudioEngineTest : public test::CEngineTest
{
  protected:
    AudioEngineTest()
    {
        m_filter.attachPlugIn(&m_plugIn);
        m_engine.setFilter(&m_filter);
    }

    CScalingPlugIn m_plugIn;
    CUserDSPFilter m_filter;
};

TEST_F(AudioEngineTest, TheSizeOfTheBlocksDoesNotChangeTheResult)
{
    test::COnePoleAndDelayPlugIn plugIn;
    m_filter.attachPlugIn(&plugIn);
    const auto in = test::noise(20000);
    std::vector<float> first;
    for (const std::size_t uBlock : {2U, 128U, 8192U, 16384U}) {
        m_filter.prepareForPlay();
        std::vector<float> out;
        for (std::size_t i = 0; i < in.size(); i += uBlock) {
            std::vector<float> piece(in.begin() + static_cast<std::ptrdiff_t>(i),
                                     in.begin() +
                                         static_cast<std::ptrdiff_t>(std::min(in.size(), i + uBlock)));
            const auto processed = play(piece);
            out.insert(out.end(), processed.begin(), processed.end());
        }
        if (first.empty())
            first = out;
        EXPECT_EQ(out, first) << "blocks of " << uBlock;
    }
}

TEST_F(AudioEngineTest, WhatABufferHoldsBeyondTheLimitIsSilent)
{
    const auto out = playConstant(CAudioEngine::MAX_SAMPLES / 2 + 3, 0.25F);
    EXPECT_EQ(out[CAudioEngine::MAX_SAMPLES - 1], 0.75F);
    for (std::size_t i = CAudioEngine::MAX_SAMPLES; i < out.size(); ++i)
        EXPECT_EQ(out[i], 0.0F) << i;
}

TEST_F(AudioEngineTest, MetersFollowInputAndOutput)
{
    std::vector<float> in(8192);
    for (std::size_t i = 0; i < in.size(); i += 2) {
        in[i] = 0.1F;           // -20 dB
        in[i + 1] = 0.0316228F; // -30 dB
    }
    play(in);
    EXPECT_NEAR(m_engine.meter(METER_INPUT_LEFT), 40.0F / 60.0F, 1e-3F);
    EXPECT_NEAR(m_engine.meter(METER_INPUT_RIGHT), 30.0F / 60.0F, 1e-3F);
    EXPECT_NEAR(m_engine.meter(METER_OUTPUT_LEFT), (60.0F - 20.0F + 6.0206F) / 60.0F, 1e-3F);
    EXPECT_NEAR(m_engine.meter(METER_OUTPUT_RIGHT), (60.0F - 30.0F + 9.5424F) / 60.0F, 1e-3F);
    EXPECT_EQ(m_engine.meter(METER_SIDECHAIN_LEFT), 0.0F);
    m_engine.m_uChannelMode = CHANNEL_MODE_MONO_STEREO;
    play(in); // both input meters show the mono mix, which is quieter than the left channel was
    EXPECT_LT(m_engine.meter(METER_INPUT_LEFT), 40.0F / 60.0F);
    EXPECT_NEAR(m_engine.meter(METER_INPUT_RIGHT), (60.0F - 23.636F) / 60.0F, 1e-3F);

    m_engine.prepare(44100.0);
    EXPECT_EQ(m_engine.meter(METER_INPUT_LEFT), 0.0F);
}

// A null output is told once for a stream; the oscillator's own notice comes at each buffer until then.
TEST_F(AudioEngineTest, TellsOfAMissingOutputBufferAndOfTheOscillatorsCalls)
{
    float in[4] = {};
    float out[4] = {};
    m_transport.setState(TRANSPORT_USER_OSC);
    for (int nStream = 0; nStream < 2; ++nStream) {
        m_engine.clearDriverError();
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(m_engine.processPortAudioOSC(in, out, 4));
        EXPECT_EQ(figuresOf(EAudioNotice::oscillatorCalled), std::vector<float>{3.0F});
        EXPECT_FALSE(m_engine.processPortAudioFile(in, nullptr, 4, false, nullptr));
        EXPECT_TRUE(m_engine.hasDriverError());
        EXPECT_EQ(figuresOf(EAudioNotice::driverError).size(), 1U);
        EXPECT_FALSE(m_engine.processPortAudioIn(in, nullptr, 4));
        EXPECT_FALSE(m_engine.processPortAudioOSC(in, nullptr, 4));
        EXPECT_FALSE(m_engine.processDUT(nullptr, 4));
        EXPECT_TRUE(m_engine.processPortAudioOSC(in, out, 4));
        EXPECT_FALSE(m_engine.notices().take()) << "stream " << nStream;
    }
}

TEST_F(AudioEngineTest, TheMeasurementSignalStartsOverAtTheRingsExactEnd)
{
    const auto ring = m_engine.measurementRing();
    for (std::size_t i = 0; i < ring.size(); ++i)
        ring[i] = static_cast<float>(i + 1);
    std::vector<float> out(1024, 99.0F);
    EXPECT_TRUE(m_engine.processDUT(out.data(), 1024));
    EXPECT_EQ(out[1023], 0.0F) << "no measurement runs";
    m_engine.m_nSoundMode = 1;
    for (int i = 0; i < 9; ++i) {
        m_engine.processDUT(out.data(), 1024);
        EXPECT_EQ(out[0], static_cast<float>(i % 4 * 1024 + 1));
        EXPECT_EQ(out[1023], static_cast<float>(i % 4 * 1024 + 1024));
    }
    m_engine.processDUT(out.data(), 1000);
    m_engine.processDUT(out.data(), 1024);
    m_engine.processDUT(out.data(), 1024);
    EXPECT_EQ(out[1023], 4072.0F);
    m_engine.processDUT(out.data(), 1024);
    EXPECT_EQ(out[23], 4096.0F);
    EXPECT_EQ(out[24], 0.0F) << "it ran past the end";
    m_engine.processDUT(out.data(), 1024);
    EXPECT_EQ(out[0], 0.0F);
    m_engine.rewindMeasurement();
    m_engine.processDUT(out.data(), 1024);
    EXPECT_EQ(out[0], 1.0F);
}

// The analyzer sees 4096 samples of a stream, before the guard; offline processing has neither.
TEST_F(AudioEngineTest, TheCaptureSeesRawSamplesOfStreamsOnly)
{
    struct CRow
    {
        ETransportState m_eState;
        bool m_bBypass;
        bool m_bFilter;
        bool m_bOutputIsInput;
    };
    constexpr CRow ROWS[] = {
        {TRANSPORT_PLAY, false, true, false},      {TRANSPORT_PLAY, true, true, true},
        {TRANSPORT_PLAY, false, false, true},      {TRANSPORT_SOUND_IN, true, true, false},
        {TRANSPORT_SOUND_IN, false, false, false}, {TRANSPORT_OSC, true, true, true},
        {TRANSPORT_OSC, false, true, false}};
    m_engine.capture().setRunning(true);
    m_engine.m_fOutputGain_dB = 6.0206F; // twice
    test::CConstantModule oscillator(0.125F);
    m_engine.setOscillator(&oscillator);
    m_engine.m_bOscillatorRuns = true;
    for (const CRow& row : ROWS) {
        SCOPED_TRACE(testing::Message() << "state " << row.m_eState << " bypass " << row.m_bBypass);
        m_transport.setState(row.m_eState);
        m_engine.m_bBypass = row.m_bBypass;
        m_engine.setFilter(row.m_bFilter ? &m_filter : nullptr);
        for (int i = 0; i < 32; ++i) {
            std::vector<float> in(128, 0.125F);
            std::vector<float> out(128);
            EXPECT_EQ(m_engine.capture().latest(), nullptr);
            if (row.m_eState == TRANSPORT_PLAY)
                m_engine.processPortAudioFile(in.data(), out.data(), 128, false, &test::STEREO_FILE);
            else
                m_engine.processPortAudioIn(in.data(), out.data(), 128);
        }
        EXPECT_EQ(figuresOf(EAudioNotice::captureReady).size(), 1U);
        const CCaptureFrame* pFrame = m_engine.capture().latest();
        ASSERT_NE(pFrame, nullptr);
        const float fOut = row.m_bOutputIsInput ? 0.125F : row.m_bBypass || !row.m_bFilter ? 0.25F : 0.5F;
        EXPECT_EQ(pFrame->m_left[4094], 4096.0F);
        EXPECT_NEAR(pFrame->m_right[4094], 32768.0F * fOut, 1.0F);
        EXPECT_EQ(pFrame->m_bBypass, row.m_bBypass);
        EXPECT_EQ(pFrame->m_nChannels, 2);
    }

    m_transport.setState(TRANSPORT_PLAY);
    m_engine.m_bBypass = false;
    m_engine.m_fOutputGain_dB = 40.0F;
    test::CConstantModule loud(1.0F);
    m_engine.setFilter(&loud);
    std::vector<float> in(4096);
    std::vector<float> out(4096);
    m_engine.processPortAudioFile(in.data(), out.data(), 4096, true, &test::STEREO_FILE);
    EXPECT_EQ(m_engine.capture().latest(), nullptr);
    EXPECT_NEAR(out[0], 100.0F, 1e-3F);
    m_engine.processPortAudioFile(in.data(), out.data(), 4096, false, &test::STEREO_FILE);
    EXPECT_NE(m_engine.capture().latest(), nullptr);
    EXPECT_EQ(out[0], COutputGuard::LIMIT);
    EXPECT_NEAR(figuresOf(EAudioNotice::limited).at(0), 100.0F, 1e-3F);
    m_engine.m_bProtectSpeakers = false;
    m_engine.processPortAudioFile(in.data(), out.data(), 4096, false, &test::STEREO_FILE);
    EXPECT_NEAR(out[0], 100.0F, 1e-3F);
    EXPECT_EQ(m_engine.meter(METER_OUTPUT_LEFT), 1.0F);
}

// Whether a product of normal numbers that is none itself counts.
class CSubnormalModule : public CDSPFilter
{
  public:
    bool processInterleaved(float*, float* pOut, UINT, UINT uSamples, UINT) override
    {
        volatile float fSmall = 1e-30F;
        std::fill_n(pOut, uSamples, fSmall * 1e-10F * 1e30F);
        return true;
    }
};

TEST_F(AudioEngineTest, DenormalsAreOffInStreamsAndOfflineAndOnAgainAfterwards)
{
    CSubnormalModule module;
    m_engine.setFilter(&module);
    volatile float fSmall = 1e-30F;
    for (const bool bOffline : {false, true}) {
        float in[2] = {};
        float out[2] = {99.0F, 99.0F};
        m_engine.processPortAudioFile(in, out, 2, bOffline, &test::STEREO_FILE);
        EXPECT_EQ(out[1], 0.0F) << bOffline;
        EXPECT_NE(fSmall * 1e-10F, 0.0F) << bOffline;
    }
    const CDenormalsOff outer;
    {
        const CDenormalsOff inner;
    }
    EXPECT_EQ(fSmall * 1e-10F, 0.0F) << "an inner guard leaves the outer one's setting";
}

// Takes longer for a buffer than a few frames last.
class CSlowModule : public CDSPFilter
{
  public:
    bool processInterleaved(float* pIn, float* pOut, UINT, UINT uSamples, UINT) override
    {
        std::copy_n(pIn, uSamples, pOut);
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1);
        while (std::chrono::steady_clock::now() < end) {
        }
        return true;
    }
};

TEST_F(AudioEngineTest, AFilterThatTakesLongerThanTheBufferIsToldOnce)
{
    CSlowModule slow;
    CSlowModule another;
    for (CDSPFilter* pFilter : {&slow, &another}) {
        m_engine.setFilter(pFilter);
        for (int i = 0; i < 3; ++i)
            playConstant(2, 0.5F); // lasts 0.045 ms
        EXPECT_GE(m_engine.filterTime(), std::chrono::milliseconds(1));
        const auto loads = figuresOf(EAudioNotice::overload);
        ASSERT_EQ(loads.size(), 1U);
        EXPECT_GE(loads[0], 20.0F);
        playConstant(2, 0.5F);
        EXPECT_TRUE(figuresOf(EAudioNotice::overload).empty());
    }
    m_engine.prepare(44100.0); // the next stream
    for (int i = 0; i < 3; ++i)
        playConstant(2, 0.5F);
    EXPECT_EQ(figuresOf(EAudioNotice::overload).size(), 1U);
    m_engine.m_bBypass = true;
    playConstant(2, 0.5F);
    EXPECT_EQ(m_engine.filterTime().count(), 0);
}

TEST(LockGuardCounter, SeesALock)
{
    const test::CLockGuardCounter counter;
    std::mutex mutex;
    {
        const std::scoped_lock lock(mutex);
    }
    EXPECT_EQ(counter.count(), test::CLockGuardCounter::counts() ? 1U : 0U);
}

// Every way into the engine in every state and mode, through a fade, a capture that becomes ready, and every
// notice.
TEST_F(AudioEngineTest, ABufferTakesNoMemoryAndNoLock)
{
    test::CConstantModule notFinite(std::nanf(""));
    test::CConstantModule loud(1000.0F);
    CSlowModule slow;
    CDSPFilter* const filters[] = {&m_filter, &notFinite, &loud, &slow, nullptr};
    std::vector<float> in(256);
    std::vector<float> out(256);
    m_engine.prepare(192000.0); // at which a buffer lasts shorter than the slow filter takes
    m_engine.setOscillator(&m_filter);
    m_engine.capture().setRunning(true);
    m_engine.m_nSoundMode = 1;
    for (unsigned uCase = 0; uCase < 6 * 7 * 5 * 2; ++uCase) {
        m_engine.m_uChannelMode = uCase % 6;
        m_transport.setState(static_cast<ETransportState>(TRANSPORT_IDLE + uCase / 6 % 7));
        CDSPFilter* pFilter = filters[uCase / 42 % 5];
        m_engine.m_bOscillatorRuns = uCase >= 210;
        m_engine.clearDriverError();
        ASSERT_TRUE(m_engine.gate().close());
        m_engine.fadeTo(pFilter);
        m_engine.m_bBypass = uCase % 11 == 0;
        m_engine.gate().open();
        const test::CAllocationGuard heap;
        const test::CLockGuardCounter locks;
        for (int i = 0; i < 8; ++i) {
            m_engine.m_fInputGain_dB = static_cast<float>(i);
            m_engine.processPortAudioFile(in.data(), out.data(), 256, i == 3, nullptr);
            m_engine.processPortAudioIn(in.data(), out.data(), 256);
            m_engine.processPortAudioOSC(in.data(), i == 2 ? nullptr : out.data(), 256);
            m_engine.processDUT(out.data(), 256);
            m_engine.statistics().add(128, 3, std::chrono::milliseconds(i), m_engine.filterTime());
        }
        EXPECT_EQ(heap.count(), 0U) << "case " << uCase;
        EXPECT_EQ(locks.count(), 0U) << "case " << uCase;
    }
    unsigned uKinds = 0;
    while (const auto notice = m_engine.notices().take())
        uKinds |= 1U << static_cast<unsigned>(notice->m_eNotice);
    EXPECT_EQ(uKinds, (1U << static_cast<unsigned>(EAudioNotice::count)) - 1U) << "all were told";
}

} // namespace
} // namespace velmora
