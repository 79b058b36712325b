#include "widgets/shell/compiler_control.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "project/codegen/linker_settings.h"
#include "project/dsp_project.h"
#include "widgets/common/qt_text.h"

#include <QCoreApplication>

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
    m_strip.closeProject();
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

bool CCompilerControl::changeCompiler(int nCompilerId)
{
    return m_strip.changeCompiler(m_parts.m_commands.project(), nCompilerId, [&]() -> IToolchain& {
        static_cast<void>(m_parts.m_commands.compilers().choose(nCompilerId));
        return m_parts.m_commands.toolchain();
    });
}

void CCompilerControl::updateLinkerSettings(CDSPProject& project)
{
    std::vector<std::filesystem::path> changed;
    velmora::updateLinkerSettings(project, m_parts.m_commands.environment(), m_parts.m_dialogs, changed);
}

bool CCompilerControl::isPlugInLoaded()
{
    return m_parts.m_document.plugInLoader().current() != nullptr;
}

void CCompilerControl::unloadPlugIn()
{
    m_parts.m_commands.unloadPlugIn();
}

bool CCompilerControl::writeCode(CDSPProject&)
{
    return m_parts.m_commands.writeCode();
}

void CCompilerControl::showStatus(std::string_view sLabel, std::string_view sState)
{
    emit statusChanged(qs(sLabel), qs(sState));
}

// A build is waited for, with the window served meanwhile; only the state has a timer.
void CCompilerControl::setTimer(EStripTimer eTimer, unsigned uMilliseconds)
{
    if (eTimer == EStripTimer::state)
        m_stateTimer.start(static_cast<int>(uMilliseconds));
}

void CCompilerControl::killTimer(EStripTimer eTimer)
{
    if (eTimer == EStripTimer::state)
        m_stateTimer.stop();
}

bool CCompilerControl::report(double)
{
    if (m_sinceBuildingTick.hasExpired(BUILDING_TICK_INTERVAL)) {
        m_sinceBuildingTick.restart();
        onEvent(EStripEvent::building);
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents, PUMP_MILLISECONDS);
    return !m_bCancelled;
}

void CCompilerControl::rebuild()
{
    if (m_bBuilding) {
        cancel();
        return;
    }
    m_bBuilding = true;
    m_bCancelled = false;
    m_stateTimer.stop();
    m_sinceBuildingTick.start();
    emit buildingChanged(true);
    if (m_parts.m_commands.project())
        showTexts("compiler", "..ready..");
    CRebuildOptions options;
    options.m_pProgress = this;
    const CRebuildResult result = m_parts.m_commands.rebuild(options);
    m_bBuilding = false;
    tell(result);
    emit buildingChanged(false);
    emit built(result.m_bLoaded);
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
        if (m_parts.m_commands.project())
            m_stateTimer.start(static_cast<int>(STRIP_INTERVAL.count()));
        return;
    case EBuildState::building: // the time ran out
    case EBuildState::failed:
        onEvent(EStripEvent::buildFailed);
        if (!build.m_bCancelled)
            emit failed();
    }
}

void CCompilerControl::showTexts(std::string_view sLabel, std::string_view sText)
{
    m_strip.show(sLabel, sText);
}

} // namespace velmora
