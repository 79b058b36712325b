#include "project/compiler/code_blocks_toolchain.h"

#include "base/platform_child_process.h"
#include "base/progress.h"
#include "project/compiler/build_watch.h"
#include "project/compiler/compiler_messages.h"
#include "project/compiler/compiler_table.h"
#include "project/compiler/file_stamp.h"

namespace velmora {

namespace {

constexpr double START_SECONDS = 30.0;  // from the start to the window
constexpr double SETTLE_SECONDS = 0.25; // after coming forward; keys sent earlier are lost
constexpr double BEGIN_SECONDS = 3.0;   // from the keys to the build's first line
constexpr double MAX_BEGIN_SECONDS = 30.0;
constexpr double SAVE_SECONDS = 3.0;
constexpr double ANSWER_SECONDS = 5.0;
constexpr double SAVED_SETTLE_SECONDS = 0.3; // when the IDE does not tell
constexpr double CLOSE_SECONDS = 10.0;
constexpr double QUIET_SECONDS = 0.2;     // without child processes, before the IDE listens again
constexpr double MAX_QUIET_SECONDS = 5.0; // a program that the user has started there may run for ever
constexpr double LOOK_AGAIN_SECONDS = 0.05;

std::string beginLine(const CDSPProject& project)
{
    return project.m_sProjectName + ": build begins";
}

std::string endLine(const CDSPProject& project)
{
    return project.m_sProjectName + ": build ends with status ";
}

std::string firstError(const std::vector<CCompilerMessage>& messages)
{
    for (const CCompilerMessage& message : messages)
        if (!message.m_bWarning)
            return (message.m_sFile.empty()
                        ? ""
                        : message.m_sFile + ":" + std::to_string(message.m_nLine) + ": ") +
                   message.m_sText;
    return {};
}

} // namespace

CCodeBlocksToolchain::CCodeBlocksToolchain(IWindowSystem& system, IUserDialogs& dialogs,
                                           CIdeSettings settings, std::filesystem::path plugInsFolder)
    : m_system(system), m_settings(settings), m_driver(system, dialogs, CODE_BLOCKS_ID, std::move(settings)),
      m_boxes(m_driver), m_plugInsFolder(std::move(plugInsFolder))
{
}

int CCodeBlocksToolchain::compilerId() const
{
    return CODE_BLOCKS_ID;
}

std::string CCodeBlocksToolchain::unavailableReason() const
{
    const bool bInFolder = !m_settings.m_codeBlocksFolder.empty();
    std::error_code error;
    if (bInFolder && !std::filesystem::exists(m_settings.m_codeBlocksFolder / "codeblocks", error))
        return "There is no \"codeblocks\" in " + m_settings.m_codeBlocksFolder.string() +
               ". Change its folder in View->Properties, or leave it empty to have it searched.";
    if (!bInFolder && CChildProcess::findProgram("codeblocks").empty())
        return "Code::Blocks is not installed. Install it with: apt-get install codeblocks";
    return m_system.unavailableReason();
}

bool CCodeBlocksToolchain::fail(std::string sError)
{
    m_sLastError = std::move(sError);
    return false;
}

ECompilerState CCodeBlocksToolchain::state(const CDSPProject& project)
{
    follow(project);
    return m_driver.getCompilerState();
}

void CCodeBlocksToolchain::follow(const CDSPProject& project)
{
    if (m_driver.isProject(project))
        return;
    leave();
    m_driver.setProject(project);
}

// If that fails the IDE stays, as the user's.
void CCodeBlocksToolchain::leave()
{
    if (m_settings.m_bCloseWithProject && m_driver.compiler().isProcessAlive())
        static_cast<void>(close());
}

bool CCodeBlocksToolchain::makeAvailable(const CDSPProject& project)
{
    if (state(project) != ECompilerState::notFound)
        return true;
    if (const std::string sReason = unavailableReason(); !sReason.empty())
        return fail(sReason);
    return m_driver.startCompiler(project) || fail(m_driver.lastError());
}

bool CCodeBlocksToolchain::waitForWindow(const CDSPProject& project, double dSeconds)
{
    follow(project);
    return awaitWindow(dSeconds);
}

bool CCodeBlocksToolchain::awaitWindow(double dSeconds)
{
    const double dStart = m_system.seconds();
    for (;;) {
        const ECompilerState eState = m_driver.getCompilerState();
        if (eState == ECompilerState::notFound)
            return fail("Code::Blocks has ended.");
        bool bBox = false;
        // A first start asks for the default compiler before its window is there.
        if (!m_boxes.answerOne(bBox))
            return fail(m_boxes.error());
        if (eState != ECompilerState::starting && !bBox)
            return true;
        if (m_system.seconds() - dStart >= dSeconds)
            return fail("Code::Blocks has not opened " + m_driver.project() + " yet.");
        m_system.sleep(LOOK_AGAIN_SECONDS);
    }
}

bool CCodeBlocksToolchain::bringForward()
{
    if (!m_driver.findWindow()) {
        if (!m_driver.compiler().isProcessAlive())
            return fail("Code::Blocks is not open with the project.");
        if (!awaitWindow(START_SECONDS))
            return false;
    }
    // A box takes the focus from its window: it is answered first.
    if (!m_boxes.answer(0.0))
        return fail(m_boxes.error());
    if (!m_driver.bringForward() && (!m_boxes.answer(0.0) || !m_driver.bringForward()))
        return fail(m_driver.lastError());
    static_cast<void>(m_system.waitForAnswer(m_driver.compiler().m_hWindow, ANSWER_SECONDS));
    return m_boxes.answer(SETTLE_SECONDS) || fail(m_boxes.error());
}

bool CCodeBlocksToolchain::saveAll()
{
    const std::string_view sKeys = compilerKeys(CODE_BLOCKS_ID, ECompilerOperation::saveAll);
    for (int nTry = 0; nTry < 2; ++nTry) {
        if (!bringForward())
            return false;
        if (!m_driver.sendCompilerKeys(sKeys, false, false))
            return fail(m_driver.lastError());
        if (!m_system.waitForAnswer(m_driver.compiler().m_hWindow, ANSWER_SECONDS))
            m_system.sleep(SAVED_SETTLE_SECONDS);
        const double dSent = m_system.seconds();
        do {
            if (m_driver.findWindow() && !hasUnsavedMark(m_driver.compiler().m_sTitle)) {
                m_driver.returnFocus();
                return true;
            }
            m_system.sleep(LOOK_AGAIN_SECONDS);
        } while (m_system.seconds() - dSent < SAVE_SECONDS);
    }
    return fail("Code::Blocks did not save its files. Press " + readableKeys(sKeys) + " there.");
}

bool CCodeBlocksToolchain::rebuild(const CDSPProject& project)
{
    m_report = {};
    m_dEnded = m_dQuietSince = 0.0;
    m_bUserIsInIde = false;
    m_project.m_sProjectName = project.m_sProjectName;
    m_project.m_sProjectFolder = project.m_sProjectFolder;
    m_project.m_sProjectFile = project.m_sProjectFile;
    follow(project);
    m_dAsked = m_system.seconds();
    if (!bringForward())
        return false;
    deleteBuildResults(CODE_BLOCKS_ID, m_project);

    const std::string_view sKeys = compilerKeys(CODE_BLOCKS_ID, ECompilerOperation::rebuild);
    // The first chord is lost if the IDE was still busy.
    for (int nTry = 0; nTry < 2; ++nTry) {
        if (!m_driver.sendCompilerKeys(sKeys, false, false))
            return fail(m_driver.lastError());
        if (awaitBegin()) {
            m_report.m_eState = EBuildState::building;
            m_driver.returnFocus();
            return true;
        }
        if (nTry == 0 && !bringForward())
            return false;
    }
    return fail("Code::Blocks did not begin to build. Press " + readableKeys(sKeys) +
                " there and look at its build log.");
}

bool CCodeBlocksToolchain::awaitBegin()
{
    const double dSent = m_system.seconds();
    while (!logHolds(beginLine(m_project))) {
        const double dWaited = m_system.seconds() - dSent;
        // While programs of its run it cleans up, or make has not come to speak yet.
        if (dWaited >= MAX_BEGIN_SECONDS || (dWaited >= BEGIN_SECONDS && !m_driver.compiler().hasChildren()))
            return false;
        bool bBox = false;
        if (!m_boxes.answerOne(bBox) || !m_driver.compiler().isProcessAlive())
            return false;
        m_system.sleep(LOOK_AGAIN_SECONDS);
    }
    return true;
}

bool CCodeBlocksToolchain::logHolds(std::string_view sLine) const
{
    const auto sLog = contentsOfFile(buildLogPath(CODE_BLOCKS_ID, m_project));
    return sLog && (sLog->starts_with(sLine) || sLog->find("\n" + std::string(sLine)) != std::string::npos);
}

bool CCodeBlocksToolchain::hasBuildEnded()
{
    const double dNow = m_system.seconds();
    CCompilerState& compiler = m_driver.compiler();
    if (m_dEnded == 0.0) {
        const bool bAlive = compiler.isProcessAlive();
        if (logHolds(endLine(m_project)) || !bAlive)
            m_dEnded = dNow;
        else {
            m_bUserIsInIde = m_system.foregroundWindow() == compiler.m_hWindow;
            return false;
        }
    }
    if (dNow - m_dEnded >= MAX_QUIET_SECONDS || !compiler.isProcessAlive())
        return true;
    if (compiler.hasChildren())
        m_dQuietSince = 0.0;
    else if (m_dQuietSince == 0.0)
        m_dQuietSince = dNow;
    return m_dQuietSince != 0.0 && dNow - m_dQuietSince >= QUIET_SECONDS;
}

void CCodeBlocksToolchain::takeFocusBack()
{
    // The IDE comes forward by itself at the end of a build when a source is open in it.
    const CWindowHandle hIde = m_driver.compiler().m_hWindow;
    static_cast<void>(m_system.waitForAnswer(hIde, ANSWER_SECONDS));
    if (!m_bUserIsInIde && hIde != 0 && m_system.foregroundWindow() == hIde)
        m_driver.returnFocus();
}

CBuildReport CCodeBlocksToolchain::finishedReport()
{
    CBuildReport report;
    report.m_log = buildLogPath(CODE_BLOCKS_ID, m_project);
    report.m_dSeconds = m_system.seconds() - m_dAsked;
    if (const auto sLog = contentsOfFile(report.m_log))
        report.m_messages = parseMessages(*sLog);
    if (!logHolds(endLine(m_project))) {
        report.m_eState = EBuildState::failed;
        report.m_sError = "Code::Blocks ended in the middle of the build. Start it again and rebuild.";
    } else if (readBuildResult(CODE_BLOCKS_ID, m_project, m_plugInsFolder) == EBuildEvent::succeeded) {
        report.m_eState = EBuildState::succeeded;
        report.m_library = builtLibraryPath(m_project, m_plugInsFolder);
    } else {
        report.m_eState = EBuildState::failed;
        report.m_sError = firstError(report.m_messages);
        if (report.m_sError.empty())
            report.m_sError = "The build failed; " + report.m_log.string() + " says more.";
    }
    return report;
}

CBuildReport CCodeBlocksToolchain::waitForBuild(double dSeconds, IProgress* pProgress)
{
    const double dStart = m_system.seconds();
    while (m_report.m_eState == EBuildState::building) {
        if (hasBuildEnded()) {
            m_report = finishedReport();
            takeFocusBack();
            break;
        }
        if (pProgress && !pProgress->report(0.0)) {
            CBuildReport stopped = m_report;
            stopped.m_bCancelled = true;
            stopped.m_sError = "The build goes on in Code::Blocks.";
            return stopped;
        }
        if (m_system.seconds() - dStart >= dSeconds)
            break;
        m_system.sleep(LOOK_AGAIN_SECONDS);
    }
    return m_report;
}

bool CCodeBlocksToolchain::startDebug()
{
    return bringForward() && (m_driver.startDebug() || fail(m_driver.lastError()));
}

bool CCodeBlocksToolchain::stopDebug()
{
    return bringForward() && (m_driver.stopDebug() || fail(m_driver.lastError()));
}

void CCodeBlocksToolchain::returnFocus()
{
    m_driver.returnFocus();
}

bool CCodeBlocksToolchain::close()
{
    if (!m_driver.compiler().isProcessAlive())
        return true;
    const std::string_view sKeys = compilerKeys(CODE_BLOCKS_ID, ECompilerOperation::closeCompiler);
    if (!saveAll() || !bringForward())
        return false;
    if (!m_driver.sendCompilerKeys(sKeys, false, false))
        return fail(m_driver.lastError());
    const double dSent = m_system.seconds();
    while (m_driver.compiler().isProcessAlive()) {
        bool bBox = false;
        if (!m_boxes.answerOne(bBox))
            return fail(m_boxes.error());
        if (m_system.seconds() - dSent >= CLOSE_SECONDS)
            return fail("Code::Blocks does not close.");
        m_system.sleep(LOOK_AGAIN_SECONDS);
    }
    return true;
}

} // namespace velmora
