#pragma once

#include <QObject>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;

namespace velmora {

class CDSPFilter;
class CTonboxDoc;
class IWorkbenchCommands;

// The menus that list the built-in modules and the user's plug-ins. [main]
class CListMenus : public QObject
{
    Q_OBJECT

  public:
    CListMenus(CTonboxDoc& document, IWorkbenchCommands& commands);

    // Finds the menus by their texts, takes the entries that were listed away and lists anew: one for each
    // filter, in the order of the list.
    void refill(const QMenuBar& menuBar);

    // Marks the current filter; while a long command runs nothing can be chosen.
    void refresh();

  private:
    using selection = void (*)(IWorkbenchCommands& commands, int nIndex);

    // One that was listed, or what separates or stands for them.
    struct CEntry
    {
        QMenu* m_pMenu;
        QAction* m_pAction;
        const CDSPFilter* m_pFilter;
    };

    void refillMenu(QMenu& menu, const std::vector<const CDSPFilter*>& filters, const QString& sNone,
                    selection select);
    QAction* add(QMenu& menu, const QString& sText, const CDSPFilter* pFilter);

    CTonboxDoc& m_document;
    IWorkbenchCommands& m_commands;
    std::vector<CEntry> m_entries;
};

} // namespace velmora
