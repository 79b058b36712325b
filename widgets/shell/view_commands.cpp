#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "host/dsp_filter.h"
#include "project/dsp_project.h"
#include "widgets/common/message_dialogs.h"
#include "widgets/common/progress_box.h"
#include "widgets/common/qt_text.h"
#include "widgets/panel/prototype_panel.h"
#include "widgets/shell/designer_view.h"
#include "widgets/shell/preferences_edit.h"

namespace velmora {

// What the commands of the main window do.

namespace {

constexpr const char* BUSY = "Wait until the running command has ended.";

} // namespace

void CDesignerView::newProject()
{
    if (!m_pProjectDialogs->newProject([this] { leaveCompiler(); }))
        return;
    m_pCompiler->projectChanged();
    rememberProject();
    showProject();
}

// Debugging ends with the project, and the next one gets the compiler that was chosen meanwhile.
void CDesignerView::leaveCompiler()
{
    m_pCompiler->stopDebugging();
    m_pCompiler->takeChosenCompiler();
}

// For the next start.
void CDesignerView::rememberProject()
{
    const int nLine = settingLine("m_sRecentProject");
    CSettings& settings = m_pDocument->settings();
    const std::string& sFile = m_pCommands->project()->m_sProjectFile;
    std::string sError;
    if (settings.text(nLine) != sFile &&
        !(settings.set(nLine, sFile, sError) && settings.save(m_pDocument->settingsFile(), sError)))
        tell(sError);
}

void CDesignerView::openProject()
{
    if (const auto file = m_pProjectDialogs->chooseProject())
        openProjectFile(*file);
}

bool CDesignerView::openProjectFile(const std::filesystem::path& file)
{
    if (isBusy()) {
        tell(BUSY);
        return false;
    }
    const bool bOpened = m_pCommands->openProject(file, [&] {
        if (!m_pProjectDialogs->offerRecovery(file))
            return false;
        leaveCompiler();
        return true;
    });
    if (bOpened) {
        m_pCompiler->projectChanged();
        rememberProject();
    }
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
    afterEdit(m_pCommands->importControls([this] { return m_pProjectDialogs->chooseProject(); }));
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
        [this](std::string_view sLabel, std::string_view sText) { m_pCompiler->holdTexts(sLabel, sText); },
        [this] { return m_pCompiler->rebuild(); });
    m_pCompiler->endTexts();
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
    const QString sSaved = m_pProjectDialogs->savePreset(m_sPreset);
    if (sSaved.isEmpty())
        return;
    m_sPreset = sSaved;
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
    const std::filesystem::path before = transport.waveFile();
    transport.onStop();
    transport.setWaveFile(file);
    if (!transport.loadWaveFormat()) {
        const std::string sReason = transport.reason();
        m_dialogs.showMessage(sReason.empty() ? "The file " + file.string() + " can not be read as audio."
                                              : sReason);
        transport.setWaveFile(before);
    }
    emit transportChanged();
}

void CDesignerView::processIntoWaveFile()
{
    COfflineProcessing& processing = m_pDocument->offlineProcessing();
    m_pProgress->setText(tr("Processing into WAV file"));
    setBusy(true);
    if (!processing.processIntoWaveFile(m_pDocument->transport().waveFile(), m_pProgress.get()) &&
        !processing.reason().empty())
        tell(processing.reason());
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
    if (!m_pProjectDialogs->storePreferences(edit))
        return false;
    m_pCompiler->applySettings();
    return true;
}

bool CDesignerView::prepareToClose()
{
    if (m_pCompiler->isBuilding()) {
        m_bCloseWanted = true; // when the build has ended
        m_pCompiler->cancel();
        return false;
    }
    if (isBusy()) {
        tell(BUSY);
        return false;
    }
    const bool bSaved = !m_pDocument->autosave().isChanged() || m_pCommands->save();
    if (!bSaved &&
        !m_dialogs.askYesNo("The project could not be saved. Do you want to close Velmora and lose "
                            "the changes since it was saved last?"))
        return false;
    if (m_pCommands->project())
        m_pCommands->toolchain().leave();
    if (bSaved)
        m_pCommands->closeProject();
    return true;
}

} // namespace velmora
