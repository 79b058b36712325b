#include "widgets/common/accessible_instrument.h"
#include "widgets/common/fader.h"
#include "widgets/common/lcd_strip.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/panel_button.h"
#include "widgets/common/panel_combo.h"
#include "widgets/common/radio_bank.h"
#include "widgets/common/rotary_wheel.h"
#include "widgets/common/track_bar.h"
#include "widgets/common/value_box.h"

#include <QAbstractItemView>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(IAccessibleInstrument, EveryControlTellsNameRoleAndValueWithItsUnit)
{
    CTrackBar bar;
    bar.setPosition(64);
    CTrackBar spoken;
    spoken.setValueText("440.00 Hz");
    CRotaryWheel wheel(EWheelKind::AlphaWheel);
    wheel.setItem(2, 12);
    CLEDMeter meter;
    meter.setLevel(0.63F);
    CLEDMeter decibels;
    decibels.setDecibels(-60.0, 0.0);
    decibels.setLevel(0.8F);
    CFader fader;
    fader.setGain(-6.0F);
    CLCDStrip strip;
    strip.setLines("Pitch", "440.00 Hz");
    strip.setCounter(1, 3);
    CValueBox box;
    box.setValue("-3.00 dB");
    CRadioBank bank;
    bank.setItems({"LPF", "HPF"});
    bank.setSelected(1);
    CPanelCombo combo;
    combo.setItems({"Sine", "Saw"}, 1);
    CPanelButton push;
    CPanelButton latch(nullptr, EButtonKind::Latching);

    struct CCase
    {
        QWidget* m_pWidget;
        QAccessible::Role m_eRole;
        QString m_sValue;
    };
    const CCase cases[] = {
        {&bar, QAccessible::Slider, "25 %"},
        {&spoken, QAccessible::Slider, "440.00 Hz"},
        {&wheel, QAccessible::Dial, "3 / 12"},
        {&meter, QAccessible::Indicator, "63 %"},
        {&decibels, QAccessible::Indicator, "-12.0 dB"},
        {&fader, QAccessible::Grouping, "-6.0 dB"},
        {&fader.trackBar(), QAccessible::Slider, "-6.0 dB"},
        {&strip, QAccessible::StaticText, "Pitch, 440.00 Hz, 1/3"},
        {&box, QAccessible::EditableText, "-3.00 dB"},
        {&bank, QAccessible::Grouping, "HPF"},
        {&combo, QAccessible::ComboBox, "Saw"},
        {&push, QAccessible::Button, ""},
        {&latch, QAccessible::CheckBox, ""},
    };
    for (const CCase& test : cases) {
        if (test.m_pWidget != &fader.trackBar())
            test.m_pWidget->setAccessibleName("Slider 3: Cutoff");
        QAccessibleInterface* pInterface = QAccessible::queryAccessibleInterface(test.m_pWidget);
        ASSERT_TRUE(pInterface && pInterface->isValid());
        EXPECT_EQ(pInterface->role(), test.m_eRole) << test.m_sValue.toStdString();
        EXPECT_EQ(pInterface->text(QAccessible::Value), test.m_sValue);
        EXPECT_EQ(pInterface->text(QAccessible::Name), "Slider 3: Cutoff") << test.m_sValue.toStdString();
    }
    QAccessibleInterface* pCombo = QAccessible::queryAccessibleInterface(&combo);
    EXPECT_TRUE(pCombo->state().hasPopup);
    pCombo->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(combo.view()->isVisible());
    combo.hidePopup();
    latch.setChecked(true);
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(&latch)->state().checked);
    QAccessibleInterface* pBank = QAccessible::queryAccessibleInterface(&bank);
    ASSERT_EQ(pBank->childCount(), CRadioBank::BUTTONS);
    EXPECT_EQ(pBank->child(1)->text(QAccessible::Name), "HPF");
    EXPECT_EQ(pBank->child(1)->role(), QAccessible::RadioButton);
    EXPECT_TRUE(pBank->child(1)->state().checked);
    EXPECT_TRUE(pBank->child(7)->state().invisible);
}

TEST(IAccessibleInstrument, RangesAreReadAndMovedAsByAHand)
{
    CTrackBar bar;
    CFader fader;
    CLEDMeter meter;
    meter.setLevel(0.5F);
    const QSignalSpy moved(&bar, &CTrackBar::moved);
    const QSignalSpy gain(&fader, &CFader::gainChanged);
    struct CCase
    {
        QWidget* m_pWidget;
        double m_dLowest;
        double m_dHighest;
        double m_dSet;
        double m_dThen;
    };
    const CCase cases[] = {{&bar, 0.0, 256.0, 200.0, 200.0},
                           {&bar, 0.0, 256.0, 1e9, 256.0},
                           {&fader.trackBar(), -60.0, 12.0, -20.0, -20.0},
                           {&meter, 0.0, 100.0, 80.0, 50.0}};
    for (const CCase& test : cases) {
        QAccessibleValueInterface* pValue =
            QAccessible::queryAccessibleInterface(test.m_pWidget)->valueInterface();
        ASSERT_TRUE(pValue);
        EXPECT_EQ(pValue->minimumValue().toDouble(), test.m_dLowest);
        EXPECT_EQ(pValue->maximumValue().toDouble(), test.m_dHighest);
        pValue->setCurrentValue(test.m_dSet);
        EXPECT_EQ(pValue->currentValue().toDouble(), test.m_dThen);
        pValue->setCurrentValue("a text");
        EXPECT_EQ(pValue->currentValue().toDouble(), test.m_dThen);
    }
    EXPECT_EQ(moved.count(), 2);
    EXPECT_EQ(gain.count(), 1);
    CLCDStrip strip;
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(&strip)->valueInterface()) << "a text has no range";
}

} // namespace
} // namespace velmora
