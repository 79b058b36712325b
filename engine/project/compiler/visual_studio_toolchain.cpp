#include "project/compiler/visual_studio_toolchain.h"

#include "base/progress.h"
#include "project/compiler/build_watch.h"
#include "project/compiler/compiler_table.h"

namespace velmora {

namespace {

constexpr double LOOK_AGAIN_SECONDS = 0.1;

} // namespace

CVisualStudioToolchain::CVisualStudioToolchain(IWindowSystem& system, IUserDialogs& dialogs, int nCompilerId,
                                               CIdeSettings settings, std::filesystem::path plugInsFolder,
                                               CRegistryReader registry)
    : m_system(system), m_driver(system, dialogs, nCompilerId, std::move(settings), registry),
      m_plugInsFolder(std::move(plugInsFolder)), m_registry(std::move(registry))
{
}

bool CVisualStudioToolchain::isInstalled() const
{
    return m_registry && !m_registry(registryKeyOf(compilerId())).empty();
}

std::string CVisualStudioToolchain::unavailableReason() const
{
    if (isInstalled())
        return m_system.unavailableReason();
    const CCompiler* pCompiler = findCompiler(compilerId());
    return "Visual Studio " + std::string(pCompiler ? pCompiler->m_pName : "") +
           " is not installed here. Its project files are kept up to date; to build on this machine, choose "
           "Code::Blocks or a command line compiler in View->Properties.";
}

std::string CVisualStudioToolchain::lastError() const
{
    return isInstalled() ? m_driver.lastError() : unavailableReason();
}

ECompilerState CVisualStudioToolchain::state(const CDSPProject& project)
{
    // A browser that shows a page about it has a title that fits as well.
    return isInstalled() ? m_driver.getCompilerState(project) : ECompilerState::notFound;
}

bool CVisualStudioToolchain::makeAvailable(const CDSPProject& project)
{
    // A start page means an IDE without a solution: it makes room for one with the project's.
    if (isInstalled())
        static_cast<void>(m_driver.closeCompiler());
    return state(project) != ECompilerState::notFound || m_driver.startCompiler(project);
}

bool CVisualStudioToolchain::waitForWindow(const CDSPProject& project, double dSeconds)
{
    constexpr double LOOK_AGAIN_SECONDS = 0.25;
    const double dStart = m_system.seconds();
    for (;;) {
        const ECompilerState eState = state(project);
        if (eState != ECompilerState::starting)
            return eState != ECompilerState::notFound;
        if (m_system.seconds() - dStart >= dSeconds)
            return false;
        m_system.sleep(LOOK_AGAIN_SECONDS);
    }
}

bool CVisualStudioToolchain::rebuild(const CDSPProject& project)
{
    if (!isInstalled())
        return false;
    m_project.m_sProjectName = project.m_sProjectName;
    m_project.m_sProjectFolder = project.m_sProjectFolder;
    m_driver.setProject(project);
    m_report = {};
    deleteBuildResults(compilerId(), m_project);
    m_dAsked = m_system.seconds();
    if (!m_driver.rebuild())
        return false;
    m_report.m_eState = EBuildState::building;
    m_report.m_log = buildLogPath(compilerId(), m_project);
    return true;
}

CBuildReport CVisualStudioToolchain::waitForBuild(double dSeconds, IProgress* pProgress)
{
    const double dStart = m_system.seconds();
    while (m_report.m_eState == EBuildState::building) {
        const EBuildEvent eEvent = readBuildResult(compilerId(), m_project, m_plugInsFolder);
        m_report.m_dSeconds = m_system.seconds() - m_dAsked;
        if (eEvent == EBuildEvent::succeeded) {
            m_report.m_eState = EBuildState::succeeded;
            m_report.m_library = builtLibraryPath(m_project, m_plugInsFolder);
        } else if (eEvent == EBuildEvent::failed) {
            m_report.m_eState = EBuildState::failed;
            m_report.m_sError = "The build failed; " + m_report.m_log.string() + " says more.";
        } else {
            m_report.m_bCancelled = pProgress && !pProgress->report(0.0);
            if (m_report.m_bCancelled || m_system.seconds() - dStart >= dSeconds)
                break;
            m_system.sleep(LOOK_AGAIN_SECONDS);
        }
    }
    return m_report;
}

} // namespace velmora
