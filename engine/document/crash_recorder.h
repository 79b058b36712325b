#pragma once

#include "base/platform_fault_handler.h"
#include "base/platform_protected_memory.h"
#include "document/crash_report.h"

#include <array>
#include <atomic>
#include <filesystem>
#include <optional>
#include <string_view>

namespace velmora {

class CTransportState;

// Keeps what a crash would take: at a fault of any thread, inside a plug-in or not, it writes the open
// project, if it was not saved, where its autosave goes (document/autosave.h) and then says in
// "crash-report.txt" of the user folder what happened. The plug-in is named when the thread was inside a
// marked call of it (host/plugin_call_marker.h). After that the program ends as it would have ended. A
// plug-in that calls exit() is reported likewise.
//
// How it works: the program hands over the project's bytes whenever it has changed. They are kept twice, in
// pages that nobody can write to by mistake: a new state goes to the copy that does not count, which then
// becomes the one that does. So the fault's handler finds a whole project at any moment. Before it reads, it
// bars new states. All that it needs, names of files included, is ready by then; it calls nothing but what is
// safe in a signal handler.
//
// It must outlive all audio threads. [main]
class CCrashRecorder
{
  public:
    // pTransport, if given, tells whether audio ran; it must outlive the recorder.
    explicit CCrashRecorder(const CTransportState* pTransport = nullptr);
    ~CCrashRecorder();
    CCrashRecorder(const CCrashRecorder&) = delete;
    CCrashRecorder& operator=(const CCrashRecorder&) = delete;

    // From now on faults are recorded, with the report in this folder. The calling thread counts as the main
    // thread; other threads call watchThread(). False, and nothing is recorded, if there is no memory or if
    // another recorder has been started and is still there.
    [[nodiscard]] bool start(const std::filesystem::path& userFolder);

    // The open project: its file, and its state as the file would hold it (projectBytes()). bSaved says that
    // the file does hold it, so that nothing needs to be written. False if there is no memory; no project is
    // kept then.
    bool setProject(const std::filesystem::path& project, std::string_view sBytes, bool bSaved);

    // No project is open.
    void clearProject();

    // What the last run left behind, if it crashed. The report is renamed to "crash-report.last.txt", so that
    // the user is told once. An autosave that is no longer there is left out.
    [[nodiscard]] static std::optional<CCrashReport> takeReport(const std::filesystem::path& userFolder);

    static constexpr std::string_view REPORT_FILE = "crash-report.txt";
    static constexpr std::string_view LAST_REPORT_FILE = "crash-report.last.txt";

  private:
    struct CProjectCopy
    {
        CProtectedMemory m_texts; // see EProjectText in the source
        bool m_bSaved = false;
    };

    struct CAutosave
    {
        const char* m_pPath = nullptr; // null for none
        int m_nError = 0;              // of what kept it from being written; 0 for nothing
    };

    static void onFault(const CFault& fault);
    static void onExit();
    void record(int nSignal, EThreadRole eRole) noexcept;
    [[nodiscard]] static CAutosave writeAutosave(const CProjectCopy& project) noexcept;

    const CTransportState* m_pTransport;
    std::filesystem::path m_userFolder;
    CProtectedMemory m_reportPaths;
    std::array<CProjectCopy, 2> m_copies;
    std::atomic<int> m_nCurrent{-1};    // index of the copy that counts; -1 for no project
    std::atomic<bool> m_bFrozen{false}; // a fault is being recorded
    std::optional<CFaultWatch> m_watch;
};

} // namespace velmora
