#include "widgets/panel/bank_cell.h"

#include "widgets/common/qt_text.h"
#include "widgets/common/radio_bank.h"

namespace velmora {

CBankCell::CBankCell(UINT uSlot, QWidget* pParent) : CSlotCell(uSlot, pParent), m_pBank(new CRadioBank(this))
{
    connect(m_pBank, &CRadioBank::chosen, this, &CSlotCell::itemChosen);
}

void CBankCell::showState(const CPanelSlotState& state, ESlotRole eRole)
{
    QStringList items;
    for (const std::string& sItem : state.m_items)
        items << qs(sItem);
    m_pBank->setRole(eRole);
    m_pBank->setLabel(qs(state.m_sName));
    m_pBank->setItems(items);
    m_pBank->setSelected(state.m_bAssigned ? state.m_nItem : -1);
    m_pBank->setAccessibleName(spokenName(state));
}

QWidget* CBankCell::focusTarget()
{
    return m_pBank;
}

bool CBankCell::usesArrow(const QWidget&, Qt::Key eKey) const
{
    return eKey == Qt::Key_Up || eKey == Qt::Key_Down;
}

// A bank keeps its own single stop among its buttons.
void CBankCell::setTabStop(bool) {}

void CBankCell::resizeEvent(QResizeEvent*)
{
    m_pBank->setGeometry(rect());
}

} // namespace velmora
