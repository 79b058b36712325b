#include "widgets/shell/list_menus.h"

#include "document/tonbox_doc.h"
#include "host/loaded_plugin.h"
#include "host/user_dsp_filter.h"
#include "widgets/common/qt_text.h"
#include "widgets/shell/command_table.h"
#include "widgets/shell/workbench_commands.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace velmora {

namespace {

QMenu* findMenu(const QMenuBar& menuBar, const char* pText)
{
    for (QAction* pAction : menuBar.actions())
        if (pAction->text() == QString::fromUtf8(pText))
            return pAction->menu();
    return nullptr;
}

std::vector<const CDSPFilter*> modulesOf(const CModuleList& modules)
{
    std::vector<const CDSPFilter*> filters;
    for (int nIndex = 0; nIndex < modules.count(); ++nIndex)
        filters.push_back(modules.at(nIndex));
    return filters;
}

std::vector<const CDSPFilter*> plugInsOf(const CPlugInLoader& loader)
{
    std::vector<const CDSPFilter*> filters;
    for (const auto& pPlugIn : loader.plugIns())
        filters.push_back(&pPlugIn->filter());
    return filters;
}

} // namespace

CListMenus::CListMenus(CTonboxDoc& document, IWorkbenchCommands& commands)
    : m_document(document), m_commands(commands)
{
}

void CListMenus::refill(const QMenuBar& menuBar)
{
    for (const CEntry& entry : m_entries) {
        entry.m_pMenu->removeAction(entry.m_pAction);
        entry.m_pAction->deleteLater(); // it may be the one that was chosen just now
    }
    m_entries.clear();
    if (QMenu* pMenu = findMenu(menuBar, MODULES_MENU))
        refillMenu(*pMenu, modulesOf(m_document.modules()), tr("No modules"),
                   [](IWorkbenchCommands& commands, int nIndex) { commands.selectModule(nIndex); });
    if (QMenu* pMenu = findMenu(menuBar, USER_PLUG_INS_MENU))
        refillMenu(*pMenu, plugInsOf(m_document.plugInLoader()), tr("No plug-ins"),
                   [](IWorkbenchCommands& commands, int nIndex) { commands.selectPlugIn(nIndex); });
    refresh();
}

void CListMenus::refillMenu(QMenu& menu, const std::vector<const CDSPFilter*>& filters, const QString& sNone,
                            selection select)
{
    if (!menu.isEmpty())
        add(menu, {}, nullptr)->setSeparator(true);
    if (filters.empty())
        add(menu, sNone, nullptr);
    for (std::size_t i = 0; i < filters.size(); ++i) {
        QAction* pAction = add(menu, qs(filters[i]->m_sName), filters[i]);
        pAction->setCheckable(true);
        connect(pAction, &QAction::triggered, this, [this, select, i] {
            select(m_commands, static_cast<int>(i));
            refresh();
        });
    }
}

QAction* CListMenus::add(QMenu& menu, const QString& sText, const CDSPFilter* pFilter)
{
    QString sShown = sText;
    auto* pAction = new QAction(sShown.replace(QLatin1Char('&'), QStringLiteral("&&")), this);
    menu.addAction(pAction);
    m_entries.push_back({&menu, pAction, pFilter});
    return pAction;
}

void CListMenus::refresh()
{
    for (const CEntry& entry : m_entries) {
        entry.m_pAction->setEnabled(entry.m_pFilter && !m_commands.isBusy());
        if (entry.m_pFilter)
            entry.m_pAction->setChecked(entry.m_pFilter == m_document.currentFilter());
    }
}

} // namespace velmora
