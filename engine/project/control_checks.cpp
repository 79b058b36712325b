#include "project/control_checks.h"

#include "base/text.h"
#include "project/class_names.h"
#include "project/control_list.h"
#include "project/enumerated_list.h"
#include "project/project_names.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>

namespace velmora {

namespace {

using Run = CControlCheckRun;
using enum EControlField;

constexpr std::string_view SWITCH_LIST = "SWITCH_OFF,SWITCH_ON";
constexpr std::string_view RESERVED_WORD =
    "Enumerated Variables can not contain the word 'this' or any other reserved C++ word.";

// Where the dialogs' words differ, by EControlForm.
struct CFormTexts
{
    std::string_view m_sNameHasBlanks;
    std::string_view m_sNameInUse;
    std::string_view m_sListIsEmpty; // empty: such a list is not told from one without commas
    std::string_view m_sRepeatedCommas;
};

constexpr std::string_view BLANKS_IN_NAME = "Variable name can not contain spaces or tabs.";
constexpr std::string_view NAME_IN_USE = "Variable name is already in use.";
constexpr CFormTexts BUTTON_TEXTS = {
    BLANKS_IN_NAME, NAME_IN_USE,
    "Enumerated Variables list is empty! You must first delcare your Radio Button Names.",
    "Enumerated Variable list has multiple commas in it (e.g. ,,) please remove repeated commas."};

constexpr std::array<CFormTexts, 5> TEXTS = {{
    {BLANKS_IN_NAME, NAME_IN_USE, "", ""},
    BUTTON_TEXTS,
    BUTTON_TEXTS,
    {"Meter Variable name can not contain spaces or tabs.", "Meter Variable name is already in use.", "", ""},
    {BLANKS_IN_NAME, NAME_IN_USE, "Enumerated Variables list is empty!",
     "Enumerated Variable list has multiple commas in it (e.g. ,,) please remove alrepeated commas."},
}};

const CFormTexts& texts(const Run& run)
{
    return TEXTS[static_cast<std::size_t>(run.m_slots.m_eForm)];
}

bool isMeter(const Run& run)
{
    return run.m_slots.m_eForm == EControlForm::LEDMeter;
}

bool isEnumerated(const Run& run)
{
    return run.m_edit.m_record.uUserDataType == UINTData;
}

// The name of the variable that the dialog asks for, and the one that the existing control has.
const std::string& variableName(const Run& run)
{
    return isMeter(run) ? run.m_edit.m_sMeterVariableName : run.m_edit.m_sVariableName;
}

std::string_view existingVariableName(const Run& run)
{
    return isMeter(run) ? run.m_pExisting->cMeterVariableName : run.m_pExisting->cVariableName;
}

// ---- Kind, range and initial value ----

bool takeKind(Run& run)
{
    CUICtrl& record = run.m_edit.m_record;
    record.uControlType = run.m_pExisting ? run.m_pExisting->uControlType : run.m_slots.m_uControlType;
    const bool bSlider = run.m_slots.m_eForm == EControlForm::Slider;
    if (isMeter(run) || (bSlider && record.uUserDataType > UINTData))
        record.uUserDataType = floatData;
    else if (!bSlider)
        record.uUserDataType = UINTData;
    if (run.m_slots.m_bFixedName)
        run.m_edit.m_sName = slotCaption(record.uControlId);
    return true;
}

bool takeLaw(Run& run)
{
    if (isEnumerated(run))
        run.m_edit.m_record.bLogSlider = run.m_edit.m_record.bExpSlider = false;
    return true;
}

bool checkVoltPerOctave(Run& run)
{
    const CUICtrl& record = run.m_edit.m_record;
    return !record.bExpSlider || record.fUserDisplayDataLoLimit > 0.0F ||
           run.refuse(LowLimit, "Low limit must be greater than zero for a 1volt/octave control!");
}

bool limitInitialValue(Run& run)
{
    CUICtrl& record = run.m_edit.m_record;
    const auto [fLow, fHigh] = std::minmax(record.fUserDisplayDataLoLimit, record.fUserDisplayDataHiLimit);
    float& fValue = initialValueOf(record);
    fValue = std::max(std::min(fValue, fHigh), fLow); // what is not a number stays so
    return true;
}

// ---- Names ----

bool checkControlName(Run& run)
{
    for (const CUICtrl* pControl : controlsOf(run.m_project.m_UIControlList))
        if (pControl != run.m_pExisting && !isUserVariableType(pControl->uControlType) &&
            run.m_edit.m_sName == pControl->cControlName)
            return run.refuse(ControlName,
                              "This Control Name already exists. All Control Names must be unique.");
    return true;
}

bool checkVariableCharacters(Run& run)
{
    return isVariableName(variableName(run)) ||
           run.refuse(VariableName,
                      "Variable name can only contain letters, numbers and the underscore symbol, "
                      "no spaces are allowed.");
}

bool checkVariableBlanks(Run& run)
{
    return variableName(run).find_first_of(" \t") == std::string::npos ||
           run.refuse(VariableName, texts(run).m_sNameHasBlanks);
}

// A name that another one ends with counts as in use.
bool checkNewVariable(Run& run)
{
    if (run.m_pExisting)
        return true;
    const bool bInUse = std::ranges::any_of(declaredVariables(run.m_project), [&](const std::string& sName) {
        return sName.ends_with(variableName(run));
    });
    return !bInUse || run.refuse(VariableName, texts(run).m_sNameInUse);
}

// The generated class has to have room for the name. An existing control keeps the one it has.
bool checkClassName(Run& run)
{
    const bool bKept = run.m_pExisting && existingVariableName(run) == variableName(run);
    return bKept || !isTakenInClass(run.m_project, variableName(run), run.m_pExisting) ||
           run.refuse(VariableName, texts(run).m_sNameInUse);
}

// ---- The enumerated list ----

bool takeList(Run& run)
{
    if (run.m_slots.m_eForm == EControlForm::Switch)
        run.m_edit.m_sEnumeratedList = SWITCH_LIST;
    else if (isEnumerated(run))
        run.m_edit.m_sEnumeratedList = cleanedEnumeratedList(run.m_edit.m_sEnumeratedList);
    return true;
}

bool checkListSeparated(Run& run)
{
    const std::string& sList = run.m_edit.m_sEnumeratedList;
    const bool bToldLater = sList.empty() && !texts(run).m_sListIsEmpty.empty();
    return !isEnumerated(run) || bToldLater || sList.find(',') != std::string::npos ||
           run.refuse(EnumeratedList, "Enumerated Variables must be separated by commas!");
}

bool checkListFilled(Run& run)
{
    return !run.m_edit.m_sEnumeratedList.empty() || run.refuse(EnumeratedList, texts(run).m_sListIsEmpty);
}

bool checkRepeatedCommas(Run& run)
{
    return run.m_edit.m_sEnumeratedList.find(",,") == std::string::npos ||
           run.refuse(EnumeratedList, texts(run).m_sRepeatedCommas);
}

bool checkListWords(Run& run)
{
    if (!isEnumerated(run))
        return true;
    std::string sUpper = run.m_edit.m_sEnumeratedList;
    for (char& c : sUpper)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const bool bReserved = sUpper.find("THIS") != std::string::npos ||
                           std::ranges::any_of(split(run.m_edit.m_sEnumeratedList, ','), isKeyword);
    return !bReserved || run.refuse(EnumeratedList, RESERVED_WORD);
}

// The list has to make an enumeration of the generated class. An existing control keeps the list it has.
bool checkListItemNames(Run& run)
{
    const std::string& sList = run.m_edit.m_sEnumeratedList;
    if (!isEnumerated(run) ||
        (run.m_pExisting && run.m_pExisting->uUserDataType == UINTData &&
         sList == run.m_pExisting->cEnumeratedList && existingVariableName(run) == variableName(run)))
        return true;
    const std::string sRefusal = checkListItems(run.m_project, sList, variableName(run), run.m_pExisting);
    return sRefusal.empty() || run.refuse(EnumeratedList, sRefusal);
}

bool findAlteredLists(Run& run)
{
    if (isEnumerated(run))
        run.m_check.m_alteredLists =
            listsAlteredBy(run.m_project, run.m_edit.m_sEnumeratedList, run.m_pExisting);
    return true;
}

bool checkListLength(Run& run)
{
    if (!isEnumerated(run))
        return true;
    const auto uItems = static_cast<std::size_t>(std::ranges::count(run.m_edit.m_sEnumeratedList, ',')) + 1;
    const std::size_t uShared = maximumItems(run.m_project.m_UIControlList, run.m_check.m_alteredLists);
    const std::size_t uMaximum = std::min(run.m_slots.m_uMaxItems, uShared);
    if (uItems <= uMaximum)
        return true;
    std::string sMessage =
        formatted("The enumerated list has %zu strings; the maximum is %zu", uItems, uMaximum);
    sMessage +=
        uShared < run.m_slots.m_uMaxItems ? ", because another control shares the list it alters." : ".";
    return run.refuse(EnumeratedList, sMessage);
}

bool storeList(Run& run)
{
    if (!isEnumerated(run))
        return true;
    CUICtrl& record = run.m_edit.m_record;
    if (run.m_slots.m_eForm == EControlForm::Switch)
        record.fInitUserUINTValue = record.fInitUserUINTValue > 0.0F ? 1.0F : 0.0F;
    else
        record.fInitUserUINTValue = 0.0F;
    record.fUserDisplayDataLoLimit = 0.0F;
    record.fUserDisplayDataHiLimit =
        static_cast<float>(std::ranges::count(run.m_edit.m_sEnumeratedList, ','));
    return true;
}

// A slider and a button ask for each list that is altered; a combo box only gives a notice.
bool askAboutAlteredLists(Run& run)
{
    if (run.m_slots.m_eForm == EControlForm::Combo) {
        if (!run.m_check.m_alteredLists.empty())
            run.m_check.m_notices.emplace_back(
                "Warning: Altering an existing enumerated string list. Check to "
                "make sure you do not have duplicate strings.");
        return true;
    }
    for (const std::string& sList : run.m_check.m_alteredLists)
        run.m_check.m_questions.push_back("You are altering the following existing enumerated list:\n\n\t{" +
                                          sList +
                                          "}\n\nThis will alter it for all other variables that share "
                                          "it.\n\nAre you sure you want to do this?");
    return true;
}

// ---- What no row of a dialog lets through, but a command line or an old file may hold ----

bool checkNumbers(Run& run)
{
    if (isEnumerated(run))
        return true;
    CUICtrl& record = run.m_edit.m_record;
    const std::array<float, 3> values = {record.fUserDisplayDataLoLimit, record.fUserDisplayDataHiLimit,
                                         initialValueOf(record)};
    return std::ranges::all_of(values, [](float fValue) { return std::isfinite(fValue); }) ||
           run.refuse(InitialValue, "The limits and the initial value must be finite numbers.");
}

bool checkMIDI(Run& run)
{
    constexpr UINT CONTROL_CHANGE = 0xB0, PITCH_BEND = 0xE0;
    const CUICtrl& record = run.m_edit.m_record;
    const bool bFine =
        record.uMIDIControlChannel <= 15 && record.uMIDIControlName <= 127 &&
        (record.uMIDIControlCommand == CONTROL_CHANGE || record.uMIDIControlCommand == PITCH_BEND);
    return bFine ||
           run.refuse(MIDIControl, "The MIDI channel must be 1 to 16, the command 176 (controller) or 224 "
                                   "(pitch bend), and the controller 0 to 127.");
}

bool checkMeter(Run& run)
{
    const CUICtrl& record = run.m_edit.m_record;
    const auto isTime = [](float fTime_ms) { return fTime_ms >= 0.0F && std::isfinite(fTime_ms); };
    if (!isTime(record.fMeterAttack_ms) || !isTime(record.fMeterRelease_ms))
        return run.refuse(MeterTimes,
                          "The attack and release times of a meter must be 0 or more milliseconds.");
    return record.uDetectorMode <= DETECT_MODE_NONE ||
           run.refuse(None, "The detect mode must be 0 (peak), 1 (MS), 2 (RMS) or 3 (none).");
}

bool checkTextLengths(Run& run)
{
    struct CText
    {
        EControlField m_eField;
        const std::string& m_sText;
    };
    const CControlEdit& edit = run.m_edit;
    for (const CText& text :
         {CText{ControlName, edit.m_sName}, CText{Units, edit.m_sUnits},
          CText{VariableName, edit.m_sVariableName}, CText{EnumeratedList, edit.m_sEnumeratedList},
          CText{VariableName, edit.m_sMeterVariableName}})
        if (text.m_sText.size() >= CONTROL_TEXT_SIZE)
            return run.refuse(text.m_eField,
                              formatted("A text of a control can hold %d bytes; this one has %zu.",
                                        CONTROL_TEXT_SIZE - 1, text.m_sText.size()));
    return true;
}

// ---- The steps of each form ----

constexpr CControlStep SLIDER_STEPS[] = {takeKind,
                                         takeLaw,
                                         checkVoltPerOctave,
                                         limitInitialValue,
                                         checkControlName,
                                         checkVariableCharacters,
                                         checkVariableBlanks,
                                         checkNewVariable,
                                         takeList,
                                         checkListSeparated,
                                         checkListWords,
                                         checkClassName,
                                         checkListItemNames,
                                         findAlteredLists,
                                         checkListLength,
                                         checkNumbers,
                                         checkMIDI,
                                         checkTextLengths,
                                         askAboutAlteredLists,
                                         storeList};

constexpr CControlStep BUTTON_STEPS[] = {takeKind,
                                         takeLaw,
                                         checkVariableCharacters,
                                         checkVariableBlanks,
                                         checkNewVariable,
                                         takeList,
                                         checkListSeparated,
                                         checkListFilled,
                                         checkRepeatedCommas,
                                         checkListWords,
                                         checkClassName,
                                         checkListItemNames,
                                         findAlteredLists,
                                         checkListLength,
                                         checkMIDI,
                                         checkTextLengths,
                                         askAboutAlteredLists,
                                         storeList};

constexpr CControlStep METER_STEPS[] = {takeKind,         checkVariableCharacters, checkVariableBlanks,
                                        checkNewVariable, checkClassName,          checkNumbers,
                                        checkMeter,       checkTextLengths};

} // namespace

bool CControlCheckRun::refuse(EControlField eField, std::string_view sMessage)
{
    m_check.m_eField = eField;
    m_check.m_sMessage = sMessage;
    return false;
}

std::span<const CControlStep> controlSteps(EControlForm eForm)
{
    switch (eForm) {
    case EControlForm::Slider:
        return SLIDER_STEPS;
    case EControlForm::LEDMeter:
        return METER_STEPS;
    default:
        return BUTTON_STEPS;
    }
}

} // namespace velmora
