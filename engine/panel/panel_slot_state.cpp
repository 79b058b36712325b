#include "panel/panel_slot_state.h"

#include "panel/panel_laws.h"
#include "project/control_slots.h"

#include <algorithm>

namespace velmora {

CPanelSlotState emptySlotState(UINT uSlot, bool bProjectOpen)
{
    CPanelSlotState state;
    state.m_uControlId = uSlot;
    state.m_sName = slotCaption(uSlot);
    const CControlSlots* pSlots = findControlSlots(uSlot);
    if (!pSlots)
        return state;
    state.m_uControlType = pSlots->m_uControlType;
    if (pSlots->m_eForm == EControlForm::Combo)
        state.m_items.emplace_back(COMBO_SETUP_ITEM);
    if (pSlots->m_eForm == EControlForm::RadioBank)
        for (UINT uButton = 0; uButton < pSlots->m_uMaxItems; ++uButton)
            state.m_items.push_back(radioButtonCaption(uSlot - pSlots->m_uFirstId, uButton, bProjectOpen));
    return state;
}

bool slotTakes(UINT uSlot, UINT uControlType)
{
    const CControlSlots* pSlots = findControlSlots(uSlot);
    return pSlots && pSlots->m_uControlType == uControlType;
}

int choiceCount(UINT uSlot, std::size_t uListedItems)
{
    const CControlSlots* pSlots = findControlSlots(uSlot);
    if (!pSlots || pSlots->m_eForm == EControlForm::Slider || pSlots->m_eForm == EControlForm::LEDMeter)
        return 0;
    return static_cast<int>(uListedItems > 0 ? std::min(uListedItems, pSlots->m_uMaxItems)
                                             : pSlots->m_uMaxItems);
}

std::vector<std::string> shownItems(UINT uSlot, std::vector<std::string> items)
{
    const CControlSlots* pSlots = findControlSlots(uSlot);
    if (pSlots && pSlots->m_eForm == EControlForm::Combo)
        for (std::string& sItem : items)
            std::ranges::replace(sItem, '_', ' ');
    return items;
}

std::string withUnits(std::string_view sValue, std::string_view sUnits)
{
    std::string sText(sValue);
    if (!sUnits.empty())
        sText.append(" ").append(sUnits);
    return sText;
}

} // namespace velmora
