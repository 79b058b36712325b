#include "project/control_list.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

constexpr int NO_CELL = -1; // of nGUIRow and nGUIColumn

// The first control of each slot id, null where a slot has none.
class CSlotTable
{
  public:
    void add(CUICtrl* pControl)
    {
        if (pControl->uControlId < m_first.size() && !m_first[pControl->uControlId])
            m_first[pControl->uControlId] = pControl;
    }

    // Appends the controls of the ids from uFirst to uLast by rising id.
    void appendTo(std::vector<CUICtrl*>& controls, UINT uFirst, UINT uLast) const
    {
        for (UINT uId = uFirst; uId <= uLast; ++uId)
            if (m_first[uId])
                controls.push_back(m_first[uId]);
    }

  private:
    std::array<CUICtrl*, LAST_SLOT_ID + 1> m_first = {};
};

// What the sort keeps together, in its order.
enum class EGroup
{
    slidersInCell,
    radioBanksInRow,
    sliders,
    radioBanks,
    meters,
    comboLists,
    entryFields,
    userVariables
};

EGroup groupOf(const CUICtrl* pControl)
{
    const bool bInRow = pControl->nGUIRow != NO_CELL;
    switch (pControl->uControlType) {
    case FILTER_CONTROL_RADIO_SWITCH_VARIABLE:
        return bInRow ? EGroup::radioBanksInRow : EGroup::radioBanks;
    case FILTER_CONTROL_LED_METER:
        return EGroup::meters;
    case FILTER_CONTROL_COMBO_VARIABLE:
        return EGroup::comboLists;
    case FILTER_CONTROL_DIRECT_DATA_ENTRY:
        return EGroup::entryFields;
    case USER_VARIABLE_TYPE:
    case VSTGUI_VARIABLE_TYPE:
        return EGroup::userVariables;
    default:
        return bInRow && pControl->nGUIColumn != NO_CELL ? EGroup::slidersInCell : EGroup::sliders;
    }
}

bool isSlider(EGroup eGroup)
{
    return eGroup == EGroup::slidersInCell || eGroup == EGroup::sliders;
}

bool isSlotBound(const CUICtrl* pControl)
{
    return pControl->uFluxCapControl[FLUX_SLOT_BOUND] == 1;
}

bool isThemeBound(const CUICtrl* pControl)
{
    return pControl->uControlTheme[CONTROL_THEME_BOUND] == 1;
}

// The first control that the test accepts, and its position.
struct CFoundControl
{
    int m_nPosition = -1;
    CUICtrl* m_pControl = nullptr;
};

template <typename Accepts>
CFoundControl findFirst(const CUIControlList& list, Accepts accepts)
{
    int nPosition = 0;
    for (CUICtrl* pControl = list.next(nullptr); pControl; pControl = list.next(pControl), ++nPosition)
        if (accepts(pControl))
            return {nPosition, pControl};
    return {};
}

CFoundControl findSlotBound(const CUIControlList& list, UINT uSlot)
{
    return findFirst(list, [=](const CUICtrl* pControl) {
        return isSlotBound(pControl) && pControl->uFluxCapControl[FLUX_SLOT_INDEX] == uSlot;
    });
}

} // namespace

std::vector<CUICtrl*> controlsOf(const CUIControlList& list)
{
    std::vector<CUICtrl*> controls;
    for (CUICtrl* pControl = list.next(nullptr); pControl; pControl = list.next(pControl))
        controls.push_back(pControl);
    return controls;
}

CUICtrl* findControl(const CUIControlList& list, UINT uControlId)
{
    return findFirst(list, [=](const CUICtrl* pControl) { return pControl->uControlId == uControlId; })
        .m_pControl;
}

UINT countSlotBoundControls(const CUIControlList& list)
{
    return static_cast<UINT>(std::ranges::count_if(controlsOf(list), isSlotBound));
}

int findSlotBoundPosition(const CUIControlList& list, UINT uSlot)
{
    return findSlotBound(list, uSlot).m_nPosition;
}

CUICtrl* findSlotBoundControl(const CUIControlList& list, UINT uSlot)
{
    return findSlotBound(list, uSlot).m_pControl;
}

int findThemeBoundPosition(const CUIControlList& list, UINT uThemeIndex)
{
    return findFirst(list,
                     [=](const CUICtrl* pControl) {
                         return isThemeBound(pControl) &&
                                pControl->uControlTheme[CONTROL_THEME_INDEX] == uThemeIndex;
                     })
        .m_nPosition;
}

UINT nextFreeUserVariableId(const CUIControlList& list)
{
    std::vector<UINT> taken;
    for (const CUICtrl* pControl : controlsOf(list))
        taken.push_back(pControl->uControlId);
    std::ranges::sort(taken);

    UINT uFree = FIRST_USER_VARIABLE_ID;
    for (const UINT uId : taken)
        if (uId == uFree)
            ++uFree;
    return uFree < END_OF_USER_VARIABLE_IDS ? uFree : NO_USER_VARIABLE_ID;
}

void arrangeControls(CUIControlList& list, std::span<CUICtrl* const> controls)
{
    const std::vector<CUICtrl*> originals = controlsOf(list);
    if (std::ranges::equal(originals, controls))
        return;
    CUICtrl* pLast = originals.back();
    for (const CUICtrl* pControl : controls)
        pLast = list.insertBehind(pLast, *pControl);
    for (const CUICtrl* pOriginal : originals) // each stands at the head, so it is the first with its id
        list.remove(pOriginal->uControlId);
}

void sortControls(CUIControlList& list)
{
    CSlotTable slots;
    std::vector<CUICtrl*> others;
    for (CUICtrl* pControl : controlsOf(list)) {
        if (isSlider(groupOf(pControl)))
            slots.add(pControl);
        else
            others.push_back(pControl);
    }
    std::vector<CUICtrl*> sorted;
    slots.appendTo(sorted, 0, LAST_SLIDER_ID);
    slots.appendTo(sorted, FIRST_SLOT_ID, LAST_SLOT_ID);
    sorted.insert(sorted.end(), others.begin(), others.end());
    std::ranges::stable_sort(sorted, {}, groupOf);
    arrangeControls(list, sorted);
}

void compactThemeBoundControls(CUIControlList& list)
{
    const auto index = [](CUICtrl* pControl) -> UINT& {
        return pControl->uControlTheme[CONTROL_THEME_INDEX];
    };
    std::vector<CUICtrl*> controls = controlsOf(list);
    const std::size_t uCount = controls.size();
    std::erase_if(controls,
                  [&](CUICtrl* pControl) { return !isThemeBound(pControl) || index(pControl) >= uCount; });
    std::ranges::stable_sort(controls, {}, index);
    UINT uNext = 0;
    for (CUICtrl* pControl : controls)
        index(pControl) = uNext++;
}

void renumberSlotBoundControls(CUIControlList& list)
{
    CSlotTable slots;
    for (CUICtrl* pControl : controlsOf(list))
        slots.add(pControl);
    std::vector<CUICtrl*> controls;
    slots.appendTo(controls, FIRST_SLOT_ID, LAST_SLOT_ID);
    for (UINT uSlot = 0; uSlot < controls.size(); ++uSlot) {
        controls[uSlot]->uControlId = FIRST_SLOT_ID + uSlot;
        controls[uSlot]->uFluxCapControl[FLUX_SLOT_BOUND] = 1;
        controls[uSlot]->uFluxCapControl[FLUX_SLOT_INDEX] = uSlot;
    }
}

} // namespace velmora
