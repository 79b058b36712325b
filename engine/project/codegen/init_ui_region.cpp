#include "project/codegen/init_ui_region.h"

#include "project/codegen/code_text.h"
#include "project/control_list.h"
#include "project/dsp_project.h"

#include <string_view>
#include <vector>

namespace velmora {

namespace {

// What the lines of one control are made of.
struct CControlText
{
    const CUICtrl& m_control;
    std::string m_sName;          // of the temporary: ui0
    std::string m_sVariable;      // as an identifier
    std::string m_sMeterVariable; // as an identifier
};

// One line: a tab, the temporary's name, the text, the value, the end of the statement.
struct CControlLine
{
    std::string_view m_sText;
    bool (*m_isWritten)(const CUICtrl&);
    void (*m_appendValue)(std::string&, const CControlText&);
};

bool always(const CUICtrl&)
{
    return true;
}

bool ofMeter(const CUICtrl& control)
{
    return control.uControlType == FILTER_CONTROL_LED_METER;
}

bool ofUsedMeter(const CUICtrl& control)
{
    return ofMeter(control) && control.bUseMeter;
}

bool ofValue(const CUICtrl& control)
{
    return !ofMeter(control);
}

bool ofBoundValue(const CUICtrl& control)
{
    return !ofMeter(control) && control.uControlTheme[CONTROL_THEME_BINDING] == 0;
}

UINT dataTypeOf(const CUICtrl& control)
{
    return control.uUserDataType <= UINTData ? control.uUserDataType : static_cast<UINT>(floatData);
}

template <auto Member>
void whole(std::string& sCode, const CControlText& text)
{
    appendUnsigned(sCode, text.m_control.*Member);
}

template <auto Member>
void signedWhole(std::string& sCode, const CControlText& text)
{
    appendInteger(sCode, text.m_control.*Member);
}

template <auto Member>
void boolean(std::string& sCode, const CControlText& text)
{
    appendBoolean(sCode, text.m_control.*Member);
}

template <auto Member>
void number(std::string& sCode, const CControlText& text)
{
    appendFixed(sCode, text.m_control.*Member, 6);
}

template <auto Member>
void quoted(std::string& sCode, const CControlText& text)
{
    sCode += '"';
    appendLiteral(sCode, text.m_control.*Member);
    sCode += '"';
}

template <UINT DataType, auto Member>
void initialValue(std::string& sCode, const CControlText& text)
{
    if (dataTypeOf(text.m_control) == DataType)
        appendFixed(sCode, text.m_control.*Member, 6);
    else
        sCode += '0';
}

template <UINT DataType>
void cookedPointer(std::string& sCode, const CControlText& text)
{
    if (dataTypeOf(text.m_control) == DataType)
        sCode.append("&").append(text.m_sVariable);
    else
        sCode += "NULL";
}

void controlType(std::string& sCode, const CControlText& text)
{
    if (const CControlKind* pKind = findControlKind(text.m_control.uControlType))
        sCode += pKind->m_pSymbol;
    else
        appendUnsigned(sCode, text.m_control.uControlType);
}

void dataType(std::string& sCode, const CControlText& text)
{
    constexpr std::string_view NAMES[] = {"intData", "floatData", "doubleData", "UINTData"};
    sCode += NAMES[dataTypeOf(text.m_control)];
}

void meterPointer(std::string& sCode, const CControlText& text)
{
    sCode.append("&").append(text.m_sMeterVariable);
}

constexpr CControlLine LINES_AHEAD_OF_PRESETS[] = {
    {"->uControlType = ", always, controlType},
    {"->uControlId = ", always, whole<&CUICtrl::uControlId>},
    {"->bLogSlider = ", always, boolean<&CUICtrl::bLogSlider>},
    {"->bExpSlider = ", always, boolean<&CUICtrl::bExpSlider>},
    {"->fUserDisplayDataLoLimit = ", ofValue, number<&CUICtrl::fUserDisplayDataLoLimit>},
    {"->fUserDisplayDataHiLimit = ", ofValue, number<&CUICtrl::fUserDisplayDataHiLimit>},
    {"->uUserDataType = ", ofValue, dataType},
    {"->fInitUserIntValue = ", ofValue, initialValue<intData, &CUICtrl::fInitUserIntValue>},
    {"->fInitUserFloatValue = ", ofValue, initialValue<floatData, &CUICtrl::fInitUserFloatValue>},
    {"->fInitUserDoubleValue = ", ofValue, initialValue<doubleData, &CUICtrl::fInitUserDoubleValue>},
    {"->fInitUserUINTValue = ", ofValue, initialValue<UINTData, &CUICtrl::fInitUserUINTValue>},
    {"->m_pUserCookedIntData = ", ofBoundValue, cookedPointer<intData>},
    {"->m_pUserCookedFloatData = ", ofBoundValue, cookedPointer<floatData>},
    {"->m_pUserCookedDoubleData = ", ofBoundValue, cookedPointer<doubleData>},
    {"->m_pUserCookedUINTData = ", ofBoundValue, cookedPointer<UINTData>},
    {"->cControlUnits = ", ofValue, quoted<&CUICtrl::cControlUnits>},
    {"->cVariableName = ", ofValue, quoted<&CUICtrl::cVariableName>},
    {"->cEnumeratedList = ", ofValue, quoted<&CUICtrl::cEnumeratedList>},
};

constexpr CControlLine LINES_BEHIND_PRESETS[] = {
    {"->cControlName = ", always, quoted<&CUICtrl::cControlName>},
    {"->bOwnerControl = ", always, boolean<&CUICtrl::bOwnerControl>},
    {"->bMIDIControl = ", always, boolean<&CUICtrl::bMIDIControl>},
    {"->uMIDIControlCommand = ", always, whole<&CUICtrl::uMIDIControlCommand>},
    {"->uMIDIControlName = ", always, whole<&CUICtrl::uMIDIControlName>},
    {"->uMIDIControlChannel = ", always, whole<&CUICtrl::uMIDIControlChannel>},
    {"->bUseMeter = ", ofMeter, boolean<&CUICtrl::bUseMeter>},
    {"->bUpsideDownMeter = ", ofMeter, boolean<&CUICtrl::bUpsideDownMeter>},
    {"->bLogMeter = ", ofMeter, boolean<&CUICtrl::bLogMeter>},
    {"->uDetectorMode = ", ofMeter, whole<&CUICtrl::uDetectorMode>},
    {"->uMeterColorScheme = ", ofMeter, whole<&CUICtrl::uMeterColorScheme>},
    {"->fMeterAttack_ms = ", ofMeter, number<&CUICtrl::fMeterAttack_ms>},
    {"->fMeterRelease_ms = ", ofMeter, number<&CUICtrl::fMeterRelease_ms>},
    {"->cMeterVariableName = ", ofUsedMeter, quoted<&CUICtrl::cMeterVariableName>},
    {"->m_pCurrentMeterValue = ", ofUsedMeter, meterPointer},
    {"->nGUIRow = ", always, signedWhole<&CUICtrl::nGUIRow>},
    {"->nGUIColumn = ", always, signedWhole<&CUICtrl::nGUIColumn>},
};

template <std::size_t Size>
void appendLines(std::string& sBody, const CControlLine (&lines)[Size], const CControlText& text)
{
    for (const CControlLine& line : lines) {
        if (!line.m_isWritten(text.m_control))
            continue;
        sBody.append("\t").append(text.m_sName).append(line.m_sText);
        line.m_appendValue(sBody, text);
        sBody += ";\n";
    }
}

void appendInitialValues(std::string& sBody, const CControlText& text)
{
    const CUICtrl& control = text.m_control;
    if (control.uControlTheme[CONTROL_THEME_BINDING] != 0)
        return;
    if (!ofMeter(control) && control.uUserDataType <= UINTData) {
        sBody.append("\t").append(text.m_sVariable).append(" = ");
        switch (control.uUserDataType) {
        case intData:
            appendInteger(sBody, truncatedToInt(control.fInitUserIntValue));
            break;
        case floatData:
            appendFixed(sBody, control.fInitUserFloatValue, 6);
            break;
        case doubleData:
            appendFixed(sBody, control.fInitUserDoubleValue, 6);
            break;
        default:
            appendUnsigned(sBody, truncatedToUnsigned(control.fInitUserUINTValue));
        }
        sBody += ";\n";
    }
    if (control.bUseMeter)
        sBody.append("\t").append(text.m_sMeterVariable).append(" = 0.0;\n");
}

void appendPresetLine(std::string& sBody, const CControlText& text, const CCompiledPresets& presets)
{
    sBody += '\t';
    for (std::size_t p = 0; p < presets.size(); ++p) {
        appendElement(sBody, text.m_sName + "->dPresetData[", p);
        appendFixed(sBody, presets[p].controlValue(text.m_control.uControlId), 6);
        sBody += ';';
    }
    sBody += '\n';
}

void appendControl(std::string& sBody, const CControlText& text, const CCompiledPresets& presets)
{
    appendInitialValues(sBody, text);
    sBody.append("\tCUICtrl* ").append(text.m_sName).append(" = new CUICtrl;\n");
    appendLines(sBody, LINES_AHEAD_OF_PRESETS, text);
    appendPresetLine(sBody, text, presets);
    appendLines(sBody, LINES_BEHIND_PRESETS, text);
    sBody += '\t';
    appendWords(sBody, text.m_sName + "->uControlTheme[", text.m_control.uControlTheme);
    sBody += "\n\t";
    appendWords(sBody, text.m_sName + "->uFluxCapControl[", text.m_control.uFluxCapControl);
    sBody += "\n\t";
    appendNumbers(sBody, text.m_sName + "->fFluxCapData[", text.m_control.fFluxCapData);
    sBody.append("\n\tm_UIControlList.append(*").append(text.m_sName).append(");\n");
    sBody.append("\tdelete ").append(text.m_sName).append(";\n\n\n");
}

} // namespace

std::string initUIBody(const CDSPProject& project, const CCompiledPresets& presets)
{
    constexpr std::size_t BYTES_PER_CONTROL = 10000;
    constexpr std::size_t BYTES_OF_PROJECT = 131072;
    const std::vector<CUICtrl*> controls = controlsOf(project.m_UIControlList);
    std::string sBody;
    sBody.reserve(controls.size() * BYTES_PER_CONTROL + BYTES_OF_PROJECT);
    for (std::size_t n = 0; n < controls.size(); ++n) {
        const CUICtrl& control = *controls[n];
        appendControl(sBody,
                      {control, "ui" + std::to_string(n), variableIdentifier(control),
                       meterVariableIdentifier(control)},
                      presets);
    }
    appendProjectValues(sBody, project, presets);
    return sBody;
}

} // namespace velmora
