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
        CTransport transport;
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
    CTransport transport;
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
