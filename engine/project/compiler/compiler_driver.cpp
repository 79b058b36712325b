#include "project/compiler/compiler_driver.h"

#include "base/user_dialogs.h"
#include "project/compiler/compiler_table.h"
#include "project/compiler/keystroke_engine.h"
#include "project/dsp_project.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr unsigned RETRY_SECONDS = 1;
constexpr double FOCUS_SECONDS = 1.0;
constexpr double STAYS_SECONDS = 0.05; // then it is looked at again

} // namespace

CCompilerDriver::CCompilerDriver(IWindowSystem& system, IUserDialogs& dialogs, int nCompilerId,
                                 CIdeSettings settings, CRegistryReader registry)
    : m_system(system), m_dialogs(dialogs), m_nCompilerId(nCompilerId), m_settings(std::move(settings)),
      m_registry(std::move(registry))
{
}

void CCompilerDriver::setProject(const CDSPProject& project)
{
    if (isProject(project))
        return;
    m_state = {};
    m_sProject = project.m_sProjectName;
    m_sProjectFolder = project.m_sProjectFolder;
}

bool CCompilerDriver::isProject(const CDSPProject& project) const
{
    return m_sProject == project.m_sProjectName && m_sProjectFolder == project.m_sProjectFolder;
}

bool CCompilerDriver::findWindow()
{
    const std::optional<CWindow> found =
        findCompilerWindow(m_system.topLevelWindows(), m_nCompilerId, m_sProject);
    m_state.m_hWindow = found ? found->m_hWindow : 0;
    m_state.m_sTitle = found ? found->m_sTitle : "";
    m_state.m_eMode = runModeOf(m_state.m_sTitle);
    if (found && found->m_uProcessId != 0)
        static_cast<void>(m_state.watch(found->m_uProcessId));
    return found.has_value();
}

ECompilerState CCompilerDriver::getCompilerState(const CDSPProject& project)
{
    setProject(project);
    return getCompilerState();
}

ECompilerState CCompilerDriver::getCompilerState()
{
    const bool bWindow = findWindow();
    const CWindowHandle hWindow = m_state.m_hWindow;
    // A window manager need not tell the process of a window; the window itself shows that it lives.
    const bool bAlive = m_state.isProcessAlive() || bWindow;
    m_state.m_bAlive = bAlive;
    m_state.m_hWindow = bWindow ? hWindow : 0;
    if (!bWindow)
        return bAlive ? ECompilerState::starting : ECompilerState::notFound;
    constexpr ECompilerState STATE_OF_MODE[] = {ECompilerState::ready, ECompilerState::running,
                                                ECompilerState::debugging};
    return STATE_OF_MODE[static_cast<std::size_t>(m_state.m_eMode)];
}

bool CCompilerDriver::startCompiler(const CDSPProject& project)
{
    setProject(project);
    const CIdeCommand command = ideCommand(m_nCompilerId, project, m_settings, m_registry);
    const CWindowHandle hBefore = m_system.foregroundWindow();
    const std::uint32_t uProcess = startIde(command);
    if (uProcess == 0 || !m_state.watch(uProcess)) {
        m_sLastError = ideFailureMessage(command);
        m_dialogs.showMessage(m_sLastError);
        return false;
    }
    if (hBefore != 0)
        m_hWindowBefore = hBefore;
    if (!m_settings.m_bStartMinimized)
        returnFocus();
    return true;
}

bool CCompilerDriver::saveAll()
{
    return operate(ECompilerOperation::saveAll);
}

bool CCompilerDriver::rebuild()
{
    return operate(ECompilerOperation::rebuild);
}

bool CCompilerDriver::startDebug()
{
    return operate(ECompilerOperation::startDebug);
}

bool CCompilerDriver::stopDebug()
{
    return operate(ECompilerOperation::stopDebug);
}

bool CCompilerDriver::closeCompiler()
{
    // The start page of 2012 Express means that there is no solution to lose.
    const auto windows = m_system.topLevelWindows();
    const auto page = std::ranges::find_if(
        windows, [](const CWindow& window) { return isStartPageTitle(window.m_sTitle); });
    const std::string_view sKeys = compilerKeys(m_nCompilerId, ECompilerOperation::closeCompiler);
    return page != windows.end() && m_nCompilerId == 4005 && sendKeysTo(page->m_hWindow, sKeys);
}

bool CCompilerDriver::operate(ECompilerOperation eOperation)
{
    const CCompilerOperation& operation = compilerOperation(eOperation);
    const std::string_view sKeys = compilerKeys(m_nCompilerId, eOperation);
    // Keys do not reach a minimised window of X.
    const bool bBehind = operation.m_bKeepsMainWindowOnTop && m_nCompilerId != CODE_BLOCKS_ID;
    if (!sendCompilerKeys(sKeys, bBehind, bBehind)) {
        m_sLastError += " To " + std::string(operation.m_pName) + ", press " + readableKeys(sKeys) +
                        " in the compiler's window.";
        return false;
    }
    m_system.sleep(operation.m_dSecondsUntilFocusReturns);
    returnFocus();
    return true;
}

bool CCompilerDriver::sendCompilerKeys(std::string_view sKeys, bool bMinimize, bool bRestore)
{
    if (!findWindow()) {
        const std::string sReason = m_system.unavailableReason();
        m_sLastError = sReason.empty() ? "The compiler's window was not found." : sReason;
        return false;
    }
    rememberForeground();
    CWindowEngine window(m_system, m_state.m_hWindow);
    if (bMinimize)
        window.minimize();
    const bool bSent = sendKeysTo(m_state.m_hWindow, sKeys);
    if (bRestore)
        window.restore();
    return bSent;
}

bool CCompilerDriver::sendKeysTo(CWindowHandle hWindow, std::string_view sKeys)
{
    CWindowEngine window(m_system, hWindow);
    if (!window.setForeground()) {
        m_sLastError = "The compiler's window does not come to the front.";
        return false;
    }
    CKeystrokeEngine keys(m_system, sKeys);
    keys.setWindow(hWindow);
    keys.setCheckForeground(true);
    keys.setRetry(true, RETRY_SECONDS);
    const bool bSent = keys.send();
    m_sLastError = keys.error();
    return bSent;
}

bool CCompilerDriver::bringForward()
{
    if (!findWindow()) {
        m_sLastError = "The compiler's window was not found.";
        return false;
    }
    rememberForeground();
    if (CWindowEngine(m_system, m_state.m_hWindow).setForeground())
        return true;
    m_sLastError = "The compiler's window does not come to the front.";
    return false;
}

void CCompilerDriver::rememberForeground()
{
    const CWindowHandle hForeground = m_system.foregroundWindow();
    if (hForeground != 0 && hForeground != m_state.m_hWindow)
        m_hWindowBefore = hForeground;
}

void CCompilerDriver::returnFocus()
{
    const CWindowHandle hWindow = m_hMainWindow != 0 ? m_hMainWindow : m_hWindowBefore;
    const auto windows = m_system.topLevelWindows();
    if (hWindow == 0 || std::ranges::find(windows, hWindow, &CWindow::m_hWindow) == windows.end())
        return;
    // A compiler that is still at work, a box of its closing, say, takes the focus again.
    if (m_state.m_hWindow != 0)
        static_cast<void>(m_system.waitForAnswer(m_state.m_hWindow, FOCUS_SECONDS));
    CWindowEngine window(m_system, hWindow);
    for (int nTry = 0; nTry < 2 && window.setForeground(FOCUS_SECONDS); ++nTry)
        m_system.sleep(STAYS_SECONDS);
}

} // namespace velmora
