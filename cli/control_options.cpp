#include "cli/control_options.h"

#include "base/text.h"
#include "project/control_slots.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <variant>
#include <vector>

namespace velmora::cli {

namespace {

// The dialogs that have a field for an option.
enum EForms : unsigned
{
    SLIDER = 1U << static_cast<unsigned>(EControlForm::Slider),
    BANK = 1U << static_cast<unsigned>(EControlForm::RadioBank),
    SWITCH = 1U << static_cast<unsigned>(EControlForm::Switch),
    METER = 1U << static_cast<unsigned>(EControlForm::LEDMeter),
    COMBO = 1U << static_cast<unsigned>(EControlForm::Combo),
    LISTS = BANK | SWITCH | COMBO,
    EVERY = SLIDER | LISTS | METER
};

// A field that a flag sets.
struct CFlag
{
    bool CUICtrl::*m_pMember;
    bool m_bValue;
};

// Puts a value into an edited control; answers why it does not fit, empty if it does.
using CFunction = std::string (*)(CControlEdit& edit, const std::string& sValue);

std::string applyVariable(CControlEdit& edit, const std::string& sValue)
{
    const bool bMeter = edit.m_record.uControlType == FILTER_CONTROL_LED_METER;
    (bMeter ? edit.m_sMeterVariableName : edit.m_sVariableName) = sValue;
    return {};
}

std::string applyType(CControlEdit& edit, const std::string& sValue)
{
    constexpr std::array<std::string_view, 4> NAMES = {"int", "float", "double", "enum"};
    edit.m_record.uUserDataType = static_cast<UINT>(std::ranges::find(NAMES, sValue) - NAMES.begin());
    return {};
}

std::string applyInitialValue(CControlEdit& edit, const std::string& sValue)
{
    initialValueOf(edit.m_record) = static_cast<float>(parseNumber(sValue).value_or(0.0));
    return {};
}

std::string applyLaw(CControlEdit& edit, bool bLog, bool bExp)
{
    edit.m_record.bLogSlider = bLog;
    edit.m_record.bExpSlider = bExp;
    return {};
}

// A whole number within the limits, from one part of a value.
std::optional<UINT> partOf(const std::vector<std::string>& parts, std::size_t uPart, double dLow,
                           double dHigh)
{
    const auto value = uPart < parts.size() ? parseNumber(parts[uPart]) : std::nullopt;
    const bool bGood = value && *value >= dLow && *value <= dHigh && *value == std::floor(*value);
    return bGood ? std::optional(static_cast<UINT>(*value)) : std::nullopt;
}

// "off", or channel, message and controller: "1,cc,7".
std::string applyMIDI(CControlEdit& edit, const std::string& sValue)
{
    constexpr UINT CONTROL_CHANGE = 0xB0;
    constexpr UINT PITCH_BEND = 0xE0;
    CUICtrl& record = edit.m_record;
    record.bMIDIControl = sValue != "off";
    if (!record.bMIDIControl)
        return {};
    const auto parts = split(sValue, ',');
    const std::string sMessage = parts.size() > 1 ? parts[1] : "";
    const bool bBend = sMessage == "bend" || partOf(parts, 1, PITCH_BEND, PITCH_BEND);
    const bool bControlChange = sMessage == "cc" || partOf(parts, 1, CONTROL_CHANGE, CONTROL_CHANGE);
    const auto channel = partOf(parts, 0, 1, 16);
    const auto controller =
        bBend && parts.size() == 2 ? std::optional(record.uMIDIControlName) : partOf(parts, 2, 0, 127);
    if (!channel || !(bBend || bControlChange) || !controller || parts.size() > 3)
        return "The value of --midi, \"" + sValue +
               "\", must be off, or a channel 1 to 16, cc (176) or bend (224), and for cc a controller 0 to "
               "127, such as 1,cc,7.";
    record.uMIDIControlChannel = *channel - 1;
    record.uMIDIControlCommand = bBend ? PITCH_BEND : CONTROL_CHANGE;
    record.uMIDIControlName = *controller;
    return {};
}

// For which kind of variable a slider's option has a meaning.
enum class ETypes
{
    Any,
    Numbers,
    List
};

struct CControlOption
{
    std::string_view m_sName;
    unsigned m_uForms; // where it has a meaning
    std::variant<std::string CControlEdit::*, float CUICtrl::*, UINT CUICtrl::*, CFlag, CFunction> m_target;
    ETypes m_eTypes = ETypes::Any;
};

// In the order in which they are applied: the data type decides which initial value is meant.
const CControlOption OPTIONS[] = {
    {"--name", EVERY, &CControlEdit::m_sName},
    {"--variable", EVERY, applyVariable},
    {"--units", SLIDER | LISTS, &CControlEdit::m_sUnits},
    {"--type", SLIDER | LISTS, applyType},
    {"--lo", SLIDER, &CUICtrl::fUserDisplayDataLoLimit, ETypes::Numbers},
    {"--hi", SLIDER, &CUICtrl::fUserDisplayDataHiLimit, ETypes::Numbers},
    {"--init", SLIDER | LISTS, applyInitialValue},
    {"--list", SLIDER | BANK | COMBO, &CControlEdit::m_sEnumeratedList, ETypes::List},
    {"--linear", SLIDER, +[](CControlEdit& edit, const std::string&) { return applyLaw(edit, false, false); },
     ETypes::Numbers},
    {"--log", SLIDER, +[](CControlEdit& edit, const std::string&) { return applyLaw(edit, true, false); },
     ETypes::Numbers},
    {"--exp", SLIDER, +[](CControlEdit& edit, const std::string&) { return applyLaw(edit, false, true); },
     ETypes::Numbers},
    {"--midi", SLIDER | LISTS, applyMIDI},
    {"--detector", METER, &CUICtrl::uDetectorMode},
    {"--attack", METER, &CUICtrl::fMeterAttack_ms},
    {"--release", METER, &CUICtrl::fMeterRelease_ms},
    {"--linear-meter", METER, CFlag{&CUICtrl::bLogMeter, false}},
    {"--log-meter", METER, CFlag{&CUICtrl::bLogMeter, true}},
    {"--upright", METER, CFlag{&CUICtrl::bUpsideDownMeter, false}},
    {"--invert", METER, CFlag{&CUICtrl::bUpsideDownMeter, true}},
};

// Puts the value where the option says.
struct CApply
{
    CControlEdit& m_edit;
    const std::string& m_sValue;

    std::string operator()(std::string CControlEdit::*pText) const
    {
        m_edit.*pText = m_sValue;
        return {};
    }
    template <class T>
    std::string operator()(T CUICtrl::*pNumber) const
    {
        m_edit.m_record.*pNumber = static_cast<T>(parseNumber(m_sValue).value_or(0.0));
        return {};
    }
    std::string operator()(const CFlag& flag) const
    {
        m_edit.m_record.*flag.m_pMember = flag.m_bValue;
        return {};
    }
    std::string operator()(CFunction pFunction) const { return pFunction(m_edit, m_sValue); }
};

// Options of which only one makes sense.
constexpr std::array<std::array<std::string_view, 2>, 5> OPPOSITES = {{{"--log", "--exp"},
                                                                       {"--log", "--linear"},
                                                                       {"--exp", "--linear"},
                                                                       {"--log-meter", "--linear-meter"},
                                                                       {"--invert", "--upright"}}};

} // namespace

std::string applyControlOptions(const CCommandLine& line, CControlEdit& edit)
{
    for (const auto& [sOne, sOther] : OPPOSITES)
        if (line.has(sOne) && line.has(sOther))
            return "The options " + std::string(sOne) + " and " + std::string(sOther) +
                   " exclude each other.";
    const CControlSlots* pSlots = findControlSlots(edit.m_record.uControlId);
    for (const CControlOption& option : OPTIONS) {
        if (!line.has(option.m_sName))
            continue;
        const bool bSlider = pSlots && pSlots->m_eForm == EControlForm::Slider;
        const bool bList = edit.m_record.uUserDataType == UINTData;
        if (bSlider && option.m_eTypes != ETypes::Any && bList != (option.m_eTypes == ETypes::List))
            return "The option " + std::string(option.m_sName) + " means nothing for a slider " +
                   (bList ? "with a list, --type enum." : "without a list; --type enum gives it one.");
        const bool bFits = !pSlots || (option.m_uForms & (1U << static_cast<unsigned>(pSlots->m_eForm))) != 0;
        const std::string sFault =
            bFits ? std::visit(CApply{edit, *line.text(option.m_sName)}, option.m_target)
                  : "The option " + std::string(option.m_sName) + " means nothing for slot " +
                        std::to_string(edit.m_record.uControlId) + " (" + std::string(pSlots->m_sName) + ").";
        if (!sFault.empty())
            return sFault;
    }
    return {};
}

} // namespace velmora::cli
