#include "panel/filter_slots.h"

#include "host/control_walk.h"
#include "panel/panel_laws.h"
#include "plugin.h"
#include "project/alpha_wheel_items.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/control_slots.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr UINT FIRST_SLIDER = 0;
constexpr UINT FIRST_BANK = 41;
constexpr UINT FIRST_COMBO = 70;

// The choice as an item's number; -1 if the value names none.
int itemOf(const CDSPFilterControl& control, double dValue)
{
    if (control.uUserDataType != UINTData || dValue >= static_cast<double>(control.m_Enum.size()))
        return -1;
    return static_cast<int>(dValue);
}

} // namespace

void CFilterSlots::setFilter(CDSPFilter* pFilter)
{
    const bool bEmpty = !pFilter || (!pFilter->m_pPlugIn && controlsOf(*pFilter).empty());
    m_pFilter = bEmpty ? nullptr : pFilter;
    m_moduleIds.clear();
    if (isModule())
        placeModule();
}

bool CFilterSlots::isModule() const
{
    return m_pFilter && !m_pFilter->m_pPlugIn;
}

void CFilterSlots::placeModule()
{
    UINT uSlider = FIRST_SLIDER;
    UINT uBank = FIRST_BANK;
    UINT uCombo = FIRST_COMBO;
    std::map<UINT, double> values;
    for (const CDSPFilterControl* pControl : controlsOf(*m_pFilter)) {
        const bool bSlider = pControl->uControlType == FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        const CControlSlots* pBank = findControlSlots(uBank);
        const bool bBank = pBank && pBank->m_eForm == EControlForm::RadioBank &&
                           pControl->m_Enum.size() <= pBank->m_uMaxItems;
        UINT& uSlot = bSlider ? uSlider : bBank ? uBank : uCombo;
        values[pControl->uControlId] = pControl->cookedValue().value_or(0.0);
        if (findControlSlots(uSlot))
            m_moduleIds[uSlot++] = pControl->uControlId;
    }
    m_moduleStarts.try_emplace(m_pFilter->m_sName, std::move(values));
}

CDSPFilterControl* CFilterSlots::control(UINT uSlot) const
{
    if (!m_pFilter)
        return nullptr;
    if (isModule()) {
        const auto found = m_moduleIds.find(uSlot);
        return found == m_moduleIds.end() ? nullptr : m_pFilter->getControlById(found->second);
    }
    CDSPFilterControl* pControl = m_pFilter->getControlById(uSlot);
    return pControl && slotTakes(uSlot, pControl->uControlType) ? pControl : nullptr;
}

UINT CFilterSlots::slotOf(UINT uControlId) const
{
    if (isModule()) {
        const auto found =
            std::ranges::find(m_moduleIds, uControlId, [](const auto& pair) { return pair.second; });
        return found == m_moduleIds.end() ? NO_SLOT : found->first;
    }
    return control(uControlId) ? uControlId : NO_SLOT;
}

std::vector<UINT> CFilterSlots::assignedSlots() const
{
    std::vector<UINT> slots;
    if (m_pFilter)
        for (const CDSPFilterControl* pControl : controlsOf(*m_pFilter))
            if (const UINT uSlot = slotOf(pControl->uControlId); uSlot != NO_SLOT)
                slots.push_back(uSlot);
    return slots;
}

std::vector<UINT> CFilterSlots::alphaWheelSlots() const
{
    std::vector<UINT> slots;
    if (m_pFilter && !isModule())
        for (const CUICtrl* pItem : alphaWheelItems(m_pFilter->m_pPlugIn->m_UIControlList))
            if (control(pItem->uControlId))
                slots.push_back(pItem->uControlId);
    return slots;
}

double CFilterSlots::initialValue(const CDSPFilterControl& control) const
{
    const double dNow = control.cookedValue().value_or(0.0);
    if (isModule()) {
        const auto& starts = m_moduleStarts.at(m_pFilter->m_sName);
        const auto found = starts.find(control.uControlId);
        return found == starts.end() ? dNow : found->second;
    }
    CUICtrl* pRecord = findControl(m_pFilter->m_pPlugIn->m_UIControlList, control.uControlId);
    return pRecord ? initialValueOf(*pRecord) : dNow;
}

CPanelSlotState CFilterSlots::state(UINT uSlot) const
{
    CPanelSlotState state = emptySlotState(uSlot, true);
    const CDSPFilterControl* pControl = control(uSlot);
    if (!pControl)
        return state;
    state.m_bAssigned = true;
    state.m_uControlId = pControl->uControlId;
    state.m_uControlType = pControl->uControlType;
    state.m_sName = pControl->m_sName;
    state.m_sUnits = pControl->m_sUnits;
    state.m_dValue = pControl->cookedValue().value_or(0.0);
    state.m_dLo = pControl->fUserDisplayDataLoLimit;
    state.m_dHi = pControl->fUserDisplayDataHiLimit;
    state.m_nPos = limitedPosition(pControl->m_nPos);
    state.m_nInitialPos = limitedPosition(
        positionFromNormalized(normalizedFromCooked(pControl->law(), initialValue(*pControl))));
    state.m_items = shownItems(uSlot, pControl->m_Enum);
    state.m_nItem = itemOf(*pControl, state.m_dValue);
    const bool bEnumerated = pControl->uUserDataType == UINTData && !pControl->m_Enum.empty();
    state.m_bValueWritable = pControl->uControlType == FILTER_CONTROL_CONTINUOUSLY_VARIABLE && !bEnumerated;
    state.m_sValue = withUnits(bEnumerated && state.m_nItem >= 0
                                   ? pControl->m_Enum[static_cast<std::size_t>(state.m_nItem)]
                                   : pControl->m_sValue,
                               state.m_sUnits);
    state.m_uMeterColorScheme = pControl->uMeterColorScheme;
    state.m_bUpsideDownMeter = pControl->bUpsideDownMeter;
    return state;
}

} // namespace velmora
