#pragma once

#include "base/progress.h"
#include "cli/command_line.h"
#include "cli/console_dialogs.h"

#include <filesystem>
#include <functional>
#include <string>

namespace velmora::cli {

// What a running command works with.
class CCommandContext
{
  public:
    CCommandContext(const CCommandLine& line, CConsoleDialogs& dialogs, IProgress& progress,
                    std::filesystem::path userFolder)
        : m_line(line), m_dialogs(dialogs), m_progress(progress), m_userFolder(std::move(userFolder))
    {
    }

    [[nodiscard]] const CCommandLine& line() const { return m_line; }
    [[nodiscard]] bool json() const { return m_line.has("--json"); }

    // Message boxes, questions and notes, on standard error.
    [[nodiscard]] CConsoleDialogs& dialogs() { return m_dialogs; }

    // The progress bar of long work; asks it to stop after an interrupt.
    [[nodiscard]] IProgress& progress() { return m_progress; }

    // The user folder found from the environment, or the one given with --user-folder; absolute, or
    // empty when the environment names none.
    [[nodiscard]] const std::filesystem::path& userFolder() const { return m_userFolder; }

    // What goes to standard output when the command has ended, unless the line was wrong.
    std::string m_sResult;

    // Where print() writes.
    void setOutput(std::function<bool(std::string_view)> write) { m_write = std::move(write); }

    // Writes to standard output at once, for a command that goes on and on. False if that fails, for which
    // the command should end; the user has been told.
    [[nodiscard]] bool print(std::string_view sText);

    // Shows sText and answers EXIT_FAILED.
    [[nodiscard]] int fail(std::string_view sText);

    // Shows why something failed, if that is known and the last message did not say it already.
    void showReason(std::string_view sReason);

    // Shows on a terminal what takes long; a message or the end of the command takes it away again.
    void announce(std::string_view sText);

    // As fail(), for a fault of the command line that only the command can find; followed by its usage.
    [[nodiscard]] int usageError(std::string_view sText);

  private:
    const CCommandLine& m_line;
    CConsoleDialogs& m_dialogs;
    IProgress& m_progress;
    std::filesystem::path m_userFolder;
    std::function<bool(std::string_view)> m_write;
};

} // namespace velmora::cli
