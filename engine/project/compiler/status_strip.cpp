#include "project/compiler/status_strip.h"

#include "base/user_dialogs.h"
#include "project/compiler/compiler_table.h"
#include "project/dsp_project.h"

namespace velmora {

namespace {

constexpr unsigned TICK_MILLISECONDS = STRIP_INTERVAL.count();
constexpr std::string_view COMPILER_LABEL = "compiler";
constexpr std::string_view START_DEBUG = "Debug";
constexpr std::string_view STOP_DEBUG = "Stop Debug";

constexpr std::string_view NEEDS_PROJECT = "Open an existing, compiled Project first!";
constexpr std::string_view CHANGE_OF_COMPILER =
    "You are changing the compiler with a project loaded and compiler alive; please shut down the current "
    "compiler FIRST and THEN choose OK to continue and launch the new compiler.\n\nIf you choose Cancel, the "
    "compiler will not be changed until you close the compiler and re-load the project";
constexpr std::string_view COULD_NOT_LAUNCH =
    "Could not launch compiler. Is it installed? Please change your compiler settings back to the original "
    "now.";

struct CStateRow
{
    ECompilerState m_eState;
    EStripEvent m_eEvent;
};

constexpr CStateRow STATE_EVENTS[] = {
    {ECompilerState::running, EStripEvent::running},   {ECompilerState::debugging, EStripEvent::debugging},
    {ECompilerState::starting, EStripEvent::starting}, {ECompilerState::notFound, EStripEvent::notFound},
    {ECompilerState::ready, EStripEvent::ready},
};

bool hasWindow(ECompilerState eState)
{
    return eState != ECompilerState::notFound && eState != ECompilerState::starting;
}

bool isCommandLine(const IToolchain& toolchain)
{
    const CCompiler* pCompiler = findCompiler(toolchain.compilerId());
    return pCompiler && pCompiler->m_eKind == ECompilerKind::commandLine;
}

} // namespace

CStatusStrip::CStatusStrip(IToolchain& toolchain, IUserDialogs& dialogs, IStatusStripWindow& window)
    : m_pToolchain(&toolchain), m_dialogs(dialogs), m_window(window)
{
}

bool CStatusStrip::hasProject(CDSPProject* pProject)
{
    if (!pProject)
        m_dialogs.showMessage(NEEDS_PROJECT);
    else
        m_pProject = pProject;
    return pProject != nullptr;
}

bool CStatusStrip::startCompiler(CDSPProject* pProject)
{
    if (!hasProject(pProject))
        return false;
    if (hasWindow(m_pToolchain->state(*pProject))) {
        m_bAlive = true;
    } else {
        m_bAlive = m_pToolchain->makeAvailable(*pProject);
        if (!m_bAlive)
            return false;
        show(COMPILER_LABEL, "Starting Compiler...");
    }
    m_window.setTimer(TICK_MILLISECONDS);
    return true;
}

bool CStatusStrip::toggleDebug(CDSPProject* pProject)
{
    if (!startCompiler(pProject))
        return false;
    show(COMPILER_LABEL, "Starting Compiler...");
    if (!(m_bDebugging ? m_pToolchain->stopDebug() : m_pToolchain->startDebug())) {
        const std::string sReason = m_pToolchain->lastError();
        if (!sReason.empty() && hasWindow(m_pToolchain->state(*pProject))) // else it is still starting
            m_dialogs.showMessage(sReason);
        return false;
    }
    m_bDebugging = !m_bDebugging;
    m_window.setDebugButton(m_bDebugging ? STOP_DEBUG : START_DEBUG);
    return true;
}

void CStatusStrip::stopDebugging()
{
    if (!m_bDebugging)
        return;
    static_cast<void>(m_pToolchain->stopDebug()); // it may have ended by itself
    m_bDebugging = false;
    m_window.setDebugButton(START_DEBUG);
}

bool CStatusStrip::changeCompiler(CDSPProject* pProject, int nCompilerId,
                                  const std::function<IToolchain&()>& choose)
{
    const bool bDiffers = nCompilerId != m_pToolchain->compilerId();
    const bool bAlive = pProject && bDiffers && !isCommandLine(*m_pToolchain) &&
                        m_pToolchain->state(*pProject) != ECompilerState::notFound;
    if (bAlive && !m_dialogs.askOKCancel(CHANGE_OF_COMPILER))
        return false;
    m_pToolchain = &choose();
    if (pProject && bDiffers)
        m_window.updateLinkerSettings(*pProject);
    if (bAlive && !startCompiler(pProject))
        m_dialogs.showMessage(COULD_NOT_LAUNCH);
    return true;
}

void CStatusStrip::followProject(CDSPProject& project)
{
    m_pProject = &project;
    m_bAlive = true;
    tickState();
    m_window.setTimer(TICK_MILLISECONDS);
}

void CStatusStrip::closeProject()
{
    m_window.killTimer();
    m_pProject = nullptr;
}

void CStatusStrip::tickState()
{
    if (!m_pProject)
        return;
    const auto hold = static_cast<unsigned>(m_strip.hold().count());
    m_bHeld = hold > 0 && !m_bHeld;
    if (m_bHeld)
        return m_window.setTimer(hold);
    if (hold > 0)
        m_window.setTimer(TICK_MILLISECONDS);
    if (!m_bAlive)
        post(EStripEvent::dead);
    const ECompilerState eState = m_pToolchain->state(*m_pProject);
    m_bAlive = eState != ECompilerState::notFound;
    for (const CStateRow& row : STATE_EVENTS)
        if (row.m_eState == eState)
            post(row.m_eEvent);
}

void CStatusStrip::post(EStripEvent eEvent)
{
    const CStripEffects effects = m_strip.post(eEvent, m_pProject ? m_pProject->m_sProjectName : "");
    m_window.showStatus(label(), text());
    if (effects.m_bRestartTimer)
        m_window.setTimer(TICK_MILLISECONDS);
    if (effects.m_bTakeFocus)
        m_window.takeFocus();
}

void CStatusStrip::show(std::string_view sLabel, std::string_view sText)
{
    m_strip.show(sLabel, sText);
    m_window.showStatus(label(), text());
}

} // namespace velmora
