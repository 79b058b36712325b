#pragma once

#include "base/platform_file_lock.h"
#include "cli/headless_document.h"
#include "document/project_commands.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora::cli {

// The document of a command that works on a project, and the operations on it.
class CHeadlessProject
{
  public:
    explicit CHeadlessProject(CCommandContext& context);

    [[nodiscard]] CHeadlessDocument& document() { return m_document; }

    // After start().
    [[nodiscard]] CProjectCommands& operator*() { return *m_commands; }
    [[nodiscard]] CProjectCommands* operator->() { return &*m_commands; }

    // Makes the user folder and the settings ready, and chooses the compiler of the option --compiler, else
    // that of the settings. False if that fails; the user has been told.
    [[nodiscard]] bool start();

    // start() and lock(), and makes the project file the open one without changing a file. False, and the
    // user has been told, if it is not there or checkMarks() is not content.
    [[nodiscard]] bool startWith(const std::filesystem::path& file);

    // True if the sources that are there have the marks between which the code is written. If not, the user
    // has been told: a write could take more away than what was written before.
    [[nodiscard]] bool checkMarks();

    // Waits until no other program of this kind works on the project, and keeps others out from here on, so
    // that none overwrites what another has just written. False, and the user has been told, if the project
    // is open in a window, which may take for ever.
    [[nodiscard]] bool lock(const std::filesystem::path& projectFile);
    void unlock() { m_lock.reset(); }

    // Answers EXIT_FAILED for an operation that was refused, and says why if nobody has yet.
    [[nodiscard]] int refused();

    // Says what kept a build from its end or its library from being loaded, as far as the compiler's own
    // messages do not say it and nobody has yet.
    void showReasons(const CRebuildResult& result);

  private:
    CCommandContext& m_context;
    std::optional<CFileLock> m_lock;
    CHeadlessDocument m_document;
    std::optional<CProjectCommands> m_commands; // knows the folders, which the start finds out
};

// True if the project file is there and no folder; if not, the user has been told.
[[nodiscard]] bool isProjectFileThere(CCommandContext& context, const std::filesystem::path& file);

// One key with the files' absolute paths, or a line for each of them.
[[nodiscard]] std::string filesResult(const CCommandContext& context, std::string_view sKey,
                                      const std::vector<std::filesystem::path>& files);

// All files below a folder in alphabetical order, without those of hidden folders.
[[nodiscard]] std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& folder);

} // namespace velmora::cli
