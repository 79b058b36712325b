#include "widgets/panel/combo_cell.h"

#include "widgets/common/panel_combo.h"
#include "widgets/common/qt_text.h"
#include "widgets/panel/panel_label.h"

namespace velmora {

CComboCell::CComboCell(UINT uSlot, QWidget* pParent)
    : CSlotCell(uSlot, pParent), m_bFixedName(findControlSlots(uSlot)->m_bFixedName),
      m_pCaption(new CPanelLabel(this)), m_pCombo(new CPanelCombo(this))
{
    m_pCaption->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    m_pCaption->setVisible(!m_bFixedName);
    if (m_bFixedName)
        m_pCombo->setLabel(qs(slotCaption(uSlot)));
    leaveMenuToPanel(m_pCombo);
    connect(m_pCombo, &CPanelCombo::chosen, this, &CSlotCell::itemChosen);
    connect(m_pCombo, &CPanelCombo::setupRequested, this, &CSlotCell::setupRequested);
}

void CComboCell::showState(const CPanelSlotState& state, ESlotRole eRole)
{
    m_pCaption->setText(state.m_bAssigned ? qs(state.m_sName) : qs(slotCaption(slot())));
    m_pCaption->setLook(state.m_bAssigned ? CPanelLabel::ELook::Strong : CPanelLabel::ELook::Quiet);
    m_pCombo->setRole(eRole);
    m_pCombo->setAccessibleName(spokenName(state));
    if (!state.m_bAssigned) {
        m_pCombo->setSetupState();
        return;
    }
    QStringList items;
    for (const std::string& sItem : state.m_items)
        items << qs(sItem);
    m_pCombo->setItems(items, state.m_nItem);
}

QWidget* CComboCell::focusTarget()
{
    return m_pCombo;
}

bool CComboCell::usesArrow(const QWidget&, Qt::Key eKey) const
{
    return !m_pCombo->isSetupState() && (eKey == Qt::Key_Up || eKey == Qt::Key_Down);
}

void CComboCell::resizeEvent(QResizeEvent*)
{
    const int nCaption = m_bFixedName ? 0 : height() * 2 / 5;
    m_pCaption->setGeometry(0, 0, width(), nCaption);
    m_pCombo->setGeometry(0, nCaption, width(), height() - nCaption);
}

} // namespace velmora
