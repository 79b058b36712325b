#pragma once

#include "base/user_dialogs.h"

#include <atomic>

namespace velmora::cli {

// The dialogs of a shell: every box goes to standard error as it stands, one after the other, and
// questions are answered by what the command line said. note() may be called on any thread.
class CConsoleDialogs : public IUserDialogs
{
  public:
    // bAnswer is the reply to every question; bQuiet leaves notes out.
    CConsoleDialogs(bool bAnswer, bool bQuiet) : m_bAnswer(bAnswer), m_bQuiet(bQuiet) {}

    void showMessage(std::string_view sText) override;
    bool askYesNo(std::string_view sText) override;
    bool askOKCancel(std::string_view sText) override;

    // The file set with setSaveFile(), whatever is suggested.
    std::optional<std::filesystem::path> chooseSaveFile(std::string_view sFilter,
                                                        const std::filesystem::path& suggestedName) override;

    // The file set with setOpenFile().
    std::optional<std::filesystem::path> chooseOpenFile(std::string_view sFilter,
                                                        const std::filesystem::path& startFolder) override;

    // Prints the texts of plug-ins, which have four blanks ahead, and full sentences when they are wanted.
    // The other status lines name steps that nobody at a shell waits for.
    void note(std::string_view sText) override;

    void showSentences(bool bOn) { m_bSentences = bOn; }

    void setSaveFile(std::filesystem::path file) { m_saveFile = std::move(file); }

    void setOpenFile(std::filesystem::path file) { m_openFile = std::move(file); }

    // The user has said already that existing files may be overwritten: that question is answered with Yes,
    // and only that one.
    void allowOverwriting() { m_bMayOverwrite = true; }

    // What showMessage() showed last.
    [[nodiscard]] const std::string& lastMessage() const { return m_sLastMessage; }

    // A question has been answered with No or Cancel.
    [[nodiscard]] bool hasDeclined() const { return m_bDeclined; }

  private:
    bool m_bAnswer;
    bool m_bMayOverwrite = false;
    bool m_bDeclined = false;
    bool m_bQuiet;
    std::atomic<bool> m_bSentences{false};
    std::optional<std::filesystem::path> m_saveFile;
    std::optional<std::filesystem::path> m_openFile;
    std::string m_sLastMessage;
};

// Writes a text and a line end, if it has none, to standard error in one piece, taking a progress bar
// on that line away first. [any]
void printToStandardError(std::string_view sText);

} // namespace velmora::cli
