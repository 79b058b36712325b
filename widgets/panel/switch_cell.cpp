#include "widgets/panel/switch_cell.h"

#include "widgets/common/panel_button.h"
#include "widgets/common/qt_text.h"

namespace velmora {

CSwitchCell::CSwitchCell(UINT uSlot, QWidget* pParent)
    : CSlotCell(uSlot, pParent), m_pButton(new CPanelButton(this, EButtonKind::TwoState))
{
    connect(m_pButton, &CPanelButton::clicked, this, [this](bool bOn) { emit itemChosen(bOn ? 1 : 0); });
}

void CSwitchCell::showState(const CPanelSlotState& state, ESlotRole eRole)
{
    const bool bHasItem =
        state.m_bAssigned && state.m_nItem >= 0 && state.m_nItem < static_cast<int>(state.m_items.size());
    const QString sItem = bHasItem ? qs(state.m_items[static_cast<std::size_t>(state.m_nItem)]) : QString();
    m_pButton->setRole(eRole);
    m_pButton->setText(qs(state.m_sName));
    m_pButton->setStateText(sItem);
    m_pButton->setValueText(sItem);
    m_pButton->setChecked(state.m_bAssigned && state.m_nItem == 1);
    m_pButton->setAccessibleName(spokenName(state));
}

QWidget* CSwitchCell::focusTarget()
{
    return m_pButton;
}

void CSwitchCell::resizeEvent(QResizeEvent*)
{
    m_pButton->setGeometry(rect());
}

} // namespace velmora
