#pragma once

#include "project/codegen/compiler_access.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

class IProgress;

// What the compiler's window is at.
enum class ECompilerState
{
    ready = 0,
    running = 1,
    debugging = 2,
    starting = 3, // the process lives, its window is not there yet
    notFound = 4
};

// One complaint of the compiler or the linker.
struct CCompilerMessage
{
    std::string m_sFile; // as the compiler names it; empty for the linker's
    int m_nLine = 0;     // from 1; 0 when not told
    int m_nColumn = 0;   // from 1; 0 when not told
    bool m_bWarning = false;
    std::string m_sText;
};

enum class EBuildState
{
    none, // no build has been asked for
    building,
    succeeded,
    failed
};

// What is known of the build that was asked for last.
struct CBuildReport
{
    EBuildState m_eState = EBuildState::none;
    bool m_bCancelled = false;
    std::filesystem::path m_library; // only on success
    std::filesystem::path m_log;
    std::vector<CCompilerMessage> m_messages; // errors and warnings in the order of the log
    std::string m_sError;                     // what went wrong and what to do; empty on success
    double m_dCompileSeconds = 0.0;           // where the toolchain knows them; else 0
    double m_dLinkSeconds = 0.0;
    double m_dSeconds = 0.0; // from the request to the result
};

// A compiler that builds projects, with or without a window of its own. The build watch reads the result
// from disc for all of them alike. All operations are [main] unless noted.
class IToolchain : public ICompilerAccess
{
  public:
    // The compiler's id: a row of compiler_table.h.
    [[nodiscard]] virtual int compilerId() const = 0;

    // Why this compiler cannot be used here and what to do about it; empty when it can.
    [[nodiscard]] virtual std::string unavailableReason() const = 0;

    // Looks for the compiler and what it is at.
    [[nodiscard]] virtual ECompilerState state(const CDSPProject& project) = 0;

    // Whether the compiler is up with the project, waiting at most so long and answering what it asks at its
    // start. False if it is not up yet, or has ended: state() tells which.
    [[nodiscard]] virtual bool waitForWindow(const CDSPProject& project, double dSeconds) = 0;

    // Asks for a rebuild and returns when it has begun: at once, or when a window has taken the keys, which
    // may take it seconds. False if it could not be asked for.
    [[nodiscard]] virtual bool rebuild(const CDSPProject& project) = 0;

    // Why the operation that answered false last did so, and what to do about it; empty where that is not
    // known.
    [[nodiscard]] virtual std::string lastError() const { return {}; }

    // Waits for the end of the build, at most so long. pProgress is asked meanwhile and may stop it. The
    // report says building if the time ran out.
    [[nodiscard]] virtual CBuildReport waitForBuild(double dSeconds, IProgress* pProgress) = 0;

    // The program ends: a window that the settings have closed with it is closed.
    virtual void leave() {}

    // False where there is no debugger to be driven.
    [[nodiscard]] virtual bool startDebug() = 0;
    [[nodiscard]] virtual bool stopDebug() = 0;
};

} // namespace velmora
