#include "panel/alpha_wheel.h"
#include "panel/project_slots.h"
#include "panel_test_support.h"
#include "project/control_list.h"
#include "project/dsp_project.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using ::testing::ElementsAre;

constexpr UINT SLIDER = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
constexpr UINT RADIO = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;

class PanelOfAProject : public ::testing::Test
{
  protected:
    PanelOfAProject()
    {
        const test::CTestControl controls[] = {
            {0, SLIDER, floatData, 0, 100, 25, "", "Hz"},
            {1, SLIDER, doubleData, -60, 12, 0, "", "dB"},
            {2, SLIDER, intData, 0, 10, 5},
            {3, SLIDER, UINTData, 0, 2, 1, "ONE,TWO,THREE"},
            {4, SLIDER, floatData, 20, 20, 20},
            {5, SLIDER, floatData, -10, 10, -5},
            {6, SLIDER, floatData, 10, 20, 15, "", "s"},
            {42, RADIO, UINTData, 0, 2, 0, "A,B,C"},
            {0x10000, 105, floatData, 0, 1, 1},
            {100, SLIDER, floatData, 0, 1, 1, "", "", false, false, 1},
            {102, SLIDER, floatData, 0, 1, 0, "", "", false, false, 0},
        };
        for (const auto& control : controls)
            m_project.m_UIControlList.append(test::recordOf(control));
        m_model.setView(&m_view);
        m_model.setEditedCallback([this] { ++m_nEdits; });
        m_model.setProject(&m_project);
        static_cast<void>(m_view.taken());
    }

    CUICtrl& record(UINT uId) { return *findControl(m_project.m_UIControlList, uId); }

    CDSPProject m_project;
    test::CRecordingPanelView m_view;
    CPanelModel m_model;
    int m_nEdits = 0;
};

TEST_F(PanelOfAProject, RestingSlidersStandByTheShareOfTheirInitialValue)
{
    const std::pair<int, const char*> cases[] = {{64, "25.00 Hz"}, {0, "0.00 dB"}, {128, "5"},      {0, "1"},
                                                 {0, "20.00"},     {0, "-5.00"},   {256, "15.00 s"}};
    for (UINT uSlot = 0; uSlot < std::size(cases); ++uSlot) {
        const CPanelSlotState state = m_model.state(uSlot);
        EXPECT_EQ(state.m_nPos, cases[uSlot].first) << uSlot;
        EXPECT_EQ(state.m_sValue, cases[uSlot].second);
    }
    record(3).fInitUserIntValue = 1.0F; // it is the int field that places the thumb
    EXPECT_EQ(m_model.state(3).m_nPos, 128);
    EXPECT_EQ(m_model.buttonText(52), "B3");
    EXPECT_FALSE(m_model.pressButton(50));
    EXPECT_FALSE(m_model.isPlugInLoaded());
}

TEST_F(PanelOfAProject, MovesChangeTheInitialValue)
{
    EXPECT_TRUE(m_model.moveSlider(1, 128));
    EXPECT_EQ(record(1).fInitUserDoubleValue, -24.0F);
    EXPECT_EQ(m_model.state(1).m_sValue, "-24.000 dB");
    EXPECT_EQ(m_model.state(1).m_nPos, 128); // no longer at the plain share
    EXPECT_TRUE(m_model.moveSlider(2, 140));
    EXPECT_EQ(record(2).fInitUserIntValue, 5.0F);
    EXPECT_TRUE(m_model.moveSlider(3, 256));
    EXPECT_EQ(record(3).fInitUserUINTValue, 2.0F);
    EXPECT_EQ(m_model.state(3).m_sValue, "THREE");
    EXPECT_TRUE(m_model.enterText(0, "500 Hz"));
    EXPECT_EQ(record(0).fInitUserFloatValue, 100.0F);
    EXPECT_FALSE(m_model.enterText(0, "Hz"));
    EXPECT_FALSE(m_model.enterText(3, "1"));
    EXPECT_TRUE(m_model.selectItem(42, 2));
    EXPECT_EQ(record(42).fInitUserUINTValue, 2.0F);
    EXPECT_FALSE(m_model.selectItem(42, 3));
    EXPECT_EQ(m_nEdits, 5);
    EXPECT_FALSE(m_model.hasPending());

    EXPECT_TRUE(m_model.moveSlider(1, 0));
    EXPECT_TRUE(m_model.resetSlider(1)); // back ahead of all moves
    EXPECT_EQ(record(1).fInitUserDoubleValue, 0.0F);
    m_model.moveSlider(1, 128);
    record(1).fInitUserDoubleValue = 6.0F; // as a dialog does
    m_model.projectChanged();
    EXPECT_EQ(m_model.state(1).m_nPos, 22);
    EXPECT_TRUE(m_model.resetSlider(1));
    EXPECT_EQ(record(1).fInitUserDoubleValue, 6.0F);
    m_model.setProject(nullptr);
    EXPECT_FALSE(m_model.moveSlider(1, 0));
    EXPECT_EQ(m_model.state(41).m_items.at(0), "Radio11");
}

TEST_F(PanelOfAProject, WheelItemsStandByIndexAndAreEdited)
{
    EXPECT_THAT(m_model.alphaWheelSlots(), ElementsAre(102, 100));
    CAlphaWheel wheel(m_model);
    EXPECT_TRUE(wheel.moveValue(256));
    EXPECT_EQ(record(102).fInitUserFloatValue, 1.0F);
    m_project.m_UIControlList.remove(102);
    wheel.turn(1);
    wheel.refresh();
    EXPECT_EQ(wheel.counterText(), "1/1");
    EXPECT_EQ(m_nEdits, 1);
}

} // namespace
} // namespace velmora
