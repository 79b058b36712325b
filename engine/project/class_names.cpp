#include "project/class_names.h"

#include "base/text.h"
#include "project/control_list.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

// clang-format off
constexpr std::array CONTRACT_NAMES = std::to_array<std::string_view>({
    "ASSIGN_BUTTON_1", "ASSIGN_BUTTON_2", "ASSIGN_BUTTON_3", "CBiquadFilter", "CDelayLine",
    "CEnvelopeDetector", "CONTROL_TEXT_SIZE", "CONTROL_THEME_BINDING", "COnePoleFilter",
    "CParameterSmoother", "CPlugIn", "CPlugInEx", "CStateVariableFilter", "CUIControlList", "CUICtrl",
    "DETECT_MODE_MS", "DETECT_MODE_NONE", "DETECT_MODE_PEAK", "DETECT_MODE_RMS", "EWindowKind",
    "FILTER_CONTROL_COMBO_VARIABLE", "FILTER_CONTROL_CONTINUOUSLY_VARIABLE",
    "FILTER_CONTROL_DIRECT_DATA_ENTRY", "FILTER_CONTROL_LED_METER", "FILTER_CONTROL_RADIO_SWITCH_VARIABLE",
    "HOST_MESSAGE_CLOSE_GUI", "HOST_MESSAGE_HIDE_GUI", "HOST_MESSAGE_QUERY_HAS_GUI",
    "HOST_MESSAGE_RESET_GUI", "HOST_MESSAGE_SHOW_GUI", "HOST_MESSAGE_SHOW_HOST_GUI", "HOST_MESSAGE_TIMER",
    "JS_PROG_INDEX", "LOWEST_DB", "MAX_IR_LENGTH", "MAX_JS_PROGRAM_STEPS", "MAX_JS_PROGRAM_STEP_VARS",
    "MAX_PRESETS", "PLUGIN_API_VERSION", "PLUGIN_MESSAGE_BUTTON_CHANGE", "PLUGIN_MESSAGE_GUI_CLOSING",
    "PLUGIN_MESSAGE_STATUS_TEXT", "PLUGIN_MESSAGE_UPDATE_GUI", "UINT", "UINTData", "VELMORA_EXPORT",
    "VELMORA_EXPORT_PLUGIN", "VELMORA_PI", "VELMORA_PLUGINCONSTANTS_H", "VELMORA_PLUGIN_H", "VELMORA_RUNS_ONCE",
    "auxInputData",
    "blackmanHarrisWindow", "blackmanWindow", "calcDisplayVariable", "calcSliderVariable", "cleanSample",
    "cleanState", "createObject", "createObjectFunction", "dBToLinear", "doubleData", "flatTopWindow",
    "floatData", "getAPIVersion", "getAPIVersionFunction", "getAdditionalPresetValue",
    "getAdditionalPresetValueCount", "getMyDLLDirectory", "getNormalizedParameter", "getUICtrlByControlID",
    "hammingWindow", "hannWindow", "hostMessageData", "hostWindow", "init", "initFlags", "initGUIData",
    "initJoystick", "initMIDIFreqTable", "initPresetTables", "initUI", "intData", "joystickControlChange",
    "limitValue", "linearToDB", "m_AddlPresetValues", "m_AssignButton1Name", "m_AssignButton2Name",
    "m_AssignButton3Name", "m_JS_XCtrl", "m_JS_YCtrl", "m_MIDIFreqTable", "m_PlugInName",
    "m_PresetJSPrograms", "m_PresetNames", "m_TextLabels", "m_UIControlList", "m_bEnableMIDIControl",
    "m_bLatchingAssignButton1", "m_bLatchingAssignButton2", "m_bLatchingAssignButton3",
    "m_bOutputOnlyPlugIn", "m_bReservedFlag", "m_bUseCustomVSTGUI", "m_bUserCustomGUI",
    "m_bWantAllMIDIMessages", "m_bWantBuffers", "m_bWantChannelBuffers", "m_bWantIRs", "m_fPlugInEx",
    "m_hParentWnd", "m_h_Left", "m_h_Right", "m_nBitDepth", "m_nGUIThemeID", "m_nGUIType", "m_nIRLength",
    "m_nNumWAVEChannels", "m_nSampleRate", "m_pReserved", "m_pVectorJSProgram", "m_uControlTheme",
    "m_uLabelCX", "m_uLabelCY", "m_uMaxInputChannels", "m_uMaxOutputChannels", "m_uPlugInEx",
    "m_uPlugInVersion", "m_uReservedWords", "m_uX_TrackPadIndex", "m_uY_TrackPadIndex", "makeWindow",
    "midiClock", "midiMessage", "midiModWheel", "midiNoteOff", "midiNoteOn", "midiPitchBend",
    "millisecondsToSamples", "prepareForPlay", "processAudioFrame", "processAuxInputBus",
    "processChannelBuffers", "processHostMessage", "processSocketAudioBuffer", "rectangularWindow",
    "reservedOperation16", "reservedOperation20", "sendButtonChange", "sendGUIClosing",
    "sendStatusWndText", "sendUpdateGUI", "setLibraryPath", "setLibraryPathFunction",
    "setNormalizedParameter", "timeToCoefficient", "userInterfaceChange",
});

// Of the standard headers behind the contract, and of the compilers.
constexpr std::array MACRO_NAMES = std::to_array<std::string_view>({
    "BIG_ENDIAN", "BYTE_ORDER", "EOF", "EXIT_FAILURE", "EXIT_SUCCESS", "FALSE", "FP_ILOGB0", "FP_ILOGBNAN",
    "FP_INFINITE", "FP_NAN", "FP_NORMAL", "FP_SUBNORMAL", "FP_ZERO", "HUGE_VAL", "HUGE_VALF", "HUGE_VALL",
    "INFINITY", "LITTLE_ENDIAN", "MATH_ERREXCEPT", "MATH_ERRNO", "MAXFLOAT", "MB_CUR_MAX", "M_1_PI", "M_2_PI",
    "M_2_SQRTPI", "M_E", "M_LN10", "M_LN2", "M_LOG10E", "M_LOG2E", "M_PI", "M_PI_2", "M_PI_4", "M_SQRT1_2",
    "M_SQRT2", "NAN", "NULL", "PDP_ENDIAN", "RAND_MAX", "SNAN", "SNANF", "SNANL", "TRUE", "WCONTINUED", "WEXITED",
    "WNOHANG", "WNOWAIT", "WSTOPPED", "WUNTRACED", "alloca", "errno", "i386", "issubnormal", "linux",
    "math_errhandling", "offsetof", "stderr", "stdin", "stdout", "unix",
});
// clang-format on
static_assert(std::ranges::is_sorted(CONTRACT_NAMES) && std::ranges::is_sorted(MACRO_NAMES));

// The name is the stem and a number behind it.
bool isNumbered(std::string_view sName, std::string_view sStem)
{
    return sName.size() > sStem.size() && sName.starts_with(sStem) &&
           sName.find_first_not_of("0123456789", sStem.size()) == std::string_view::npos;
}

bool isTemporary(std::string_view sName)
{
    return sName == "pJSProg" || isNumbered(sName, "ui") || isNumbered(sName, "pPreset");
}

bool belongsToCompiler(std::string_view sName)
{
    return sName.size() > 1 && sName[0] == '_' && (sName[1] == '_' || (sName[1] >= 'A' && sName[1] <= 'Z'));
}

bool declaresVariable(const CUICtrl& record)
{
    return record.uControlType != FILTER_CONTROL_LED_METER &&
           record.uControlTheme[CONTROL_THEME_BINDING] != 1;
}

bool declaresMeter(const CUICtrl& record)
{
    return record.uControlType == FILTER_CONTROL_LED_METER || record.bUseMeter;
}

} // namespace

std::span<const std::string_view> contractNames()
{
    return CONTRACT_NAMES;
}

bool isReservedName(const CDSPProject& project, std::string_view sName)
{
    return std::ranges::binary_search(CONTRACT_NAMES, sName) ||
           std::ranges::binary_search(MACRO_NAMES, sName) || isTemporary(sName) || belongsToCompiler(sName) ||
           sName == "C" + project.m_sProjectName;
}

CNameSet declaredVariables(const CDSPProject& project, const CUICtrl* pExcept)
{
    CNameSet names;
    for (const CUICtrl* pControl : controlsOf(project.m_UIControlList)) {
        if (pControl != pExcept && declaresVariable(*pControl))
            names.insert(pControl->cVariableName);
        if (pControl != pExcept && declaresMeter(*pControl))
            names.insert(pControl->cMeterVariableName);
    }
    return names;
}

CNameSet declaredItems(const CDSPProject& project, const CUICtrl* pExcept)
{
    CNameSet names;
    for (const CUICtrl* pControl : controlsOf(project.m_UIControlList))
        if (pControl != pExcept && pControl->uUserDataType == UINTData)
            for (std::string& sItem : split(pControl->cEnumeratedList, ','))
                names.insert(std::move(sItem));
    return names;
}

bool isTakenInClass(const CDSPProject& project, std::string_view sName, const CUICtrl* pExcept)
{
    return isReservedName(project, sName) || declaredVariables(project, pExcept).contains(sName) ||
           declaredItems(project, pExcept).contains(sName);
}

} // namespace velmora
