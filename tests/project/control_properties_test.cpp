#include "project/control_checks.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/enumerated_list.h"
#include "support/test_support.h"

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <limits>

namespace velmora {
namespace {

using enum EControlField;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr const char* CHARACTERS =
    "Variable name can only contain letters, numbers and the underscore symbol, no spaces are allowed.";
constexpr const char* IN_USE = "Variable name is already in use.";
constexpr const char* SEPARATED = "Enumerated Variables must be separated by commas!";
constexpr const char* RESERVED_WORD =
    "Enumerated Variables can not contain the word 'this' or any other reserved C++ word.";

// A project with a slider, a bank and a combo box that share a list, and a meter.
struct CBandProject : CDSPProject
{
    CBandProject()
    {
        m_sProjectName = "Band";
        add(3, "Gain", "m_fGain", "");
        add(41, "Range", "m_uRange", "LOW,MID,HIGH");
        add(70, "CMBO1", "m_uBand", "LOW,MID,HIGH");
        add(71, "CMBO2", "m_uShape", "SINE,SAW,NOISE_A,NOISE_B,NOISE_C,NOISE_D,NOISE_E,NOISE_F,NOISE_G");
        add(50, "Out", "m_fUnused", "");
    }

    void add(UINT uId, const char* pName, const char* pVariable, const char* pList)
    {
        CControlEdit edit = newControlEdit(*this, uId);
        edit.m_sName = pName;
        edit.m_sVariableName = pVariable;
        edit.m_sEnumeratedList = pList;
        const CControlCheck check = checkControl(*this, edit, nullptr);
        ASSERT_EQ(check.m_sMessage, "");
        storeControl(*this, check);
    }

    [[nodiscard]] const CUICtrl* at(UINT uId) const { return findControl(m_UIControlList, uId); }
};

// A new control with a name of its own.
CControlEdit freshEdit(const CDSPProject& project, UINT uId)
{
    CControlEdit edit = newControlEdit(project, uId);
    edit.m_sName = "Fresh";
    edit.m_sVariableName = "m_Fresh";
    edit.m_sMeterVariableName = "m_fFreshMeter";
    edit.m_sEnumeratedList = "ONE,TWO";
    return edit;
}

TEST(ControlProperties, DefaultsOfNewControls)
{
    struct CCase
    {
        UINT m_uId;
        UINT m_uControlType;
        const char* m_pName;
        const char* m_pVariable;
        UINT m_uDataType;
        const char* m_pList;
    };
    const CCase cases[] = {
        {0, 100, "Control Name", "m_fMyVariable", 1, "SEL1,SEL2,SEL3"},
        {42, 102, "Control Name", "m_uMyButtonSwitch", 3, ""},
        {47, 102, "Control Name", "m_uMyButtonSwitch", 3, "SWITCH_OFF,SWITCH_ON"},
        {59, 103, "Blurb", "m_fMyVariable", 1, ""},
        {61, 104, "B", "m_uMyComboVariable", 3, ""},
        {70, 104, "CMBO1", "m_uMyComboVariable", 3, ""},
        {100, 100, "Control Name", "m_fMyVariable", 1, "SEL1,SEL2,SEL3"},
    };
    for (const CCase& test : cases) {
        const CControlEdit edit = newControlEdit(CBandProject(), test.m_uId);
        const CUICtrl& record = edit.m_record;
        EXPECT_EQ(record.uControlType, test.m_uControlType);
        EXPECT_EQ(edit.m_sName, test.m_pName);
        EXPECT_EQ(edit.m_sUnits, "Units");
        EXPECT_EQ(edit.m_sVariableName, test.m_pVariable);
        EXPECT_EQ(edit.m_sMeterVariableName, "m_fMeterValue");
        EXPECT_EQ(record.uUserDataType, test.m_uDataType);
        EXPECT_EQ(edit.m_sEnumeratedList, test.m_pList);
        EXPECT_EQ(record.fUserDisplayDataHiLimit, 100.0F);
        EXPECT_EQ(record.bUseMeter, test.m_uControlType == 103);
        EXPECT_EQ(record.uDetectorMode, 0U);
        EXPECT_EQ(record.uFluxCapControl[0], test.m_uId == 100 ? 1U : 0U);
    }
    CBandProject project;
    for (UINT uIndex = 0; uIndex < 2; ++uIndex) {
        CControlCheck check = checkControl(project, newControlEdit(project, 1123 - uIndex), nullptr);
        EXPECT_EQ(check.m_record.uFluxCapControl[1], uIndex);
        check.m_record.cControlName = check.m_record.cVariableName = "m_other";
        storeControl(project, check);
    }
    project.m_UIControlList.remove(1123); // the first one
    EXPECT_EQ(newControlEdit(project, 1123).m_record.uFluxCapControl[1], 2U);
}

// Each case begins with a control that is fine and changes it; the first of several faults is told.
TEST(ControlProperties, RefusesInTheOrderOfTheChecks)
{
    struct CCase
    {
        UINT m_uId;
        bool m_bExisting;
        std::function<void(CControlEdit&)> m_change;
        std::string m_sMessage;
        EControlField m_eField;
    };
    const auto list = [](std::string sList) {
        return [sList](CControlEdit& edit) {
            edit.m_record.uUserDataType = UINTData;
            edit.m_sEnumeratedList = sList;
        };
    };
    const auto variable = [](std::string sName) {
        return [sName](CControlEdit& edit) { edit.m_sVariableName = edit.m_sMeterVariableName = sName; };
    };
    std::string sLongList = "A0";
    for (int i = 1; i < 300; ++i)
        sLongList += ",A" + std::to_string(i);

    const CCase cases[] = {
        // Sliders
        {1, false, [](auto&) {}, "", None},
        {1, false,
         [](auto& e) {
             e.m_record.bExpSlider = true;
             e.m_sName = "Gain";
         },
         "Low limit must be greater than zero for a 1volt/octave control!", LowLimit},
        {1, false, [](auto& e) { e.m_record.bLogSlider = true; }, "", None},
        {1, false,
         [](auto& e) {
             e.m_sName = "Gain";
             e.m_sVariableName = "1";
         },
         "This Control Name already exists. All Control Names must be unique.", ControlName},
        {3, true, [](auto& e) { e.m_sName = "Range"; },
         "This Control Name already exists. All Control Names must be unique.", ControlName},
        {3, true, [](auto&) {}, "", None},
        {1, false, variable("a b"), CHARACTERS, VariableName},
        {1, false, variable(""), CHARACTERS, VariableName},
        {1, false, variable("9th"), CHARACTERS, VariableName},
        {1, false, variable("template"), CHARACTERS, VariableName},
        {1, false, variable("m_fGain"), IN_USE, VariableName},
        {1, false, variable("fGain"), IN_USE, VariableName}, // the end of another name
        {3, true, variable("fGain"), "", None},
        {3, true, variable("m_uBand"), IN_USE, VariableName},
        {3, true, variable("m_fMeterValue"), IN_USE, VariableName},
        {1, false, variable("m_nSampleRate"), IN_USE, VariableName},
        {1, false, variable("ui12"), IN_USE, VariableName},
        {1, false, variable("CBand"), IN_USE, VariableName},
        {1, false, variable("MID"), IN_USE, VariableName},
        {1, false, list("a"), SEPARATED, EnumeratedList},
        {1, false, list(","), SEPARATED, EnumeratedList},
        {1, false, list("a,This1"), RESERVED_WORD, EnumeratedList},
        {1, false, list("Thistle,b"), RESERVED_WORD, EnumeratedList},
        {1, false, list("a,int"), RESERVED_WORD, EnumeratedList},
        {1, false, list("a,,b"),
         "An item of the enumerated list is empty; please remove the comma beside it.", EnumeratedList},
        {1, false, list("a,b,a"), "The item \"a\" stands more than once in the enumerated list.",
         EnumeratedList},
        {1, false, list("a,m_fGain"),
         "\"m_fGain\" can not be an item of an enumerated list: the name is already in use in the plug-in's "
         "class. "
         "Please choose another one.",
         EnumeratedList},
        {1, false, list("a,2}"),
         "\"2}\" can not be an item of an enumerated list. Items are names in the code: letters, numbers and "
         "the "
         "underscore symbol, not beginning with a number. Combo boxes show an underscore as a space.",
         EnumeratedList},
        {1, false, list(sLongList), "The enumerated list has 300 strings; the maximum is 256.",
         EnumeratedList},
        {1, false, [](auto& e) { e.m_record.fUserDisplayDataHiLimit = INF; },
         "The limits and the initial value must be finite numbers.", InitialValue},
        {1, false, [](auto& e) { e.m_record.fInitUserFloatValue = NOT_A_NUMBER; },
         "The limits and the initial value must be finite numbers.", InitialValue},
        {1, false, [](auto& e) { e.m_record.uMIDIControlName = 128; },
         "The MIDI channel must be 1 to 16, the command 176 (controller) or 224 (pitch bend), and the "
         "controller 0 "
         "to 127.",
         MIDIControl},
        {1, false, [](auto& e) { e.m_sUnits.assign(1024, 'x'); },
         "A text of a control can hold 1023 bytes; this one has 1024.", Units},
        {1, false, [](auto& e) { e.m_sUnits.assign(1023, 'x'); }, "", None},
        // Banks, switches, combo boxes
        {42, false, [](auto& e) { e.m_sName = "Gain"; }, "", None},
        {42, false, list(""),
         "Enumerated Variables list is empty! You must first delcare your Radio Button Names.",
         EnumeratedList},
        {42, false, list("a"), SEPARATED, EnumeratedList},
        {42, false, list("a,,this"),
         "Enumerated Variable list has multiple commas in it (e.g. ,,) please remove repeated commas.",
         EnumeratedList},
        {42, false, list("a,b,c,d,e,f,g,h,i"), "The enumerated list has 9 strings; the maximum is 8.",
         EnumeratedList},
        {42, false, list("a,b,c,d,e,f,g,h"), "", None},
        {45, false, list("x"), "", None}, // a switch's list is its own
        {72, false, list(""), "Enumerated Variables list is empty!", EnumeratedList},
        {72, false, list("a,,b"),
         "Enumerated Variable list has multiple commas in it (e.g. ,,) please remove alrepeated commas.",
         EnumeratedList},
        {72, false, list("LOW,b,c,d,e,f,g,h,i"),
         "The enumerated list has 9 strings; the maximum is 8, because another control shares the list it "
         "alters.",
         EnumeratedList},
        // Meters
        {51, false,
         [](auto& e) {
             e.m_sName = "Out";
             e.m_sVariableName = "m_fGain";
         },
         "", None},
        {51, false, variable("a b"), CHARACTERS, VariableName},
        {51, false, variable("m_fMeterValue"), "Meter Variable name is already in use.", VariableName},
        {50, true, variable("m_fGain"), "Meter Variable name is already in use.", VariableName},
        {50, true, variable("m_fMeterValue"), "", None},
        {51, false, [](auto& e) { e.m_record.fMeterAttack_ms = -1.0F; },
         "The attack and release times of a meter must be 0 or more milliseconds.", MeterTimes},
        {51, false, [](auto& e) { e.m_record.uDetectorMode = 4; },
         "The detect mode must be 0 (peak), 1 (MS), 2 (RMS) or 3 (none).", None},
    };
    const CBandProject project;
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const CCase& test = cases[i];
        const CUICtrl* pExisting = test.m_bExisting ? project.at(test.m_uId) : nullptr;
        CControlEdit edit = pExisting ? controlEditOf(*pExisting) : freshEdit(project, test.m_uId);
        test.m_change(edit);
        const CControlCheck check = checkControl(project, edit, pExisting);
        EXPECT_EQ(check.m_sMessage, test.m_sMessage) << "case " << i;
        EXPECT_EQ(check.m_eField, test.m_eField) << "case " << i;
    }
    for (const UINT uGap : {40U, 49U, 64U, 99U, 1124U})
        EXPECT_TRUE(checkControl(project, freshEdit(project, uGap), nullptr)
                        .m_sMessage.starts_with("There is no slot with the number " + std::to_string(uGap)));
}

TEST(ControlProperties, RecordComesBackNormalised)
{
    const CBandProject project;
    CControlEdit edit = freshEdit(project, 5);
    edit.m_record.fInitUserFloatValue = 250.0F;
    EXPECT_EQ(checkControl(project, edit, nullptr).m_record.fInitUserFloatValue, 100.0F);
    edit.m_record.uUserDataType = 17;
    EXPECT_EQ(checkControl(project, edit, nullptr).m_record.uUserDataType, 1U);

    edit.m_record.uUserDataType = UINTData;
    edit.m_record.bLogSlider = edit.m_record.bExpSlider = true;
    edit.m_record.fInitUserUINTValue = 3.0F;
    edit.m_sEnumeratedList = "\t,a b,c, d,e,f,\n";
    const CUICtrl slider = checkControl(project, edit, nullptr).m_record;
    EXPECT_STREQ(slider.cEnumeratedList, "ab,c,d,e,f");
    EXPECT_STREQ(slider.cVariableName, "m_Fresh");
    EXPECT_FALSE(slider.bLogSlider || slider.bExpSlider);
    EXPECT_EQ(slider.fInitUserUINTValue, 0.0F);
    EXPECT_EQ(slider.fUserDisplayDataLoLimit, 0.0F);
    EXPECT_EQ(slider.fUserDisplayDataHiLimit, 4.0F);

    CControlEdit toggle = freshEdit(project, 46);
    toggle.m_record.fInitUserUINTValue = 1.0F;
    const CUICtrl on = checkControl(project, toggle, nullptr).m_record;
    EXPECT_STREQ(on.cEnumeratedList, "SWITCH_OFF,SWITCH_ON");
    EXPECT_EQ(on.fInitUserUINTValue, 1.0F);
    EXPECT_EQ(on.fUserDisplayDataHiLimit, 1.0F);

    EXPECT_STREQ(checkControl(project, freshEdit(project, 62), nullptr).m_record.cControlName, "C");
}

TEST(ControlProperties, SharedLists)
{
    const std::string sQuestion =
        "You are altering the following existing enumerated list:\n\n\t{LOW,MID,HIGH}\n\nThis "
        "will alter it for all other variables that share it.\n\nAre you sure you want to do "
        "this?";
    const std::string sNotice =
        "Warning: Altering an existing enumerated string list. Check to make sure you do not "
        "have duplicate strings.";
    struct CCase
    {
        UINT m_uId;
        bool m_bExisting;
        const char* m_pList;
        bool m_bAltersBand;
    };
    const CCase cases[] = {
        {41, true, "LOW,MID,HIGH", false},  {41, true, "A,B", true},    {70, true, "A,B", true},
        {42, false, "LOW,MID,HIGH", false}, {42, false, "A,MID", true}, {1, false, "HIGH,TOP", true},
        {1, false, "A,B", false},           {72, false, "A,LOW", true},
    };
    for (const CCase& test : cases) {
        CBandProject project;
        const CUICtrl* pExisting = test.m_bExisting ? project.at(test.m_uId) : nullptr;
        CControlEdit edit = pExisting ? controlEditOf(*pExisting) : freshEdit(project, test.m_uId);
        edit.m_record.uUserDataType = UINTData;
        edit.m_sEnumeratedList = test.m_pList;
        const CControlCheck check = checkControl(project, edit, pExisting);
        ASSERT_EQ(check.m_sMessage, "");
        const bool bCombo = test.m_uId >= 70;
        EXPECT_EQ(check.m_questions,
                  std::vector<std::string>(test.m_bAltersBand && !bCombo ? 1 : 0, sQuestion));
        EXPECT_EQ(check.m_notices, std::vector<std::string>(test.m_bAltersBand && bCombo ? 1 : 0, sNotice));

        storeControl(project, check);
        for (const UINT uId : {41U, 70U, test.m_uId}) {
            const bool bNew = uId == test.m_uId || test.m_bAltersBand;
            const std::string_view sExpected = bNew ? test.m_pList : "LOW,MID,HIGH";
            EXPECT_EQ(project.at(uId)->cEnumeratedList, sExpected) << uId;
            EXPECT_EQ(project.at(uId)->fUserDisplayDataHiLimit, std::ranges::count(sExpected, ',')) << uId;
        }
        EXPECT_EQ(project.at(71)->fUserDisplayDataHiLimit, 8.0F);
    }
    EXPECT_THAT(
        enumeratedLists(CBandProject().m_UIControlList),
        ElementsAre("LOW,MID,HIGH", "SINE,SAW,NOISE_A,NOISE_B,NOISE_C,NOISE_D,NOISE_E,NOISE_F,NOISE_G"));
}

TEST(ControlProperties, Confirming)
{
    CControlCheck refused, asked;
    refused.m_sMessage = "No.";
    asked.m_questions = {"First?", "Second?"};
    asked.m_notices = {"Look."};
    test::CRecordingDialogs dialogs;
    EXPECT_FALSE(confirmControl(refused, dialogs));
    EXPECT_FALSE(confirmControl(asked, dialogs));
    EXPECT_THAT(dialogs.m_messages, ElementsAre("No."));
    EXPECT_THAT(dialogs.m_questions, ElementsAre("First?"));
    dialogs.m_bAnswer = true;
    EXPECT_TRUE(confirmControl(asked, dialogs));
    EXPECT_THAT(dialogs.m_messages, ElementsAre("No.", "Look."));
    EXPECT_THAT(dialogs.m_questions, ElementsAre("First?", "First?", "Second?"));

    CUICtrl before, after;
    after.cVariableName = "m_new";
    EXPECT_TRUE(renameQuestion(before, after).starts_with("The variable name has changed. This will change"));
    after.uControlType = FILTER_CONTROL_LED_METER;
    EXPECT_EQ(renameQuestion(before, after), "");
    after.cMeterVariableName = "m_meter";
    EXPECT_EQ(
        renameQuestion(before, after),
        "The Meter Variable name has changed. This will change the UI control code information.\n\nDo you "
        "want "
        "Designer to change all instances of the variable for you? NOTE: This is risky, depending on your "
        "variable name. \n\n<Yes> = change all instances for me\n<No> = I will change them on my own");
}

} // namespace
} // namespace velmora
