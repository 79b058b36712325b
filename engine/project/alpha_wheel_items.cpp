#include "project/alpha_wheel_items.h"

#include "project/control_list.h"
#include "project/control_slots.h"

#include <algorithm>

namespace velmora {

namespace {

UINT& indexOf(CUICtrl* pItem)
{
    return pItem->uFluxCapControl[FLUX_SLOT_INDEX];
}

} // namespace

std::vector<CUICtrl*> alphaWheelItems(const CUIControlList& list)
{
    std::vector<CUICtrl*> items = controlsOf(list);
    std::erase_if(items, [](const CUICtrl* pControl) {
        const CControlSlots* pSlots = findControlSlots(pControl->uControlId);
        return !pSlots || !pSlots->m_bAlphaWheel || pControl->uFluxCapControl[FLUX_SLOT_BOUND] != 1;
    });
    std::ranges::stable_sort(items, {}, [](CUICtrl* pItem) { return indexOf(pItem); });
    return items;
}

bool moveAlphaWheelItem(CUIControlList& list, UINT uControlId, bool bUp)
{
    std::vector<CUICtrl*> items = alphaWheelItems(list);
    const auto found = std::ranges::find(items, uControlId, [](CUICtrl* pItem) { return pItem->uControlId; });
    if (found == items.end() || found == (bUp ? items.begin() : items.end() - 1))
        return false;
    const auto neighbour = bUp ? found - 1 : found + 1;
    const bool bDistinct =
        std::ranges::adjacent_find(items, {}, [](CUICtrl* pItem) { return indexOf(pItem); }) == items.end();
    std::swap(indexOf(*found), indexOf(*neighbour));
    if (bDistinct)
        return true;
    std::iter_swap(found, neighbour);
    for (UINT uIndex = 0; CUICtrl * pItem : items)
        indexOf(pItem) = uIndex++;
    return true;
}

} // namespace velmora
