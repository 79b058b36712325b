#include "widgets/panel/slot_cell.h"

#include "widgets/common/qt_text.h"
#include "widgets/panel/bank_cell.h"
#include "widgets/panel/combo_cell.h"
#include "widgets/panel/meter_cell.h"
#include "widgets/panel/slider_cell.h"
#include "widgets/panel/switch_cell.h"

namespace velmora {

namespace {

// What a slot is called ahead of its control's name. Combo boxes go by the captions printed on the form.
QString slotName(UINT uSlot)
{
    const CControlSlots* pSlots = findControlSlots(uSlot);
    const QString sIndex = QString::number(uSlot - pSlots->m_uFirstId);
    switch (pSlots->m_eForm) {
    case EControlForm::Slider:
        return QStringLiteral("Slider ") + sIndex;
    case EControlForm::RadioBank:
        return QStringLiteral("Bank ") + sIndex;
    case EControlForm::Switch:
        return QStringLiteral("Switch ") + QString::number(uSlot - pSlots->m_uFirstId + 1);
    case EControlForm::LEDMeter:
        return QStringLiteral("Meter ") + sIndex;
    default:
        return QStringLiteral("Combo ") + qs(slotCaption(uSlot));
    }
}

} // namespace

CSlotCell::CSlotCell(UINT uSlot, QWidget* pParent) : QWidget(pParent), m_uSlot(uSlot) {}

bool CSlotCell::usesArrow(const QWidget&, Qt::Key) const
{
    return false;
}

void CSlotCell::setTabStop(bool bTabStop)
{
    focusTarget()->setFocusPolicy(bTabStop ? Qt::StrongFocus : Qt::ClickFocus);
}

QString CSlotCell::spokenName(const CPanelSlotState& state) const
{
    const QString sSlot = slotName(m_uSlot);
    if (!state.m_bAssigned)
        return sSlot + QStringLiteral(", empty");
    const CControlSlots* pSlots = findControlSlots(m_uSlot);
    return pSlots->m_bFixedName ? sSlot : sSlot + QStringLiteral(": ") + qs(state.m_sName);
}

void CSlotCell::leaveMenuToPanel(QWidget* pWidget)
{
    pWidget->setContextMenuPolicy(Qt::NoContextMenu);
}

CSlotCell* makeSlotCell(EControlForm eForm, UINT uSlot, QWidget* pParent)
{
    switch (eForm) {
    case EControlForm::RadioBank:
        return new CBankCell(uSlot, pParent);
    case EControlForm::Switch:
        return new CSwitchCell(uSlot, pParent);
    case EControlForm::LEDMeter:
        return new CMeterCell(uSlot, pParent);
    case EControlForm::Combo:
        return new CComboCell(uSlot, pParent);
    default:
        return new CSliderCell(uSlot, pParent);
    }
}

} // namespace velmora
