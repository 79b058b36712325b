#include "widgets/shell/tool_bar.h"

#include "widgets/shell/command_actions.h"
#include "widgets/shell/command_table.h"

#include <QAction>
#include <QToolButton>

namespace velmora {

namespace {

constexpr int ICON_SIZE = 20; // logical pixels

constexpr EToolGroup GROUPS[] = {EToolGroup::Transport, EToolGroup::Source, EToolGroup::Build,
                                 EToolGroup::History, EToolGroup::Settings};

QString withoutMnemonic(QString sText)
{
    return sText.remove(QLatin1Char('&'));
}

} // namespace

CToolBar::CToolBar(const CCommandActions& actions, QWidget* pParent) : QToolBar(tr("Toolbar"), pParent)
{
    setObjectName(QStringLiteral("toolBar"));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setIconSize({ICON_SIZE, ICON_SIZE});
    for (const EToolGroup eGroup : GROUPS) {
        if (!this->actions().isEmpty())
            addSeparator();
        for (const CCommandActions::CEntry& entry : actions.entries()) {
            if (entry.m_row.m_eToolGroup != eGroup)
                continue;
            addAction(entry.m_pAction);
            auto* pButton = qobject_cast<QToolButton*>(widgetForAction(entry.m_pAction));
            pButton->setAccessibleName(withoutMnemonic(QString::fromUtf8(entry.m_row.m_pText)));
            pButton->setFocusPolicy(Qt::TabFocus);
            if (*entry.m_row.m_pShortText)
                pButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        }
    }
}

} // namespace velmora
