#pragma once

#include "document/tonbox_doc.h"
#include "support/fake_audio_system.h"
#include "support/test_support.h"
#include "widgets/common/qt_text.h"
#include "widgets/shell/recording_commands.h"

#include <QSettings>
#include <gtest/gtest.h>
#include <utility>

namespace velmora::test {

// Answers the questions in turn, and chooses a folder as told.
class CAnsweringDialogs : public CRecordingDialogs
{
  public:
    bool askYesNo(std::string_view sText) override
    {
        m_questions.emplace_back(sText);
        return m_questions.size() <= m_answers.size() && m_answers[m_questions.size() - 1];
    }
    std::optional<std::filesystem::path> chooseFolder(std::string_view sTitle,
                                                      const std::filesystem::path&) override
    {
        m_titles.emplace_back(sTitle);
        return m_folder;
    }

    std::vector<bool> m_answers;
    std::vector<std::string> m_titles;
    std::optional<std::filesystem::path> m_folder;
};

class CNoMessages : public IMessageTarget
{
  public:
    void post(unsigned, std::size_t, std::ptrdiff_t) override {}
    std::ptrdiff_t send(unsigned, std::size_t, std::ptrdiff_t) override { return 0; }
};

// A document that has started in a folder of its own, with one silent device.
class CShellTest : public testing::Test
{
  protected:
    CShellTest()
    {
        CTonboxDoc::CStartUp startUp;
        startUp.m_userFolder = m_folder / "Velmora";
        startUp.m_bRecordCrashes = false;
        EXPECT_TRUE(m_document.OnNewDocument(startUp));
    }
    ~CShellTest() override { std::filesystem::current_path(m_directory); }

    std::vector<std::string> takeMessages() { return std::exchange(m_dialogs.m_messages, {}); }
    std::vector<std::string> takeLog() { return std::exchange(m_commands.m_log, {}); }

    const std::filesystem::path m_directory = std::filesystem::current_path();
    CTemporaryFolder m_folder;
    CAnsweringDialogs m_dialogs;
    CNoMessages m_messages;
    CFakeAudioSystem m_audio;
    CTonboxDoc m_document{m_dialogs, m_audio, m_messages};
    CRecordingCommands m_commands;
    QSettings m_profile{pathText(m_folder / "Velmora.ini"), QSettings::IniFormat};
};

} // namespace velmora::test
