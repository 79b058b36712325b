#include "widgets/shell/main_frame.h"

#include "base/user_dialogs.h"
#include "document/tonbox_doc.h"
#include "host/view_messages.h"
#include "project/dsp_project.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/window_placement.h"
#include "widgets/shell/audio_commands.h"
#include "widgets/shell/command_actions.h"
#include "widgets/shell/command_table.h"
#include "widgets/shell/preferences_dialog.h"
#include "widgets/shell/preferences_edit.h"
#include "widgets/shell/status_line.h"
#include "widgets/shell/tool_bar.h"
#include "widgets/shell/workbench_commands.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QUrl>
#include <cstring>

namespace velmora {

namespace {

constexpr QSize FIRST_SIZE{1280, 860};
constexpr int STATUS_PERIOD = 250; // ms

// View options of the settings.
constexpr int STATUS_WINDOW_LINE = 50;
constexpr int TOOL_BAR_LINE = 51;
constexpr int STATUS_BAR_LINE = 52;
constexpr int SIDECHAIN_LINE = 53;

constexpr const char* LOAD_FIRST = "You must load your plug-in before using the GUI Designer.";
constexpr const char* BUSY = "Wait until the running command has ended.";

bool isProject(const QString& sFile)
{
    return sFile.endsWith(QLatin1String(".prj"), Qt::CaseInsensitive);
}

bool isAudio(const QString& sFile)
{
    for (const char* pSuffix : {".wav", ".aif", ".aiff"})
        if (sFile.endsWith(QLatin1String(pSuffix), Qt::CaseInsensitive))
            return true;
    return false;
}

bool openInFileManager(const std::filesystem::path& folder)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(pathText(folder)));
}

} // namespace

CMainFrame::CMainFrame(const CParts& parts)
    : m_openFolder(openInFileManager), m_parts(parts), m_recent(parts.m_profile),
      m_listMenus(parts.m_document, parts.m_commands)
{
    setWindowTitle(qs(MAIN_TITLE));
    setAcceptDrops(true);
    resize(FIRST_SIZE);
    m_pActions = std::make_unique<CCommandActions>(*this);
    makeMenus();
    m_pToolBar = new CToolBar(*m_pActions, this);
    addToolBar(m_pToolBar);
    m_pStatusLine = new CStatusLine(m_parts.m_document, this);
    setStatusBar(m_pStatusLine);
    m_pToolBar->setVisible(m_parts.m_document.settings().boolValue(TOOL_BAR_LINE));
    m_pStatusLine->setVisible(m_parts.m_document.settings().boolValue(STATUS_BAR_LINE));
    connect(this, &CTabMainFrame::tabSelected, this, &CMainFrame::refresh);
    connect(&m_statusTimer, &QTimer::timeout, this, &CMainFrame::refresh);
    m_statusTimer.start(STATUS_PERIOD);
    plugInChanged();
}

CMainFrame::~CMainFrame() = default;

void CMainFrame::makeMenus()
{
    for (const char* pMenu : menuTexts())
        fillMenu(*menuBar()->addMenu(QString::fromUtf8(pMenu)), pMenu);
    refillRecentMenu();
}

void CMainFrame::fillMenu(QMenu& menu, const char* pMenu)
{
    for (const CCommandActions::CEntry& entry : m_pActions->entries()) {
        if (std::strcmp(entry.m_row.m_pMenu, pMenu) != 0)
            continue;
        if (entry.m_row.m_bBeginsGroup && !menu.isEmpty())
            menu.addSeparator();
        menu.addAction(entry.m_pAction);
        if (std::strcmp(entry.m_row.m_pText, OPEN_PROJECT_TEXT) == 0)
            m_pRecentMenu = menu.addMenu(tr("&Recent Projects"));
    }
}

void CMainFrame::refillRecentMenu()
{
    for (QAction* pAction : m_pRecentMenu->actions()) {
        m_pRecentMenu->removeAction(pAction);
        pAction->deleteLater(); // it may be the one that was chosen just now
    }
    const QStringList& files = m_recent.files();
    for (int nNumber = 1; nNumber <= files.size(); ++nNumber) {
        const QString sFile = files[nNumber - 1];
        QAction* pAction = m_pRecentMenu->addAction(m_recent.menuText(nNumber));
        pAction->setStatusTip(sFile);
        connect(pAction, &QAction::triggered, this, [this, sFile] { openRecent(sFile); });
    }
    m_pRecentMenu->addSeparator();
    connect(m_pRecentMenu->addAction(tr("&Clear This List")), &QAction::triggered, this, [this] {
        m_recent.clear();
        refillRecentMenu();
        refresh();
    });
}

void CMainFrame::openRecent(const QString& sFile)
{
    if (QFileInfo::exists(sFile)) {
        m_parts.m_commands.openProjectFile(pathOf(sFile));
        return;
    }
    m_parts.m_dialogs.showMessage("The project " + utf8(sFile) +
                                  " is not there any more. It is taken off the list of recent projects.");
    m_recent.remove(pathOf(sFile));
    refillRecentMenu();
    refresh();
}

void CMainFrame::showAsBefore()
{
    restoreWindowPlacement(m_parts.m_profile, *this);
    show();
    const CSettings& settings = m_parts.m_document.settings();
    if (settings.boolValue(STATUS_WINDOW_LINE))
        m_parts.m_commands.showToolWindow(EToolWindow::Status, true);
    if (settings.boolValue(SIDECHAIN_LINE))
        m_parts.m_commands.showToolWindow(EToolWindow::Sidechain, true);
    refresh();
}

void CMainFrame::refresh()
{
    m_pActions->refresh();
    m_listMenus.refresh();
    m_pRecentMenu->setEnabled(!m_recent.files().isEmpty() && !m_parts.m_commands.isBusy());
    m_pStatusLine->refresh();
}

void CMainFrame::projectChanged()
{
    const CDSPProject* pProject = m_parts.m_document.project();
    if (pProject && !pProject->m_sProjectFile.empty()) {
        m_recent.add(pProject->m_sProjectFile);
        refillRecentMenu();
    }
    refresh();
}

void CMainFrame::plugInChanged()
{
    m_listMenus.refill(*menuBar());
    if (currentTab() == EMainTab::GUIDesigner && !m_parts.m_document.plugInLoader().isPlugInLoaded())
        selectTab(EMainTab::Prototype);
    refresh();
}

void CMainFrame::transportChanged()
{
    refresh();
}

void CMainFrame::busyChanged(bool)
{
    refresh();
}

void CMainFrame::setTitle(const QString& sTitle)
{
    setWindowTitle(sTitle);
}

void CMainFrame::showNote(const QString& sText)
{
    if (!sText.isEmpty())
        m_pStatusLine->showMessage(sText, CStatusLine::NOTE_TIME);
}

void CMainFrame::showPreferences()
{
    CPreferencesDialog dialog(preferencesOf(m_parts.m_document, m_parts.m_profile), m_parts.m_dialogs, this);
    dialog.setStore(
        [this](const CPreferencesEdit& edit) { return m_parts.m_commands.storePreferences(edit); });
    dialog.exec();
}

void CMainFrame::rescanDevices()
{
    if (!rescanAudioDevices(m_parts.m_document, m_parts.m_dialogs))
        return;
    const auto uCount = m_parts.m_document.audioDevices().devices().size();
    showNote(uCount == 1 ? tr("One audio device found.") : tr("%1 audio devices found.").arg(uCount));
}

void CMainFrame::openFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        m_parts.m_dialogs.showMessage("There is no folder " + folder.string() +
                                      ". Make it, or choose another one in View->Preferences.");
    else if (!m_openFolder(folder))
        m_parts.m_dialogs.showMessage("The desktop has no program that shows folders. The folder is:\n\n" +
                                      folder.string());
}

void CMainFrame::setToolBarShown(bool bShow)
{
    m_pToolBar->setVisible(bShow);
    keepViewOption(TOOL_BAR_LINE, bShow);
}

void CMainFrame::setStatusBarShown(bool bShow)
{
    m_pStatusLine->setVisible(bShow);
    keepViewOption(STATUS_BAR_LINE, bShow);
}

bool CMainFrame::isToolBarShown() const
{
    return !m_pToolBar->isHidden();
}

bool CMainFrame::isStatusBarShown() const
{
    return !m_pStatusLine->isHidden();
}

void CMainFrame::keepViewOption(int nLine, bool bOn)
{
    CTonboxDoc& document = m_parts.m_document;
    if (document.settings().boolValue(nLine) == bOn)
        return;
    std::string sError;
    if (!document.settings().set(nLine, bOn ? "true" : "false", sError) ||
        !document.settings().save(document.settingsFile(), sError))
        m_parts.m_dialogs.note(sError);
}

bool CMainFrame::mayShowTab(EMainTab eTab)
{
    if (eTab != EMainTab::GUIDesigner || m_parts.m_document.plugInLoader().isPlugInLoaded())
        return true;
    m_parts.m_dialogs.showMessage(LOAD_FIRST);
    return false;
}

void CMainFrame::closeEvent(QCloseEvent* pEvent)
{
    if (!m_parts.m_commands.prepareToClose()) {
        pEvent->ignore();
        return;
    }
    m_statusTimer.stop();
    keepViewOption(STATUS_WINDOW_LINE, m_parts.m_commands.isToolWindowShown(EToolWindow::Status));
    keepViewOption(SIDECHAIN_LINE, m_parts.m_commands.isToolWindowShown(EToolWindow::Sidechain));
    storeWindowPlacement(m_parts.m_profile, *this);
    m_parts.m_document.OnCloseDocument();
    CTabMainFrame::closeEvent(pEvent);
}

// The local files among them that can be opened: at most one project, then at most one audio file.
QStringList CMainFrame::filesOf(const QMimeData& data) const
{
    QString sProject;
    QString sAudio;
    for (const QUrl& url : data.urls()) {
        const QString sFile = url.toLocalFile();
        if (sProject.isEmpty() && isProject(sFile))
            sProject = sFile;
        else if (sAudio.isEmpty() && isAudio(sFile))
            sAudio = sFile;
    }
    QStringList files{sProject, sAudio};
    files.removeAll(QString());
    return files;
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* pEvent)
{
    if (!QApplication::activeModalWidget() && !filesOf(*pEvent->mimeData()).isEmpty())
        pEvent->acceptProposedAction();
}

void CMainFrame::dropEvent(QDropEvent* pEvent)
{
    const QStringList files = filesOf(*pEvent->mimeData());
    if (files.isEmpty() || QApplication::activeModalWidget())
        return;
    pEvent->acceptProposedAction();
    // Questions come when the program that the files are from has been let go.
    QTimer::singleShot(0, this, [this, files] { open(files); });
}

void CMainFrame::open(const QStringList& files)
{
    for (const QString& sFile : files) {
        if (!isProject(sFile))
            m_parts.m_commands.loadAudioFile(pathOf(sFile));
        else if (m_parts.m_commands.isBusy())
            showNote(QString::fromUtf8(BUSY));
        else
            m_parts.m_commands.openProjectFile(pathOf(sFile));
    }
    refresh();
}

} // namespace velmora
