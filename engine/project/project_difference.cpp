#include "project/project_difference.h"

#include "base/text.h"
#include "project/assignable_buttons.h"
#include "project/control_fields.h"
#include "project/control_kinds.h"
#include "project/control_list.h"
#include "project/dsp_project.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <type_traits>
#include <utility>

namespace velmora {

namespace {

// A control's id, and how many with that id stand ahead of it in its list.
using CControlKey = std::pair<UINT, unsigned>;

std::vector<std::pair<CControlKey, const CUICtrl*>> keyedControls(const CDSPProject& project)
{
    std::map<UINT, unsigned> seen;
    std::vector<std::pair<CControlKey, const CUICtrl*>> controls;
    for (const CUICtrl* pControl : controlsOf(project.m_UIControlList))
        controls.push_back({{pControl->uControlId, seen[pControl->uControlId]++}, pControl});
    return controls;
}

// slider "Volume" (id 3), user variable m_fState
std::string described(const CUICtrl& control)
{
    if (isUserVariableType(control.uControlType))
        return "user variable " + std::string(control.cVariableName);
    const CControlKind* pKind = findControlKind(control.uControlType);
    return std::string(pKind ? pKind->m_pName : "control") + " \"" + control.cControlName + "\" (id " +
           std::to_string(control.uControlId) + ")";
}

std::string changed(const std::string& sWhat, const std::string& sBefore, const std::string& sAfter)
{
    if (sBefore == sAfter)
        return sWhat + " changed.";
    return sWhat + " changed from " + sBefore + " to " + sAfter + ".";
}

std::string quoted(const std::string& sText)
{
    return "\"" + sText + "\"";
}

template <typename Value>
std::string valueText(const Value& value)
{
    if constexpr (std::is_same_v<Value, bool>)
        return value ? "on" : "off";
    else if constexpr (std::is_same_v<Value, std::string>)
        return quoted(value);
    else
        return value == static_cast<Value>(-1) ? "none" : std::to_string(value);
}

// One field of the project, or a group of fields whose values say nothing to a person.
struct CProjectField
{
    std::string_view m_sName;
    bool (*m_pIsSame)(const CDSPProject& left, const CDSPProject& right);
    std::string (*m_pText)(const CDSPProject& project);
};

template <auto... pMembers>
bool isSame(const CDSPProject& left, const CDSPProject& right)
{
    const auto isSameMember = [&](auto pMember) {
        const auto& leftValue = left.*pMember;
        if constexpr (std::is_array_v<std::remove_reference_t<decltype(leftValue)>>)
            return std::memcmp(leftValue, right.*pMember, sizeof(leftValue)) == 0;
        else
            return leftValue == right.*pMember;
    };
    return (isSameMember(pMembers) && ...);
}

template <auto pMember>
std::string text(const CDSPProject& project)
{
    return valueText(project.*pMember);
}

template <auto pMember>
constexpr CProjectField field(std::string_view sName)
{
    return {sName, isSame<pMember>, text<pMember>};
}

std::string latencyText(const CDSPProject& project)
{
    return formatted("%g", static_cast<double>(project.m_fPlugInEx[0]));
}

bool isSameLatency(const CDSPProject& left, const CDSPProject& right)
{
    return left.m_fPlugInEx[0] == right.m_fPlugInEx[0];
}

bool areSameLabels(const CDSPProject& left, const CDSPProject& right)
{
    const auto isSameText = [](const char* pLeft, const char* pRight) {
        return std::string_view(pLeft ? pLeft : "") == (pRight ? pRight : "");
    };
    return std::ranges::equal(left.m_TextLabels, right.m_TextLabels, isSameText) &&
           isSame<&CDSPProject::m_uLabelCX, &CDSPProject::m_uLabelCY>(left, right);
}

bool isSameProgram(const CDSPProject& left, const CDSPProject& right)
{
    constexpr std::size_t VALUES = MAX_JS_PROGRAM_STEPS * MAX_JS_PROGRAM_STEP_VARS;
    return std::equal(left.m_pVectorJSProgram, left.m_pVectorJSProgram + VALUES, right.m_pVectorJSProgram);
}

bool areSameAxes(const CDSPProject& left, const CDSPProject& right)
{
    return isSameControl(left.m_JS_XCtrl, right.m_JS_XCtrl) &&
           isSameControl(left.m_JS_YCtrl, right.m_JS_YCtrl);
}

constexpr CProjectField FIELDS[] = {
    field<&CDSPProject::m_uX_TrackPadIndex>("The track pad's X control"),
    field<&CDSPProject::m_uY_TrackPadIndex>("The track pad's Y control"),
    {"The vector joystick's program", isSameProgram, nullptr},
    {"The MIDI setup of the vector joystick", areSameAxes, nullptr},
    field<&CDSPProject::m_bOutputOnlyPlugIn>("\"Output only synthesizer\""),
    {"The latency in samples", isSameLatency, latencyText},
    field<&CDSPProject::m_sSidechainFile>("The sidechain file"),
    field<&CDSPProject::m_bSidechainEnabled>("The sidechain input of exports"),
    field<&CDSPProject::m_sCompanyName>("The company name"),
    field<&CDSPProject::m_sCompanyCode>("The company code"),
    field<&CDSPProject::m_sPlugInCode>("The plug-in code"),
    field<&CDSPProject::m_sVSTPlugInCode>("The VST plug-in code"),
    field<&CDSPProject::m_bVSTCompatible>("VST compatibility"),
    field<&CDSPProject::m_bWriteVSTWrapper>("The VST wrapper"),
    field<&CDSPProject::m_bWriteAUWrapper>("The Audio Units wrapper"),
    field<&CDSPProject::m_bCarbonGUI>("The Carbon GUI"),
    field<&CDSPProject::m_bCocoaGUI>("The Cocoa GUI"),
    field<&CDSPProject::m_bUserCustomGUI>("The user's own GUI"),
    field<&CDSPProject::m_bUseCustomVSTGUI>("The custom GUI"),
    {"The set of GUI labels", areSameLabels, nullptr},
    {"The setup of the classic GUI",
     isSame<&CDSPProject::m_nGUIType, &CDSPProject::m_nGUIThemeID, &CDSPProject::m_uControlTheme>, nullptr},
};

} // namespace

CProjectDifference::CProjectDifference(const CDSPProject& before, const CDSPProject& after)
{
    compareControls(before, after);
    compareButtons(before, after);
    compareFields(before, after);
}

void CProjectDifference::compareControls(const CDSPProject& before, const CDSPProject& after)
{
    const auto old = keyedControls(before);
    std::map<CControlKey, const CUICtrl*> added;
    const auto current = keyedControls(after);
    added.insert(current.begin(), current.end());
    for (const auto& [key, pBefore] : old) {
        const auto found = added.find(key);
        if (found == added.end()) {
            m_sentences.push_back("The " + described(*pBefore) + " was removed.");
            continue;
        }
        for (const CControlField& row : controlFields())
            if (!row.m_pIsSame(*pBefore, *found->second))
                m_sentences.push_back(
                    changed("The " + std::string(row.m_sName) + " of the " + described(*pBefore),
                            row.m_pText ? row.m_pText(*pBefore) : "",
                            row.m_pText ? row.m_pText(*found->second) : ""));
        added.erase(found);
    }
    for (const auto& [key, pAfter] : current)
        if (added.contains(key))
            m_sentences.push_back("The " + described(*pAfter) + " was added.");
}

void CProjectDifference::compareButtons(const CDSPProject& before, const CDSPProject& after)
{
    const CAssignableButtons old = assignableButtonsOf(before);
    const CAssignableButtons current = assignableButtonsOf(after);
    for (std::size_t i = 0; i < old.size(); ++i) {
        const std::string sButton = "assignable button " + std::to_string(i + 1);
        if (old[i].m_sName != current[i].m_sName)
            m_sentences.push_back(
                changed("The name of " + sButton, quoted(old[i].m_sName), quoted(current[i].m_sName)));
        if (old[i].m_bLatching != current[i].m_bLatching)
            m_sentences.push_back(changed("Latching of " + sButton, valueText(old[i].m_bLatching),
                                          valueText(current[i].m_bLatching)));
    }
}

void CProjectDifference::compareFields(const CDSPProject& before, const CDSPProject& after)
{
    for (const CProjectField& row : FIELDS)
        if (!row.m_pIsSame(before, after))
            m_sentences.push_back(changed(std::string(row.m_sName), row.m_pText ? row.m_pText(before) : "",
                                          row.m_pText ? row.m_pText(after) : ""));
}

} // namespace velmora
