#include "project/codegen/project_values_region.h"

#include "project/codegen/code_text.h"
#include "project/dsp_project.h"
#include "project/preset_file.h"

namespace velmora {

namespace {

void appendQuoted(std::string& sBody, std::string_view sText)
{
    sBody += '"';
    appendLiteral(sBody, sText);
    sBody += '"';
}

// One line: a tab, the member, its value.
void appendMember(std::string& sBody, std::string_view sName, int nValue)
{
    sBody.append("\t").append(sName).append(" = ");
    appendInteger(sBody, nValue);
    sBody += ";\n";
}

void appendMember(std::string& sBody, std::string_view sName, bool bValue)
{
    sBody.append("\t").append(sName).append(" = ");
    appendBoolean(sBody, bValue);
    sBody += ";\n";
}

void appendMember(std::string& sBody, std::string_view sName, std::string_view sValue)
{
    sBody.append("\t").append(sName).append(" = ");
    appendQuoted(sBody, sValue);
    sBody += ";\n";
}

void appendPanel(std::string& sBody, const CDSPProject& project)
{
    appendMember(sBody, "m_uX_TrackPadIndex", static_cast<int>(project.m_uX_TrackPadIndex));
    appendMember(sBody, "m_uY_TrackPadIndex", static_cast<int>(project.m_uY_TrackPadIndex));
    sBody += '\n';
    appendMember(sBody, "m_AssignButton1Name", std::string_view(project.m_AssignButton1Name));
    appendMember(sBody, "m_AssignButton2Name", std::string_view(project.m_AssignButton2Name));
    appendMember(sBody, "m_AssignButton3Name", std::string_view(project.m_AssignButton3Name));
    sBody += '\n';
    appendMember(sBody, "m_bLatchingAssignButton1", project.m_bLatchingAssignButton1);
    appendMember(sBody, "m_bLatchingAssignButton2", project.m_bLatchingAssignButton2);
    appendMember(sBody, "m_bLatchingAssignButton3", project.m_bLatchingAssignButton3);
    sBody += '\n';
}

void appendGUI(std::string& sBody, const CDSPProject& project)
{
    appendMember(sBody, "m_nGUIType", project.m_nGUIType);
    appendMember(sBody, "m_nGUIThemeID", project.m_nGUIThemeID);
    appendMember(sBody, "m_bUseCustomVSTGUI", project.m_bUseCustomVSTGUI);
    sBody += "\n\t";
    appendWords(sBody, "m_uControlTheme[", project.m_uControlTheme);
    sBody += "\n\n";
    appendWords(sBody, "m_uPlugInEx[", project.m_uPlugInEx);
    sBody += '\n';
    appendNumbers(sBody, "m_fPlugInEx[", project.m_fPlugInEx);
    sBody += "\n\n";
    for (std::size_t i = 0; i < std::size(project.m_TextLabels); ++i) {
        appendElement(sBody, "m_TextLabels[", i);
        appendQuoted(sBody, project.m_TextLabels[i] ? project.m_TextLabels[i] : "");
        sBody += "; ";
    }
    sBody += "\n\n";
    appendWords(sBody, "m_uLabelCX[", project.m_uLabelCX);
    sBody += '\n';
    appendWords(sBody, "m_uLabelCY[", project.m_uLabelCY);
    sBody += "\n\n";
}

// "<program>[JS_PROG_INDEX(<step>,<variable>)] = "
void appendProgramElement(std::string& sBody, std::string_view sProgram, UINT uStep, UINT uVariable)
{
    sBody.append(sProgram).append("[JS_PROG_INDEX(");
    appendUnsigned(sBody, uStep);
    sBody += ',';
    appendUnsigned(sBody, uVariable);
    sBody += ")] = ";
}

void appendJoystickProgram(std::string& sBody, const CDSPProject& project)
{
    for (UINT s = 0; s < MAX_JS_PROGRAM_STEPS; ++s)
        for (UINT v = 0; v < MAX_JS_PROGRAM_STEP_VARS; ++v) {
            sBody += '\t';
            appendProgramElement(sBody, "m_pVectorJSProgram", s, v);
            appendFixed(sBody, project.m_pVectorJSProgram[JS_PROG_INDEX(s, v)], 4);
            sBody += ";\n";
        }
    sBody += "\n\n";
}

void appendAxis(std::string& sBody, const std::string& sAxis, std::string_view sName, const CUICtrl& control)
{
    appendMember(sBody, sAxis + ".cControlName", sName);
    appendMember(sBody, sAxis + ".uControlId", 0);
    appendMember(sBody, sAxis + ".bMIDIControl", control.bMIDIControl);
    const auto appendWord = [&](const char* pMember, UINT uValue) {
        sBody.append("\t").append(sAxis).append(pMember);
        appendUnsigned(sBody, uValue);
        sBody += ";\n";
    };
    appendWord(".uMIDIControlCommand = ", control.uMIDIControlCommand);
    appendWord(".uMIDIControlName = ", control.uMIDIControlName);
    appendWord(".uMIDIControlChannel = ", control.uMIDIControlChannel);
    sBody += "\n\n";
}

void appendPreset(std::string& sBody, std::size_t uPreset, const CPreset& preset)
{
    const std::string sIndex = std::to_string(uPreset);
    appendMember(sBody, "m_PresetNames[" + sIndex + "]", std::string_view(preset.name()));
    sBody += "\tpJSProg = new float[MAX_JS_PROGRAM_STEPS*MAX_JS_PROGRAM_STEP_VARS];\n\t";
    for (UINT s = 0; s < MAX_JS_PROGRAM_STEPS; ++s)
        for (UINT v = 0; v < MAX_JS_PROGRAM_STEP_VARS; ++v) {
            appendProgramElement(sBody, "pJSProg", s, v);
            appendFixed(sBody, preset.joystickValue(s, v), 6);
            sBody += ';';
        }
    sBody.append("\n\tm_PresetJSPrograms[").append(sIndex).append("] = pJSProg;\n\n");
}

void appendAdditionalValues(std::string& sBody, std::size_t uPreset, const CPreset& preset)
{
    const std::size_t uCount = preset.additionalCount();
    if (uCount == 0)
        return;
    const std::string sArray = "pPreset" + std::to_string(uPreset);
    sBody.append("\tfloat* ").append(sArray).append(" = new float[").append(std::to_string(uCount));
    sBody += "];\n\t";
    for (std::size_t i = 0; i < uCount; ++i) {
        appendElement(sBody, sArray + "[", i);
        appendFixed(sBody, preset.additionalValue(static_cast<std::uint32_t>(i)), 6);
        sBody += "; ";
    }
    sBody.append("\n\tm_AddlPresetValues[").append(std::to_string(uPreset)).append("] = ");
    sBody.append(sArray).append(";\n\n");
}

} // namespace

CCompiledPresets readCompiledPresets(const std::filesystem::path& projectFolder)
{
    CCompiledPresets presets;
    for (std::size_t p = 0; p < presets.size(); ++p)
        presets[p] = readPreset(projectFolder / "Presets" / (std::to_string(p) + std::string(PRESET_SUFFIX)));
    return presets;
}

void appendElement(std::string& sBody, std::string_view sArray, std::size_t uIndex)
{
    sBody += sArray;
    appendUnsigned(sBody, static_cast<UINT>(uIndex));
    sBody += "] = ";
}

void appendWords(std::string& sBody, std::string_view sArray, std::span<const UINT> values)
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        appendElement(sBody, sArray, i);
        appendUnsigned(sBody, values[i]);
        sBody += "; ";
    }
}

void appendNumbers(std::string& sBody, std::string_view sArray, std::span<const float> values)
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        appendElement(sBody, sArray, i);
        appendFixed(sBody, values[i], 6);
        sBody += "; ";
    }
}

void appendProjectValues(std::string& sBody, const CDSPProject& project, const CCompiledPresets& presets)
{
    appendPanel(sBody, project);
    appendGUI(sBody, project);
    appendJoystickProgram(sBody, project);
    appendAxis(sBody, "m_JS_XCtrl", "MIDI JS X", project.m_JS_XCtrl);
    appendAxis(sBody, "m_JS_YCtrl", "MIDI JS Y", project.m_JS_YCtrl);
    sBody += "\tfloat* pJSProg = NULL;\n";
    for (std::size_t p = 0; p < presets.size(); ++p)
        appendPreset(sBody, p, presets[p]);
    sBody += "\t// Additional Preset Support (avanced)\n";
    for (std::size_t p = 0; p < presets.size(); ++p)
        appendAdditionalValues(sBody, p, presets[p]);
    sBody += '\n';
}

} // namespace velmora
