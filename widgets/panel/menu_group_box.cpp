#include "widgets/panel/menu_group_box.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/menu_groups.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/panel/generic_name_change_dialog.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>

namespace velmora {

CMenuGroupBox::CMenuGroupBox(IUserDialogs& dialogs, QWidget* pParent)
    : QGroupBox(pParent), m_dialogs(dialogs), m_pList(new QListWidget), m_pNewName(new QLineEdit)
{
    m_pList->setAccessibleName(tr("Menu Groups"));
    m_pList->setSpacing(1);
    m_pNewName->setAccessibleName(tr("New Menu"));
    m_pList->setMinimumHeight(m_pList->fontMetrics().height() * 4);
    m_pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pList->setTextElideMode(Qt::ElideRight);

    auto* pListLabel = new QLabel(tr("Menu Group&s:"));
    pListLabel->setBuddy(m_pList);
    auto* pNewLabel = new QLabel(tr("New &Menu"));
    pNewLabel->setBuddy(m_pNewName);

    auto* pGrid = new QGridLayout(this);
    pGrid->setSpacing(CTheme::SPACING);
    pGrid->addWidget(pListLabel, 0, 0);
    pGrid->addWidget(m_pList, 1, 0, 4, 1);
    pGrid->addWidget(pNewLabel, 5, 0);
    pGrid->addWidget(m_pNewName, 6, 0);
    pGrid->setColumnStretch(0, 1);
    pGrid->setRowStretch(4, 1);

    struct CButton
    {
        QString m_sText;
        int m_nRow;
        void (CMenuGroupBox::*m_pAction)();
    };
    for (const CButton& button : {CButton{tr("&Edit Menu"), 1, &CMenuGroupBox::editMenu},
                                  CButton{tr("De&lete Menu"), 2, &CMenuGroupBox::deleteMenu},
                                  CButton{tr("&Add Menu"), 6, &CMenuGroupBox::addMenu}}) {
        auto* pButton = new QPushButton(button.m_sText);
        pButton->setAutoDefault(false);
        connect(pButton, &QPushButton::clicked, this, button.m_pAction);
        pGrid->addWidget(pButton, button.m_nRow, 1);
    }
    setGroups({});
    connect(m_pList, &QListWidget::currentRowChanged, this, &CMenuGroupBox::groupChanged);
}

void CMenuGroupBox::setGroups(const std::vector<std::string>& groups)
{
    const QSignalBlocker blocker(m_pList);
    m_pList->clear();
    m_pList->addItem(tr("none"));
    for (const std::string& sGroup : groups) {
        m_pList->addItem(qs(sGroup));
        m_pList->item(m_pList->count() - 1)->setToolTip(qs(sGroup));
    }
    m_pList->setCurrentRow(0);
}

void CMenuGroupBox::setGroup(std::string_view sGroup)
{
    const QSignalBlocker blocker(m_pList);
    if (!sGroup.empty() && rowOf(qs(sGroup)) < 0)
        m_pList->addItem(qs(sGroup));
    m_pList->setCurrentRow(sGroup.empty() ? 0 : rowOf(qs(sGroup)));
}

std::vector<std::string> CMenuGroupBox::groups() const
{
    std::vector<std::string> names;
    for (int nRow = 1; nRow < m_pList->count(); ++nRow)
        names.push_back(utf8(m_pList->item(nRow)->text()));
    return names;
}

std::string CMenuGroupBox::group() const
{
    return m_pList->currentRow() > 0 ? utf8(m_pList->currentItem()->text()) : std::string();
}

int CMenuGroupBox::rowOf(const QString& sName) const
{
    for (int nRow = 1; nRow < m_pList->count(); ++nRow)
        if (m_pList->item(nRow)->text() == sName)
            return nRow;
    return -1;
}

bool CMenuGroupBox::refuseName(const QString& sName)
{
    const std::size_t uBytes = utf8(sName).size();
    std::string sReason = checkNewMenuGroup(groups(), utf8(sName));
    if (sReason.empty() && uBytes > LONGEST_MENU_GROUP)
        sReason = formatted("A menu name can hold %zu bytes; this one has %zu.", LONGEST_MENU_GROUP, uBytes);
    if (!sReason.empty())
        m_dialogs.showMessage(sReason);
    return !sReason.empty();
}

bool CMenuGroupBox::hasSelection()
{
    if (!group().empty())
        return true;
    m_dialogs.showMessage("Click on a Menu Name first.");
    m_pList->setFocus();
    return false;
}

void CMenuGroupBox::addMenu()
{
    const QString sName = m_pNewName->text().trimmed();
    if (refuseName(sName)) {
        m_pNewName->setFocus();
        m_pNewName->selectAll();
        return;
    }
    m_pList->addItem(sName);
    m_pNewName->clear();
}

// Enter behind a new name adds it, and does not close the dialog.
void CMenuGroupBox::keyPressEvent(QKeyEvent* pEvent)
{
    const bool bEnter = pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
    if (bEnter && m_pNewName->hasFocus())
        addMenu();
    else
        QGroupBox::keyPressEvent(pEvent);
}

void CMenuGroupBox::deleteMenu()
{
    if (!hasSelection())
        return;
    const std::string sName = group();
    if (!m_dialogs.askYesNo("Are you sure you want to remove " + sName + " from the Menu List?") ||
        (m_change && !m_change(sName, {})))
        return;
    {
        const QSignalBlocker blocker(m_pList);
        delete m_pList->takeItem(rowOf(qs(sName)));
        m_pList->setCurrentRow(0);
    }
    emit groupChanged();
}

void CMenuGroupBox::editMenu()
{
    if (!hasSelection())
        return;
    const std::string sName = group();
    if (!m_dialogs.askYesNo("Are you sure you want to edit " + sName +
                            "? It will change all other controls with this Menu Group as well!"))
        return;
    CGenericNameChangeDialog dialog(m_dialogs, tr("Edit Menu"), qs(sName), this);
    if (dialog.exec() != QDialog::Accepted || utf8(dialog.name()) == sName || refuseName(dialog.name()) ||
        (m_change && !m_change(sName, utf8(dialog.name()))))
        return;
    if (const int nRow = rowOf(qs(sName)); nRow > 0) {
        m_pList->item(nRow)->setText(dialog.name());
        m_pList->item(nRow)->setToolTip(dialog.name());
    }
    emit groupChanged();
}

} // namespace velmora
