#include "widgets/panel/alpha_wheel_setup_dialog.h"

#include "base/user_dialogs.h"
#include "project/alpha_wheel_items.h"
#include "project/control_list.h"
#include "project/control_slots.h"
#include "project/dsp_project.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace velmora {

CAlphaWheelSetupDialog::CAlphaWheelSetupDialog(CDSPProject& project, IUserDialogs& dialogs, QWidget* pParent)
    : QDialog(pParent), m_project(project), m_dialogs(dialogs), m_pList(new QListWidget)
{
    setWindowTitle(tr("Alpha Wheel Setup"));
    m_pList->setAccessibleName(tr("Items of the alpha wheel"));
    m_pList->setSpacing(1);
    m_pList->setTextElideMode(Qt::ElideRight);
    m_pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* pLabel = new QLabel(tr("&Items of the alpha wheel:"));
    pLabel->setBuddy(m_pList);

    auto* pLeft = new QVBoxLayout;
    pLeft->setSpacing(CTheme::SPACING / 2);
    pLeft->addWidget(pLabel);
    pLeft->addWidget(m_pList, 1);
    auto* pRoot = new QHBoxLayout(this);
    pRoot->setContentsMargins(CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN, CTheme::MARGIN);
    pRoot->setSpacing(CTheme::MARGIN);
    pRoot->addLayout(pLeft, 1);
    pRoot->addLayout(buildButtons());
    setMinimumSize(400, 300);

    connect(m_pList, &QListWidget::itemActivated, this, &CAlphaWheelSetupDialog::editItem);
    connect(m_pList, &QListWidget::currentRowChanged, this, &CAlphaWheelSetupDialog::updateButtons);
    connect(new QShortcut(QKeySequence::Delete, m_pList, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &CAlphaWheelSetupDialog::removeItem);
    refresh();
}

QLayout* CAlphaWheelSetupDialog::buildButtons()
{
    auto* pColumn = new QVBoxLayout;
    pColumn->setSpacing(CTheme::SPACING);
    const auto addButton = [&](const QString& sText, void (CAlphaWheelSetupDialog::*pAction)()) {
        auto* pButton = new QPushButton(sText);
        pButton->setAutoDefault(false);
        connect(pButton, &QPushButton::clicked, this, pAction);
        pColumn->addWidget(pButton);
        return pButton;
    };
    addButton(tr("&New"), &CAlphaWheelSetupDialog::newItem);
    m_pEditButton = addButton(tr("&Edit"), &CAlphaWheelSetupDialog::editItem);
    m_pRemoveButton = addButton(tr("&Remove"), &CAlphaWheelSetupDialog::removeItem);

    const auto makeArrow = [&](Qt::ArrowType eArrow, bool bUp, const QString& sName, int nKey) {
        auto* pButton = new QToolButton;
        pButton->setArrowType(eArrow);
        pButton->setAutoRepeat(true);
        pButton->setFocusPolicy(Qt::StrongFocus);
        pButton->setAccessibleName(sName);
        pButton->setToolTip(sName + " (" + QKeySequence(nKey).toString(QKeySequence::NativeText) + ")");
        connect(pButton, &QToolButton::clicked, this, [this, bUp] { moveItem(bUp); });
        connect(new QShortcut(QKeySequence(nKey), this), &QShortcut::activated, this,
                [this, bUp] { moveItem(bUp); });
        return pButton;
    };
    m_pUpButton = makeArrow(Qt::UpArrow, true, tr("Move up in the list"), int(Qt::ALT) | int(Qt::Key_Up));
    m_pDownButton =
        makeArrow(Qt::DownArrow, false, tr("Move down in the list"), int(Qt::ALT) | int(Qt::Key_Down));
    auto* pArrows = new QHBoxLayout;
    pArrows->addWidget(m_pUpButton);
    pArrows->addWidget(m_pDownButton);
    pArrows->addStretch();
    pColumn->addSpacing(CTheme::MARGIN);
    pColumn->addWidget(new QLabel(tr("Move ln List")));
    pColumn->addLayout(pArrows);
    pColumn->addStretch();

    auto* pClose = new QPushButton(tr("Close"));
    pClose->setDefault(true);
    connect(pClose, &QPushButton::clicked, this, &QDialog::accept);
    pColumn->addWidget(pClose);
    return pColumn;
}

void CAlphaWheelSetupDialog::refresh()
{
    const int nRow = std::max(0, m_pList->currentRow());
    m_pList->clear();
    for (const CUICtrl* pControl : alphaWheelItems(m_project.m_UIControlList)) {
        auto* pItem = new QListWidgetItem(qs(pControl->cControlName), m_pList);
        pItem->setData(Qt::UserRole, pControl->uControlId);
        pItem->setToolTip(qs(pControl->cControlName) + "\n" + qs(pControl->cVariableName));
    }
    m_pList->setCurrentRow(std::min(nRow, m_pList->count() - 1));
    updateButtons();
}

void CAlphaWheelSetupDialog::done(int nResult)
{
    QDialog::done(nResult);
    if (m_closed)
        m_closed();
}

// Enter in the list has opened an item, and does not close the dialog besides.
void CAlphaWheelSetupDialog::keyPressEvent(QKeyEvent* pEvent)
{
    const bool bEnter = pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
    if (!bEnter || focusWidget() != m_pList || m_pList->currentRow() < 0)
        QDialog::keyPressEvent(pEvent);
}

UINT CAlphaWheelSetupDialog::idAt(int nRow) const
{
    return m_pList->item(nRow)->data(Qt::UserRole).toUInt();
}

void CAlphaWheelSetupDialog::newItem()
{
    const auto id = freeAlphaWheelId(m_project.m_UIControlList);
    if (!id)
        m_dialogs.showMessage("All 1024 controls are used.");
    else if (m_edit) {
        const auto items = alphaWheelItems(m_project.m_UIControlList);
        m_edit(*id, items.empty() ? 0 : items.back()->uFluxCapControl[FLUX_SLOT_INDEX] + 1);
    }
}

void CAlphaWheelSetupDialog::editItem()
{
    const CUICtrl* pControl = m_pList->currentRow() < 0
                                  ? nullptr
                                  : findControl(m_project.m_UIControlList, idAt(m_pList->currentRow()));
    if (pControl && m_edit)
        m_edit(pControl->uControlId, pControl->uFluxCapControl[FLUX_SLOT_INDEX]);
}

void CAlphaWheelSetupDialog::removeItem()
{
    const int nRow = m_pList->currentRow();
    if (nRow < 0 || !m_remove)
        return;
    m_remove(idAt(nRow));
    refresh();
}

// The selection goes with the item.
void CAlphaWheelSetupDialog::moveItem(bool bUp)
{
    const int nRow = m_pList->currentRow();
    const int nTarget = nRow + (bUp ? -1 : 1);
    if (nRow < 0 || nTarget < 0 || nTarget >= m_pList->count())
        return;
    const bool bMoved =
        m_move ? m_move(idAt(nRow), bUp) : moveAlphaWheelItem(m_project.m_UIControlList, idAt(nRow), bUp);
    if (!bMoved)
        return;
    refresh();
    m_pList->setCurrentRow(nTarget);
}

void CAlphaWheelSetupDialog::updateButtons()
{
    const int nRow = m_pList->currentRow();
    m_pEditButton->setEnabled(nRow >= 0);
    m_pRemoveButton->setEnabled(nRow >= 0);
    m_pUpButton->setEnabled(nRow > 0);
    m_pDownButton->setEnabled(nRow >= 0 && nRow + 1 < m_pList->count());
}

} // namespace velmora
