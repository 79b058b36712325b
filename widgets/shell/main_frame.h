#pragma once

#include "widgets/shell/list_menus.h"
#include "widgets/shell/recent_projects.h"
#include "widgets/shell/tab_main_frame.h"

#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>

class QMenu;
class QMimeData;
class QSettings;

namespace velmora {

class CCommandActions;
class CStatusLine;
class CToolBar;
class CTonboxDoc;
class IUserDialogs;
class IWorkbenchCommands;

// The main window: tabs, menus, tool bar, status bar, recent projects, and what is dropped on it. Its
// commands stand in command_table.h. [main]
class CMainFrame : public CTabMainFrame
{
    Q_OBJECT

  public:
    // All but the folder must outlive the window.
    struct CParts
    {
        CTonboxDoc& m_document;
        IWorkbenchCommands& m_commands;
        IUserDialogs& m_dialogs;
        QSettings& m_profile;                    // window placement, recent projects, colour scheme
        std::filesystem::path m_baseClassFolder; // the program's own; empty if it was not found
    };

    explicit CMainFrame(const CParts& parts);
    ~CMainFrame() override;

    // Shows the window where it stood when it was closed last, with the bars and the windows beside it that
    // were there then.
    void showAsBefore();

    [[nodiscard]] const CParts& parts() const { return m_parts; }
    [[nodiscard]] CCommandActions& actions() { return *m_pActions; }

    // What shows a folder to the user; the desktop's file manager unless it is replaced. False if it cannot.
    std::function<bool(const std::filesystem::path&)> m_openFolder;

    // What commands of the table do.
    void showPreferences();
    void rescanDevices();
    void openFolder(const std::filesystem::path& folder);
    void setToolBarShown(bool bShow);
    void setStatusBarShown(bool bShow);
    [[nodiscard]] bool isToolBarShown() const;
    [[nodiscard]] bool isStatusBarShown() const;

  public slots:
    // For the view's signals of these names. refresh() brings enabling, check marks, texts and the status bar
    // up to date; the others do so, too.
    void refresh();
    void projectChanged(); // the open project's file becomes the first of the recent ones
    void plugInChanged();  // refills the list menus
    void transportChanged();
    void busyChanged(bool bBusy);

    // The title that the document gives: the name of the filter, or "Velmora(tm)".
    void setTitle(const QString& sTitle);

    // A passing line in the status bar; an empty one does nothing.
    void showNote(const QString& sText);

  protected:
    [[nodiscard]] bool mayShowTab(EMainTab eTab) override;
    void closeEvent(QCloseEvent* pEvent) override;
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

  private:
    // A view option of the settings, lines 50 to 53: sets it and saves the file if it has changed.
    void keepViewOption(int nLine, bool bOn);
    void makeMenus();
    void fillMenu(QMenu& menu, const char* pMenu);
    void refillRecentMenu();
    void openRecent(const QString& sFile);
    void open(const QStringList& files);
    [[nodiscard]] QStringList filesOf(const QMimeData& data) const;

    CParts m_parts;
    CRecentProjects m_recent;
    CListMenus m_listMenus;
    std::unique_ptr<CCommandActions> m_pActions;
    CToolBar* m_pToolBar = nullptr;
    CStatusLine* m_pStatusLine = nullptr;
    QMenu* m_pRecentMenu = nullptr;
    QTimer m_statusTimer;
};

} // namespace velmora
