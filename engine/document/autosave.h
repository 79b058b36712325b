#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPProject;
class IUserDialogs;

inline constexpr std::string_view AUTOSAVE_SUFFIX = ".autosave"; // behind the project file's whole name

// Where the unsaved state of a project goes: "<name>.prj.autosave" beside its file, and, where that folder
// cannot be written to, the same name in the user folder. Both the minute's autosave and the one of a crash
// go there. [any]
[[nodiscard]] std::filesystem::path autosavePath(const std::filesystem::path& project);
[[nodiscard]] std::filesystem::path secondAutosavePath(const std::filesystem::path& project,
                                                       const std::filesystem::path& userFolder);

// Writes the open project's unsaved state at most once a minute, and removes it when the project was saved or
// closed. It does nothing before start(), which only a program with a window calls: a command saves at its
// end or not at all. The document keeps it posted; the window calls onTimer(), every few seconds say. [main]
class CAutosave
{
  public:
    using CClock = std::chrono::steady_clock;
    static constexpr std::chrono::minutes INTERVAL{1};

    explicit CAutosave(IUserDialogs& dialogs) : m_dialogs(dialogs) {}

    void start(std::filesystem::path userFolder);

    // Another project was opened, as its file holds it; null for none. The former one's autosave is removed
    // if this object wrote it: whoever closes a project has asked what is to become of it.
    void setProject(CDSPProject* pProject);

    // The project was changed, or saved; the latter removes its autosave.
    void projectChanged(bool bSaved);

    // Writes what changed if a minute has gone by since the first change that no autosave holds. False if it
    // could not be written; the user has then been told once.
    bool onTimer(CClock::time_point now);

    // There are changes that the project's file does not hold.
    [[nodiscard]] bool isChanged() const { return m_bChanged; }

  private:
    bool write();
    void remove();

    IUserDialogs& m_dialogs;
    bool m_bStarted = false;
    std::filesystem::path m_userFolder;
    CDSPProject* m_pProject = nullptr;
    std::filesystem::path m_written; // the autosave that lies on the disk; empty for none
    bool m_bChanged = false;         // since the project was saved
    bool m_bPending = false;         // since the last autosave
    bool m_bToldOfFailure = false;
    std::optional<CClock::time_point> m_since; // first look at the pending change
};

// What a crash, or a minute's autosave of a program that was killed, left behind of a project.
struct CRecovery
{
    std::filesystem::path m_project;
    std::filesystem::path m_autosave;
    std::filesystem::file_time_type m_time;
    std::vector<std::string> m_differences; // sentences: what the autosave has and the file has not

    // The question for the user, with at most this many of the differences.
    [[nodiscard]] std::string question(std::size_t uMostDifferences = 12) const;
};

// The newest autosave of the project file that is not older than the file and holds something else; none if
// there is none that can be read. Changes nothing. [main]
[[nodiscard]] std::optional<CRecovery> findRecovery(const std::filesystem::path& project,
                                                    const std::filesystem::path& userFolder);

// Puts the autosave in the place of the project's file, whose text goes into the project's history, and
// removes it. False, and nothing is changed, after a message. [main]
[[nodiscard]] bool recover(const CRecovery& recovery, IUserDialogs& dialogs);

// Puts the autosave into the project's history and removes it. False after a message. [main]
bool discard(const CRecovery& recovery, IUserDialogs& dialogs);

} // namespace velmora
