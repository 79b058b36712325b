#include "audio/audio_engine.h"
#include "audio/sidechain.h"
#include "host/user_dsp_filter.h"
#include "support/test_plugins.h"
#include "support/test_support.h"
#include "support/wave_bytes.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

// A mono float file that counts 1/1000, 2/1000 ...
std::filesystem::path countingFile(const test::CTemporaryFolder& folder, int nFrames, int nChannels)
{
    CSoundFile file;
    std::string sError;
    const auto path = folder / "sidechain.wav";
    EXPECT_TRUE(file.openForWriting(path, {0, nChannels, 44100, 0x010006}, sError)) << sError;
    std::vector<float> samples;
    for (int i = 0; i < nFrames * nChannels; ++i)
        samples.push_back(static_cast<float>(i + 1) / 1000.0F);
    file.writeFloats(samples.data(), static_cast<long long>(samples.size()));
    EXPECT_TRUE(file.close());
    return path;
}

std::vector<float> readFrames(CSidechain& sidechain, int nFrames)
{
    sidechain.readBlock(nFrames);
    const float* pBuffer = sidechain.buffer();
    return {pBuffer, pBuffer + nFrames * sidechain.channels()};
}

TEST(SidechainTest, AMissingFileIsRefusedInSilenceAndABrokenOneWithAMessage)
{
    const test::CTemporaryFolder folder;
    test::CRecordingDialogs dialogs;
    CSidechain sidechain;
    EXPECT_FALSE(sidechain.load(folder / "none.wav", dialogs));
    EXPECT_TRUE(dialogs.m_messages.empty());

    ASSERT_TRUE(sidechain.load(countingFile(folder, 4, 1), dialogs));
    test::writeFile(folder / "text.wav", "this is no audio");
    EXPECT_FALSE(sidechain.load(folder / "text.wav", dialogs));
    EXPECT_EQ(dialogs.m_messages,
              std::vector<std::string>{"Failed to open Sidechain WAV file - Possible invalid file: Velmora "
                                       "does not support compressed WAV Files."});
    EXPECT_TRUE(sidechain.path().empty());
    EXPECT_FALSE(sidechain.openForStream(64));
    EXPECT_EQ(sidechain.buffer(), nullptr);
}

TEST(SidechainTest, TheChoosersTakeTheirFilesWhileStopped)
{
    const test::CTemporaryFolder folder;
    const auto wave = countingFile(folder, 4, 1);
    const auto aif = folder / "sidechain.aif";
    std::filesystem::copy_file(wave, aif);
    constexpr const char* NOT_STOPPED =
        "You must stop audio streaming before loading the sidechain audio file.";
    struct CRow
    {
        bool m_bButton;
        ETransportState m_eState;
        std::optional<std::filesystem::path> m_chosen;
        std::vector<std::string> m_messages;
        bool m_bTaken;
    };
    const CRow rows[] = {
        {true, TRANSPORT_STOP, wave, {}, true},
        {true, TRANSPORT_STOP, aif, {"Not a .WAV file."}, false},
        {false, TRANSPORT_STOP, aif, {}, true},
        {true, TRANSPORT_STOP, std::nullopt, {}, false},
        {true, TRANSPORT_PLAY, wave, {NOT_STOPPED}, false},
        {false, TRANSPORT_IDLE, wave, {NOT_STOPPED}, false},
    };
    for (const CRow& row : rows) {
        CTransportState transport;
        transport.setState(row.m_eState);
        test::CRecordingDialogs dialogs;
        dialogs.m_openFile = row.m_chosen;
        CSidechain sidechain;
        ASSERT_TRUE(sidechain.load(wave, dialogs));
        std::filesystem::path observed;
        sidechain.m_onLoaded = [&](const std::filesystem::path& path) { observed = path; };
        const bool bTaken = row.m_bButton ? sidechain.chooseFromButton(transport, dialogs)
                                          : sidechain.chooseFromMenu(transport, dialogs);
        EXPECT_EQ(bTaken, row.m_bTaken);
        EXPECT_EQ(dialogs.m_messages, row.m_messages);
        EXPECT_EQ(sidechain.path(), row.m_bTaken ? *row.m_chosen : wave); // else the earlier file
        EXPECT_EQ(observed, row.m_bTaken ? *row.m_chosen : std::filesystem::path());
        EXPECT_EQ(sidechain.reason().empty(), row.m_bTaken);
    }
}

TEST(SidechainTest, TheSliderRunsFromMinus60AtItsBottomTo12AtItsTop)
{
    EXPECT_EQ(CSidechain::levelFromPosition(256), -60.0F);
    EXPECT_EQ(CSidechain::levelFromPosition(0), 12.0F);
    EXPECT_EQ(CSidechain::levelFromPosition(43), -0.09375F);
    EXPECT_EQ(CSidechain::positionFromLevel(0.0F), 43);
    EXPECT_EQ(CSidechain::positionFromLevel(-60.0F), 256);
    EXPECT_EQ(CSidechain::positionFromLevel(12.0F), 0);
    EXPECT_EQ(CSidechain::positionFromLevel(99.0F), 0);
}

TEST(SidechainTest, TurningItOffZeroesAllSixMeters)
{
    const test::CTemporaryFolder folder;
    test::CRecordingDialogs dialogs;
    CTransportState transport;
    CSidechain sidechain;
    CAudioEngine engine(transport, sidechain);
    ASSERT_TRUE(sidechain.load(countingFile(folder, 8, 2), dialogs));
    EXPECT_EQ(sidechain.shortName(), "sidechain.wav");
    sidechain.m_fGain_dB = 12.0F;
    ASSERT_TRUE(sidechain.openForStream(4));
    sidechain.readBlock(4);
    sidechain.setEnabled(true, engine);
    std::vector<float> in(8, 0.5F);
    std::vector<float> out(8);
    const CSoundFileInfo stereo{0, 2, 44100, 0};
    engine.processPortAudioFile(in.data(), out.data(), 8, false, &stereo);
    for (unsigned uMeter = 0; uMeter < METER_COUNT; ++uMeter)
        EXPECT_GT(engine.meter(static_cast<EMeter>(uMeter)), 0.0F) << uMeter;
    sidechain.setEnabled(false, engine);
    EXPECT_FALSE(sidechain.m_bEnabled);
    for (unsigned uMeter = 0; uMeter < METER_COUNT; ++uMeter)
        EXPECT_EQ(engine.meter(static_cast<EMeter>(uMeter)), 0.0F) << uMeter;
}

TEST(SidechainTest, AfterTheEndComesSilenceOrTheBeginning)
{
    const test::CTemporaryFolder folder;
    test::CRecordingDialogs dialogs;
    CSidechain sidechain;
    ASSERT_TRUE(sidechain.load(countingFile(folder, 3, 1), dialogs));

    ASSERT_TRUE(sidechain.openForStream(4));
    EXPECT_EQ(readFrames(sidechain, 2), (std::vector<float>{0.001F, 0.002F}));
    EXPECT_EQ(readFrames(sidechain, 2), (std::vector<float>{0.003F, 0.0F}));
    EXPECT_TRUE(sidechain.isOpen());
    EXPECT_EQ(readFrames(sidechain, 2), (std::vector<float>{0.0F, 0.0F}));
    EXPECT_FALSE(sidechain.isOpen());
    EXPECT_NE(sidechain.buffer(), nullptr); // silence goes on

    sidechain.m_bLoop = true;
    ASSERT_TRUE(sidechain.openForStream(8));
    EXPECT_EQ(readFrames(sidechain, 7),
              (std::vector<float>{0.001F, 0.002F, 0.003F, 0.001F, 0.002F, 0.003F, 0.001F}));
    EXPECT_EQ(readFrames(sidechain, 2), (std::vector<float>{0.002F, 0.003F}));

    sidechain.m_bLoop = false; // switched on again only after the end
    ASSERT_TRUE(sidechain.openForStream(4));
    readFrames(sidechain, 4);
    readFrames(sidechain, 4);
    sidechain.m_bLoop = true;
    EXPECT_EQ(readFrames(sidechain, 2), (std::vector<float>{0.001F, 0.002F}));
    EXPECT_TRUE(sidechain.isOpen());
}

TEST(SidechainTest, ReachesThePlugInWithItsGainAndReplacesTheInputWhenListening)
{
    const test::CTemporaryFolder folder;
    test::CRecordingDialogs dialogs;
    for (const int nSidechainChannels : {1, 2}) {
        CTransportState transport;
        CSidechain sidechain;
        CAudioEngine engine(transport, sidechain);
        transport.setState(TRANSPORT_PLAY);
        test::CSidechainPlugIn plugIn;
        CUserDSPFilter filter;
        filter.attachPlugIn(&plugIn);
        engine.setFilter(&filter);
        const CSoundFileInfo stereo{0, 2, 44100, 0};
        ASSERT_TRUE(sidechain.load(countingFile(folder, 8, nSidechainChannels), dialogs));
        sidechain.m_fGain_dB = 20.0F;
        const auto process = [&] {
            std::vector<float> in(4, 0.5F);
            std::vector<float> out(4);
            sidechain.openForStream(2);
            sidechain.readBlock(2);
            engine.processPortAudioFile(in.data(), out.data(), 4, true, &stereo);
            return out;
        };
        const float fSecond = nSidechainChannels == 1 ? 0.02F : 0.03F;
        const auto expectFrames = [](const std::vector<float>& out, std::vector<float> expected) {
            for (std::size_t i = 0; i < out.size(); ++i)
                EXPECT_NEAR(out[i], expected[i], 1e-6F) << i;
        };

        expectFrames(process(), {0.0F, 0.0F, 0.0F, 0.0F}); // not enabled: the plug-in is told so
        sidechain.m_bEnabled = true;
        expectFrames(process(), {0.01F, 0.01F, fSecond, fSecond});
        sidechain.m_bListen = true;
        if (nSidechainChannels == 1)
            expectFrames(process(), {0.01F, 0.01F, 0.02F, 0.02F});
        else
            expectFrames(process(), {0.01F, 0.02F, 0.03F, 0.04F});
        sidechain.close();
        std::vector<float> in(4, 0.5F);
        std::vector<float> out(4);
        engine.processPortAudioFile(in.data(), out.data(), 4, true, &stereo);
        EXPECT_GT(engine.meter(METER_SIDECHAIN_LEFT), 0.0F);
    }
}

TEST(SidechainTest, ListeningWithoutAFileActsAsNotListening)
{
    CTransportState transport;
    CSidechain sidechain;
    CAudioEngine engine(transport, sidechain);
    sidechain.m_bListen = true;
    float in[2] = {0.5F, 0.25F};
    float out[2] = {};
    engine.processPortAudioFile(in, out, 2, true, nullptr);
    EXPECT_EQ(out[0], 0.5F);
    EXPECT_EQ(out[1], 0.25F);
}

} // namespace
} // namespace velmora
