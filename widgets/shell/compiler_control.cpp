#include "widgets/shell/compiler_control.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "project/codegen/linker_settings.h"
#include "project/dsp_project.h"
#include "widgets/common/qt_text.h"

#include <QCoreApplication>
#include <limits>

namespace velmora {

namespace {

constexpr int PUMP_MILLISECONDS = 10;       // longest that events are served between two reports
constexpr int BUILDING_TICK_INTERVAL = 250; // of the turning sign, in ms

std::string lineOf(const CCompilerMessage& message)
{
    std::string sPlace = message.m_sFile;
    if (message.m_nLine > 0)
        sPlace += formatted(":%d", message.m_nLine);
    if (message.m_nColumn > 0)
        sPlace += formatted(":%d", message.m_nColumn);
    return (sPlace.empty() ? "" : sPlace + ": ") + (message.m_bWarning ? "warning: " : "error: ") +
           message.m_sText;
}

} // namespace

CCompilerControl::CCompilerControl(const CParts& parts)
    : m_parts(parts), m_strip(parts.m_commands.toolchain(), parts.m_dialogs, *this)
{
    connect(&m_stateTimer, &QTimer::timeout, this, [this] { m_strip.tickState(); });
}

void CCompilerControl::projectChanged()
{
    releaseProject();
    if (CDSPProject* pProject = m_parts.m_commands.project())
        m_strip.followProject(*pProject);
    else
        showStatus({}, {});
}

bool CCompilerControl::isCompilerThere() const
{
    const CDSPProject* pProject = m_parts.m_commands.project();
    if (!pProject)
        return false;
    if (!m_parts.m_commands.mayControlCompiler())
        return true; // it is not told of edits
    const ECompilerState eState = m_parts.m_commands.toolchain().state(*pProject);
    return eState != ECompilerState::notFound && eState != ECompilerState::starting;
}

void CCompilerControl::startCompiler()
{
    if (const std::string sReason = m_parts.m_commands.toolchain().unavailableReason();
        m_parts.m_commands.project() && !sReason.empty())
        m_parts.m_dialogs.showMessage(sReason);
    else
        m_strip.startCompiler(m_parts.m_commands.project());
}

void CCompilerControl::toggleDebug()
{
    m_strip.toggleDebug(m_parts.m_commands.project());
}

IToolchain& CCompilerControl::choose(int nCompilerId)
{
    static_cast<void>(m_parts.m_commands.compilers().choose(nCompilerId));
    return m_parts.m_commands.toolchain();
}

void CCompilerControl::applySettings()
{
    m_parts.m_commands.applySettings();
    m_strip.setToolchain(m_parts.m_commands.toolchain());
    const auto nWanted = static_cast<int>(m_parts.m_document.settings().compilerId());
    if (nWanted != m_parts.m_commands.compilers().chosenId())
        m_strip.changeCompiler(m_parts.m_commands.project(), nWanted,
                               [=, this]() -> IToolchain& { return choose(nWanted); });
}

void CCompilerControl::takeChosenCompiler()
{
    m_strip.setToolchain(choose(static_cast<int>(m_parts.m_document.settings().compilerId())));
}

void CCompilerControl::updateLinkerSettings(CDSPProject& project)
{
    std::vector<std::filesystem::path> changed;
    velmora::updateLinkerSettings(project, m_parts.m_commands.environment(), m_parts.m_dialogs, changed);
}

void CCompilerControl::showStatus(std::string_view sLabel, std::string_view sState)
{
    emit statusChanged(qs(sLabel), qs(sState));
}

void CCompilerControl::setTimer(unsigned uMilliseconds)
{
    m_stateTimer.start(static_cast<int>(uMilliseconds));
}

void CCompilerControl::holdTexts(std::string_view sLabel, std::string_view sText)
{
    m_stateTimer.stop();
    showTexts(sLabel, sText);
}

void CCompilerControl::endTexts()
{
    if (m_parts.m_commands.project())
        setTimer(STRIP_INTERVAL.count());
}

bool CCompilerControl::report(double)
{
    if (m_sinceBuildingTick.hasExpired(BUILDING_TICK_INTERVAL)) {
        m_sinceBuildingTick.restart();
        onEvent(m_bReady ? EStripEvent::building : EStripEvent::starting);
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents, PUMP_MILLISECONDS);
    return !m_bCancelled;
}

// It is waited for, with the window served meanwhile, for as long as the user wants.
bool CCompilerControl::rebuild()
{
    if (m_bBuilding) {
        cancel();
        return false;
    }
    m_bBuilding = true;
    m_bReady = false;
    m_bCancelled = false;
    m_stateTimer.stop();
    m_sinceBuildingTick.start();
    emit buildingChanged(true);
    CRebuildOptions options;
    options.m_dDeadlineSeconds = std::numeric_limits<double>::infinity();
    options.m_pProgress = this;
    options.m_onReady = [this] {
        m_bReady = true;
        showTexts("compiler", "..ready..");
    };
    const CRebuildResult result = m_parts.m_commands.rebuild(options);
    m_bBuilding = false;
    tell(result);
    emit buildingChanged(false);
    emit built(result.m_bLoaded);
    return result.m_bLoaded;
}

void CCompilerControl::tell(const CRebuildResult& result)
{
    const CBuildReport& build = result.m_build;
    for (const CCompilerMessage& message : build.m_messages)
        m_parts.m_dialogs.note(lineOf(message));
    if (build.m_bCancelled)
        m_parts.m_dialogs.note("The build was cancelled.");
    else if (!build.m_sError.empty())
        m_parts.m_dialogs.note(build.m_sError);
    switch (build.m_eState) {
    case EBuildState::succeeded:
        m_parts.m_dialogs.note(formatted("Built in %.2f s.", build.m_dSeconds));
        return onEvent(EStripEvent::buildSucceeded);
    case EBuildState::none:
        return endTexts();
    case EBuildState::building: // it was not waited for any longer
    case EBuildState::failed:
        onEvent(EStripEvent::buildFailed);
        if (!build.m_bCancelled)
            emit failed();
    }
}

} // namespace velmora
