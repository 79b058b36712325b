#pragma once

#include <QObject>
#include <QString>
#include <vector>

class QAction;

namespace velmora {

class CMainFrame;
struct CCommandRow;

// The actions of the command table, which menus, tool bar and keys share. [main]
class CCommandActions : public QObject
{
    Q_OBJECT

  public:
    struct CEntry
    {
        const CCommandRow& m_row;
        QAction* m_pAction;
    };

    // Makes one for each row that is there, and gives their keys to the window.
    explicit CCommandActions(CMainFrame& frame);

    [[nodiscard]] const std::vector<CEntry>& entries() const { return m_entries; }

    // By the texts of menu and entry; null if there is none.
    [[nodiscard]] QAction* find(const QString& sMenu, const QString& sText) const;

    // Brings enabling, check marks and texts up to date.
    void refresh();

  private:
    QAction* makeAction(const CCommandRow& row);
    void refreshEntry(const CEntry& entry);

    CMainFrame& m_frame;
    std::vector<CEntry> m_entries;
};

} // namespace velmora
