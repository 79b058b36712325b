#include "project/control_kinds.h"
#include "project/control_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace {

using namespace velmora;

// Kind and id; the name tells the place in the list that it came from.
CUICtrl& add(CUIControlList& list, UINT uKind, UINT uId, int nRow = -1, int nColumn = -1)
{
    CUICtrl control;
    control.uControlType = uKind;
    control.uControlId = uId;
    control.nGUIRow = nRow;
    control.nGUIColumn = nColumn;
    const std::string sName = std::to_string(uKind) + ":" + std::to_string(uId);
    control.cControlName = sName.c_str();
    const auto controls = controlsOf(list);
    return *list.insertBehind(controls.empty() ? nullptr : controls.back(), control);
}

std::vector<std::string> namesOf(const CUIControlList& list)
{
    std::vector<std::string> names;
    for (const CUICtrl* pControl : controlsOf(list))
        names.emplace_back(pControl->cControlName);
    return names;
}

TEST(ControlKinds, FollowTheContract)
{
    for (const auto& [uType, sSymbol] : {std::pair(100u, "FILTER_CONTROL_CONTINUOUSLY_VARIABLE"),
                                         {102u, "FILTER_CONTROL_RADIO_SWITCH_VARIABLE"},
                                         {103u, "FILTER_CONTROL_LED_METER"},
                                         {105u, "105"},
                                         {106u, "106"}}) {
        ASSERT_NE(findControlKind(uType), nullptr);
        EXPECT_STREQ(findControlKind(uType)->m_pSymbol, sSymbol);
    }
    EXPECT_EQ(findControlKind(99), nullptr);
    EXPECT_EQ(findControlKind(107), nullptr);
}

TEST(ProjectControlList, SortBringsTheOrderOfTheGeneratedText)
{
    CUIControlList list;
    add(list, 106, 0x10001);
    add(list, 101, 300);
    add(list, 100, 1123);
    add(list, 104, 9);
    add(list, 100, 41); // no slot's id: lost
    add(list, 102, 7);
    add(list, 100, 2, 0, -1); // a row without a column is no cell
    add(list, 103, 5000);
    add(list, 100, 40, 1, 1);
    add(list, 105, 0x10000);
    add(list, 102, 3, 2, -1); // for a radio bank the row is enough
    add(list, 100, 0);
    add(list, 100, 99); // lost
    add(list, 77, 100);
    add(list, 100, 2, 5, 5).cControlName = "second of its id"; // lost
    add(list, 100, 1124);                                      // lost
    add(list, 100, 6, 0, 0);
    sortControls(list);
    const auto sorted =
        testing::ElementsAre("100:6", "100:40", "102:3", "100:0", "100:2", "77:100", "100:1123", "102:7",
                             "103:5000", "104:9", "101:300", "106:65537", "105:65536");
    EXPECT_THAT(namesOf(list), sorted);
    const auto controls = controlsOf(list);
    sortControls(list);
    EXPECT_EQ(controlsOf(list), controls); // in order already: the records stay where they are
}

TEST(ProjectControlList, CompactionNumbersEachThemeBoundControl)
{
    // Bound, index and the index expected. 9 is not below the number of controls.
    const UINT cases[][3] = {{1, 5, 2}, {0, 0, 0}, {1, 1, 0}, {1, 9, 9}, {1, 1, 1}, {2, 3, 3}, {1, 6, 3}};
    CUIControlList list;
    for (const auto& [uBound, uIndex, uExpected] : cases) {
        CUICtrl& control = add(list, 100, uExpected);
        control.uControlTheme[31] = uBound;
        control.uControlTheme[29] = uIndex;
    }
    for (int nRound = 0; nRound < 2; ++nRound) {
        compactThemeBoundControls(list);
        for (const CUICtrl* pControl : controlsOf(list))
            EXPECT_EQ(pControl->uControlTheme[29], pControl->uControlId);
    }
    EXPECT_EQ(findThemeBoundPosition(list, 3), 6); // position 5 is not bound
    EXPECT_EQ(findThemeBoundPosition(list, 4), -1);
}

TEST(ProjectControlList, RenumberingClosesTheGapsBetweenSlots)
{
    CUIControlList list;
    for (const UINT uId : {1123u, 99u, 105u, 100u, 105u, 1124u, 700u})
        add(list, 100, uId);
    EXPECT_EQ(countSlotBoundControls(list), 0u);
    EXPECT_EQ(findSlotBoundPosition(list, 0), -1);
    EXPECT_EQ(findSlotBoundControl(list, 0), nullptr);
    renumberSlotBoundControls(list);
    std::vector<UINT> ids;
    for (const CUICtrl* pControl : controlsOf(list))
        ids.push_back(pControl->uControlId);
    EXPECT_THAT(ids, testing::ElementsAre(103, 99, 101, 100, 105, 1124, 102));
    EXPECT_EQ(countSlotBoundControls(list), 4u);
    EXPECT_EQ(findSlotBoundPosition(list, 3), 0);
    EXPECT_EQ(findSlotBoundControl(list, 1), findControl(list, 101));
}

TEST(ProjectControlList, UserVariablesGetTheLowestFreeId)
{
    CUIControlList list;
    EXPECT_EQ(nextFreeUserVariableId(list), 0x10000u);
    for (const UINT uId : {0x10001u, 5u, 0x10000u, 0x10000u, 0x10003u, 0xFFFFFFFFu})
        add(list, 105, uId);
    EXPECT_EQ(nextFreeUserVariableId(list), 0x10002u);
    EXPECT_STREQ(findControl(list, 0x10000)->cControlName, "105:65536");
    EXPECT_EQ(findControl(list, 0x10002), nullptr);
}

} // namespace
