#include "project/control_fields.h"

#include "base/text.h"
#include "project/control_kinds.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/menu_groups.h"
#include "project/user_variables.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

namespace velmora {

namespace {

constexpr std::array<std::string_view, 4> DATA_TYPES = {"integer", "float", "double", "enum"};
constexpr std::array<std::string_view, 4> DETECTORS = {"PEAK", "MS", "RMS", "None"};
constexpr std::size_t MENU_GROUP_WORDS = 16; // the last of uFluxCapControl

std::string_view textOf(const char* pText)
{
    return pText ? pText : "";
}

template <auto pMember>
bool isSame(const CUICtrl& left, const CUICtrl& right)
{
    if constexpr (std::is_same_v<decltype(pMember), const char * CUICtrl::*>)
        return textOf(left.*pMember) == textOf(right.*pMember);
    else if constexpr (requires { std::size(left.*pMember); })
        return std::memcmp(left.*pMember, right.*pMember, sizeof(left.*pMember)) == 0;
    else
        return left.*pMember == right.*pMember;
}

template <auto pMember>
std::string text(const CUICtrl& control)
{
    const auto& value = control.*pMember;
    using CValue = std::remove_cvref_t<decltype(value)>;
    if constexpr (std::is_same_v<CValue, bool>)
        return value ? "on" : "off";
    else if constexpr (std::is_same_v<CValue, const char*>)
        return "\"" + std::string(textOf(value)) + "\"";
    else
        return formatted("%g", static_cast<double>(value));
}

template <auto pMember, const auto& names>
std::string nameOf(const CUICtrl& control)
{
    const UINT uValue = control.*pMember;
    return uValue < names.size() ? std::string(names[uValue]) : std::to_string(uValue);
}

template <auto pMember>
constexpr CControlField field(std::string_view sName)
{
    return {sName, isSame<pMember>, text<pMember>};
}

template <auto pMember>
constexpr CControlField words(std::string_view sName)
{
    return {sName, isSame<pMember>, nullptr};
}

bool isSameInitialValue(const CUICtrl& left, const CUICtrl& right)
{
    return left.fInitUserIntValue == right.fInitUserIntValue &&
           left.fInitUserFloatValue == right.fInitUserFloatValue &&
           left.fInitUserDoubleValue == right.fInitUserDoubleValue &&
           left.fInitUserUINTValue == right.fInitUserUINTValue;
}

std::string initialValueText(const CUICtrl& control)
{
    CUICtrl copy = control;
    return formatted("%g", static_cast<double>(initialValueOf(copy)));
}

bool isSameWheelIndex(const CUICtrl& left, const CUICtrl& right)
{
    return std::equal(left.uFluxCapControl, left.uFluxCapControl + FLUX_SLOT_INDEX + 1,
                      right.uFluxCapControl);
}

std::string wheelPlaceText(const CUICtrl& control)
{
    return control.uFluxCapControl[FLUX_SLOT_BOUND] == 1
               ? std::to_string(control.uFluxCapControl[FLUX_SLOT_INDEX] + 1)
               : "none";
}

std::string kindText(const CUICtrl& control)
{
    const CControlKind* pKind = findControlKind(control.uControlType);
    return pKind ? pKind->m_pName : std::to_string(control.uControlType);
}

bool isSameMenuGroup(const CUICtrl& left, const CUICtrl& right)
{
    return std::equal(std::end(left.uFluxCapControl) - MENU_GROUP_WORDS, std::end(left.uFluxCapControl),
                      std::end(right.uFluxCapControl) - MENU_GROUP_WORDS);
}

std::string menuGroupText(const CUICtrl& control)
{
    return "\"" + menuGroupOf(control) + "\"";
}

bool isSameFreeWords(const CUICtrl& left, const CUICtrl& right)
{
    return std::equal(left.uFluxCapControl + FLUX_SLOT_INDEX + 1,
                      std::end(left.uFluxCapControl) - MENU_GROUP_WORDS,
                      right.uFluxCapControl + FLUX_SLOT_INDEX + 1);
}

constexpr CControlField FIELDS[] = {
    {"kind", isSame<&CUICtrl::uControlType>, kindText},
    field<&CUICtrl::cControlName>("name"),
    field<&CUICtrl::cControlUnits>("units"),
    field<&CUICtrl::cVariableName>("variable"),
    {"data type", isSame<&CUICtrl::uUserDataType>, nameOf<&CUICtrl::uUserDataType, DATA_TYPES>},
    field<&CUICtrl::fUserDisplayDataLoLimit>("low limit"),
    field<&CUICtrl::fUserDisplayDataHiLimit>("high limit"),
    {"initial value", isSameInitialValue, initialValueText},
    field<&CUICtrl::cEnumeratedList>("list"),
    field<&CUICtrl::bLogSlider>("logarithmic law"),
    field<&CUICtrl::bExpSlider>("volt/octave law"),
    field<&CUICtrl::bOwnerControl>("owner control"),
    field<&CUICtrl::bUseMeter>("meter"),
    field<&CUICtrl::cMeterVariableName>("meter variable"),
    {"detect mode", isSame<&CUICtrl::uDetectorMode>, nameOf<&CUICtrl::uDetectorMode, DETECTORS>},
    field<&CUICtrl::bUpsideDownMeter>("inversion of the meter"),
    field<&CUICtrl::bLogMeter>("logarithmic meter"),
    field<&CUICtrl::uMeterColorScheme>("color scheme"),
    field<&CUICtrl::fMeterAttack_ms>("attack time in ms"),
    field<&CUICtrl::fMeterRelease_ms>("release time in ms"),
    field<&CUICtrl::bMIDIControl>("MIDI control"),
    field<&CUICtrl::uMIDIControlCommand>("MIDI command"),
    field<&CUICtrl::uMIDIControlName>("MIDI controller"),
    field<&CUICtrl::uMIDIControlChannel>("MIDI channel, counted from 0,"),
    {"place in the alpha wheel", isSameWheelIndex, wheelPlaceText},
    {"menu group", isSameMenuGroup, menuGroupText},
    field<&CUICtrl::nGUIRow>("row of the classic GUI"),
    field<&CUICtrl::nGUIColumn>("column of the classic GUI"),
    words<&CUICtrl::uControlTheme>("set of theme words"),
    words<&CUICtrl::dPresetData>("set of preset values"),
    {"set of words for the custom GUI", isSameFreeWords, nullptr},
    words<&CUICtrl::fFluxCapData>("set of values for the custom GUI"),
};

} // namespace

std::span<const CControlField> controlFields()
{
    return FIELDS;
}

bool isSameControl(const CUICtrl& left, const CUICtrl& right)
{
    return left.uControlId == right.uControlId &&
           std::ranges::all_of(FIELDS, [&](const CControlField& row) { return row.m_pIsSame(left, right); });
}

} // namespace velmora
