#include "widgets/common/fader.h"
#include "widgets/common/instrument_hands.h"
#include "widgets/common/lcd_strip.h"
#include "widgets/common/panel_button.h"
#include "widgets/common/panel_combo.h"
#include "widgets/common/radio_bank.h"
#include "widgets/common/track_bar.h"
#include "widgets/common/value_box.h"

#include <QAbstractItemView>
#include <QRadioButton>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace velmora {
namespace {

// Several widgets in one active window, so that the focus can move.
template <class... TWidgets>
void showTogether(QWidget& window, TWidgets*... pWidgets)
{
    auto* pLayout = new QVBoxLayout(&window);
    (pLayout->addWidget(pWidgets), ...);
    window.show();
    QApplication::setActiveWindow(&window);
}

TEST(CValueBox, CommitsAnEditOnce)
{
    QWidget window;
    auto* pBox = new CValueBox;
    auto* pOther = new CValueBox;
    showTogether(window, pBox, pOther);
    QSignalSpy committed(pBox, &CValueBox::committed);
    const auto taken = [&committed] {
        QStringList result;
        while (!committed.isEmpty())
            result += committed.takeFirst()[0].toString();
        return result;
    };
    pBox->setValue("1.00 dB");
    pBox->edit();
    QTest::keyClick(pBox, Qt::Key_Return);
    pOther->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(taken(), QStringList()) << "nothing was edited";

    pBox->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(pBox->selectedText(), "1.00 dB");
    QTest::keyClicks(pBox, "5");
    pBox->setValue("2.00 dB");
    EXPECT_EQ(pBox->text(), "5") << "a value from outside does not disturb the typing";
    QTest::keyClick(pBox, Qt::Key_Enter);
    EXPECT_EQ(taken(), QStringList("5"));
    pBox->setValue("5.00 dB");
    EXPECT_EQ(pBox->text(), "5.00 dB");

    pBox->edit();
    QTest::keyClicks(pBox, "7");
    QTest::keyClick(pBox, Qt::Key_Escape);
    EXPECT_EQ(pBox->text(), "5.00 dB");
    QTest::keyClicks(pBox, "8");
    pOther->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(taken(), QStringList("8"));

    pBox->setReadOnly(true);
    QTest::keyClicks(pBox, "9");
    QTest::keyClick(pBox, Qt::Key_Return);
    EXPECT_EQ(taken(), QStringList());
}

TEST(CPanelButton, EachKindAnswersAClick)
{
    struct CCase
    {
        EButtonKind m_eKind;
        ESlotRole m_eRole;
        std::vector<bool> m_states; // after a click, Space, Enter
    };
    const CCase cases[] = {
        {EButtonKind::Push, ESlotRole::Live, {false, false, false}},
        {EButtonKind::Latching, ESlotRole::Live, {true, false, true}},
        {EButtonKind::TwoState, ESlotRole::Assigned, {true, false, true}},
        {EButtonKind::TwoState, ESlotRole::Empty, {}},
    };
    for (const CCase& test : cases) {
        CPanelButton button(nullptr, test.m_eKind);
        button.setRole(test.m_eRole);
        button.resize(60, 30);
        std::vector<bool> states;
        QObject::connect(&button, &QPushButton::clicked, [&] { states.push_back(button.isChecked()); });
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::keyClick(&button, Qt::Key_Space);
        QTest::keyClick(&button, Qt::Key_Return);
        QTest::mouseClick(&button, Qt::RightButton);
        button.setChecked(true);
        EXPECT_EQ(states, test.m_states);
    }
}

TEST(CRadioBank, HandsChooseByMouseAndArrows)
{
    QWidget window;
    auto* pBefore = new CValueBox;
    auto* pBank = new CRadioBank;
    auto* pAfter = new CValueBox;
    showTogether(window, pBefore, pBank, pAfter);
    pBank->setItems({"LPF", "HPF", "BPF"});
    QSignalSpy chosen(pBank, &CRadioBank::chosen);
    const QList<QRadioButton*> buttons = pBank->findChildren<QRadioButton*>();
    ASSERT_EQ(buttons.size(), CRadioBank::BUTTONS);
    EXPECT_TRUE(buttons[2]->isVisible());
    EXPECT_FALSE(buttons[3]->isVisible());
    EXPECT_EQ(pBank->selected(), -1);

    pBank->setSelected(1);
    pBank->setSelected(-1);
    EXPECT_EQ(pBank->selected(), -1);
    pBank->setSelected(1);
    EXPECT_EQ(chosen.count(), 0);

    pBefore->setFocus();
    QTest::keyClick(pBefore, Qt::Key_Tab);
    EXPECT_TRUE(buttons[1]->hasFocus()) << "the pressed one is where Tab leads";
    QTest::keyClick(buttons[1], Qt::Key_Down);
    EXPECT_EQ(pBank->selected(), 2);
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen.takeFirst()[0].toInt(), 2);
    QTest::keyClick(buttons[2], Qt::Key_Tab);
    EXPECT_TRUE(pAfter->hasFocus()) << "a bank is one tab stop";

    QTest::mouseClick(buttons[0], Qt::LeftButton);
    QTest::mouseClick(buttons[0], Qt::LeftButton);
    EXPECT_EQ(pBank->selected(), 0);
    EXPECT_EQ(chosen.count(), 2) << "a pressed button fires again";

    pBank->setRole(ESlotRole::Empty);
    QTest::mouseClick(buttons[1], Qt::LeftButton);
    QTest::keyClick(buttons[0], Qt::Key_Down);
    EXPECT_EQ(pBank->selected(), 0);
    pBank->setItems({});
    EXPECT_EQ(pBank->selected(), -1);
}

TEST(CPanelCombo, TheOnlyEntryOfAnEmptyOneAsksForTheSetUp)
{
    QWidget window;
    auto* pCombo = new CPanelCombo;
    showTogether(window, pCombo);
    const QSignalSpy setup(pCombo, &CPanelCombo::setupRequested);
    const QSignalSpy chosen(pCombo, &CPanelCombo::chosen);
    EXPECT_EQ(pCombo->currentText(), "Click to Setup");
    QTest::keyClicks(pCombo, "c");
    QTest::keyClick(pCombo, Qt::Key_Down);
    EXPECT_TRUE(turnWheel(*pCombo, 1));
    EXPECT_EQ(setup.count(), 0) << "only choosing asks";
    int nRequests = 0;
    const auto chooseFirst = [&] {
        ASSERT_TRUE(pCombo->view()->isVisible());
        QTest::keyClick(pCombo->view(), Qt::Key_Return);
        EXPECT_EQ(setup.count(), ++nRequests);
    };
    for (const Qt::Key eKey : {Qt::Key_Space, Qt::Key_Return, Qt::Key_F4}) {
        QTest::keyClick(pCombo, eKey);
        chooseFirst();
    }
    QTest::keyClick(pCombo, Qt::Key_Down, Qt::AltModifier);
    chooseFirst();

    pCombo->setItems({"Sine", "Saw", "Square"}, 1);
    pCombo->setSelected(0);
    EXPECT_EQ(chosen.count(), 0);
    QTest::keyClick(pCombo, Qt::Key_Down);
    EXPECT_TRUE(turnWheel(*pCombo, -1));
    EXPECT_EQ(pCombo->currentText(), "Square");
    ASSERT_EQ(chosen.count(), 2);
    EXPECT_EQ(chosen[1][0].toInt(), 2);
    EXPECT_EQ(setup.count(), nRequests);
}

TEST(CFader, PositionsCountFromTheTop)
{
    CFader fader;
    fader.resize(90, 300);
    QSignalSpy changed(&fader, &CFader::gainChanged);
    struct CCase
    {
        Qt::Key m_eKey;
        int m_nPosition;
        double m_dGain;
    };
    const CCase cases[] = {
        {Qt::Key_Home, 0, 12.0},      {Qt::Key_Down, 1, 11.71875}, {Qt::Key_End, 256, -60.0},
        {Qt::Key_PageUp, 240, -55.5}, {Qt::Key_Delete, 43, 0.0},   {Qt::Key_Up, 42, 0.1875},
    };
    for (const CCase& test : cases) {
        QTest::keyClick(&fader.trackBar(), test.m_eKey);
        EXPECT_EQ(fader.faderPosition(), test.m_nPosition);
        EXPECT_FLOAT_EQ(fader.gain(), static_cast<float>(test.m_dGain)) << test.m_nPosition;
        ASSERT_EQ(changed.count(), 1);
        EXPECT_FLOAT_EQ(changed.takeFirst()[0].toFloat(), fader.gain());
    }
    QTest::mouseDClick(&fader.trackBar(), Qt::LeftButton);
    EXPECT_EQ(fader.gain(), 0.0F);
    changed.clear();
    fader.setGain(-600.0F);
    EXPECT_EQ(fader.gain(), -60.0F);
    EXPECT_EQ(changed.count(), 0);
    fader.setRole(ESlotRole::Empty);
    QTest::keyClick(&fader.trackBar(), Qt::Key_Home);
    EXPECT_EQ(fader.gain(), -60.0F);
}

// Nothing that is written or lit may touch the edge that would cut it off.
TEST(CLCDStrip, LongLinesEndInsideTheDisplay)
{
    CLCDStrip strip;
    strip.resize(160, 44);
    strip.setLines(QString(200, 'W'), QString(200, 'W'));
    strip.setCounter(3, 1024);
    EXPECT_EQ(strip.counterText(), "3/1024");
    const QImage picture = strip.grab().toImage();
    const QColor ground = picture.pixelColor(picture.width() / 2, 2);
    int nWritten = 0;
    for (int nRow = 2; nRow < picture.height() - 2; ++nRow) {
        EXPECT_EQ(picture.pixelColor(picture.width() - 4, nRow), ground) << nRow;
        for (int nColumn = 4; nColumn < picture.width() - 4; ++nColumn)
            nWritten += picture.pixelColor(nColumn, nRow) != ground ? 1 : 0;
    }
    EXPECT_GT(nWritten, 500);
    strip.setCounter(0, 0);
    EXPECT_EQ(strip.counterText(), "");
}

} // namespace
} // namespace velmora
