#include "dsp/modules/multi_filter.h"
#include "panel/alpha_wheel.h"
#include "panel/assignable_button_states.h"
#include "panel/filter_slots.h"
#include "panel/panel_slot_state.h"
#include "panel_test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr UINT SLIDER = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
constexpr UINT RADIO = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;
constexpr UINT COMBO = FILTER_CONTROL_COMBO_VARIABLE;
constexpr UINT METER = FILTER_CONTROL_LED_METER;

class PanelOfAPlugIn : public ::testing::Test
{
  protected:
    PanelOfAPlugIn()
    {
        m_filter.attachPlugIn(&m_plugIn);
        m_filter.createControls();
        m_model.setView(&m_view);
        m_model.setFilter(&m_filter);
        static_cast<void>(m_view.taken());
    }

    void deliverAll()
    {
        while (m_model.deliverChanges()) {
        }
    }

    test::CPanelPlugIn m_plugIn{{
        {0, SLIDER, floatData, 0, 100, 50, "", "", true},
        {1, SLIDER, floatData, 20, 20480, 640, "", "Hz", false, true},
        {2, SLIDER, floatData, 0, 100, 0, "", "", false, true},
        {3, SLIDER, UINTData, 0, 2, 1, "ONE,TWO,THREE_A", "kind"},
        {4, SLIDER, intData, 0, 10, 3, "", "dB"},
        {5, SLIDER, doubleData, -60, 12, 0, "", "dB"},
        {6, SLIDER, UINTData, 0, 10, 0},
        {41, RADIO, UINTData, 0, 2, 0, "A,B,C"},
        {45, RADIO, UINTData, 0, 1, 0, "SWITCH_OFF,SWITCH_ON"},
        {50, METER, floatData, 0, 1, 0},
        {70, COMBO, UINTData, 0, 1, 1, "Grand_Piano,Organ"},
        {101, SLIDER, floatData, 0, 10, 5, "", "ms", false, false, 1},
        {100, SLIDER, UINTData, 0, 1, 0, "SLOW_ONE,FAST_ONE", "", false, false, 0},
        {7, RADIO, UINTData, 0, 2, 0, "A,B,C"}, // no slider: stands nowhere
    }};
    CUserDSPFilter m_filter;
    test::CRecordingPanelView m_view;
    CPanelModel m_model;
};

TEST_F(PanelOfAPlugIn, PositionsFollowTheLawOfTheControl)
{
    struct CCase
    {
        UINT m_uSlot;
        int m_nPos;
        double m_dValue;
        double m_dError;
        const char* m_pText;
    };
    const CCase cases[] = {
        {0, 128, 74.036, 0.001, "74.04"},   {1, 128, 640.0, 0.3, nullptr},
        {2, 128, 0.5, 0.0, "0.50"},         {3, 0, 0.0, 0.0, "ONE kind"},
        {3, 85, 0.0, 0.0, "ONE kind"},      {3, 86, 1.0, 0.0, "TWO kind"},
        {3, 170, 1.0, 0.0, "TWO kind"},     {3, 171, 2.0, 0.0, "THREE_A kind"},
        {3, 256, 2.0, 0.0, "THREE_A kind"}, {4, 140, 5.0, 0.0, "5 dB"},
        {4, 150, 6.0, 0.0, "6 dB"},         {6, 150, 5.0, 0.0, "5"},
        {5, 300, 12.0, 0.0, "12.000 dB"},   {5, -3, -60.0, 0.0, "-60.000 dB"},
    };
    for (const CCase& test : cases) {
        SCOPED_TRACE(std::to_string(test.m_uSlot) + " at " + std::to_string(test.m_nPos));
        EXPECT_TRUE(m_model.moveSlider(test.m_uSlot, test.m_nPos));
        const CPanelSlotState state = m_model.state(test.m_uSlot);
        EXPECT_NEAR(state.m_dValue, test.m_dValue, test.m_dError);
        EXPECT_EQ(state.m_nPos, std::clamp(test.m_nPos, 0, 256));
        if (test.m_pText) {
            EXPECT_EQ(state.m_sValue, test.m_pText);
        }
    }
    EXPECT_NE(m_model.state(1).m_dValue, 640.0); // approximations, not the exact law
    for (const UINT uSlot : {7U, 8U, 40U, 41U, 49U, 50U, 64U, 70U, 99U, 1124U}) {
        EXPECT_FALSE(m_model.moveSlider(uSlot, 0)) << uSlot;
        EXPECT_FALSE(m_model.resetSlider(uSlot)) << uSlot;
    }
    EXPECT_EQ(m_model.state(8).m_sName, "Control 8");
    EXPECT_THAT(m_model.state(71).m_items, ElementsAre("Click to Setup"));
    EXPECT_EQ(m_model.state(42).m_items.at(7), "RB 28");
    EXPECT_TRUE(m_model.resetSlider(4));
    EXPECT_EQ(m_plugIn.m_variables[4].m_nValue, 3);
    EXPECT_EQ(m_model.state(4).m_nPos, m_model.state(4).m_nInitialPos);
}

TEST_F(PanelOfAPlugIn, TypedTextIsReadLimitedAndRefused)
{
    struct CCase
    {
        UINT m_uSlot;
        const char* m_pText;
        bool m_bTaken;
        const char* m_pShown;
        int m_nPos;
    };
    const CCase cases[] = {
        {4, "5 dB", true, "5 dB", 128},
        {5, " -24dB ", true, "-24.000 dB", 128},
        {5, "500", true, "12.000 dB", 256},
        {5, "-500 dB", true, "-60.000 dB", 0},
        {5, "loud", false, "-60.000 dB", 0},
        {3, "2", false, "TWO kind", 128},
        {8, "2", false, "", 0},
        {41, "1", false, "A", 0},
    };
    for (const CCase& test : cases) {
        SCOPED_TRACE(std::string(test.m_pText) + " in " + std::to_string(test.m_uSlot));
        EXPECT_EQ(m_model.enterText(test.m_uSlot, test.m_pText), test.m_bTaken);
        EXPECT_EQ(m_model.state(test.m_uSlot).m_sValue, test.m_pShown);
        EXPECT_EQ(m_model.state(test.m_uSlot).m_nPos, test.m_nPos);
    }
    EXPECT_FALSE(m_model.state(3).m_bValueWritable);
    deliverAll();
    EXPECT_THAT(m_plugIn.m_told, ElementsAre(4, 5));
}

TEST_F(PanelOfAPlugIn, ChangesAreDeliveredOneByOneWithTheLastValue)
{
    m_model.moveSlider(4, 26);
    m_model.moveSlider(5, 0);
    m_model.moveSlider(4, 256);
    EXPECT_EQ(m_plugIn.m_variables[4].m_nValue, 10);
    EXPECT_THAT(m_plugIn.m_told, IsEmpty());
    EXPECT_THAT(m_view.taken(), ElementsAre("slot 4", "pending", "slot 5", "slot 4"));
    EXPECT_TRUE(m_model.deliverChanges());
    EXPECT_THAT(m_plugIn.m_told, ElementsAre(4));
    EXPECT_FALSE(m_model.deliverChanges());
    EXPECT_FALSE(m_model.deliverChanges());
    EXPECT_THAT(m_plugIn.m_told, ElementsAre(4, 5));
    EXPECT_THAT(m_view.taken(), ElementsAre("refresh", "refresh"));

    // A plug-in that runs the event loop while it is told, and one that throws.
    m_plugIn.m_whenTold = [&] {
        m_plugIn.m_whenTold = nullptr;
        m_model.moveSlider(4, 0);
        EXPECT_FALSE(m_model.deliverChanges());
        throw std::runtime_error("too loud");
    };
    m_model.moveSlider(5, 9);
    EXPECT_TRUE(m_model.deliverChanges());
    EXPECT_THAT(m_view.taken(),
                ElementsAre("slot 5", "pending", "slot 4", "pending", HasSubstr("too loud"), "refresh"));
    m_model.setFilter(nullptr);
    EXPECT_FALSE(m_model.hasPending());
    EXPECT_FALSE(m_model.moveSlider(4, 0));
}

TEST_F(PanelOfAPlugIn, ItemsAndButtonsAreChosen)
{
    for (const auto& [uSlot, nItem] : {std::pair{41U, 2}, {45U, 1}, {70U, 0}}) {
        EXPECT_TRUE(m_model.selectItem(uSlot, nItem));
        EXPECT_EQ(m_model.state(uSlot).m_dValue, nItem);
        EXPECT_EQ(m_model.state(uSlot).m_nItem, nItem);
    }
    for (const auto& [uSlot, nItem] : {std::pair{41U, 3}, {41U, -1}, {3U, 1}, {42U, 0}, {50U, 0}})
        EXPECT_FALSE(m_model.selectItem(uSlot, nItem)) << uSlot;
    EXPECT_EQ(m_plugIn.m_variables[7].m_uValue, 2U);
    EXPECT_THAT(m_model.state(70).m_items, ElementsAre("Grand Piano", "Organ"));
    m_plugIn.m_AssignButton2Name = "Kick";
    m_plugIn.m_bLatchingAssignButton2 = true;
    EXPECT_EQ(m_model.buttonText(51), "Kick");
    static_cast<void>(m_view.taken());
    for (const UINT uButton : {50U, 51U, 51U, 51U})
        EXPECT_TRUE(m_model.pressButton(uButton));
    EXPECT_FALSE(m_model.pressButton(53));
    EXPECT_THAT(m_view.taken(), ElementsAre("button 51", "button 51", "button 51"));
    EXPECT_FALSE(m_model.buttonState(50));
    EXPECT_TRUE(m_model.buttonState(51));
    deliverAll();
    EXPECT_THAT(m_plugIn.m_told, ElementsAre(41, 45, 70, 50, 51, 51, 51)); // a click each
    m_model.turnButton(51);
    EXPECT_FALSE(m_model.buttonState(51));
    EXPECT_THAT(m_plugIn.m_told, ::testing::SizeIs(7));
}

TEST_F(PanelOfAPlugIn, ThePlugInMovesItsSlots)
{
    m_plugIn.m_variables[4].m_nValue = 10;
    m_model.setSlotText(4, "muted");
    EXPECT_EQ(m_model.state(4).m_sValue, "muted");
    m_model.controlChanged(4);
    EXPECT_EQ(m_model.state(4).m_sValue, "10 dB");
    EXPECT_EQ(m_model.state(4).m_nPos, 256);
    m_model.setSlotNormalized(5, 0.5F);
    EXPECT_EQ(m_plugIn.m_variables[5].m_dValue, -24.0);
    EXPECT_EQ(m_model.state(5).m_nPos, 128);
    EXPECT_THAT(m_view.taken(), ElementsAre("slot 4", "slot 4", "slot 5", "refresh"));
    m_plugIn.m_variables[7].m_uValue = 2;
    m_model.valuesChanged();
    EXPECT_EQ(m_model.state(41).m_nItem, 2);
    EXPECT_FALSE(m_model.hasPending());
}

TEST_F(PanelOfAPlugIn, TheAlphaWheelShowsItsItemsInOrder)
{
    CAlphaWheel wheel(m_model);
    EXPECT_EQ(wheel.nameLine() + "|" + wheel.valueLine() + "|" + wheel.counterText(),
              "Name 100|SLOW ONE|1/2");
    EXPECT_FALSE(wheel.turn(-1));
    EXPECT_TRUE(wheel.turn(7));
    EXPECT_EQ(wheel.nameLine() + "|" + wheel.valueLine() + "|" + wheel.counterText(), "Name 101|5.00 ms|2/2");
    EXPECT_TRUE(wheel.moveValue(64));
    EXPECT_EQ(wheel.valueLine(), "2.50 ms");
    EXPECT_EQ(wheel.valuePosition(), 64);
    deliverAll();
    EXPECT_THAT(m_plugIn.m_told, ElementsAre(101));
    m_model.setFilter(nullptr);
    wheel.refresh();
    EXPECT_EQ(wheel.counterText() + wheel.nameLine(), "");
    EXPECT_FALSE(wheel.turn(1) || wheel.moveValue(0));
}

TEST(PanelOfAModule, ItsControlsFillSlidersAndBanks)
{
    CMultiFilter module;
    test::CRecordingPanelView view;
    CPanelModel model;
    model.setView(&view);
    model.setFilter(&module);
    EXPECT_TRUE(model.isModule());
    const char* const names[] = {"fc", "Boost/Cut", "Q", "Output Volume"};
    for (UINT uSlot = 0; uSlot < std::size(names); ++uSlot)
        EXPECT_EQ(model.state(uSlot).m_sName, names[uSlot]);
    EXPECT_FALSE(model.state(4).m_bAssigned);
    EXPECT_THAT(model.state(41).m_items, ElementsAre("Low Shelf", "High Shelf", "Graphic B", "Graphic A"));

    EXPECT_TRUE(model.enterText(3, "-6 dB"));
    EXPECT_EQ(model.state(3).m_sValue, "-6.0 dB");
    EXPECT_TRUE(model.moveSlider(0, 256));
    EXPECT_EQ(model.state(0).m_sValue, "18000 Hz");
    EXPECT_TRUE(model.selectItem(41, 3));
    EXPECT_EQ(module.choice(0), static_cast<UINT>(FILTER_GRAPHIC_A));
    EXPECT_FALSE(model.pressButton(50));
    model.setFilter(nullptr);
    model.setFilter(&module); // the first sight of it holds
    EXPECT_TRUE(model.resetSlider(3));
    EXPECT_EQ(model.state(3).m_sValue, "0.0 dB");
    static_cast<void>(view.taken());
    EXPECT_FALSE(model.deliverChanges());
    EXPECT_THAT(view.taken(), ElementsAre("refresh"));
    model.setSlotNormalized(3, 0.0F);
    EXPECT_EQ(model.state(3).m_sValue, "-96.0 dB");
}

} // namespace
} // namespace velmora
