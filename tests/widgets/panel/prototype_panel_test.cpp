#include "host/user_dsp_filter.h"
#include "panel/alpha_wheel.h"
#include "panel/panel_test_support.h"
#include "project/control_list.h"
#include "project/dsp_project.h"
#include "widgets/common/instrument_hands.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/panel_button.h"
#include "widgets/common/panel_combo.h"
#include "widgets/common/rotary_wheel.h"
#include "widgets/common/track_bar.h"
#include "widgets/common/value_box.h"
#include "widgets/panel/panel_layout.h"
#include "widgets/panel/prototype_panel.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QPaintEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using ::testing::ElementsAre;
using enum EPanelPart;

constexpr QSize SIZES[] = {PANEL_SMALLEST_SIZE, {1280, 680}, {1600, 1000}, {1920, 960}};

constexpr test::CTestControl CONTROLS[] = {
    {0, FILTER_CONTROL_CONTINUOUSLY_VARIABLE, floatData, 0, 100, 25, "", "Hz"},
    {1, FILTER_CONTROL_CONTINUOUSLY_VARIABLE, UINTData, 0, 2, 0, "ONE,TWO,THREE"},
    {12, FILTER_CONTROL_CONTINUOUSLY_VARIABLE, floatData, 0, 10, 5, "", "dB"},
    {41, FILTER_CONTROL_RADIO_SWITCH_VARIABLE, UINTData, 0, 2, 0, "SINE,SAW,SQUARE"},
    {45, FILTER_CONTROL_RADIO_SWITCH_VARIABLE, UINTData, 0, 1, 0, "SWITCH_OFF,SWITCH_ON"},
    {50, FILTER_CONTROL_LED_METER, floatData, 0, 1, 0},
    {70, FILTER_CONTROL_COMBO_VARIABLE, UINTData, 0, 2, 0, "LOW_PASS,HIGH_PASS"},
    {100, FILTER_CONTROL_CONTINUOUSLY_VARIABLE, floatData, 0, 1, 0.5F, "", "s", false, false, 0},
    {101, FILTER_CONTROL_CONTINUOUSLY_VARIABLE, floatData, 0, 1, 1, "", "s", false, false, 1},
};

// The panel in a shown window, with project or plug-in, and what its signals said.
class PrototypePanel : public ::testing::Test, public IPanelView
{
  protected:
    PrototypePanel() : m_plugIn({std::begin(CONTROLS), std::end(CONTROLS)}), m_wheel(m_model)
    {
        for (const auto& control : CONTROLS)
            m_project.m_UIControlList.append(test::recordOf(control));
        m_panel.setModel(&m_model);
        m_panel.setAlphaWheel(&m_wheel);
        m_panel.resize(1280, 680);
        m_panel.show();
        QApplication::setActiveWindow(&m_panel);
        m_model.setView(this);

        const auto note = [this](const QString& sText) { m_said << sText; };
        QObject::connect(&m_panel, &CPrototypePanel::setupRequested,
                         [=](UINT uSlot) { note(QStringLiteral("setup %1").arg(uSlot)); });
        QObject::connect(&m_panel, &CPrototypePanel::alphaWheelSetupRequested, [=] { note("wheel"); });
        QObject::connect(&m_panel, &CPrototypePanel::assignableSetupRequested, [=] { note("buttons"); });
        QObject::connect(&m_panel, &CPrototypePanel::routingChanged,
                         [=](int nCode) { note(QStringLiteral("routing %1").arg(nCode)); });
        QObject::connect(&m_panel, &CPrototypePanel::displayChanged,
                         [=](int nDisplay) { note(QStringLiteral("display %1").arg(nDisplay)); });
        QObject::connect(&m_panel, &CPrototypePanel::projectCommand, [=](EProjectButton eButton) {
            note(QStringLiteral("command %1").arg(static_cast<int>(eButton)));
        });
        QObject::connect(&m_panel, &CPrototypePanel::presetSelected, [=](const QString& s) { note(s); });
        QObject::connect(&m_panel, &CPrototypePanel::presetSaveRequested, [=] { note("save"); });
        QObject::connect(&m_panel, &CPrototypePanel::presetDeleteRequested, [=] { note("delete"); });
        QObject::connect(&m_panel, &CPrototypePanel::newProjectRequested, [=] { note("new"); });
        QObject::connect(&m_panel, &CPrototypePanel::openProjectRequested, [=] { note("open"); });
    }
    ~PrototypePanel() override { m_model.setFilter(nullptr); }

    void slotChanged(UINT uSlot) override { m_panel.showSlot(uSlot); }
    void panelChanged() override { m_panel.showAll(); }
    void buttonChanged(UINT uButton) override { m_panel.showButton(uButton); }

    void openProject() { m_model.setProject(&m_project); }
    void loadPlugIn()
    {
        m_filter.attachPlugIn(&m_plugIn);
        m_filter.createControls();
        m_model.setFilter(&m_filter);
    }

    QStringList said() { return std::exchange(m_said, {}); }

    // The only shown widget of a kind with that name for screen readers.
    template <class TWidget>
    TWidget& named(const QString& sName)
    {
        TWidget* pFound = nullptr;
        for (TWidget* pWidget : m_panel.findChildren<TWidget*>()) {
            if (pWidget->accessibleName() == sName && pWidget->isVisible())
                pFound = pWidget;
        }
        EXPECT_TRUE(pFound) << sName.toStdString();
        return *pFound;
    }

    [[nodiscard]] QPoint middle(EPanelPart ePart, int nIndex) const
    {
        return panelRect(ePart, nIndex, m_panel.size()).center();
    }

    [[nodiscard]] QString focusName() const
    {
        const QWidget* pFocus = m_panel.focusWidget();
        return pFocus ? pFocus->accessibleName() : QString();
    }

    CDSPProject m_project;
    test::CPanelPlugIn m_plugIn;
    CUserDSPFilter m_filter;
    CPanelModel m_model;
    CAlphaWheel m_wheel;
    CPrototypePanel m_panel;
    QStringList m_said;
};

TEST(PanelLayout, GivesEveryPartAPlaceOfItsOwn)
{
    for (const QSize& form : SIZES) {
        std::vector<QRect> taken;
        for (const CPanelPlace& place : panelPlaces()) {
            for (int i = 0; i < place.m_nCount; i++) {
                const QRect rect = panelRect(place.m_ePart, i, form);
                EXPECT_TRUE(QRect(QPoint(0, 0), form).contains(rect)) << static_cast<int>(place.m_ePart);
                if (place.isGroup() || place.m_ePart == Invitation)
                    continue;
                for (const QRect& other : taken)
                    EXPECT_FALSE(rect.intersects(other)) << static_cast<int>(place.m_ePart) << " " << i;
                taken.push_back(rect);
            }
        }
        EXPECT_EQ(taken.size(), 75U);
    }
}

struct CHitCase
{
    EPanelPart m_ePart;
    int m_nIndex;
    const char* m_pSaid;
};

constexpr CHitCase HITS[] = {
    {AlphaWheel, 0, "wheel"},        {Sliders, 0, "setup 0"},
    {Sliders, 39, "setup 39"},       {Banks, 0, "setup 41"},
    {Banks, 3, "setup 44"},          {Switches, 0, "setup 45"},
    {Switches, 3, "setup 48"},       {AssignableButtons, 1, "buttons"},
    {Meters, 0, "setup 50"},         {Meters, 9, "setup 59"},
    {JoystickCombos, 0, "setup 60"}, {JoystickCombos, 3, "setup 63"},
    {FreeCombos, 0, "setup 70"},     {FreeCombos, 3, "setup 73"},
};

TEST_F(PrototypePanel, OpensTheSetupOfWhatTheRightButtonOrTheKeyboardPointsAt)
{
    openProject();
    for (const QSize& form : {SIZES[0], SIZES[2]}) {
        m_panel.resize(form);
        QApplication::processEvents();
        for (const CHitCase& hit : HITS) {
            const QPoint point = middle(hit.m_ePart, hit.m_nIndex);
            QTest::mouseClick(m_panel.windowHandle(), Qt::RightButton, Qt::NoModifier, point);
            EXPECT_EQ(said(), QStringList(hit.m_pSaid)) << "mouse";

            // The widget that lies there, or the first inside it that takes the focus.
            QWidget* pWidget = m_panel.childAt(point);
            while (pWidget->focusPolicy() == Qt::NoFocus && pWidget->parentWidget() != &m_panel)
                pWidget = pWidget->parentWidget();
            if (pWidget->focusPolicy() == Qt::NoFocus) {
                for (QWidget* pChild : pWidget->findChildren<QWidget*>()) {
                    if (pChild->focusPolicy() != Qt::NoFocus && pChild->isVisible())
                        pWidget = pChild;
                }
            }
            pWidget->setFocus();
            QTest::keyClick(pWidget, Qt::Key_F10, Qt::ShiftModifier);
            EXPECT_EQ(said(), QStringList(hit.m_pSaid)) << "Shift+F10";
            QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
            QApplication::sendEvent(pWidget, &menu);
            EXPECT_EQ(said(), QStringList(hit.m_pSaid)) << "Menu key";
        }
        for (const EPanelPart ePart : {ProjectBar, InputGain, Display, Routing}) {
            QTest::mouseClick(m_panel.windowHandle(), Qt::RightButton, Qt::NoModifier, middle(ePart, 0));
            EXPECT_TRUE(said().isEmpty()) << static_cast<int>(ePart);
        }
    }
    auto& combo = named<CPanelCombo>("Combo CMBO2, empty");
    emit combo.activated(0);
    EXPECT_THAT(said(), ElementsAre("setup 71"));
}

// What hands do, and what the records or the plug-in then hold.
TEST_F(PrototypePanel, HandsMoveTheProjectsInitialValuesOrThePlugIn)
{
    for (const bool bPlugIn : {false, true}) {
        openProject();
        if (bPlugIn)
            loadPlugIn();
        const auto floatOf = [&](UINT uId, std::size_t uControl) {
            return bPlugIn
                       ? m_plugIn.m_variables[uControl].m_fValue
                       : static_cast<float>(findControl(m_project.m_UIControlList, uId)->fInitUserFloatValue);
        };
        const auto itemOf = [&](UINT uId, std::size_t uControl) {
            return bPlugIn
                       ? m_plugIn.m_variables[uControl].m_uValue
                       : static_cast<UINT>(findControl(m_project.m_UIControlList, uId)->fInitUserUINTValue);
        };

        auto& bar = named<CTrackBar>("Slider 0: Name 0");
        QTest::keyClick(&bar, Qt::Key_End);
        EXPECT_EQ(floatOf(0, 0), 100.0F);
        EXPECT_EQ(named<CValueBox>("Slider 0: Name 0, value").text(), "100.00 Hz");
        QTest::keyClick(&bar, Qt::Key_Delete);
        EXPECT_EQ(floatOf(0, 0), 25.0F);

        auto& box = named<CValueBox>("Slider 0: Name 0, value");
        box.edit();
        QTest::keyClicks(&box, "50 Hz");
        QTest::keyClick(&box, Qt::Key_Return);
        EXPECT_EQ(floatOf(0, 0), 50.0F);
        EXPECT_EQ(bar.position(), 128);
        QApplication::processEvents();
        EXPECT_EQ(focusName(), "Slider 12: Name 12, value") << "past the box that takes no text";
        EXPECT_EQ(named<CValueBox>(focusName()).selectedText(), "5.00 dB");
        QTest::keyClicks(m_panel.focusWidget(), "loud");
        box.setFocus();
        EXPECT_EQ(named<CValueBox>("Slider 12: Name 12, value").text(), "5.00 dB") << "no number";

        QRadioButton* pSquare = nullptr;
        for (QRadioButton* pButton : m_panel.findChildren<QRadioButton*>())
            pSquare = pButton->text() == "SQUARE" ? pButton : pSquare;
        ASSERT_TRUE(pSquare);
        QTest::mouseClick(pSquare, Qt::LeftButton);
        EXPECT_EQ(itemOf(41, 3), 2U);
        QTest::mouseClick(&named<CPanelButton>("Switch 1: Name 45"), Qt::LeftButton);
        EXPECT_EQ(itemOf(45, 4), 1U);
        EXPECT_EQ(named<CPanelButton>("Switch 1: Name 45").stateText(), "SWITCH_ON");
        auto& combo = named<CPanelCombo>("Combo CMBO1: Name 70");
        EXPECT_EQ(combo.itemText(1), "HIGH PASS");
        combo.setFocus();
        QTest::keyClick(&combo, Qt::Key_Down);
        EXPECT_EQ(itemOf(70, 6), 1U);

        QTest::keyClick(&named<CRotaryWheel>("Alpha wheel"), Qt::Key_Up);
        EXPECT_EQ(m_wheel.position(), 1);
        QTest::keyClick(&named<CRotaryWheel>("Value: " + QString::fromStdString(m_wheel.nameLine())),
                        Qt::Key_Home);
        EXPECT_EQ(floatOf(101, 8), 0.0F);

        while (m_model.deliverChanges()) {
        }
        m_plugIn.m_told.clear();
        QTest::mouseClick(m_panel.childAt(middle(AssignableButtons, 2)), Qt::LeftButton);
        while (m_model.deliverChanges()) {
        }
        EXPECT_EQ(m_plugIn.m_told, bPlugIn ? std::vector{52} : std::vector<int>());
    }
}

TEST_F(PrototypePanel, ShowsFromAfarWhatIsInUse)
{
    const auto role = [this](const QString& sName) { return named<CTrackBar>(sName).role(); };
    EXPECT_EQ(role("Slider 0, empty"), ESlotRole::Empty);
    openProject();
    EXPECT_EQ(role("Slider 0: Name 0"), ESlotRole::Assigned);
    EXPECT_EQ(role("Slider 2, empty"), ESlotRole::Empty);
    loadPlugIn();
    m_panel.setLoaded(true, "Name");
    EXPECT_EQ(role("Slider 0: Name 0"), ESlotRole::Live);
    EXPECT_EQ(role("Slider 2, empty"), ESlotRole::Empty);
    named<CPanelButton>("Unload");
    m_model.setFilter(nullptr);
    m_panel.setLoaded(false);
    EXPECT_EQ(role("Slider 0: Name 0"), ESlotRole::Assigned);
    named<CPanelButton>("Load");
}

TEST_F(PrototypePanel, TellsScreenReadersNameRoleAndValueWithUnits)
{
    openProject();
    struct CCase
    {
        QWidget* m_pWidget;
        QAccessible::Role m_eRole;
        const char* m_pValue;
    };
    const CCase cases[] = {
        {&named<CTrackBar>("Slider 0: Name 0"), QAccessible::Slider, "25.00 Hz"},
        {&named<CValueBox>("Slider 0: Name 0, value"), QAccessible::EditableText, "25.00 Hz"},
        {&named<CLEDMeter>("Meter 0: Name 50"), QAccessible::Indicator, "0 %"},
        {&named<CLEDMeter>("Output / Return level left"), QAccessible::Indicator, "-60.0 dB"},
        {&named<CPanelCombo>("Combo CMBO1: Name 70"), QAccessible::ComboBox, "LOW PASS"},
    };
    for (const CCase& one : cases) {
        QAccessibleInterface* pInterface = QAccessible::queryAccessibleInterface(one.m_pWidget);
        ASSERT_TRUE(pInterface);
        EXPECT_EQ(pInterface->text(QAccessible::Name), one.m_pWidget->accessibleName());
        EXPECT_EQ(pInterface->role(), one.m_eRole) << one.m_pWidget->accessibleName().toStdString();
        EXPECT_EQ(pInterface->text(QAccessible::Value), one.m_pValue);
    }
    for (const QWidget* pWidget : m_panel.findChildren<QWidget*>()) {
        const bool bFocus = pWidget->focusPolicy() != Qt::NoFocus && pWidget->isVisible();
        EXPECT_FALSE(bFocus && pWidget->accessibleName().isEmpty() &&
                     !qobject_cast<const QRadioButton*>(pWidget))
            << pWidget->metaObject()->className();
    }
}

TEST_F(PrototypePanel, TheTabKeyGoesByGroupsAndArrowsGoInside)
{
    openProject();
    m_panel.focusFirst();
    EXPECT_EQ(focusName(), "Slider 0: Name 0");
    struct CStep
    {
        Qt::Key m_eKey;
        const char* m_pName;
    };
    const CStep steps[] = {
        {Qt::Key_Left, "Slider 0: Name 0"},         {Qt::Key_Right, "Slider 1: Name 1"},
        {Qt::Key_Right, "Slider 2, empty"},         {Qt::Key_Up, "Slider 2, empty"},
        {Qt::Key_Down, "Slider 12: Name 12"},       {Qt::Key_Down, "Slider 12: Name 12"}, // moves the control
        {Qt::Key_Tab, "Slider 12: Name 12, value"}, {Qt::Key_Down, "Slider 22, empty"},   // no box there
        {Qt::Key_Tab, "Output / Return gain"},      {Qt::Key_Backtab, "Slider 22, empty"},
    };
    for (const CStep& step : steps) {
        QTest::keyClick(m_panel.focusWidget(), step.m_eKey);
        QString sName = focusName();
        if (sName.isEmpty())
            sName = m_panel.focusWidget()->parentWidget()->accessibleName();
        EXPECT_EQ(sName, step.m_pName);
    }
    EXPECT_NE(named<CTrackBar>("Slider 12: Name 12").position(), 128);
    int nStops = 0;
    for (const QWidget* pWidget : m_panel.findChildren<QWidget*>())
        nStops += pWidget->isVisible() && (pWidget->focusPolicy() & Qt::TabFocus) ? 1 : 0;
    EXPECT_LT(nStops, 40) << "of some hundred widgets";
}

TEST_F(PrototypePanel, FixedWidgetsSpeakByHandAndKeepSilentWhenSet)
{
    openProject();
    m_panel.setProjectName("Gain");
    m_panel.setPresets({"Factory", "Bright"}, 0);
    const auto click = [this](const QString& sName) {
        QTest::mouseClick(&named<QAbstractButton>(sName), Qt::LeftButton);
    };
    const std::pair<const char*, int> routings[] = {{"FX channels: 1 -> 2", 1}, {"FX channels: 1 -> 1", 2},
                                                    {"FX routing: Aux FX", 5},  {"FX channels: 2 -> 2", 3},
                                                    {"FX channels: 1 -> 2", 4}, {"FX routing: Insert", 1}};
    for (const auto& [pButton, nCode] : routings) {
        click(pButton);
        EXPECT_EQ(said(), QStringList(QStringLiteral("routing %1").arg(nCode)));
        m_panel.setRouting(nCode);
        EXPECT_EQ(m_panel.routing(), nCode);
    }
    click("Display: Joystick");
    EXPECT_EQ(said(), QStringList("display 3"));
    QTest::keyClick(&named<QAbstractButton>("Display: Joystick"), Qt::Key_Left);
    EXPECT_EQ(said(), QStringList("display 2"));
    m_panel.setDisplay(0);
    m_panel.setGains(3.0F, -6.0F);
    EXPECT_TRUE(said().isEmpty());

    QSignalSpy gains(&m_panel, &CPrototypePanel::gainChanged);
    QTest::keyClick(m_panel.findChildren<CTrackBar*>().first(), Qt::Key_Home);
    ASSERT_EQ(gains.size(), 1);
    EXPECT_EQ(gains[0][0].toInt(), 0);
    EXPECT_EQ(gains[0][1].toFloat(), 12.0F);

    for (const char* pName : {"Start Compiler", "Rebuild", "Debug", "Load", "Save preset", "Delete preset"})
        click(pName);
    EXPECT_THAT(said(), ElementsAre("command 0", "command 1", "command 2", "command 3", "save", "delete"));
    QTest::keyClick(&named<CPanelCombo>("Presets"), Qt::Key_Down);
    EXPECT_THAT(said(), ElementsAre("Bright"));
    m_panel.setBusy(true);
    m_panel.setDebugging(true);
    click("Stop Debug");
    click("Save preset");
    EXPECT_TRUE(said().isEmpty());
}

TEST_F(PrototypePanel, WithoutAProjectInvitesToBegin)
{
    m_panel.focusFirst();
    QTest::keyClick(m_panel.focusWidget(), Qt::Key_Space);
    QTest::keyClick(m_panel.focusWidget(), Qt::Key_Tab);
    QTest::keyClick(m_panel.focusWidget(), Qt::Key_Space);
    EXPECT_THAT(said(), ElementsAre("new", "open"));
    QTest::mouseClick(m_panel.windowHandle(), Qt::RightButton, Qt::NoModifier, middle(Invitation, 0));
    EXPECT_TRUE(said().isEmpty()) << "slots behind the invitation are covered";
    const QPoint bank = middle(Banks, 0);
    QTest::mouseClick(m_panel.windowHandle(), Qt::RightButton, Qt::NoModifier, bank);
    EXPECT_TRUE(said().isEmpty()) << "the right button is silent without a project";
    m_panel.childAt(bank)->setFocus();
    QTest::keyClick(m_panel.focusWidget(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_THAT(said(), ElementsAre("setup 41"));
    openProject();
    QTest::mouseClick(m_panel.windowHandle(), Qt::RightButton, Qt::NoModifier, middle(Sliders, 14));
    EXPECT_EQ(said(), QStringList("setup 14"));
}

// The plug-in comes while a thumb is held: the rest of the drag moves nothing.
TEST_F(PrototypePanel, AHandLosesASliderThatChangesItsOwner)
{
    openProject();
    auto& bar = named<CTrackBar>("Slider 0: Name 0");
    const QPoint low(bar.width() / 2, bar.height() - 1);
    const QPoint thumb(bar.width() / 2, static_cast<int>(bar.pixelOf(bar.position())));
    QTest::mousePress(&bar, Qt::LeftButton, {}, thumb);
    ASSERT_TRUE(bar.isHeld());
    loadPlugIn();
    moveMouse(bar, low);
    EXPECT_EQ(m_plugIn.m_variables[0].m_fValue, 25.0F);
    m_model.setFilter(nullptr);
    moveMouse(bar, QPoint(low.x(), 0));
    EXPECT_EQ(findControl(m_project.m_UIControlList, 0)->fInitUserFloatValue, 25.0F);
    QTest::mouseRelease(&bar, Qt::LeftButton);
}

// Adds up what is painted anywhere on the form.
class CPaintCounter : public QObject
{
  public:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override
    {
        auto* pWidget = qobject_cast<QWidget*>(pWatched);
        if (pWidget && pEvent->type() == QEvent::Paint) {
            const QPoint offset = pWidget->mapTo(pWidget->window(), QPoint(0, 0));
            m_painted += static_cast<QPaintEvent*>(pEvent)->region().translated(offset);
            m_names << QString::fromLatin1(pWidget->metaObject()->className());
        }
        return false;
    }

    [[nodiscard]] double area() const
    {
        double dArea = 0.0;
        for (const QRect& rect : m_painted)
            dArea += rect.width() * rect.height();
        return dArea;
    }

    QRegion m_painted;
    QStringList m_names;
};

TEST_F(PrototypePanel, ATickOfTheMetersPaintsOnlyWhatChanges)
{
    openProject();
    loadPlugIn();
    CPanelMeters::CLevels levels{};
    levels.fill(0.5F);
    m_panel.showLevels(levels);
    QTest::qWait(20);
    CPaintCounter counter;
    qApp->installEventFilter(&counter);
    m_panel.showLevels(levels);
    QTest::qWait(20);
    EXPECT_TRUE(counter.m_names.isEmpty()) << counter.m_names.join(' ').toStdString();
    levels.fill(0.55F);
    m_panel.showLevels(levels);
    QTest::qWait(20);
    qApp->removeEventFilter(&counter);
    EXPECT_FALSE(counter.m_names.isEmpty());
    EXPECT_LT(counter.area(), 0.01 * m_panel.width() * m_panel.height());
    EXPECT_FALSE(counter.m_names.contains("velmora::CPrototypePanel"));
    EXPECT_FALSE(counter.m_names.contains("velmora::CTrackBar"));
}

TEST_F(PrototypePanel, TakesTheWheelWhereverItTurns)
{
    openProject();
    for (const EPanelPart ePart : {Sliders, Banks, Meters, Display, FreeCombos, Routing, ProjectBar}) {
        QWidget* pWidget = m_panel.childAt(middle(ePart, 0));
        QPointF point(middle(ePart, 0));
        QWheelEvent wheel(pWidget->mapFrom(&m_panel, point), m_panel.mapToGlobal(point), {}, QPoint(0, 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&wheel); // only such an event goes on to the parents
        qApp->notify(pWidget, &wheel);
        EXPECT_TRUE(wheel.isAccepted()) << static_cast<int>(ePart);
    }
    EXPECT_EQ(named<CTrackBar>("Slider 0: Name 0").position(), 64 + 4) << "by its value box";
}

} // namespace
} // namespace velmora
