#include "audio/audio_engine.h"
#include "audio/offline_processing.h"
#include "host/user_dsp_filter.h"
#include "support/full_disk.h"
#include "support/test_plugins.h"
#include "support/test_support.h"

#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <limits>
#include <sys/resource.h>

namespace velmora {
namespace {

constexpr int WAV_PCM16 = 0x010002;
constexpr int WAV_FLOAT = 0x010006;
constexpr int AIFF_PCM24 = 0x020003;

class OfflineProcessingTest : public testing::Test
{
  protected:
    OfflineProcessingTest()
    {
        m_transport.setState(TRANSPORT_STOP);
        m_filter.attachPlugIn(&m_plugIn);
        m_engine.setFilter(&m_filter);
        m_in = m_folder / "in.wav";
        m_out = m_folder / "out.wav";
        m_dialogs.m_saveFile = m_out;
    }

    void writeInput(int nFrames, int nChannels, int nFormat = WAV_FLOAT)
    {
        CSoundFile file;
        std::string sError;
        ASSERT_TRUE(file.openForWriting(m_in, {0, nChannels, 48000, nFormat}, sError)) << sError;
        m_samples.clear();
        for (int i = 0; i < nFrames * nChannels; ++i)
            m_samples.push_back(static_cast<float>(i % 1000) / 4096.0F);
        file.writeFloats(m_samples.data(), static_cast<long long>(m_samples.size()));
        ASSERT_TRUE(file.close());
    }

    static std::vector<float> samplesOf(const std::filesystem::path& path, CSoundFileInfo* pInfo = nullptr)
    {
        CSoundFile file;
        std::string sError;
        EXPECT_TRUE(file.openForReading(path, sError)) << sError;
        if (pInfo)
            *pInfo = file.info();
        std::vector<float> samples(static_cast<std::size_t>(file.info().m_nFrames * file.info().m_nChannels));
        EXPECT_EQ(file.readFloats(samples.data(), static_cast<long long>(samples.size())),
                  static_cast<long long>(samples.size()));
        return samples;
    }

    // The command was refused with this message, and the folder is as it was.
    void expectRefused(const std::string& sMessage)
    {
        const auto before = test::entriesOf(m_folder.path());
        const auto directory = std::filesystem::current_path();
        m_dialogs.m_messages.clear();
        EXPECT_FALSE(m_offline.processIntoWaveFile(m_in));
        if (sMessage.empty())
            EXPECT_TRUE(m_dialogs.m_messages.empty());
        else
            EXPECT_EQ(m_dialogs.m_messages, std::vector<std::string>{sMessage});
        EXPECT_FALSE(m_offline.reason().empty());
        EXPECT_EQ(test::entriesOf(m_folder.path()), before);
        EXPECT_EQ(std::filesystem::current_path(), directory);
    }

    test::CTemporaryFolder m_folder;
    std::filesystem::path m_in;
    std::filesystem::path m_out;
    std::vector<float> m_samples;
    test::CRecordingDialogs m_dialogs;
    CTransportState m_transport;
    CSidechain m_sidechain;
    CAudioEngine m_engine{m_transport, m_sidechain};
    test::CScalingPlugIn m_plugIn;
    CUserDSPFilter m_filter;
    COfflineProcessing m_offline{m_engine, m_transport, m_sidechain, m_dialogs};
};

TEST_F(OfflineProcessingTest, WritesTheFilteredFileInTheInputsFormat)
{
    // 4096 stereo frames are one block of 8192 items, to the sample.
    for (const int nFormat : {WAV_PCM16, WAV_FLOAT, AIFF_PCM24}) {
        for (const int nChannels : {1, 2}) {
            for (const int nFrames : {1, 4096, 4097, 50000}) {
                SCOPED_TRACE(testing::Message() << nFormat << ", " << nChannels << " x " << nFrames);
                m_dialogs.m_messages.clear();
                m_dialogs.m_bAnswer = true;
                writeInput(nFrames, nChannels, nFormat);
                ASSERT_TRUE(m_offline.processIntoWaveFile(m_in)) << m_offline.reason();
                EXPECT_EQ(m_dialogs.m_messages,
                          std::vector<std::string>{"Successfully processed wave file."});

                CSoundFileInfo info;
                const auto out = samplesOf(m_out, &info);
                ASSERT_EQ(out.size(), m_samples.size());
                EXPECT_EQ(info.m_nFormat & 0x0FFF00FF, nFormat);
                EXPECT_EQ(info.m_nSampleRate, 48000);
                for (std::size_t i = 0; i < out.size(); ++i) {
                    const float fFactor = nChannels == 2 && i % 2 == 1 ? 3.0F : 2.0F;
                    ASSERT_NEAR(out[i], fFactor * m_samples[i], 4e-5F) << "at " << i;
                }
                EXPECT_EQ(m_offline.result().m_nFrames, nFrames);
                EXPECT_EQ(m_offline.result().m_nChannels, nChannels);
            }
        }
    }
    EXPECT_EQ(m_plugIn.m_nRateWhenPrepared, 48000);
    EXPECT_EQ(m_filter.m_nBitDepth, 16);
    EXPECT_EQ(m_transport.state(), TRANSPORT_STOP);
    EXPECT_EQ(test::entriesOf(m_folder.path()), (std::vector<std::string>{"in.wav", "out.wav"}));
}

TEST_F(OfflineProcessingTest, RefusesInTheOrderOfTheChecks)
{
    m_engine.setFilter(nullptr);
    m_transport.setState(TRANSPORT_PLAY);
    expectRefused("You must load a filter first.");
    m_engine.setFilter(&m_filter);
    for (const auto eState : {TRANSPORT_IDLE, TRANSPORT_PLAY, TRANSPORT_PAUSE, TRANSPORT_SOUND_IN,
                              TRANSPORT_OSC, TRANSPORT_USER_OSC}) {
        m_transport.setState(eState);
        expectRefused("You must stop playback or sound input sampling for this offline processing.");
    }
    m_transport.setState(TRANSPORT_STOP);
    expectRefused(""); // there is no wave file
    writeInput(100, 2);
    m_dialogs.m_saveFile = std::nullopt;
    expectRefused("");
    m_dialogs.m_saveFile = m_folder / "out.aif";
    expectRefused("You may only export .wav files. Check file name.");

    m_dialogs.m_saveFile = m_out;
    test::writeFile(m_out, "precious");
    m_dialogs.m_bAnswer = false;
    expectRefused("");
    EXPECT_EQ(m_dialogs.m_questions.back(), "The file " + m_out.string() +
                                                " already exists. This operation will overwrite it.\n\n"
                                                "Are you sure you want to process into this file?");
    EXPECT_EQ(test::readFile(m_out), "precious");
}

TEST_F(OfflineProcessingTest, NeverProcessesAFileIntoItself)
{
    writeInput(100, 2);
    const auto sBefore = test::readFile(m_in);
    std::filesystem::create_hard_link(m_in, m_out);
    m_dialogs.m_bAnswer = true;
    for (const auto& target : {m_in, m_out}) {
        m_dialogs.m_saveFile = target;
        expectRefused("Error opening wave file for reading.");
        EXPECT_EQ(test::readFile(m_in), sBefore);
    }
}

TEST_F(OfflineProcessingTest, UnreadableInputAndUnwritableOutputLeaveEverythingAsItWas)
{
    test::writeFile(m_in, "");
    expectRefused("Error opening wave file for reading.");
    test::writeFile(m_in, "this is no audio file at all");
    expectRefused("Error opening wave file for reading.");
    writeInput(10, 3);
    expectRefused("The file " + m_in.string() +
                  " has 3 channels; only mono and stereo files can be processed.");
    writeInput(10, 2);
    m_dialogs.m_saveFile = m_folder / "no such folder/out.wav";
    expectRefused("Error opening wave file for writing.");
    std::filesystem::create_directory(m_folder / "folder.wav");
    m_dialogs.m_saveFile = m_folder / "folder.wav";
    m_dialogs.m_bAnswer = true;
    expectRefused("Error opening wave file for writing.");
}

TEST_F(OfflineProcessingTest, AFullDiskLeavesTheOldFileWhole)
{
    writeInput(200000, 2);
    test::writeFile(m_out, "precious");
    m_dialogs.m_bAnswer = true;
    for (const unsigned uBytes : {0U, 100000U, 1599000U}) {
        m_dialogs.m_messages.clear();
        {
            const test::CFullDisk fullDisk(uBytes);
            EXPECT_FALSE(m_offline.processIntoWaveFile(m_in));
        }
        ASSERT_EQ(m_dialogs.m_messages.size(), 1U);
        EXPECT_TRUE(m_dialogs.m_messages.front().starts_with("Error ")) << m_dialogs.m_messages.front();
        EXPECT_EQ(test::readFile(m_out), "precious");
        EXPECT_EQ(test::entriesOf(m_folder.path()), (std::vector<std::string>{"in.wav", "out.wav"}));
    }
}

TEST_F(OfflineProcessingTest, CanBeCancelledAtAnyPointAndReportsHowFarItIs)
{
    writeInput(400000, 2);
    test::CStoppingProgress all(1000);
    ASSERT_TRUE(m_offline.processIntoWaveFile(m_in, &all));
    EXPECT_GE(all.m_reported.size(), 4U);
    EXPECT_TRUE(std::ranges::is_sorted(all.m_reported));
    EXPECT_EQ(all.m_reported.front(), 0.0);
    EXPECT_EQ(all.m_reported.back(), 1.0);

    m_dialogs.m_bAnswer = true;
    const auto sBefore = test::readFile(m_out);
    for (int nReports = 0; nReports < static_cast<int>(all.m_reported.size()); ++nReports) {
        test::CStoppingProgress progress(nReports);
        EXPECT_FALSE(m_offline.processIntoWaveFile(m_in, &progress)) << nReports;
        EXPECT_EQ(test::readFile(m_out), sBefore);
        EXPECT_EQ(m_transport.state(), TRANSPORT_STOP);
    }
    EXPECT_EQ(test::entriesOf(m_folder.path()), (std::vector<std::string>{"in.wav", "out.wav"}));
}

TEST_F(OfflineProcessingTest, RemarksTellWhatWentInButShouldNotHave)
{
    writeInput(5000, 2, WAV_PCM16);
    ASSERT_TRUE(m_offline.processIntoWaveFile(m_in));
    EXPECT_TRUE(m_offline.remarks().empty());
    EXPECT_NEAR(m_offline.result().m_output.peak(), 3.0F * 999.0F / 4096.0F, 1e-4F);

    m_dialogs.m_bAnswer = true;
    m_engine.m_fOutputGain_dB = 20.0F;
    ASSERT_TRUE(m_offline.processIntoWaveFile(m_in));
    ASSERT_EQ(m_offline.remarks().size(), 1U);
    EXPECT_TRUE(m_offline.remarks()[0].starts_with("The output reached +17.3 dB: "))
        << m_offline.remarks()[0];
    EXPECT_TRUE(m_offline.remarks()[0].ends_with(" samples were clipped to full scale."));

    m_engine.m_fOutputGain_dB = std::numeric_limits<float>::infinity(); // 0 * infinity is not a number
    ASSERT_TRUE(m_offline.processIntoWaveFile(m_in));
    ASSERT_EQ(m_offline.remarks().size(), 1U);
    EXPECT_EQ(m_offline.remarks()[0], "10000 samples of the output are infinite or not a number.");
}

TEST_F(OfflineProcessingTest, AFileThatEndsWithinAFrameLosesOnlyThat)
{
    writeInput(1000, 2, WAV_PCM16);
    std::string sFile = test::readFile(m_in);
    sFile.resize(sFile.size() - 2);
    const auto uData = sFile.find("data");
    sFile[uData + 4] = static_cast<char>(3998 & 0xFF);
    sFile[uData + 5] = static_cast<char>(3998 >> 8);
    test::writeFile(m_in, sFile);
    ASSERT_TRUE(m_offline.processIntoWaveFile(m_in)) << m_offline.reason();
    EXPECT_EQ(samplesOf(m_out).size(), 2U * 999U);
}

TEST_F(OfflineProcessingTest, TheSidechainFileIsReadAlongside)
{
    writeInput(10000, 2);
    test::CSidechainPlugIn plugIn;
    m_filter.attachPlugIn(&plugIn);
    ASSERT_TRUE(m_sidechain.load(m_in, m_dialogs));
    m_sidechain.m_bEnabled = true;
    ASSERT_TRUE(m_offline.processIntoWaveFile(m_in));
    const auto out = samplesOf(m_out);
    for (std::size_t i = 0; i < out.size(); ++i)
        ASSERT_NEAR(out[i], m_samples[i / 2 * 2], 1e-6F) << "at " << i;
    EXPECT_EQ(m_sidechain.buffer(), nullptr);
}

TEST_F(OfflineProcessingTest, AFileThatIsCutShortIsProcessedOnlyWhenTheUserSaysSo)
{
    writeInput(1000, 2);
    const auto uSize = std::filesystem::file_size(m_in);
    std::filesystem::resize_file(m_in, uSize - 4000);
    expectRefused("");
    EXPECT_EQ(m_dialogs.m_questions.back(),
              "The file " + m_in.string() +
                  " is cut short: it holds 500 of the 1000 frames that it promises.\n\n"
                  "Do you want to process what is there?");
    m_dialogs.m_bAnswer = true;
    ASSERT_TRUE(m_offline.processIntoWaveFile(m_in)) << m_offline.reason();
    EXPECT_EQ(samplesOf(m_out).size(), 1000U);
    std::filesystem::remove(m_out);

    // Cut anywhere, it is refused in one way or another, and nothing is written.
    m_dialogs.m_bAnswer = false;
    for (std::uintmax_t uLength = uSize - 4001; uLength-- > 0; uLength > 200 ? uLength -= 97 : 0) {
        std::filesystem::resize_file(m_in, uLength);
        EXPECT_FALSE(m_offline.processIntoWaveFile(m_in)) << uLength;
        EXPECT_FALSE(m_offline.reason().empty());
        EXPECT_EQ(test::entriesOf(m_folder.path()), std::vector<std::string>{"in.wav"});
    }
}

} // namespace
} // namespace velmora
