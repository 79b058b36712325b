#pragma once

#include "base/patience.h"
#include "host/document_view.h"
#include "panel/alpha_wheel.h"
#include "panel/panel_meters.h"
#include "panel/panel_model.h"
#include "panel/panel_view.h"
#include "widgets/panel/prototype_panel.h"
#include "widgets/shell/compiler_control.h"
#include "widgets/shell/message_exchange.h"
#include "widgets/shell/panel_dialogs.h"
#include "widgets/shell/project_dialogs.h"
#include "widgets/shell/tool_windows.h"
#include "widgets/shell/workbench_commands.h"

#include <QPointer>
#include <QTimer>
#include <filesystem>
#include <memory>
#include <optional>

class QSettings;

namespace velmora {

class CMessageDialogs;
class CProgressBox;
class CProjectCommands;
class CTonboxDoc;

// The hub of the window side: owns the prototype panel with its model, receives the private messages of
// plug-ins and of the engine, runs the timers, and carries the commands of the main window to whoever does
// them. [main]
class CDesignerView : public QObject, public IWorkbenchCommands, public IDocumentView, public IPanelView
{
    Q_OBJECT

  public:
    explicit CDesignerView(CMessageDialogs& dialogs);
    ~CDesignerView() override;

    // Where plug-ins and the engine leave their messages: for the document, which is made after the view.
    [[nodiscard]] IMessageTarget& messages() { return m_messages; }

    // The document is ready; from here on commands work and the timers run. Both must outlive the view's last
    // command, and detach() ends that.
    void attach(CTonboxDoc& document, QSettings& profile, const std::filesystem::path& baseClassFolder);
    void detach();

    // The panel, for the main window's first tab.
    [[nodiscard]] CPrototypePanel* panel() const { return m_pPanel; }

    [[nodiscard]] CProjectCommands& commands() { return *m_pCommands; }
    [[nodiscard]] CTonboxDoc& document() { return *m_pDocument; }
    [[nodiscard]] CPanelModel& model() { return m_model; }

    // One private message; those of features that are not there answer 0. [main]
    std::ptrdiff_t onMessage(const CWindowMessage& message);

    // Whether the table has an entry for a message.
    [[nodiscard]] static bool isMessageKnown(unsigned uMessage);

    // An autosave that a crash, or a kill, left beside the project is offered before it is opened. False if
    // it was not opened.
    bool openProjectFile(const std::filesystem::path& file) override;

    void newProject() override;
    void openProject() override;
    void editProject() override;
    void saveProjectAs() override;
    void clearProject() override;
    void importUIControls() override;
    void undo() override;
    void redo() override;
    [[nodiscard]] QString undoText() const override;
    [[nodiscard]] QString redoText() const override;

    void startCompiler() override;
    void rebuild() override;
    void debug() override;
    void loadPlugIn() override;
    void unloadPlugIn() override;
    void resetPlugIn() override;
    void loadRemotePlugIn() override;
    void reloadPlugIns() override;
    void selectModule(int nIndex) override;
    void selectPlugIn(int nIndex) override;
    void synchronizeCode() override;
    void userVariables() override;
    void savePreset() override;
    void deletePreset() override;

    void loadAudioFile() override;
    void loadAudioFile(const std::filesystem::path& file) override;
    void processIntoWaveFile() override;
    void setupAudioDevices() override;

    void showToolWindow(EToolWindow eWindow, bool bShow) override;
    [[nodiscard]] bool isToolWindowShown(EToolWindow eWindow) const override;
    void about() override;
    bool storePreferences(const CPreferencesEdit& edit) override;
    [[nodiscard]] bool isBusy() const override;
    [[nodiscard]] bool isBuilding() const override;
    bool prepareToClose() override;

  signals:
    void titleChanged(const QString& sTitle);
    void projectChanged();
    void told(const QString& sText); // a line that must be seen also while the status window is hidden
    void plugInChanged();
    void transportChanged();
    void busyChanged(bool bBusy);

  private:
    using messageHandler = std::ptrdiff_t (CDesignerView::*)(std::size_t uParam, std::ptrdiff_t nParam);
    struct CMessageRow;
    static const CMessageRow* findMessage(unsigned uMessage);

    // IDocumentView
    void setTitle(std::string_view sTitle) override;
    void refresh() override;
    void showFormat(const CAudioFormat& format) override;
    void showFilter(CDSPFilter* pFilter) override;
    void releaseProject() override;
    void takeProject() override;
    void streamStopped() override;

    // IPanelView
    void slotChanged(UINT uSlot) override;
    void panelChanged() override;
    void commonRefresh() override;
    void buttonChanged(UINT uButton) override;
    void changesPending() override;
    void plugInFailed(std::string_view sText) override;

    // Messages
    std::ptrdiff_t onRoutingButton(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onCommitEdit(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onShowOscillator(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onHideOscillator(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onToggleSidechain(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onSliderProperties(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onGroupClosed(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onAlphaWheelClosed(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onEditItem(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onRemoveItem(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onItemOrder(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onMenuGroup(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onSelectEdit(std::size_t uParam, std::ptrdiff_t nParam);
    template <EStripEvent eEvent>
    std::ptrdiff_t onStrip(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onStartOscillator(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onStopOscillator(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onSetFrequency(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onShowSidechain(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onStatusText(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onControlChanged(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onSlotText(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onSlotNormalized(std::size_t uParam, std::ptrdiff_t nParam);
    std::ptrdiff_t onButton(std::size_t uParam, std::ptrdiff_t nParam);

    void connectPanel();
    void connectCompiler();
    void onTick();
    void deliverChanges();
    void onProjectCommand(EProjectButton eButton);
    void showProject();
    void showPresets();
    void afterPlugIn();
    void afterEdit(bool bDone);
    void setBusy(bool bBusy);
    [[nodiscard]] bool requireProject();
    void leaveCompiler();
    void rememberProject();
    void tell(const std::string& sText);

    CMessageDialogs& m_dialogs;
    CMessageExchange m_messages;
    CPanelModel m_model;
    CAlphaWheel m_wheel;
    QPointer<CPrototypePanel> m_pPanel;
    CTonboxDoc* m_pDocument = nullptr;
    QSettings* m_pProfile = nullptr;
    std::unique_ptr<CProjectCommands> m_pCommands;
    std::optional<CPanelMeters> m_meters;
    std::unique_ptr<CProgressBox> m_pProgress;
    std::optional<CPatienceScope> m_patience;
    std::unique_ptr<CCompilerControl> m_pCompiler;
    std::unique_ptr<CPanelDialogs> m_pPanelDialogs;
    std::unique_ptr<CProjectDialogs> m_pProjectDialogs;
    std::unique_ptr<CToolWindows> m_pToolWindows;
    QString m_sPreset; // the one that the panel shows as chosen
    QTimer m_tick;
    QTimer m_deliver;
    int m_nTick = 0;
    bool m_bBusy = false;
    bool m_bCloseWanted = false;
};

} // namespace velmora
