#include "widgets/shell/command_actions.h"

#include "widgets/shell/command_table.h"
#include "widgets/shell/main_frame.h"

#include <QAction>
#include <QKeySequence>
#include <cstring>

namespace velmora {

CCommandActions::CCommandActions(CMainFrame& frame) : m_frame(frame)
{
    for (const CCommandRow& row : commandTable())
        if (!row.m_isThere || row.m_isThere(frame))
            m_entries.push_back({row, makeAction(row)});
}

QAction* CCommandActions::makeAction(const CCommandRow& row)
{
    auto* pAction = new QAction(QString::fromUtf8(row.m_pText), this);
    const QString sTip = QString::fromUtf8(row.m_pTip);
    pAction->setStatusTip(sTip);
    pAction->setMenuRole(QAction::NoRole);
    pAction->setCheckable(row.m_isChecked != nullptr);
    if (row.m_icon)
        pAction->setIcon(themeIcon(*row.m_icon));
    pAction->setIconVisibleInMenu(false);
    if (*row.m_pShortText) // a blank parts it from the icon
        pAction->setIconText(QLatin1Char(' ') + QString::fromUtf8(row.m_pShortText));
    pAction->setToolTip(sTip);
    if (*row.m_pShortcut) {
        const QList<QKeySequence> keys = QKeySequence::listFromString(QString::fromUtf8(row.m_pShortcut));
        pAction->setShortcuts(keys);
        pAction->setToolTip(
            QStringLiteral("%1 (%2)").arg(sTip, keys.first().toString(QKeySequence::NativeText)));
    }
    // The transport is also at hand while a window beside this one is in front.
    if (std::strcmp(row.m_pMenu, AUDIO_MENU) == 0)
        pAction->setShortcutContext(Qt::ApplicationShortcut);
    m_frame.addAction(pAction);
    connect(pAction, &QAction::triggered, this, [this, &row](bool bChecked) {
        row.m_run(m_frame, bChecked);
        m_frame.refresh();
    });
    return pAction;
}

QAction* CCommandActions::find(const QString& sMenu, const QString& sText) const
{
    for (const CEntry& entry : m_entries)
        if (sMenu == QString::fromUtf8(entry.m_row.m_pMenu) &&
            sText == QString::fromUtf8(entry.m_row.m_pText))
            return entry.m_pAction;
    return nullptr;
}

void CCommandActions::refresh()
{
    for (const CEntry& entry : m_entries)
        refreshEntry(entry);
}

void CCommandActions::refreshEntry(const CEntry& entry)
{
    const CCommandRow& row = entry.m_row;
    entry.m_pAction->setEnabled(!row.m_isEnabled || row.m_isEnabled(m_frame));
    if (row.m_isChecked)
        entry.m_pAction->setChecked(row.m_isChecked(m_frame));
    if (row.m_addition) {
        QString sAddition = row.m_addition(m_frame);
        sAddition.replace(QLatin1Char('&'), QStringLiteral("&&"));
        entry.m_pAction->setText((QString::fromUtf8(row.m_pText) + QLatin1Char(' ') + sAddition).trimmed());
    }
}

} // namespace velmora
