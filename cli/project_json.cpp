#include "cli/project_json.h"

#include "base/text.h"
#include "cli/json_writer.h"
#include "cli/text_table.h"
#include "project/control_list.h"
#include "project/dsp_project.h"

#include <array>
#include <span>
#include <type_traits>
#include <variant>

namespace velmora::cli {

namespace {

// A member of a record under its own name.
template <class Record, class... Member>
struct CNamedMember
{
    const char* m_pName;
    std::variant<Member Record::*...> m_member;
};

using CControlMember = CNamedMember<CUICtrl, UINT, int, float, bool, const char*, UINT[32], UINT[64],
                                    float[64], double[MAX_PRESETS]>;

constexpr CControlMember CONTROL_MEMBERS[] = {
    {"uControlType", &CUICtrl::uControlType},
    {"uControlId", &CUICtrl::uControlId},
    {"cControlName", &CUICtrl::cControlName},
    {"cControlUnits", &CUICtrl::cControlUnits},
    {"cVariableName", &CUICtrl::cVariableName},
    {"uUserDataType", &CUICtrl::uUserDataType},
    {"fUserDisplayDataLoLimit", &CUICtrl::fUserDisplayDataLoLimit},
    {"fUserDisplayDataHiLimit", &CUICtrl::fUserDisplayDataHiLimit},
    {"fInitUserIntValue", &CUICtrl::fInitUserIntValue},
    {"fInitUserFloatValue", &CUICtrl::fInitUserFloatValue},
    {"fInitUserDoubleValue", &CUICtrl::fInitUserDoubleValue},
    {"fInitUserUINTValue", &CUICtrl::fInitUserUINTValue},
    {"cEnumeratedList", &CUICtrl::cEnumeratedList},
    {"bOwnerControl", &CUICtrl::bOwnerControl},
    {"bLogSlider", &CUICtrl::bLogSlider},
    {"bExpSlider", &CUICtrl::bExpSlider},
    {"bUseMeter", &CUICtrl::bUseMeter},
    {"cMeterVariableName", &CUICtrl::cMeterVariableName},
    {"uDetectorMode", &CUICtrl::uDetectorMode},
    {"bUpsideDownMeter", &CUICtrl::bUpsideDownMeter},
    {"bLogMeter", &CUICtrl::bLogMeter},
    {"uMeterColorScheme", &CUICtrl::uMeterColorScheme},
    {"fMeterAttack_ms", &CUICtrl::fMeterAttack_ms},
    {"fMeterRelease_ms", &CUICtrl::fMeterRelease_ms},
    {"bMIDIControl", &CUICtrl::bMIDIControl},
    {"uMIDIControlCommand", &CUICtrl::uMIDIControlCommand},
    {"uMIDIControlName", &CUICtrl::uMIDIControlName},
    {"uMIDIControlChannel", &CUICtrl::uMIDIControlChannel},
    {"nGUIRow", &CUICtrl::nGUIRow},
    {"nGUIColumn", &CUICtrl::nGUIColumn},
    {"uControlTheme", &CUICtrl::uControlTheme},
    {"dPresetData", &CUICtrl::dPresetData},
    {"uFluxCapControl", &CUICtrl::uFluxCapControl},
    {"fFluxCapData", &CUICtrl::fFluxCapData},
};

using CProjectMember =
    CNamedMember<CDSPProject, std::string, bool, int, UINT, UINT[64], float[64], const char* [64],
                 std::array<std::uint32_t, 8>, std::vector<std::string>, CUICtrl>;

constexpr CProjectMember PROJECT_MEMBERS[] = {
    {"m_sProjectName", &CDSPProject::m_sProjectName},
    {"m_sProjectFolder", &CDSPProject::m_sProjectFolder},
    {"m_sProjectFile", &CDSPProject::m_sProjectFile},
    {"m_sHeaderFile", &CDSPProject::m_sHeaderFile},
    {"m_sSourceFile", &CDSPProject::m_sSourceFile},
    {"m_sSolutionFile", &CDSPProject::m_sSolutionFile},
    {"m_sCompanyName", &CDSPProject::m_sCompanyName},
    {"m_sCompanyCode", &CDSPProject::m_sCompanyCode},
    {"m_sPlugInCode", &CDSPProject::m_sPlugInCode},
    {"m_sVSTPlugInCode", &CDSPProject::m_sVSTPlugInCode},
    {"m_bOutputOnlyPlugIn", &CDSPProject::m_bOutputOnlyPlugIn},
    {"m_bUseCustomVSTGUI", &CDSPProject::m_bUseCustomVSTGUI},
    {"m_bUserCustomGUI", &CDSPProject::m_bUserCustomGUI},
    {"m_bVSTCompatible", &CDSPProject::m_bVSTCompatible},
    {"m_bWriteVSTWrapper", &CDSPProject::m_bWriteVSTWrapper},
    {"m_bWriteAUWrapper", &CDSPProject::m_bWriteAUWrapper},
    {"m_bCarbonGUI", &CDSPProject::m_bCarbonGUI},
    {"m_bCocoaGUI", &CDSPProject::m_bCocoaGUI},
    {"m_bSidechainEnabled", &CDSPProject::m_bSidechainEnabled},
    {"m_sSidechainFile", &CDSPProject::m_sSidechainFile},
    {"m_bProjectFlagV3", &CDSPProject::m_bProjectFlagV3},
    {"m_AssignButton1Name", &CDSPProject::m_AssignButton1Name},
    {"m_AssignButton2Name", &CDSPProject::m_AssignButton2Name},
    {"m_AssignButton3Name", &CDSPProject::m_AssignButton3Name},
    {"m_bLatchingAssignButton1", &CDSPProject::m_bLatchingAssignButton1},
    {"m_bLatchingAssignButton2", &CDSPProject::m_bLatchingAssignButton2},
    {"m_bLatchingAssignButton3", &CDSPProject::m_bLatchingAssignButton3},
    {"m_uX_TrackPadIndex", &CDSPProject::m_uX_TrackPadIndex},
    {"m_uY_TrackPadIndex", &CDSPProject::m_uY_TrackPadIndex},
    {"m_JS_XCtrl", &CDSPProject::m_JS_XCtrl},
    {"m_JS_YCtrl", &CDSPProject::m_JS_YCtrl},
    {"m_nGUIThemeID", &CDSPProject::m_nGUIThemeID},
    {"m_nGUIType", &CDSPProject::m_nGUIType},
    {"m_uControlTheme", &CDSPProject::m_uControlTheme},
    {"m_uPlugInEx", &CDSPProject::m_uPlugInEx},
    {"m_fPlugInEx", &CDSPProject::m_fPlugInEx},
    {"m_TextLabels", &CDSPProject::m_TextLabels},
    {"m_uLabelCX", &CDSPProject::m_uLabelCX},
    {"m_uLabelCY", &CDSPProject::m_uLabelCY},
    {"m_uGUIDWords", &CDSPProject::m_uGUIDWords},
    {"m_TextLabelStrings", &CDSPProject::m_TextLabelStrings},
};

// A text of a record; null if there is none.
void writeText(CJsonWriter& json, const char* pText)
{
    if (pText)
        json.value(pText);
    else
        json.null();
}

template <class T>
void writeMember(CJsonWriter& json, const T& tMember)
{
    if constexpr (std::is_same_v<T, CUICtrl>) {
        writeControlRecord(json, tMember);
    } else if constexpr (std::is_pointer_v<T>) {
        writeText(json, tMember);
    } else if constexpr (std::is_scalar_v<T> || std::is_same_v<T, std::string>) {
        json.value(tMember);
    } else {
        json.beginArray();
        for (const auto& element : tMember)
            writeMember(json, element);
        json.endArray();
    }
}

template <class Record, class Members>
void writeMembers(CJsonWriter& json, const Record& record, const Members& members)
{
    for (const auto& member : members) {
        json.key(member.m_pName);
        std::visit([&](auto pMember) { writeMember(json, record.*pMember); }, member.m_member);
    }
}

const char* dataTypeName(UINT uUserDataType)
{
    constexpr std::array NAMES = {"int", "float", "double", "enum"};
    return uUserDataType < NAMES.size() ? NAMES[uUserDataType] : "none";
}

float initialValueOf(const CUICtrl& control)
{
    const std::array values = {control.fInitUserIntValue, control.fInitUserFloatValue,
                               control.fInitUserDoubleValue, control.fInitUserUINTValue};
    return control.uUserDataType < values.size() ? values[control.uUserDataType] : 0.0F;
}

std::string shortNumber(float fValue)
{
    return formatted("%g", static_cast<double>(fValue));
}

std::string midiText(const CUICtrl& control)
{
    if (!control.bMIDIControl)
        return {};
    return formatted("channel %u, %u, %u", control.uMIDIControlChannel + 1, control.uMIDIControlCommand,
                     control.uMIDIControlName);
}

std::string textOf(const char* pText)
{
    return pText ? pText : std::string();
}

std::vector<std::string> controlRow(const CUICtrl& control)
{
    const CControlKind* pKind = findControlKind(control.uControlType);
    const bool bMeter = control.uControlType == FILTER_CONTROL_LED_METER;
    std::vector<std::string> cells = {std::to_string(control.uControlId), textOf(control.cControlName),
                                      pKind ? pKind->m_pName : std::to_string(control.uControlType),
                                      textOf(bMeter ? control.cMeterVariableName : control.cVariableName)};
    if (bMeter)
        return cells; // a meter has no range
    const bool bUserVariable = isUserVariableType(control.uControlType);
    const bool bList = control.uUserDataType == UINTData;
    cells.emplace_back(bUserVariable && bList ? "UINT" : dataTypeName(control.uUserDataType));
    cells.push_back(shortNumber(initialValueOf(control)));
    if (bUserVariable)
        return cells;
    cells.push_back(shortNumber(control.fUserDisplayDataLoLimit));
    cells.push_back(shortNumber(control.fUserDisplayDataHiLimit));
    cells.push_back(textOf(control.cControlUnits));
    cells.emplace_back(bList ? "" : control.bLogSlider ? "log" : control.bExpSlider ? "exp" : "linear");
    cells.push_back(midiText(control));
    cells.push_back(bList ? textOf(control.cEnumeratedList) : std::string());
    return cells;
}

// The text of a member that has one worth a line; empty for the others.
struct CMemberText
{
    std::string operator()(const std::string& sText) const { return sText; }
    std::string operator()(bool bValue) const { return bValue ? "yes" : "no"; }
    template <class T>
    std::string operator()(const T&) const
    {
        return {};
    }
};

} // namespace

void writeControlRecord(CJsonWriter& json, const CUICtrl& control)
{
    json.beginObject();
    writeMembers(json, control, CONTROL_MEMBERS);
    json.endObject();
}

std::string controlRecordAsJson(const CUICtrl& control)
{
    CJsonWriter json;
    writeControlRecord(json, control);
    return json.text();
}

std::string projectAsJson(const CDSPProject& project)
{
    CJsonWriter json;
    json.beginObject();
    json.member("schema", project.loadedSchema());
    writeMembers(json, project, PROJECT_MEMBERS);
    json.key("m_pVectorJSProgram");
    json.array(std::span<const float>(project.m_pVectorJSProgram,
                                      std::size_t{MAX_JS_PROGRAM_STEPS} * MAX_JS_PROGRAM_STEP_VARS));
    json.key("m_UserVariables");
    json.beginArray();
    for (const userVariable& variable : project.m_UserVariables) {
        json.beginObject();
        json.member("uDataType", variable.uDataType);
        json.member("uReserved", variable.uReserved);
        json.member("sName", variable.sName);
        json.member("sInitialValue", variable.sInitialValue);
        json.endObject();
    }
    json.endArray();
    json.key("controls");
    json.beginArray();
    for (const CUICtrl* pControl : controlsOf(project.m_UIControlList))
        writeControlRecord(json, *pControl);
    json.endArray();
    json.endObject();
    return json.text();
}

std::string projectAsText(const CDSPProject& project)
{
    CTextTable members({"Member", "Value"});
    for (const CProjectMember& member : PROJECT_MEMBERS) {
        const std::string sText =
            std::visit([&](auto pMember) { return CMemberText()(project.*pMember); }, member.m_member);
        if (!sText.empty())
            members.addRow({member.m_pName, sText});
    }
    members.addRow({"m_fPlugInEx[0] (latency)", shortNumber(project.m_fPlugInEx[0])});
    members.addRow({"m_uPlugInEx[0] (version)", std::to_string(project.m_uPlugInEx[0])});
    members.addRow({"schema", std::to_string(project.loadedSchema())});
    return members.text() + "\n" + controlsAsTable(controlsOf(project.m_UIControlList));
}

std::string controlsAsTable(const std::vector<CUICtrl*>& controls)
{
    if (controls.empty())
        return "No controls.\n";
    CTextTable table({">Id", "Name", "Kind", "Variable", "Type", ">Initial", ">Low", ">High", "Units", "Law",
                      "MIDI", "List"});
    for (const CUICtrl* pControl : controls)
        table.addRow(controlRow(*pControl));
    return table.text();
}

} // namespace velmora::cli
