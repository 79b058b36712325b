#include "host/channel_layout.h"
#include "host/plane_pair.h"
#include "host/user_dsp_filter.h"
#include "recording_plugin.h"
#include "support/allocation_guard.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

namespace velmora {
namespace {

using test::CRecordingPlugIn;

constexpr float UNTOUCHED = -77.0F;

enum EPath
{
    frames,
    buffers,
    planes
};
constexpr EPath PATHS[] = {frames, buffers, planes};
constexpr const char* OPERATIONS[] = {"frame", "buffer", "planes"};

class UserDSPFilter : public ::testing::Test
{
  protected:
    UserDSPFilter() { m_filter.attachPlugIn(&m_plugIn); }

    void startRecording(EPath ePath)
    {
        m_plugIn.m_bWantBuffers = ePath == buffers;
        m_plugIn.m_bWantChannelBuffers = ePath == planes;
        m_plugIn.m_bRecording = true;
        m_plugIn.m_calls.clear();
    }

    CRecordingPlugIn m_plugIn;
    CUserDSPFilter m_filter;
};

// One row for each channel mode and number of output channels; 0 in and out: refused.
struct CModeCase
{
    UINT m_uMode;
    UINT m_uOutputChannels;
    UINT m_uIn;
    UINT m_uOut;
};
constexpr CModeCase MODES[] = {
    {0, 1, 1, 1}, {1, 1, 0, 0}, {2, 1, 0, 0}, {3, 1, 1, 1}, {4, 1, 0, 0}, {5, 1, 0, 0}, {6, 1, 0, 0},
    {0, 2, 1, 1}, {1, 2, 1, 2}, {2, 2, 2, 2}, {3, 2, 1, 1}, {4, 2, 1, 2}, {5, 2, 2, 2}, {6, 2, 0, 0},
};

constexpr UINT FRAMES = 3;

// What the recording plug-in makes of the frame, by the position of its sample in the output.
float expectedSample(const CModeCase& mode, EPath ePath, float fFrameInput, UINT uChannel)
{
    if (uChannel == 0)
        return 10.0F * fFrameInput;
    if (mode.m_uOut == 2)
        return 10.0F * fFrameInput + 1.0F;
    return ePath == frames ? UNTOUCHED : 10.0F * fFrameInput;
}

TEST_F(UserDSPFilter, StreamPathFollowsTheChannelMode)
{
    for (const EPath ePath : PATHS)
        for (const CModeCase& mode : MODES) {
            SCOPED_TRACE(std::string(OPERATIONS[ePath]) + " mode " + std::to_string(mode.m_uMode) + " of " +
                         std::to_string(mode.m_uOutputChannels));
            startRecording(ePath);
            float in[2 * FRAMES];
            std::iota(in, in + 2 * FRAMES, 1.0F);
            float out[2 * FRAMES + 1];
            std::fill(std::begin(out), std::end(out), UNTOUCHED);
            const bool bExpected = mode.m_uIn > 0;
            EXPECT_EQ(CChannelLayout::ofMode(mode.m_uMode, mode.m_uOutputChannels).has_value(), bExpected);
            EXPECT_EQ(m_filter.processUserBuffer(in, out, mode.m_uMode, mode.m_uOutputChannels,
                                                 FRAMES * mode.m_uIn, 2 * FRAMES, nullptr, 0, false),
                      bExpected);
            const UINT uExpectedSamples = bExpected ? FRAMES * mode.m_uOutputChannels : 0;
            for (UINT i = 0; i < uExpectedSamples; ++i)
                EXPECT_EQ(out[i], expectedSample(mode, ePath, in[i / mode.m_uOutputChannels * mode.m_uIn],
                                                 i % mode.m_uOutputChannels))
                    << i;
            for (UINT i = uExpectedSamples; i < std::size(out); ++i)
                EXPECT_EQ(out[i], UNTOUCHED) << i;

            ASSERT_EQ(m_plugIn.m_calls.size(), bExpected ? (ePath == frames ? FRAMES : 1) : 0);
            for (const auto& call : m_plugIn.m_calls) {
                EXPECT_EQ(call.m_sOperation, OPERATIONS[ePath]);
                EXPECT_EQ(call.m_uIn, mode.m_uIn);
                EXPECT_EQ(call.m_uOut, ePath == planes ? mode.m_uIn : mode.m_uOut);
                EXPECT_EQ(call.m_uSize, ePath == frames    ? 1
                                        : ePath == buffers ? FRAMES * mode.m_uIn
                                                           : FRAMES);
            }
        }
}

TEST_F(UserDSPFilter, SidechainComesAheadOfItsCall)
{
    struct CCase
    {
        UINT m_uAuxChannels;
        std::vector<float> m_firstFrame;
    };
    for (const EPath ePath : PATHS)
        for (const CCase& test : {CCase{1, {0.1F}}, CCase{2, {0.1F, 0.2F}}})
            for (const bool bEnabled : {true, false}) {
                startRecording(ePath);
                float in[2 * FRAMES] = {};
                float out[2 * FRAMES] = {};
                float sidechain[2 * FRAMES] = {0.1F, 0.2F, 0.3F, 0.4F, 0.5F, 0.6F};
                m_filter.processUserBuffer(in, out, 2, 2, 2 * FRAMES, 2 * FRAMES, sidechain,
                                           test.m_uAuxChannels, bEnabled);
                const std::size_t uCalls = ePath == frames ? FRAMES : 1;
                ASSERT_EQ(m_plugIn.m_calls.size(), 2 * uCalls);
                for (std::size_t i = 0; i < uCalls; ++i) {
                    EXPECT_EQ(m_plugIn.m_calls[2 * i].m_sOperation, "aux");
                    EXPECT_EQ(m_plugIn.m_calls[2 * i + 1].m_sOperation, OPERATIONS[ePath]);
                }
                const auto& first = m_plugIn.m_calls.front();
                EXPECT_EQ(first.m_aux.uInputBus, 1U);
                EXPECT_EQ(first.m_aux.uNumChannels, test.m_uAuxChannels);
                EXPECT_EQ(first.m_aux.bInputEnabled, bEnabled);
                EXPECT_EQ(first.m_aux.pFramePtr != nullptr, ePath == frames);
                EXPECT_EQ(first.m_aux.pBufferPtr, ePath == buffers ? sidechain : nullptr);
                EXPECT_EQ(first.m_aux.uBufferSize, ePath == buffers ? 2 * FRAMES : 0U);
                EXPECT_EQ(first.m_aux.ppChannelBuffers != nullptr, ePath == planes);
                EXPECT_EQ(first.m_sidechain, test.m_firstFrame);
                if (ePath == frames) {
                    EXPECT_EQ(m_plugIn.m_calls[4].m_sidechain[0], sidechain[2 * test.m_uAuxChannels]);
                }
            }
    startRecording(frames);
    float sample = 0.0F;
    m_filter.processUserBuffer(&sample, &sample, 0, 1, 1, 1, nullptr, 2, true);
    m_filter.processUserBuffer(&sample, &sample, 0, 1, 1, 1, &sample, 0, true);
    EXPECT_TRUE(m_plugIn.callsOf("aux").empty());
}

TEST_F(UserDSPFilter, LongBuffersReachThePlanesInPieces)
{
    constexpr UINT LONG = 2 * CPlanePair::FRAMES + 3616;
    std::vector<float> in(2 * LONG);
    std::iota(in.begin(), in.end(), 0.0F);
    std::vector<float> sidechain(2 * LONG);
    std::iota(sidechain.begin(), sidechain.end(), 0.5F);
    std::vector<float> out(2 * LONG);
    for (const bool bMeasuring : {true, false}) {
        startRecording(planes);
        if (bMeasuring)
            EXPECT_TRUE(m_filter.processBuffer(in.data(), out.data(), 2, 2 * LONG, 0));
        else
            EXPECT_TRUE(m_filter.processUserBuffer(in.data(), out.data(), 5, 2, 2 * LONG, 2 * LONG,
                                                   sidechain.data(), 2, true));
        const auto calls = m_plugIn.callsOf("planes");
        ASSERT_EQ(calls.size(), 3U);
        EXPECT_EQ(calls[0].m_uSize, 8192U);
        EXPECT_EQ(calls[1].m_uSize, 8192U);
        EXPECT_EQ(calls[2].m_uSize, 3616U);
        EXPECT_EQ(calls[2].m_fFirstInput, 2.0F * 16384); // full scale is kept
        for (UINT i = 0; i < LONG; ++i) {
            ASSERT_EQ(out[2 * i], 10.0F * in[2 * i]) << i;
            ASSERT_EQ(out[2 * i + 1], 10.0F * in[2 * i] + 1.0F) << i;
        }
        const auto sidechainCalls = m_plugIn.callsOf("aux");
        ASSERT_EQ(sidechainCalls.size(), bMeasuring ? 0U : 3U);
        if (!bMeasuring) {
            EXPECT_EQ(sidechainCalls[2].m_sidechain, (std::vector{2.0F * 16384 + 0.5F, 2.0F * 16384 + 1.5F}));
        }
    }
}

TEST_F(UserDSPFilter, MeasurementPathScalesInPlace)
{
    for (const EPath ePath : {frames, buffers})
        for (const UINT uChannels : {1U, 2U, 3U}) {
            SCOPED_TRACE(std::string(OPERATIONS[ePath]) + " " + std::to_string(uChannels));
            startRecording(ePath);
            float in[] = {16384.0F, -32768.0F, 8192.0F, 0.0F, 4096.0F, 32767.0F};
            float out[] = {UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED};
            const bool bExpected = uChannels < 3 || ePath == buffers;
            EXPECT_EQ(m_filter.processBuffer(in, out, uChannels, 6, 0), bExpected);
            ASSERT_EQ(m_plugIn.m_calls.empty(), !bExpected);
            if (!bExpected) {
                EXPECT_EQ(out[0], UNTOUCHED);
                EXPECT_EQ(in[0], 16384.0F);
                continue;
            }
            EXPECT_EQ(m_plugIn.m_calls[0].m_fFirstInput, 0.5F);
            EXPECT_EQ(m_plugIn.m_calls[0].m_uIn, uChannels);
            EXPECT_EQ(m_plugIn.m_calls[0].m_uOut, uChannels);
            EXPECT_EQ(in[5], 32767.0F / 32768.0F);
            EXPECT_EQ(out[0], 10.0F * 16384.0F);
            if (uChannels == 2) {
                EXPECT_EQ(out[3], 10.0F * 8192.0F + 32768.0F);
            }
        }
    startRecording(planes);
    float in[6] = {};
    float out[6] = {};
    EXPECT_FALSE(m_filter.processBuffer(in, out, 0, 6, 0));
    EXPECT_FALSE(m_filter.processBuffer(in, out, 3, 6, 0));
    EXPECT_TRUE(m_plugIn.m_calls.empty());
}

TEST_F(UserDSPFilter, ModeBufferScalesByChannelMode)
{
    for (const EPath ePath : PATHS)
        for (const CModeCase& mode : MODES) {
            SCOPED_TRACE(std::string(OPERATIONS[ePath]) + " mode " + std::to_string(mode.m_uMode) + " of " +
                         std::to_string(mode.m_uOutputChannels));
            startRecording(ePath);
            const EPath eTaken = ePath == planes ? frames : ePath; // planes are not offered here
            float in[] = {16384.0F, 8192.0F, -8192.0F, 4096.0F, 2048.0F, 1024.0F};
            const std::vector<float> original(in, in + 6);
            float out[2 * FRAMES];
            std::fill(std::begin(out), std::end(out), UNTOUCHED);
            const UINT uSamples = FRAMES * mode.m_uIn;
            ASSERT_EQ(m_filter.processModeBuffer(in, out, mode.m_uMode, mode.m_uOutputChannels, uSamples, 6),
                      mode.m_uIn > 0);
            for (UINT i = 0; i < 6; ++i)
                EXPECT_EQ(in[i], i < uSamples ? original[i] / 32768.0F : original[i]);
            for (UINT i = 0; mode.m_uIn > 0 && i < FRAMES * mode.m_uOutputChannels; ++i) {
                const float fInput = original[i / mode.m_uOutputChannels * mode.m_uIn] / 32768.0F;
                const float fExpected = expectedSample(mode, eTaken, fInput, i % mode.m_uOutputChannels);
                EXPECT_EQ(out[i], fExpected == UNTOUCHED ? UNTOUCHED : 32768.0F * fExpected) << i;
            }
            for (const auto& call : m_plugIn.m_calls)
                EXPECT_EQ(call.m_sOperation, OPERATIONS[eTaken]);
        }
}

TEST_F(UserDSPFilter, APlugInThatWantsBothGoesDifferentWays)
{
    startRecording(frames);
    m_plugIn.m_bWantBuffers = m_plugIn.m_bWantChannelBuffers = true;
    float in[2] = {};
    float out[2] = {};
    m_filter.processBuffer(in, out, 2, 2, 0);
    m_filter.processUserBuffer(in, out, 2, 2, 2, 2, nullptr, 0, false);
    ASSERT_EQ(m_plugIn.m_calls.size(), 2U);
    EXPECT_EQ(m_plugIn.m_calls[0].m_sOperation, "buffer");
    EXPECT_EQ(m_plugIn.m_calls[1].m_sOperation, "planes");
}

TEST_F(UserDSPFilter, ProcessingTouchesNoHeap)
{
    std::vector<float> in(4096, 0.25F);
    std::vector<float> out(4096);
    std::vector<float> sidechain(4096);
    for (const EPath ePath : PATHS) {
        startRecording(ePath);
        m_plugIn.m_bRecording = false;
        const test::CAllocationGuard guard;
        m_filter.prepareForPlay();
        for (const UINT uMode : {0U, 1U, 2U})
            m_filter.processUserBuffer(in.data(), out.data(), uMode, 2, uMode == 2 ? 4096 : 2048, 4096,
                                       sidechain.data(), 2, true);
        m_filter.processBuffer(in.data(), out.data(), 2, 4096, 0);
        m_filter.processModeBuffer(in.data(), out.data(), 2, 2, 4096, 4096);
        m_filter.processInterleaved(in.data(), out.data(), 2, 4096, 0);
        EXPECT_EQ(guard.count(), 0U) << OPERATIONS[ePath];
    }
    const test::CAllocationGuard guard;
    out = std::vector<float>(64);
    EXPECT_EQ(guard.count(), 2U); // the guard itself sees one allocation and one release
}

TEST_F(UserDSPFilter, PreparingTellsTheFormat)
{
    m_filter.m_nSampleRate = 96000;
    m_filter.m_nChannels = 1;
    m_filter.setBitDepth(24);
    EXPECT_TRUE(m_filter.prepareForPlay());
    EXPECT_EQ(m_plugIn.m_nPreparedRate, 96000);
    EXPECT_EQ(m_plugIn.m_nPreparedChannels, 1);
    EXPECT_EQ(m_plugIn.m_nPreparedDepth, 24);

    // Planes hold nothing of earlier audio: a plug-in that writes none gives silence.
    startRecording(planes);
    float in[2] = {1.0F, 1.0F};
    float out[2] = {};
    m_filter.processUserBuffer(in, out, 2, 2, 2, 2, nullptr, 0, false);
    EXPECT_EQ(out[0], 10.0F);
    m_filter.prepareForPlay();
    CPlugIn silent;
    silent.m_bWantChannelBuffers = true;
    m_filter.attachPlugIn(&silent);
    m_filter.processUserBuffer(in, out, 2, 2, 2, 2, nullptr, 0, false);
    EXPECT_EQ(out[0], 0.0F);
}

TEST_F(UserDSPFilter, WithoutAPlugInNothingHappens)
{
    m_filter.detachPlugIn();
    EXPECT_EQ(m_filter.m_sName, "Recording") << "the name stays";
    float in[2] = {1.0F, 1.0F};
    float out[2] = {UNTOUCHED, UNTOUCHED};
    const bool answers[] = {m_filter.processBuffer(in, out, 2, 2, 0),
                            m_filter.processModeBuffer(in, out, 2, 2, 2, 2),
                            m_filter.processUserBuffer(in, out, 2, 2, 2, 2, nullptr, 0, false),
                            m_filter.processSample(1.0F, out),
                            m_filter.setBufferSize(8192),
                            m_filter.createControls(),
                            m_filter.prepareForPlay(),
                            m_filter.setControlPosition(0, 1),
                            m_filter.setControlText(0, "1", false),
                            m_filter.controlChanged(0)};
    EXPECT_EQ(std::ranges::count(answers, true), 0);
    EXPECT_EQ(out[0], UNTOUCHED);
    EXPECT_EQ(in[0], 1.0F);
}

class UserDSPFilterControls : public UserDSPFilter
{
  protected:
    UserDSPFilterControls()
    {
        addControl(3, &m_fVolume);
        addControl(50, &m_fUnbound).uControlTheme[CONTROL_THEME_BINDING] = 1;
        addControl(7, &m_fTone);
        m_filter.createControls();
        m_plugIn.m_changed.clear();
    }

    CUICtrl& addControl(UINT uId, float* pVariable)
    {
        CUICtrl record;
        record.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        record.uControlId = uId;
        record.uUserDataType = floatData;
        record.fUserDisplayDataLoLimit = 0.0F;
        record.fUserDisplayDataHiLimit = 10.0F;
        record.fInitUserFloatValue = 5.0F;
        record.m_pUserCookedFloatData = pVariable;
        m_plugIn.m_UIControlList.append(record);
        return *m_plugIn.m_UIControlList.getAt(m_plugIn.m_UIControlList.count() - 1);
    }

    float m_fVolume = 1.0F;
    float m_fUnbound = 1.0F;
    float m_fTone = 1.0F;
};

TEST_F(UserDSPFilterControls, CreatingResetsBoundVariables)
{
    ASSERT_EQ(m_filter.m_ControlList.size(), 2U);
    EXPECT_EQ(m_filter.m_ControlList[0]->uControlId, 3U);
    EXPECT_EQ(m_filter.m_ControlList[1]->uControlId, 7U);
    EXPECT_EQ(m_filter.m_ControlList[1]->m_pFilter, &m_filter);
    EXPECT_EQ(m_fUnbound, 1.0F);
    m_fTone = 9.0F;
    m_filter.createControls();
    EXPECT_EQ(m_filter.m_ControlList.size(), 2U);
    EXPECT_EQ(m_fTone, 5.0F);
    m_filter.cleanUp();
    EXPECT_TRUE(m_filter.m_ControlList.empty());
}

TEST_F(UserDSPFilterControls, ThePlugInHearsOfChanges)
{
    constexpr UINT NONE = 0xFFFFFFFF;
    using CIds = std::vector<int>;
    EXPECT_TRUE(m_filter.setControlPosition(7, 64));
    EXPECT_EQ(m_fTone, 2.5F);
    EXPECT_TRUE(m_filter.setControlText(3, "7.5", false));
    EXPECT_EQ(m_fVolume, 7.5F);
    EXPECT_TRUE(m_filter.controlChanged(51)); // an assignable button has no control of its own
    EXPECT_EQ(m_plugIn.m_changed, (CIds{7, 3, 51}));

    m_plugIn.m_changed.clear();
    EXPECT_TRUE(m_filter.setControlText(3, "1", true)); // quiet
    EXPECT_EQ(m_fVolume, 1.0F);
    EXPECT_FALSE(m_filter.setControlText(3, "much", false));
    EXPECT_FALSE(m_filter.setControlText(50, "1", false));
    EXPECT_FALSE(m_filter.setControlPosition(50, 1));
    EXPECT_FALSE(m_filter.setControlPosition(NONE, 1));
    EXPECT_FALSE(m_filter.setControlText(NONE, "1", false));
    EXPECT_FALSE(m_filter.controlChanged(NONE));
    EXPECT_TRUE(m_plugIn.m_changed.empty());
    EXPECT_EQ(m_fVolume, 1.0F);
}

} // namespace
} // namespace velmora
