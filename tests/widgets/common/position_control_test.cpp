#include "widgets/common/instrument_hands.h"
#include "widgets/common/position_control.h"
#include "widgets/common/rotary_wheel.h"
#include "widgets/common/track_bar.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(CPositionControl, KeysAndWheelMoveByTheirSteps)
{
    struct CCase
    {
        Qt::Key m_eKey; // none: the wheel
        int m_nNotches;
        Qt::KeyboardModifiers m_modifiers;
        int m_nExpected; // from 100
    };
    const CCase cases[] = {
        {Qt::Key_Up, 0, Qt::NoModifier, 101},       {Qt::Key_Right, 0, Qt::NoModifier, 101},
        {Qt::Key_Down, 0, Qt::NoModifier, 99},      {Qt::Key_Left, 0, Qt::ShiftModifier, 99},
        {Qt::Key_PageUp, 0, Qt::NoModifier, 116},   {Qt::Key_PageDown, 0, Qt::NoModifier, 84},
        {Qt::Key_Home, 0, Qt::NoModifier, 0},       {Qt::Key_End, 0, Qt::NoModifier, 256},
        {Qt::Key_Up, 0, Qt::ControlModifier, 100},  {Qt::Key_unknown, 1, Qt::NoModifier, 104},
        {Qt::Key_unknown, -2, Qt::NoModifier, 92},  {Qt::Key_unknown, 4, Qt::ShiftModifier, 102},
        {Qt::Key_unknown, 90, Qt::NoModifier, 256},
    };
    for (const CCase& test : cases) {
        for (const bool bKnob : {false, true}) {
            CTrackBar bar;
            CRotaryWheel knob(EWheelKind::ValueKnob);
            CPositionControl& control = bKnob ? static_cast<CPositionControl&>(knob) : bar;
            control.setPosition(100);
            const QSignalSpy moved(&control, &CPositionControl::moved);
            if (test.m_eKey == Qt::Key_unknown)
                turnWheel(control, test.m_nNotches, test.m_modifiers);
            else
                QTest::keyClick(&control, test.m_eKey, test.m_modifiers);
            EXPECT_EQ(control.position(), test.m_nExpected) << test.m_eKey << " " << test.m_nNotches;
            EXPECT_EQ(moved.count(), test.m_nExpected == 100 ? 0 : 1) << test.m_eKey;
        }
    }
}

TEST(CPositionControl, FineNotchesAddUpToWholeSteps)
{
    CTrackBar bar;
    bar.setPosition(100);
    for (int nNotch = 0; nNotch < 8; ++nNotch) {
        turnWheel(bar, 1, Qt::ShiftModifier);
        bar.setPosition(bar.position()); // as the slot does that answers
    }
    EXPECT_EQ(bar.position(), 104);
}

TEST(CPositionControl, HandsAskForAResetAndProgramsAreSilent)
{
    CTrackBar bar;
    bar.resize(30, 300);
    const QSignalSpy moved(&bar, &CPositionControl::moved);
    const QSignalSpy reset(&bar, &CPositionControl::resetRequested);
    bar.setPosition(999);
    EXPECT_EQ(bar.position(), 256);
    bar.setPosition(-1);
    EXPECT_EQ(bar.position(), 0);
    QTest::keyClick(&bar, Qt::Key_Delete);
    QTest::keyClick(&bar, Qt::Key_Backspace);
    QTest::mouseDClick(&bar, Qt::LeftButton);
    EXPECT_EQ(reset.count(), 3);
    EXPECT_EQ(moved.count(), 0);
}

TEST(CPositionControl, AnEmptySlotStaysButKeepsTheWheelToItself)
{
    QWidget parent;
    CTrackBar bar(&parent);
    bar.setGeometry(0, 0, 30, 300);
    for (const bool bByRole : {true, false}) {
        bar.setRole(bByRole ? ESlotRole::Empty : ESlotRole::Live);
        bar.setActive(bByRole);
        const QSignalSpy moved(&bar, &CPositionControl::moved);
        QTest::keyClick(&bar, Qt::Key_End);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(15, 20));
        drag(bar, bar.thumbRect().center(), QPoint(0, -100));
        EXPECT_TRUE(turnWheel(bar, 3));
        bar.setAccessibleValue(200.0);
        EXPECT_EQ(bar.position(), 0);
        EXPECT_EQ(moved.count(), 0);
    }
}

TEST(CTrackBar, DragsFollowTheMouseAndShiftIsFine)
{
    struct CCase
    {
        Qt::Orientation m_eOrientation;
        QPoint m_by;
        Qt::KeyboardModifiers m_modifiers;
        double m_dTravels; // moved by that part of the travel
    };
    const CCase cases[] = {
        {Qt::Vertical, {0, -80}, Qt::NoModifier, 80},        {Qt::Vertical, {0, 40}, Qt::NoModifier, -40},
        {Qt::Vertical, {0, -80}, Qt::ShiftModifier, 10},     {Qt::Horizontal, {80, 0}, Qt::NoModifier, 80},
        {Qt::Horizontal, {-80, 30}, Qt::ShiftModifier, -10},
    };
    for (const CCase& test : cases) {
        CTrackBar bar;
        bar.setOrientation(test.m_eOrientation);
        bar.resize(test.m_eOrientation == Qt::Vertical ? QSize(30, 400) : QSize(400, 30));
        bar.setPosition(128);
        const double dTravel = std::abs(bar.pixelOf(256) - bar.pixelOf(0));
        drag(bar, bar.thumbRect().center(), test.m_by, test.m_modifiers);
        EXPECT_EQ(bar.position(), std::lround(128 + test.m_dTravels * 256 / dTravel));
    }
}

TEST(CTrackBar, WhatWasDraggedTooFarComesBackFirst)
{
    CTrackBar bar;
    bar.resize(30, 300);
    bar.setPosition(250);
    const QPoint start = bar.thumbRect().center();
    QTest::mousePress(&bar, Qt::LeftButton, {}, start);
    moveMouse(bar, start - QPoint(0, 100));
    moveMouse(bar, start - QPoint(0, 50));
    EXPECT_EQ(bar.position(), 256);
    moveMouse(bar, start);
    EXPECT_EQ(bar.position(), 250);
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, start);
    moveMouse(bar, start - QPoint(0, 100));
    EXPECT_EQ(bar.position(), 250) << "nothing follows a mouse without its button";
}

TEST(CTrackBar, AClickBesideTheThumbMovesAPageTowardTheMouse)
{
    CTrackBar bar;
    bar.resize(30, 300);
    bar.setPosition(128);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(15, 5));
    EXPECT_EQ(bar.position(), 144);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(15, 295));
    EXPECT_EQ(bar.position(), 128);
    QTest::mouseClick(&bar, Qt::RightButton, {}, QPoint(15, 295));
    EXPECT_EQ(bar.position(), 128);
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(15, 100));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.thumbRect().contains(15, 100); })) << "holding goes on";
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(15, 100));
}

TEST(CRotaryWheel, TheKnobIsDraggedUpAndDown)
{
    CRotaryWheel knob(EWheelKind::ValueKnob);
    knob.resize(60, 60);
    knob.setPosition(128);
    drag(knob, {30, 30}, {0, -50});
    EXPECT_EQ(knob.position(), 192);
    drag(knob, {30, 30}, {0, 100}, Qt::ShiftModifier);
    EXPECT_EQ(knob.position(), 176);
}

TEST(CRotaryWheel, TheAlphaWheelTurnsByDetents)
{
    CRotaryWheel wheel(EWheelKind::AlphaWheel);
    wheel.resize(120, 120);
    wheel.setItem(3, 10);
    QSignalSpy turned(&wheel, &CRotaryWheel::turned);
    const auto sum = [&turned] {
        int nDetents = 0;
        while (!turned.isEmpty())
            nDetents += turned.takeFirst()[0].toInt();
        return nDetents;
    };
    QTest::mousePress(&wheel, Qt::LeftButton, {},
                      QPoint(60, 10)); // a quarter turn, over the left to the foot
    for (const QPoint& point : {QPoint(100, 20), QPoint(111, 61)})
        moveMouse(wheel, point);
    EXPECT_EQ(sum(), 6);
    for (const QPoint& point :
         {QPoint(100, 20), QPoint(59, 10), QPoint(20, 20), QPoint(10, 58), QPoint(59, 112)})
        moveMouse(wheel, point);
    QTest::mouseRelease(&wheel, Qt::LeftButton);
    EXPECT_NEAR(sum(), -17, 1);

    turnWheel(wheel, -2);
    EXPECT_EQ(sum(), -2);
    turnWheel(wheel, 1, Qt::ShiftModifier);
    EXPECT_EQ(sum(), 1) << "detents know no finer step";
    QTest::keyClick(&wheel, Qt::Key_Up);
    EXPECT_EQ(sum(), 1);
    QTest::keyClick(&wheel, Qt::Key_End);
    EXPECT_EQ(sum(), 6);
    QTest::keyClick(&wheel, Qt::Key_Home);
    EXPECT_EQ(sum(), -3);
    wheel.setAccessibleValue(5.0);
    EXPECT_EQ(sum(), 2);
    EXPECT_EQ(wheel.position(), 0);
}

} // namespace
} // namespace velmora
