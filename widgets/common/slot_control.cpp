#include "widgets/common/slot_control.h"

#include <QAccessible>
#include <QVariant>

namespace velmora {

QColor roleColour(ESlotRole eRole)
{
    const CThemeColours& colours = CTheme::instance().colours();
    switch (eRole) {
    case ESlotRole::Assigned:
        return colours.m_accent;
    case ESlotRole::Live:
        return colours.m_live;
    case ESlotRole::Empty:
        break;
    }
    return colours.m_emptySlot;
}

QColor roleTextColour(ESlotRole eRole)
{
    const CThemeColours& colours = CTheme::instance().colours();
    switch (eRole) {
    case ESlotRole::Assigned:
        return colours.m_accentText;
    case ESlotRole::Live:
        return colours.m_liveText;
    case ESlotRole::Empty:
        break;
    }
    return colours.m_quietText;
}

QColor captionColour(ESlotRole eRole)
{
    const CThemeColours& colours = CTheme::instance().colours();
    return eRole == ESlotRole::Empty ? colours.m_quietText : colours.m_text;
}

void announceValue(QWidget* pWidget)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleInterface* pInterface = QAccessible::queryAccessibleInterface(pWidget);
    QAccessibleValueInterface* pValue = pInterface ? pInterface->valueInterface() : nullptr;
    QAccessibleValueChangeEvent change(pWidget, pValue ? pValue->currentValue() : QVariant());
    QAccessible::updateAccessibility(&change);
}

} // namespace velmora
