#include "base/platform_folders.h"
#include "base/text.h"
#include "document/tonbox_doc.h"
#include "host/user_dsp_filter.h"
#include "project/dsp_project.h"
#include "support/fake_audio_system.h"
#include "support/test_support.h"
#include "support/wave_bytes.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <stdlib.h>

namespace velmora {
namespace {

class CMessageSink : public IMessageTarget
{
  public:
    void post(unsigned, std::size_t, std::ptrdiff_t) override {}
    std::ptrdiff_t send(unsigned, std::size_t, std::ptrdiff_t) override { return 0; }
};

class TonboxDocTest : public testing::Test
{
  protected:
    TonboxDocTest() : m_directory(std::filesystem::current_path())
    {
        m_audioSystem.m_devices.clear();
        m_audioSystem.m_nDefaultInput = m_audioSystem.m_nDefaultOutput = -1;
    }
    ~TonboxDocTest() override { std::filesystem::current_path(m_directory); }

    CTonboxDoc::CStartUp startUp() const { return {.m_userFolder = m_folder / "Velmora"}; }
    std::vector<std::string> settingsLines() const
    {
        auto lines = split(test::readFile(m_folder / "Velmora/socket.log"), '\n');
        EXPECT_FALSE(lines.empty());
        EXPECT_EQ(lines.back(), "");
        lines.pop_back();
        return lines;
    }

    std::filesystem::path m_directory;
    test::CTemporaryFolder m_folder;
    test::CRecordingDialogs m_dialogs;
    test::CFakeAudioSystem m_audioSystem;
    CMessageSink m_view;
};

TEST_F(TonboxDocTest, TheFirstStartMakesSettingsAndFolders)
{
    CTonboxDoc document(m_dialogs, m_audioSystem, m_view);
    ASSERT_TRUE(document.OnNewDocument(startUp()));
    EXPECT_EQ(m_dialogs.m_messages, std::vector<std::string>{"No audio input or output device found!"});
    EXPECT_EQ(test::entriesOf(m_folder / "Velmora"),
              (std::vector<std::string>{"AU Ported Projects", "AU Templates", "AudioFiles", "IR1024",
                                        "PlugIns", "Skin", "VST Ported Projects", "VST Templates", "VSTFiles",
                                        "VelmoraProjects", "socket.log"}));
    EXPECT_TRUE(std::filesystem::is_directory(m_folder / "Velmora/VST Templates/VST3"));
    EXPECT_EQ(settingsLines().size(), 71U);
    EXPECT_EQ(document.transport().state(), TRANSPORT_IDLE);
    EXPECT_EQ(document.currentFilter(), nullptr);
    document.plugInLoader().setSelectedModule(document.modules().indexOf("Ten Band EQ + shelving"));
    document.plugInLoader().selectModule();
    EXPECT_EQ(document.currentFilter(), document.modules().at(6));
}

TEST_F(TonboxDocTest, AShorterSettingsFileIsCompletedAndKept)
{
    std::filesystem::create_directories(m_folder / "Velmora");
    std::string sShort;
    for (int i = 1; i <= 40; ++i)
        sShort += i == 10 ? "256\n" : (i == 9 ? "/gone/song.wav\n" : "1\n");
    test::writeFile(m_folder / "Velmora/socket.log", sShort);
    CTonboxDoc document(m_dialogs, m_audioSystem, m_view);
    ASSERT_TRUE(document.OnNewDocument(startUp()));
    const auto lines = settingsLines();
    ASSERT_EQ(lines.size(), 71U);
    EXPECT_EQ(lines[9], "256");
    EXPECT_EQ(lines[8], "");
    EXPECT_EQ(lines[65], "Velmora User");
    EXPECT_EQ(document.settings().framesPerBuffer(), 256U);
}

TEST_F(TonboxDocTest, WithoutAnAudioSystemStartUpEndsAfterTheMessage)
{
    m_audioSystem.m_errors["initialize"] = -9999;
    CTonboxDoc document(m_dialogs, m_audioSystem, m_view);
    EXPECT_FALSE(document.OnNewDocument(startUp()));
    EXPECT_EQ(m_dialogs.m_messages, std::vector<std::string>{"Could not initialize the Port Audio System."});
    EXPECT_FALSE(std::filesystem::exists(m_folder / "Velmora/PlugIns"));
    EXPECT_EQ(document.modules().count(), 0);
    EXPECT_TRUE(std::filesystem::exists(m_folder / "Velmora/socket.log"));
}

TEST_F(TonboxDocTest, DevicesThatWereFoundStandInTheSettings)
{
    m_audioSystem.m_refusedRates = {44100.0};
    m_audioSystem.m_devices.resize(2);
    m_audioSystem.m_devices[0].m_sName = "Mic";
    m_audioSystem.m_devices[0].m_nMaxInputChannels = 2;
    m_audioSystem.m_devices[0].m_dDefaultSampleRate = 48000.0;
    m_audioSystem.m_devices[1].m_sName = "Speaker";
    m_audioSystem.m_devices[1].m_nMaxOutputChannels = 2;
    m_audioSystem.m_nDefaultInput = 0;
    m_audioSystem.m_nDefaultOutput = 1;
    {
        CTonboxDoc document(m_dialogs, m_audioSystem, m_view);
        ASSERT_TRUE(document.OnNewDocument(startUp()));
        EXPECT_TRUE(m_dialogs.m_messages.empty());
        EXPECT_EQ(document.settings().inputDeviceName(), "Mic");
        EXPECT_EQ(document.settings().outputDeviceName(), "Speaker");
        EXPECT_EQ(document.settings().DUTDeviceName(), "None");
        EXPECT_EQ(document.settings().sampleRate(), 48000.0);
        EXPECT_EQ(document.audioDevices().outputDevice(), 1);
        EXPECT_EQ(m_audioSystem.uses(), 1);
        document.transport().startOsc();
        EXPECT_EQ(document.oscillator().m_nSampleRate, 48000);
    }
    EXPECT_EQ(m_audioSystem.uses(), 0);
}

TEST_F(TonboxDocTest, AProjectWithASidechainStopsTheFileThatReadsTheOldOne)
{
    const auto file = m_folder / "sound.wav";
    test::writeFile(file, test::waveBytes({}, std::vector<double>(44100)));
    test::CFakeAudioSystem audioSystem;
    CTonboxDoc document(m_dialogs, audioSystem, m_view);
    ASSERT_TRUE(document.OnNewDocument(startUp()));
    document.transport().setWaveFile(file);
    for (const ETransportState eBefore : {TRANSPORT_PLAY, TRANSPORT_PAUSE, TRANSPORT_OSC}) {
        document.transport().onPlay();
        if (eBefore == TRANSPORT_PAUSE)
            document.transport().onPause();
        else if (eBefore == TRANSPORT_OSC)
            document.transport().startOsc();
        ASSERT_EQ(document.transport().state(), eBefore);
        auto pProject = std::make_unique<CDSPProject>();
        pProject->m_sProjectFile = m_folder / "Test.prj";
        pProject->m_sSidechainFile = file;
        document.setProject(std::move(pProject));
        EXPECT_EQ(document.transport().state(), eBefore == TRANSPORT_OSC ? TRANSPORT_OSC : TRANSPORT_STOP);
        EXPECT_EQ(document.sidechain().path(), file);
    }
    EXPECT_TRUE(m_dialogs.m_messages.empty());
}

TEST_F(TonboxDocTest, AUserFolderThatCannotBeMadeIsNamed)
{
    test::writeFile(m_folder / "file", "");
    CTonboxDoc document(m_dialogs, m_audioSystem, m_view);
    EXPECT_FALSE(document.OnNewDocument({.m_userFolder = m_folder / "file/Velmora"}));
    EXPECT_FALSE(document.hasUserFolder());
    ASSERT_EQ(m_dialogs.m_messages.size(), 1U);
    EXPECT_NE(m_dialogs.m_messages.front().find("file/Velmora"), std::string::npos);
    EXPECT_EQ(m_audioSystem.uses(), 0);
}

TEST_F(TonboxDocTest, WithoutTheVariableFoldersAreMadeInTheCurrentDirectory)
{
    const char* pOld = std::getenv("APPDATA");
    const std::string sOld = pOld ? pOld : "";
    ::unsetenv("APPDATA");
    std::filesystem::current_path(m_folder.path());
    {
        std::filesystem::create_directory(m_folder / "PlugIns");
        std::filesystem::copy_file(std::filesystem::path(PLUGIN_TEST_FOLDER) / "changeling.so",
                                   m_folder / "PlugIns/Found.so");
        CTonboxDoc document(m_dialogs, m_audioSystem, m_view);
        EXPECT_TRUE(document.OnNewDocument({}));
        EXPECT_TRUE(document.userFolder().empty());
        EXPECT_EQ(document.plugInLoader().plugIns().size(), 1U);
        EXPECT_NE(document.plugInLoader().loadPlugin("Found.so", false), nullptr);
        EXPECT_TRUE(std::filesystem::equivalent(document.settingsFile(), m_folder / "socket.log"));
    }
    EXPECT_TRUE(std::filesystem::exists(m_folder / "socket.log"));
    EXPECT_TRUE(std::filesystem::is_directory(m_folder / "AudioFiles"));
    if (pOld)
        ::setenv("APPDATA", sOld.c_str(), 1);
}

} // namespace
} // namespace velmora
