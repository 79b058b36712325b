#include "widgets/shell/designer_view.h"

#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "host/user_dsp_filter.h"
#include "panel/panel_laws.h"
#include "project/dsp_project.h"
#include "project/preset_folder.h"
#include "widgets/common/message_dialogs.h"
#include "widgets/common/progress_box.h"
#include "widgets/common/qt_text.h"
#include "widgets/panel/prototype_panel.h"
#include "widgets/shell/preferences_edit.h"
#include "widgets/shell/status_window.h"

#include <QSettings>

namespace velmora {

namespace {

constexpr int TICK_MILLISECONDS = 33; // of the meters
constexpr int TRANSPORT_TICKS = 2;    // the transport's timer is due every so many ticks
constexpr int AUTOSAVE_TICKS = 60;
constexpr const char* NO_PROJECT = "Open or Create a new Project first!";

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
    m_pProjectDialogs = std::make_unique<CProjectDialogs>(
        CProjectDialogs::CParts{document, *m_pCommands, m_dialogs, profile, m_pPanel});
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
    connect(pCompiler, &CCompilerControl::buildingChanged, this, &CDesignerView::setBusy);
    connect(pCompiler, &CCompilerControl::debuggingChanged, m_pPanel.data(), &CPrototypePanel::setDebugging);
    connect(pCompiler, &CCompilerControl::focusWanted, this,
            [this] { m_pPanel->window()->activateWindow(); });
    connect(pCompiler, &CCompilerControl::failed, this,
            [this] { showToolWindow(EToolWindow::Status, true); });
    connect(pCompiler, &CCompilerControl::built, this, [this] {
        afterPlugIn();
        if (m_bCloseWanted)
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

bool CDesignerView::isBusy() const
{
    return m_bBusy || isWaiting();
}

bool CDesignerView::requireProject()
{
    if (!m_pCommands->project())
        m_dialogs.showMessage(NO_PROJECT);
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

// ------------------------------------------------------------------------------------------------
// Commands
// ------------------------------------------------------------------------------------------------

void CDesignerView::newProject()
{
    if (m_pProjectDialogs->newProject()) {
        m_pCompiler->projectChanged();
        showProject();
    }
}

void CDesignerView::openProject()
{
    if (const auto file = m_pProjectDialogs->chooseProject())
        openProjectFile(*file);
}

bool CDesignerView::openProjectFile(const std::filesystem::path& file)
{
    if (isBusy() || !m_pProjectDialogs->offerRecovery(file))
        return false;
    const bool bOpened = m_pCommands->openProject(file);
    if (bOpened)
        m_pCompiler->projectChanged();
    showProject();
    return bOpened;
}

void CDesignerView::editProject()
{
    afterEdit(m_pProjectDialogs->editProject());
}

void CDesignerView::saveProjectAs()
{
    afterEdit(m_pProjectDialogs->saveAs());
}

void CDesignerView::clearProject()
{
    afterEdit(m_pCommands->clearProject());
}

void CDesignerView::importUIControls()
{
    if (!requireProject())
        return;
    if (const auto file = m_pProjectDialogs->chooseProject())
        afterEdit(m_pCommands->importControls(*file));
}

void CDesignerView::undo()
{
    afterEdit(m_pCommands->undo());
}

void CDesignerView::redo()
{
    afterEdit(m_pCommands->redo());
}

QString CDesignerView::undoText() const
{
    return m_pCommands && !m_model.isPlugInLoaded() && m_pCommands->edits().canUndo()
               ? qs(m_pCommands->edits().nextUndo()->m_sLabel)
               : QString();
}

QString CDesignerView::redoText() const
{
    return m_pCommands && !m_model.isPlugInLoaded() && m_pCommands->edits().canRedo()
               ? qs(m_pCommands->edits().nextRedo()->m_sLabel)
               : QString();
}

void CDesignerView::startCompiler()
{
    m_pCompiler->startCompiler();
}

void CDesignerView::rebuild()
{
    if (m_pCompiler->isBuilding() || !isBusy())
        m_pCompiler->rebuild();
}

void CDesignerView::debug()
{
    m_pCompiler->toggleDebug();
}

void CDesignerView::loadPlugIn()
{
    if (!m_bBusy && m_pCommands->loadBuiltPlugIn())
        afterPlugIn();
}

void CDesignerView::unloadPlugIn()
{
    if (m_bBusy)
        return;
    if (m_model.isModule())
        m_pDocument->plugInLoader().deselectModule();
    else if (m_pDocument->plugInLoader().current())
        m_pCommands->unloadPlugIn();
    else
        m_pDocument->plugInLoader().unloadPlugin(false);
    afterPlugIn();
}

void CDesignerView::resetPlugIn()
{
    if (CDSPFilter* pFilter = m_pDocument->currentFilter()) {
        CRunGate& gate = m_pDocument->audioEngine().gate();
        const bool bClosed = gate.close();
        if (bClosed)
            pFilter->prepareForPlay();
        gate.open();
        if (!bClosed)
            m_dialogs.showMessage("The plug-in does not come back from a call, so it cannot be reset.");
    }
}

void CDesignerView::loadRemotePlugIn()
{
    if (!m_bBusy && m_pDocument->plugInLoader().loadRemotePlugin())
        afterPlugIn();
}

void CDesignerView::reloadPlugIns()
{
    if (m_bBusy)
        return;
    m_pCommands->unloadPlugIn();
    m_pDocument->plugInLoader().scanPlugIns(m_pDocument->plugInFolder());
    afterPlugIn();
}

void CDesignerView::selectModule(int nIndex)
{
    m_pDocument->plugInLoader().setSelectedModule(nIndex);
    m_pDocument->plugInLoader().selectModule();
    afterPlugIn();
}

void CDesignerView::selectPlugIn(int nIndex)
{
    m_pDocument->plugInLoader().setSelectedPlugIn(nIndex);
    m_pDocument->plugInLoader().selectPlugIn();
    afterPlugIn();
    if (m_pDocument->plugInLoader().isRebuildRequested())
        rebuild();
}

void CDesignerView::synchronizeCode()
{
    setBusy(true);
    m_pCommands->synchronizeCode(
        [this](std::string_view sLabel, std::string_view sText) { m_pCompiler->showTexts(sLabel, sText); });
    setBusy(false);
    afterPlugIn();
}

void CDesignerView::userVariables()
{
    if (requireProject() && m_pProjectDialogs->userVariables())
        showProject();
}

void CDesignerView::savePreset()
{
    if (m_pProjectDialogs->savePreset(m_sPreset))
        showPresets();
}

void CDesignerView::deletePreset()
{
    if (m_pProjectDialogs->deletePreset(m_sPreset))
        showPresets();
}

void CDesignerView::loadAudioFile()
{
    if (const auto file = m_pProjectDialogs->chooseAudioFile())
        loadAudioFile(*file);
}

void CDesignerView::loadAudioFile(const std::filesystem::path& file)
{
    CTransport& transport = m_pDocument->transport();
    transport.onStop();
    transport.setWaveFile(file);
    if (!transport.loadWaveFormat() && !transport.reason().empty())
        m_dialogs.note(transport.reason());
    emit transportChanged();
}

void CDesignerView::processIntoWaveFile()
{
    COfflineProcessing& processing = m_pDocument->offlineProcessing();
    m_pProgress->setText(tr("Processing into WAV file"));
    setBusy(true);
    if (!processing.processIntoWaveFile(m_pDocument->transport().waveFile(), m_pProgress.get()) &&
        !processing.reason().empty())
        m_dialogs.note(processing.reason());
    setBusy(false);
    emit transportChanged();
}

void CDesignerView::setupAudioDevices()
{
    m_pToolWindows->setUpSoundCard();
    m_pPanel->setSampleRate(m_pDocument->settings().sampleRate());
    emit transportChanged();
}

void CDesignerView::showToolWindow(EToolWindow eWindow, bool bShow)
{
    m_pToolWindows->show(eWindow, bShow);
}

bool CDesignerView::isToolWindowShown(EToolWindow eWindow) const
{
    return m_pToolWindows && m_pToolWindows->isShown(eWindow);
}

void CDesignerView::about()
{
    m_pToolWindows->about();
}

bool CDesignerView::storePreferences(const CPreferencesEdit& edit)
{
    if (edit.m_nCompilerId != m_pCommands->compilers().chosenId() &&
        m_pCompiler->changeCompiler(edit.m_nCompilerId))
        m_pDocument->settings().setCompilerId(static_cast<unsigned>(edit.m_nCompilerId));
    return m_pProjectDialogs->storePreferences(edit);
}

bool CDesignerView::prepareToClose()
{
    if (m_pCompiler->isBuilding()) {
        m_bCloseWanted = true; // when the build has ended
        m_pCompiler->cancel();
        return false;
    }
    if (isBusy())
        return false;
    if (m_pDocument->autosave().isChanged() && !m_pCommands->save())
        return m_dialogs.askYesNo("The project could not be saved. Do you want to close Velmora and lose the "
                                  "changes since it was saved last?");
    m_pCommands->closeProject();
    m_model.setProject(nullptr);
    return true;
}

} // namespace velmora
