#include "project/compiler/command_line_toolchain.h"

#include "base/progress.h"
#include "project/compiler/build_control.h"
#include "project/compiler/build_log.h"
#include "project/compiler/build_watch.h"
#include "project/compiler/command_line_compiler.h"
#include "project/compiler/compiler_table.h"
#include "project/compiler/project_build.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace velmora {

namespace {

using CClock = std::chrono::steady_clock;
using CSeconds = std::chrono::duration<double>;

constexpr CSeconds PROGRESS_INTERVAL{0.01};

} // namespace

// A build on a thread of its own. What several threads touch is guarded by m_mutex, but for the control.
class CCommandLineToolchain::CRunningBuild
{
  public:
    CRunningBuild(CProjectBuildJob job, CBuildLog log) : m_log(std::move(log))
    {
        m_report.m_eState = EBuildState::building;
        m_report.m_log = m_log.path();
        m_log.begin();
        m_thread = std::thread([this, job = std::move(job)] { run(job); });
    }
    ~CRunningBuild()
    {
        m_control.m_bStop = true;
        m_thread.join();
    }
    CRunningBuild(const CRunningBuild&) = delete;
    CRunningBuild& operator=(const CRunningBuild&) = delete;

    [[nodiscard]] bool isUnderWay()
    {
        const std::scoped_lock lock(m_mutex);
        return m_report.m_eState == EBuildState::building;
    }

    [[nodiscard]] CBuildReport wait(CClock::time_point deadline, IProgress* pProgress)
    {
        std::unique_lock lock(m_mutex);
        const auto isOver = [this] { return m_report.m_eState != EBuildState::building; };
        while (!isOver() && CClock::now() < deadline) {
            const auto soon = CClock::now() + std::chrono::duration_cast<CClock::duration>(PROGRESS_INTERVAL);
            if (m_over.wait_until(lock, pProgress ? std::min(soon, deadline) : deadline, isOver))
                break;
            if (!pProgress)
                continue;
            m_dReported = std::max(m_dReported, m_control.part()); // steps that become known late set it back
            lock.unlock();
            if (!pProgress->report(m_dReported))
                m_control.m_bStop = true;
            lock.lock();
        }
        return m_report;
    }

  private:
    // The project's lock is held until the log is on disc, and let go before anybody hears of the end.
    CBuildReport buildAndLog(const CProjectBuildJob& job)
    {
        CProjectBuild build(job, m_control);
        CBuildReport report = build.run();
        std::string sReason;
        if (!m_log.finish(build.log(), report.m_sError, sReason) && report.m_sError.empty()) {
            report.m_eState = EBuildState::failed;
            report.m_library.clear();
            report.m_sError = "The library was built, but the log " + m_log.path().string() +
                              " could not be written: " + sReason + ".";
        }
        return report;
    }

    void run(const CProjectBuildJob& job)
    {
        const auto start = CClock::now();
        CBuildReport report = buildAndLog(job);
        report.m_log = m_log.path();
        report.m_dSeconds = CSeconds(CClock::now() - start).count();
        const std::scoped_lock lock(m_mutex);
        m_report = std::move(report);
        m_over.notify_all();
    }

    CBuildLog m_log;
    CBuildControl m_control;
    std::mutex m_mutex;
    std::condition_variable m_over;
    CBuildReport m_report;
    double m_dReported = 0.0; // to those who wait
    std::thread m_thread;
};

CCommandLineToolchain::CCommandLineToolchain(int nCompilerId, std::filesystem::path plugInsFolder,
                                             std::filesystem::path cacheFolder)
    : m_nCompilerId(nCompilerId), m_plugInsFolder(std::filesystem::absolute(plugInsFolder)),
      m_cacheFolder(std::filesystem::absolute(cacheFolder))
{
}

CCommandLineToolchain::~CCommandLineToolchain() = default;

bool CCommandLineToolchain::makeAvailable(const CDSPProject&)
{
    return unavailableReason().empty();
}

std::string CCommandLineToolchain::unavailableReason() const
{
    const CCommandLineCompiler compiler({}, m_nCompilerId);
    return compiler.isInstalled() ? std::string() : compiler.notInstalledText();
}

ECompilerState CCommandLineToolchain::state(const CDSPProject&)
{
    return unavailableReason().empty() ? ECompilerState::ready : ECompilerState::notFound;
}

bool CCommandLineToolchain::rebuild(const CDSPProject& project)
{
    m_sLastError = unavailableReason();
    if (m_sLastError.empty() && m_pBuild && m_pBuild->isUnderWay())
        m_sLastError = "A build is under way. Wait for its end, or stop it, and try again.";
    if (!m_sLastError.empty())
        return false;
    CProjectBuildJob job;
    job.m_nCompilerId = m_nCompilerId;
    job.m_projectFolder = std::filesystem::absolute(project.folder()).lexically_normal();
    if (!job.m_projectFolder.has_filename())
        job.m_projectFolder = job.m_projectFolder.parent_path(); // a closing separator
    job.m_library = builtLibraryPath(project, m_plugInsFolder);
    job.m_cacheFolder = m_cacheFolder;
    CBuildLog log(buildLogPath(m_nCompilerId, project), buildMarkerPath(project),
                  project.m_sProjectName + ".cmake",
                  buildSuccessLine(m_nCompilerId, project, m_plugInsFolder));
    m_pBuild.reset();
    m_pBuild = std::make_unique<CRunningBuild>(std::move(job), std::move(log));
    return true;
}

bool CCommandLineToolchain::startDebug()
{
    m_sLastError = std::string(findCompiler(m_nCompilerId)->m_pName) +
                   " has no debugger of its own. Choose Code::Blocks in View->Properties for one.";
    return false;
}

CBuildReport CCommandLineToolchain::waitForBuild(double dSeconds, IProgress* pProgress)
{
    constexpr double LONGEST_WAIT = 1e6; // s; a time point beyond would not fit
    const CSeconds wait(std::clamp(dSeconds, 0.0, LONGEST_WAIT));
    return m_pBuild
               ? m_pBuild->wait(CClock::now() + std::chrono::duration_cast<CClock::duration>(wait), pProgress)
               : CBuildReport();
}

} // namespace velmora
