#include "project/control_list.h"
#include "project/control_properties.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

// Where the dialogs begin, by EControlForm.
struct CFormDefaults
{
    const char* m_pName; // null: the caption of the slot
    const char* m_pVariableName;
    UINT m_uDataType;
    const char* m_pEnumeratedList;
};

constexpr std::array<CFormDefaults, 5> DEFAULTS = {{
    {"Control Name", "m_fMyVariable", floatData, "SEL1,SEL2,SEL3"},
    {"Control Name", "m_uMyButtonSwitch", UINTData, ""},
    {"Control Name", "m_uMyButtonSwitch", UINTData, "SWITCH_OFF,SWITCH_ON"},
    {"Blurb", "m_fMyVariable", floatData, ""},
    {nullptr, "m_uMyComboVariable", UINTData, ""},
}};

// The index of a new item of the alpha wheel: behind all others, gaps that removed ones left included.
UINT indexBehindLast(const CUIControlList& list)
{
    UINT uNext = 0;
    for (const CUICtrl* pControl : controlsOf(list))
        if (pControl->uFluxCapControl[FLUX_SLOT_BOUND] == 1)
            uNext = std::max(uNext, pControl->uFluxCapControl[FLUX_SLOT_INDEX] + 1);
    return uNext;
}

} // namespace

CControlEdit newControlEdit(const CDSPProject& project, UINT uControlId)
{
    const CControlSlots* pSlots = findControlSlots(uControlId);
    const CControlSlots& slots = pSlots ? *pSlots : controlSlots()[0];
    const CFormDefaults& defaults = DEFAULTS[static_cast<std::size_t>(slots.m_eForm)];

    CControlEdit edit;
    edit.m_sName = defaults.m_pName ? defaults.m_pName : slotCaption(uControlId);
    edit.m_sUnits = "Units";
    edit.m_sVariableName = defaults.m_pVariableName;
    edit.m_sEnumeratedList = defaults.m_pEnumeratedList;
    edit.m_sMeterVariableName = "m_fMeterValue";

    CUICtrl& record = edit.m_record;
    record.uControlType = slots.m_uControlType;
    record.uControlId = uControlId;
    record.uUserDataType = defaults.m_uDataType;
    record.fUserDisplayDataHiLimit = 100.0F;
    record.bUseMeter = slots.m_eForm == EControlForm::LEDMeter;
    record.uDetectorMode = DETECT_MODE_PEAK;
    if (slots.m_bAlphaWheel) {
        record.uFluxCapControl[FLUX_SLOT_BOUND] = 1;
        record.uFluxCapControl[FLUX_SLOT_INDEX] = indexBehindLast(project.m_UIControlList);
    }
    return edit;
}

CControlEdit controlEditOf(const CUICtrl& record)
{
    CControlEdit edit;
    edit.m_record = record;
    edit.m_sName = record.cControlName;
    edit.m_sUnits = record.cControlUnits;
    edit.m_sVariableName = record.cVariableName;
    edit.m_sEnumeratedList = record.cEnumeratedList;
    edit.m_sMeterVariableName = record.cMeterVariableName;
    return edit;
}

float& initialValueOf(CUICtrl& record)
{
    switch (record.uUserDataType) {
    case intData:
        return record.fInitUserIntValue;
    case doubleData:
        return record.fInitUserDoubleValue;
    case UINTData:
        return record.fInitUserUINTValue;
    default:
        return record.fInitUserFloatValue;
    }
}

} // namespace velmora
