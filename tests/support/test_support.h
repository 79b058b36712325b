#pragma once

#include "base/message_target.h"
#include "base/progress.h"
#include "base/user_dialogs.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace velmora::test {

// A new empty folder that is removed, with all it holds, at the end of the test.
class CTemporaryFolder
{
  public:
    CTemporaryFolder();
    ~CTemporaryFolder();
    CTemporaryFolder(const CTemporaryFolder&) = delete;
    CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] std::filesystem::path operator/(const std::string& sName) const { return m_path / sName; }

  private:
    std::filesystem::path m_path;
};

[[nodiscard]] std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& sContents);

// Names of the folder's entries, sorted; to see that nothing was left behind.
[[nodiscard]] std::vector<std::string> entriesOf(const std::filesystem::path& folder);

// Records every text and answers as told.
class CRecordingDialogs : public IUserDialogs
{
  public:
    void showMessage(std::string_view sText) override { m_messages.emplace_back(sText); }
    bool askYesNo(std::string_view sText) override
    {
        m_questions.emplace_back(sText);
        return m_bAnswer;
    }
    bool askOKCancel(std::string_view sText) override { return askYesNo(sText); }
    std::optional<std::filesystem::path> chooseSaveFile(std::string_view,
                                                        const std::filesystem::path&) override
    {
        return m_saveFile;
    }
    std::optional<std::filesystem::path> chooseOpenFile(std::string_view,
                                                        const std::filesystem::path&) override
    {
        return m_openFile;
    }
    void note(std::string_view sText) override { m_notes.emplace_back(sText); }

    bool m_bAnswer = false;
    std::optional<std::filesystem::path> m_saveFile;
    std::optional<std::filesystem::path> m_openFile;
    std::vector<std::string> m_messages;
    std::vector<std::string> m_questions;
    std::vector<std::string> m_notes;
};

// Asks the work to stop when it has reported this often.
class CStoppingProgress : public IProgress
{
  public:
    explicit CStoppingProgress(int nReports) : m_nReportsLeft(nReports) {}
    bool report(double fDone) override
    {
        m_reported.push_back(fDone);
        return m_nReportsLeft-- > 0;
    }

    std::vector<double> m_reported;

  private:
    int m_nReportsLeft;
};

} // namespace velmora::test
