#include "panel/project_slots.h"

#include "base/text.h"
#include "host/control_law.h"
#include "panel/panel_laws.h"
#include "project/alpha_wheel_items.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/dsp_project.h"

namespace velmora {

namespace {

std::vector<std::string> itemsOf(const CUICtrl& record)
{
    return split(record.cEnumeratedList, ',');
}

CControlLaw lawOf(const CUICtrl& record)
{
    return {record.fUserDisplayDataLoLimit,
            record.fUserDisplayDataHiLimit,
            record.uUserDataType,
            record.bLogSlider,
            record.bExpSlider,
            static_cast<UINT>(itemsOf(record).size())};
}

// The share of the initial value in the width of the range; the low limit is not subtracted from the value.
// For an enumerated control the int field stands in for the value.
int restingPosition(const CUICtrl& record, float fInitial)
{
    const float fValue = record.uUserDataType == UINTData ? record.fInitUserIntValue : fInitial;
    const double dWidth = record.fUserDisplayDataHiLimit - record.fUserDisplayDataLoLimit;
    const double dShare = dWidth == 0.0 ? 0.0 : fValue / dWidth;
    const double dWidget = PANEL_POSITIONS - PANEL_POSITIONS * dShare; // the thumb's place, from the top
    return limitedPosition(PANEL_POSITIONS - truncatedToInt(limitValue(dWidget, 0.0, PANEL_POSITIONS)));
}

std::string restingText(const CUICtrl& record, float fInitial)
{
    if (record.uUserDataType == intData)
        return formatted("%d", truncatedToInt(fInitial));
    if (record.uUserDataType == UINTData)
        return formatted("%u", truncatedToUINT(fInitial));
    return fixedDecimals(fInitial, 2);
}

} // namespace

void CProjectSlots::setProject(CDSPProject* pProject)
{
    m_pProject = pProject;
    m_moved.clear();
}

CUICtrl* CProjectSlots::record(UINT uSlot) const
{
    CUICtrl* pRecord = m_pProject ? findControl(m_pProject->m_UIControlList, uSlot) : nullptr;
    return pRecord && slotTakes(uSlot, pRecord->uControlType) ? pRecord : nullptr;
}

const CProjectSlots::CMoved* CProjectSlots::moved(CUICtrl& record) const
{
    const auto found = m_moved.find(record.uControlId);
    if (found == m_moved.end())
        return nullptr;
    const CMoved& moved = found->second;
    const bool bHolds = moved.m_fValue == initialValueOf(record) &&
                        moved.m_fLo == record.fUserDisplayDataLoLimit &&
                        moved.m_fHi == record.fUserDisplayDataHiLimit;
    return bHolds ? &moved : nullptr;
}

CPanelSlotState CProjectSlots::state(UINT uSlot) const
{
    CPanelSlotState state = emptySlotState(uSlot, m_pProject != nullptr);
    CUICtrl* pRecord = record(uSlot);
    if (!pRecord)
        return state;
    const float fValue = initialValueOf(*pRecord);
    const auto items = itemsOf(*pRecord);
    const bool bEnumerated = pRecord->uUserDataType == UINTData && !items.empty();
    state.m_bAssigned = true;
    state.m_sName = pRecord->cControlName;
    state.m_sUnits = pRecord->cControlUnits;
    state.m_dValue = fValue;
    state.m_dLo = pRecord->fUserDisplayDataLoLimit;
    state.m_dHi = pRecord->fUserDisplayDataHiLimit;
    state.m_bValueWritable = pRecord->uControlType == FILTER_CONTROL_CONTINUOUSLY_VARIABLE && !bEnumerated;
    state.m_items = shownItems(uSlot, items);
    if (pRecord->uUserDataType == UINTData && fValue >= 0.0F && fValue < static_cast<float>(items.size()))
        state.m_nItem = static_cast<int>(fValue);
    state.m_uMeterColorScheme = pRecord->uMeterColorScheme;
    state.m_bUpsideDownMeter = pRecord->bUpsideDownMeter;
    if (const CMoved* pMoved = moved(*pRecord)) {
        state.m_nPos = pMoved->m_nPos;
        state.m_nInitialPos = restingPosition(*pRecord, pMoved->m_fBefore);
        state.m_sValue =
            withUnits(bEnumerated && state.m_nItem >= 0 ? items[static_cast<std::size_t>(state.m_nItem)]
                                                        : valueText(pRecord->uUserDataType, fValue),
                      state.m_sUnits);
    } else {
        state.m_nPos = restingPosition(*pRecord, fValue);
        state.m_nInitialPos = state.m_nPos;
        state.m_sValue = withUnits(restingText(*pRecord, fValue), state.m_sUnits);
    }
    return state;
}

std::vector<UINT> CProjectSlots::alphaWheelSlots() const
{
    std::vector<UINT> slots;
    if (m_pProject)
        for (const CUICtrl* pItem : alphaWheelItems(m_pProject->m_UIControlList))
            if (slotTakes(pItem->uControlId, pItem->uControlType))
                slots.push_back(pItem->uControlId);
    return slots;
}

void CProjectSlots::store(CUICtrl& record, double dValue, int nPos)
{
    const CMoved* pEarlier = moved(record);
    float& fInitial = initialValueOf(record);
    const float fBefore = pEarlier ? pEarlier->m_fBefore : fInitial;
    if (record.uUserDataType == UINTData)
        dValue = truncatedToUINT(dValue);
    fInitial = static_cast<float>(dValue);
    m_moved[record.uControlId] = {fInitial, fBefore, record.fUserDisplayDataLoLimit,
                                  record.fUserDisplayDataHiLimit, nPos};
}

bool CProjectSlots::moveSlider(UINT uSlot, int nPos)
{
    CUICtrl* pRecord = record(uSlot);
    if (!pRecord || pRecord->uControlType != FILTER_CONTROL_CONTINUOUSLY_VARIABLE)
        return false;
    nPos = limitedPosition(nPos);
    store(*pRecord, cookedFromNormalized(lawOf(*pRecord), static_cast<double>(nPos) / PANEL_POSITIONS), nPos);
    return true;
}

bool CProjectSlots::resetSlider(UINT uSlot)
{
    CUICtrl* pRecord = record(uSlot);
    if (!pRecord || pRecord->uControlType != FILTER_CONTROL_CONTINUOUSLY_VARIABLE)
        return false;
    if (const CMoved* pMoved = moved(*pRecord))
        initialValueOf(*pRecord) = pMoved->m_fBefore;
    m_moved.erase(uSlot);
    return true;
}

bool CProjectSlots::enterText(UINT uSlot, std::string_view sText)
{
    CUICtrl* pRecord = record(uSlot);
    if (!pRecord || !state(uSlot).m_bValueWritable)
        return false;
    const CControlLaw law = lawOf(*pRecord);
    auto dValue = cookedFromText(law, sText, trimmed(pRecord->cControlUnits));
    if (!dValue)
        return false;
    if (law.m_uDataType == intData)
        dValue = truncatedToInt(*dValue);
    store(*pRecord, *dValue, limitedPosition(positionFromNormalized(normalizedFromCooked(law, *dValue))));
    return true;
}

bool CProjectSlots::selectItem(UINT uSlot, int nItem)
{
    CUICtrl* pRecord = record(uSlot);
    if (!pRecord || nItem < 0 || nItem >= choiceCount(uSlot, itemsOf(*pRecord).size()))
        return false;
    pRecord->fInitUserUINTValue = static_cast<float>(nItem);
    return true;
}

} // namespace velmora
