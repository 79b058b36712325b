#include "project/alpha_wheel_items.h"
#include "project/assignable_buttons.h"
#include "project/control_fields.h"
#include "project/control_list.h"
#include "project/dsp_project.h"
#include "project/menu_groups.h"
#include "project/project_difference.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointee;

void fill(CDSPProject& project)
{
    for (const UINT uId : {3U, 100U, 101U, 102U}) {
        CUICtrl control;
        control.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        control.uControlId = uId;
        control.uUserDataType = floatData;
        control.cControlName = uId == 3 ? "Volume" : "Item";
        control.uFluxCapControl[FLUX_SLOT_BOUND] = uId >= FIRST_SLOT_ID;
        control.uFluxCapControl[FLUX_SLOT_INDEX] = uId >= FIRST_SLOT_ID ? uId - FIRST_SLOT_ID : 0;
        project.m_UIControlList.append(control);
    }
}

TEST(ProjectDifference, TellsEachInASentence)
{
    const auto first = [](CDSPProject& project) -> CUICtrl& { return *project.m_UIControlList.getAt(0); };
    const struct
    {
        std::function<void(CDSPProject&)> m_change;
        std::vector<std::string> m_sentences;
    } CASES[] = {
        {[](CDSPProject&) {}, {}},
        {[](CDSPProject& project) { project.m_UIControlList.remove(3); },
         {"The slider \"Volume\" (id 3) was removed."}},
        {[](CDSPProject& project) {
             CUICtrl variable;
             variable.uControlType = 105;
             variable.uControlId = FIRST_USER_VARIABLE_ID;
             variable.cVariableName = "m_fState";
             project.m_UIControlList.append(variable);
         },
         {"The user variable m_fState was added."}},
        {[&](CDSPProject& project) {
             first(project).fUserDisplayDataHiLimit = 12.5F;
             first(project).cControlUnits = "dB";
             first(project).bLogSlider = true;
             first(project).uUserDataType = UINTData;
         },
         {"The units of the slider \"Volume\" (id 3) changed from \"\" to \"dB\".",
          "The data type of the slider \"Volume\" (id 3) changed from float to enum.",
          "The high limit of the slider \"Volume\" (id 3) changed from 0 to 12.5.",
          "The logarithmic law of the slider \"Volume\" (id 3) changed from off to on."}},
        {[&](CDSPProject& project) {
             first(project).fInitUserFloatValue = 0.5F;
             first(project).fFluxCapData[63] = 1.0F;
             first(project).uFluxCapControl[20] = 1;
             setMenuGroup(first(project), "Filters");
         },
         {"The initial value of the slider \"Volume\" (id 3) changed from 0 to 0.5.",
          "The menu group of the slider \"Volume\" (id 3) changed from \"\" to \"Filters\".",
          "The set of words for the custom GUI of the slider \"Volume\" (id 3) changed.",
          "The set of values for the custom GUI of the slider \"Volume\" (id 3) changed."}},
        {[](CDSPProject& project) { moveAlphaWheelItem(project.m_UIControlList, 102, true); },
         {"The place in the alpha wheel of the slider \"Item\" (id 101) changed from 2 to 3.",
          "The place in the alpha wheel of the slider \"Item\" (id 102) changed from 3 to 2."}},
        {[](CDSPProject& project) {
             setAssignableButtons(project, {{{"Go", false}, {"B2", true}, {"B3", false}}});
             project.m_uX_TrackPadIndex = 4;
             project.m_pVectorJSProgram[111] = 1.0F;
             project.m_JS_XCtrl.bMIDIControl = true;
             project.m_fPlugInEx[0] = 64.0F;
             project.m_sSidechainFile = "/w/a.wav";
             project.setTextLabel(63, "Label");
             project.m_uControlTheme[0] = 1;
             project.m_sProjectFolder = "/elsewhere";
         },
         {"The name of assignable button 1 changed from \"B1\" to \"Go\".",
          "Latching of assignable button 2 changed from off to on.",
          "The track pad's X control changed from none to 4.", "The vector joystick's program changed.",
          "The MIDI setup of the vector joystick changed.", "The latency in samples changed from 0 to 64.",
          "The sidechain file changed from \"\" to \"/w/a.wav\".", "The set of GUI labels changed.",
          "The setup of the classic GUI changed."}},
    };
    for (const auto& test : CASES) {
        CDSPProject before;
        CDSPProject after;
        fill(before);
        fill(after);
        test.m_change(after);
        EXPECT_EQ(CProjectDifference(before, after).sentences(), test.m_sentences);
        EXPECT_EQ(CProjectDifference(before, after).isEmpty(), test.m_sentences.empty());
    }
}

// Every property takes part in the comparison, and all of the record but the id is some property.
TEST(ProjectDifference, ComparesWholeControls)
{
    for (const std::size_t uByte :
         {offsetof(CUICtrl, uFluxCapControl), offsetof(CUICtrl, uMIDIControlChannel),
          offsetof(CUICtrl, dPresetData) + 120, offsetof(CUICtrl, uControlTheme) + 124,
          offsetof(CUICtrl, fMeterRelease_ms), offsetof(CUICtrl, uControlId)}) {
        CUICtrl left;
        CUICtrl right;
        EXPECT_TRUE(isSameControl(left, right));
        reinterpret_cast<unsigned char*>(&right)[uByte] ^= 1U;
        EXPECT_FALSE(isSameControl(left, right)) << uByte;
        EXPECT_EQ(std::ranges::count_if(
                      controlFields(), [&](const CControlField& row) { return !row.m_pIsSame(left, right); }),
                  uByte == offsetof(CUICtrl, uControlId) ? 0 : 1);
    }
}

TEST(MenuGroups, TravelWithTheControl)
{
    CDSPProject project;
    fill(project);
    CUICtrl& control = *project.m_UIControlList.getAt(1);
    const struct
    {
        std::string m_sName;
        std::string m_sKept;
    } NAMES[] = {{"Filters", "Filters"},
                 {"Klänge", "Klänge"},
                 {std::string(63, 'x'), std::string(63, 'x')},
                 {std::string(62, 'x') + "ä", std::string(62, 'x')},
                 {"", ""}};
    for (const auto& name : NAMES) {
        setMenuGroup(control, name.m_sName);
        EXPECT_EQ(menuGroupOf(control), name.m_sKept);
    }
    std::ranges::fill(control.uFluxCapControl, 0x41414141U);
    EXPECT_EQ(menuGroupOf(control), "") << "no end";
    control.uFluxCapControl[48] = 0x00410741U;
    EXPECT_EQ(menuGroupOf(control), "") << "no text";

    for (const UINT uPosition : {0U, 1U, 2U})
        setMenuGroup(*project.m_UIControlList.getAt(uPosition), uPosition == 1 ? "B" : "A");
    EXPECT_THAT(menuGroups(project), ElementsAre("A", "B"));
    EXPECT_EQ(renameMenuGroup(project, "", "C") + renameMenuGroup(project, "None", "C"), 0U);
    EXPECT_EQ(renameMenuGroup(project, "A", "C"), 2U);
    EXPECT_THAT(menuGroups(project), ElementsAre("C", "B"));
    EXPECT_EQ(checkNewMenuGroup({"A"}, ""), "Type a Menu Name in the New Menu box, then press <Add Menu>");
    EXPECT_EQ(checkNewMenuGroup({"A"}, "A"), "Menu Name already exists - can not add a duplicate name.");
    EXPECT_EQ(checkNewMenuGroup({"A"}, "B"), "");
}

TEST(AlphaWheelItems, ChangePlacesWithTheirNeighbours)
{
    CDSPProject project;
    fill(project);
    CUIControlList& list = project.m_UIControlList;
    const auto ids = [&] {
        std::vector<UINT> result;
        for (const CUICtrl* pItem : alphaWheelItems(list))
            result.push_back(pItem->uControlId);
        return result;
    };
    EXPECT_FALSE(moveAlphaWheelItem(list, 100, true) || moveAlphaWheelItem(list, 102, false) ||
                 moveAlphaWheelItem(list, 3, true) || moveAlphaWheelItem(list, 555, true));
    EXPECT_TRUE(moveAlphaWheelItem(list, 100, false));
    EXPECT_THAT(ids(), ElementsAre(101, 100, 102));
    for (CUICtrl* pItem : alphaWheelItems(list))
        pItem->uFluxCapControl[FLUX_SLOT_INDEX] = 9; // as an old file may have it
    EXPECT_THAT(ids(), ElementsAre(100, 101, 102));
    EXPECT_TRUE(moveAlphaWheelItem(list, 102, true));
    EXPECT_THAT(ids(), ElementsAre(100, 102, 101));
    EXPECT_EQ(findSlotBoundControl(list, 1)->uControlId, 102U);
}

} // namespace
} // namespace velmora
