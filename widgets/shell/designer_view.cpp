#include "widgets/shell/designer_view.h"

#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "host/dsp_filter.h"
#include "project/dsp_project.h"
#include "project/preset_folder.h"
#include "widgets/common/message_dialogs.h"
#include "widgets/common/progress_box.h"
#include "widgets/common/qt_text.h"
#include "widgets/panel/prototype_panel.h"

#include <utility>

namespace velmora {

namespace {

constexpr int TICK_MILLISECONDS = 33; // of the meters
constexpr int TRANSPORT_TICKS = 2;    // the transport's timer is due every so many ticks
constexpr int AUTOSAVE_TICKS = 60;

} // namespace

CDesignerView::CDesignerView(CMessageDialogs& dialogs)
    : m_dialogs(dialogs), m_messages([this](const CWindowMessage& message) { return onMessage(message); }),
      m_wheel(m_model), m_pPanel(new CPrototypePanel)
{
    m_model.setView(this);
    m_pPanel->setModel(&m_model);
    m_pPanel->setAlphaWheel(&m_wheel);
    m_tick.setInterval(TICK_MILLISECONDS);
    connect(&m_tick, &QTimer::timeout, this, &CDesignerView::onTick);
    m_deliver.setSingleShot(true);
    m_deliver.setInterval(0);
    connect(&m_deliver, &QTimer::timeout, this, &CDesignerView::deliverChanges);
    connectPanel();
}

CDesignerView::~CDesignerView()
{
    detach();
    m_model.setView(nullptr);
    delete m_pPanel;
}

void CDesignerView::attach(CTonboxDoc& document, QSettings& profile,
                           const std::filesystem::path& baseClassFolder)
{
    m_pDocument = &document;
    m_pProfile = &profile;
    m_pCommands = std::make_unique<CProjectCommands>(document, m_dialogs, baseClassFolder);
    m_pCommands->setEditsThroughCompiler(true);
    m_pCommands->setHoldsProject(true);
    m_meters.emplace([&document](EMeter eMeter) { return document.audioEngine().meter(eMeter); },
                     1000.0F / TICK_MILLISECONDS);
    m_model.setEditedCallback([this] { m_pDocument->projectChanged(false); });
    m_pProgress = std::make_unique<CProgressBox>(QString(), m_pPanel->window());
    m_patience.emplace(*m_pProgress);
    m_pCompiler =
        std::make_unique<CCompilerControl>(CCompilerControl::CParts{document, *m_pCommands, m_dialogs});
    connectCompiler();
    m_pPanelDialogs = std::make_unique<CPanelDialogs>(
        CPanelDialogs::CParts{*m_pCommands, *m_pCompiler, m_model, m_dialogs, m_messages, m_pPanel});
    connect(m_pPanelDialogs.get(), &CPanelDialogs::edited, this, &CDesignerView::showProject);
    m_pProjectDialogs = std::make_unique<CProjectDialogs>(CProjectDialogs::CParts{
        document, *m_pCommands, m_dialogs, profile, m_pPanel,
        [this](std::string_view sLabel, std::string_view sText) { m_pCompiler->showTexts(sLabel, sText); }});
    m_pToolWindows = std::make_unique<CToolWindows>(CToolWindows::CParts{document, m_dialogs, m_pPanel});
    connect(m_pToolWindows.get(), &CToolWindows::shownChanged, this, &CDesignerView::transportChanged);
    const CAudioEngine& engine = document.audioEngine();
    m_pPanel->setGains(engine.m_fInputGain_dB, engine.m_fOutputGain_dB);
    m_pPanel->setRouting(0);
    m_pPanel->setSampleRate(document.settings().sampleRate());
    showProject();
    m_tick.start();
}

void CDesignerView::detach()
{
    m_tick.stop();
    m_deliver.stop();
    if (!m_pDocument)
        return;
    blockSignals(true);
    m_model.setFilter(nullptr);
    m_model.setProject(nullptr);
    m_pToolWindows.reset();
    m_pProjectDialogs.reset();
    m_pPanelDialogs.reset();
    m_pCompiler.reset();
    m_patience.reset();
    m_pProgress.reset();
    m_pCommands.reset();
    m_pDocument = nullptr;
}

void CDesignerView::connectPanel()
{
    CPrototypePanel* pPanel = m_pPanel;
    connect(pPanel, &CPrototypePanel::setupRequested, this,
            [this](UINT uSlot) { m_pPanelDialogs->setUp(uSlot); });
    connect(pPanel, &CPrototypePanel::alphaWheelSetupRequested, this,
            [this] { m_pPanelDialogs->setUpAlphaWheel(); });
    connect(pPanel, &CPrototypePanel::assignableSetupRequested, this,
            [this] { m_pPanelDialogs->setUpAssignableButtons(); });
    connect(pPanel, &CPrototypePanel::gainChanged, this, [this](int nFader, float fDB) {
        CAudioEngine& engine = m_pDocument->audioEngine();
        (nFader == 0 ? engine.m_fInputGain_dB : engine.m_fOutputGain_dB) = fDB;
    });
    connect(pPanel, &CPrototypePanel::routingChanged, this, [this] { onRoutingButton(0, 0); });
    connect(pPanel, &CPrototypePanel::projectCommand, this, &CDesignerView::onProjectCommand);
    connect(pPanel, &CPrototypePanel::presetSelected, this, [this](const QString& sName) {
        m_sPreset = sName;
        if (m_pCommands->loadPreset(utf8(sName)))
            m_model.valuesChanged();
    });
    connect(pPanel, &CPrototypePanel::presetSaveRequested, this, &CDesignerView::savePreset);
    connect(pPanel, &CPrototypePanel::presetDeleteRequested, this, &CDesignerView::deletePreset);
    connect(pPanel, &CPrototypePanel::newProjectRequested, this, &CDesignerView::newProject);
    connect(pPanel, &CPrototypePanel::openProjectRequested, this, &CDesignerView::openProject);
}

void CDesignerView::connectCompiler()
{
    CCompilerControl* pCompiler = m_pCompiler.get();
    connect(pCompiler, &CCompilerControl::statusChanged, m_pPanel.data(), &CPrototypePanel::setCompilerText);
    connect(pCompiler, &CCompilerControl::buildingChanged, m_pPanel.data(), &CPrototypePanel::setBuilding);
    connect(pCompiler, &CCompilerControl::buildingChanged, this, &CDesignerView::setBusy);
    connect(pCompiler, &CCompilerControl::debuggingChanged, m_pPanel.data(), &CPrototypePanel::setDebugging);
    connect(pCompiler, &CCompilerControl::focusWanted, this,
            [this] { m_pPanel->window()->activateWindow(); });
    connect(pCompiler, &CCompilerControl::failed, this,
            [this] { showToolWindow(EToolWindow::Status, true); });
    connect(pCompiler, &CCompilerControl::built, this, [this] {
        afterPlugIn();
        if (std::exchange(m_bCloseWanted, false))
            QMetaObject::invokeMethod(m_pPanel->window(), &QWidget::close, Qt::QueuedConnection);
    });
}

// ------------------------------------------------------------------------------------------------
// Timers
// ------------------------------------------------------------------------------------------------

void CDesignerView::onTick()
{
    ++m_nTick;
    m_messages.drain();
    if (const unsigned uLost = m_messages.takeLost())
        m_dialogs.note("Messages of a plug-in were lost, as there were too many at once: " +
                       std::to_string(uLost) + ".");
    if (m_nTick % TRANSPORT_TICKS == 0)
        m_pDocument->transport().onTimer();
    m_pPanel->showLevels(m_meters->tick());
    m_pToolWindows->tick();
    if (m_nTick % AUTOSAVE_TICKS == 0)
        m_pDocument->autosave().onTimer(CAutosave::CClock::now());
}

void CDesignerView::changesPending()
{
    m_deliver.start();
}

// One plug-in call for each turn of the event loop, so that the meters and the mouse come in between.
void CDesignerView::deliverChanges()
{
    if (m_model.deliverChanges())
        m_deliver.start();
}

// ------------------------------------------------------------------------------------------------
// What the model and the document tell
// ------------------------------------------------------------------------------------------------

void CDesignerView::slotChanged(UINT uSlot)
{
    m_pPanel->showSlot(uSlot);
}

void CDesignerView::panelChanged()
{
    m_wheel.refresh();
    m_pPanel->showAll();
}

void CDesignerView::buttonChanged(UINT uButton)
{
    m_pPanel->showButton(uButton);
}

void CDesignerView::commonRefresh()
{
    if (m_pToolWindows)
        m_pToolWindows->refreshBlockDiagram();
}

void CDesignerView::plugInFailed(std::string_view sText)
{
    m_dialogs.showMessage(sText);
}

void CDesignerView::setTitle(std::string_view sTitle)
{
    emit titleChanged(qs(sTitle));
}

void CDesignerView::refresh()
{
    emit transportChanged();
}

void CDesignerView::showFormat(const CAudioFormat& format)
{
    m_pPanel->setSampleRate(format.m_nSampleRate);
}

void CDesignerView::showFilter(CDSPFilter* pFilter)
{
    m_model.setFilter(pFilter);
    if (m_meters)
        m_meters->setFilter(pFilter);
    if (m_pToolWindows)
        m_pToolWindows->setFilter(pFilter);
    m_pPanel->setLoaded(pFilter && m_model.isPlugInLoaded(), pFilter ? qs(pFilter->m_sName) : QString());
    if (m_pDocument)
        showPresets();
    emit plugInChanged();
}

void CDesignerView::releaseProject()
{
    m_model.setProject(nullptr);
    if (m_pPanelDialogs)
        m_pPanelDialogs->closeProject();
    if (m_pCompiler)
        m_pCompiler->releaseProject();
}

void CDesignerView::takeProject()
{
    m_model.setProject(m_pDocument ? m_pDocument->project() : nullptr);
}

void CDesignerView::streamStopped()
{
    emit transportChanged();
}

// ------------------------------------------------------------------------------------------------
// Project and presets on the panel
// ------------------------------------------------------------------------------------------------

void CDesignerView::showProject()
{
    CDSPProject* pProject = m_pCommands->project();
    if (m_model.project() == pProject)
        m_model.projectChanged();
    else
        m_model.setProject(pProject);
    m_pPanel->setProjectName(pProject ? qs(pProject->m_sProjectName) : QString());
    m_pPanelDialogs->refreshAlphaWheel();
    showPresets();
    emit projectChanged();
}

// Presets belong to a project and act on a loaded plug-in.
void CDesignerView::showPresets()
{
    QStringList names;
    if (m_pCommands && m_pCommands->project() && m_pDocument->plugInLoader().current()) {
        CPresetFolder presets(m_pCommands->project()->folder());
        presets.loadPresetNames();
        for (const CPresetFolder::CEntry& entry : presets.entries())
            names << qs(entry.m_sName);
    }
    if (!names.contains(m_sPreset))
        m_sPreset = names.value(0);
    m_pPanel->setPresets(names, static_cast<int>(names.indexOf(m_sPreset)));
}

void CDesignerView::afterEdit(bool bDone)
{
    if (bDone)
        showProject();
}

void CDesignerView::afterPlugIn()
{
    showPresets();
    emit plugInChanged();
    emit projectChanged();
    emit transportChanged();
}

void CDesignerView::setBusy(bool bBusy)
{
    m_bBusy = bBusy;
    m_pPanel->setBusy(bBusy);
    emit busyChanged(bBusy);
}

bool CDesignerView::isBuilding() const
{
    return m_pCompiler && m_pCompiler->isBuilding();
}

bool CDesignerView::isBusy() const
{
    return m_bBusy || isWaiting();
}

void CDesignerView::tell(const std::string& sText)
{
    m_dialogs.note(sText);
    emit told(qs(sText));
}

bool CDesignerView::requireProject()
{
    if (!m_pCommands->project())
        m_dialogs.showMessage(PROJECT_NEEDED);
    return m_pCommands->project() != nullptr;
}

void CDesignerView::onProjectCommand(EProjectButton eButton)
{
    switch (eButton) {
    case EProjectButton::StartCompiler:
        return startCompiler();
    case EProjectButton::Rebuild:
        return rebuild();
    case EProjectButton::Debug:
        return debug();
    case EProjectButton::LoadOrUnload:
        return m_model.isPlugInLoaded() ? unloadPlugIn() : loadPlugIn();
    }
}

} // namespace velmora
