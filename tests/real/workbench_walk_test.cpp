#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "project/control_list.h"
#include "project/dsp_project.h"
#include "real/workbench.h"
#include "widgets/audio/osc_dialog.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/panel_combo.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/radio_bank.h"
#include "widgets/common/rotary_wheel.h"
#include "widgets/common/track_bar.h"
#include "widgets/common/value_box.h"
#include "widgets/panel/alpha_wheel_setup_dialog.h"
#include "widgets/panel/prototype_panel.h"
#include "widgets/panel/slider_control_props.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace velmora::test {
namespace {

using testing::HasSubstr;
using testing::Not;

enum EControl : UINT
{
    GAIN = 0,
    SHAPE = 41,
    MUTE = 45,
    LEVEL = 50,
    MODEL = 70,
    CROSSFADE = 104
};

// What the user writes: a gain, and meters that follow the signal.
constexpr const char* OLD_GAIN = "fInput * FIXED_VOLUME;\n\t}\n";
constexpr const char* NEW_GAIN = R"(fInput * m_fGain;
	}
	const float fLeft = fabsf(pOutputBuffer[0]);
	const float fRight = fabsf(pOutputBuffer[uNumOutputChannels - 1]);
	m_fLevel = fmaxf(fmaxf(fLeft, fRight), m_fLevel * 0.9995f);
	m_fLeft = fmaxf(fLeft, m_fLeft * 0.9995f);
	m_fRight = fmaxf(fRight, m_fRight * 0.9995f);
	m_fSlow += 0.0002f * (m_fLevel - m_fSlow);
	m_fPeak = fmaxf(m_fLevel, m_fPeak * 0.99999f);
	m_fBass += 0.002f * (m_fLevel - m_fBass);
	m_fTreble = fabsf(m_fLevel - m_fBass);
	m_fDrop = m_fPeak - m_fLevel;
	m_fKnob = 0.5f * m_fGain;
	m_fLFO += 1.0f / 48000.0f;
	if (m_fLFO > 1.0f)
		m_fLFO = 0.0f;
)";
constexpr const char* OLD_BUTTON = "case ASSIGN_BUTTON_1:\n";
constexpr const char* NEW_BUTTON = "case ASSIGN_BUTTON_1:\n\t\tsendStatusWndText(\"Panic was pressed\");\n";

class Workbench : public ::testing::Test
{
  protected:
    template <typename TWidget = QWidget>
    TWidget& onPanel(const QString& sBeginning)
    {
        return named<TWidget>(m_workbench.panel(), sBeginning, true);
    }

    void rightClick(const QString& sBeginning) { m_hand.click(onPanel(sBeginning), Qt::RightButton); }

    // A property dialog that runs while it is open.
    void setUp(const std::function<void()>& open, const std::vector<std::pair<int, QString>>& rows,
               const QString& sList = {})
    {
        m_hand.inDialog(open, [&](QDialog& dialog) {
            m_workbench.fillRows(dialog, rows);
            if (!sList.isEmpty()) {
                m_hand.click(named(dialog, "This enum List"));
                m_hand.key(Qt::Key_A, Qt::ControlModifier);
                m_hand.type(sList);
            }
            m_hand.clickButton(dialog, "OK");
        });
    }

    void replaceInSource(const std::string& sOld, const std::string& sNew)
    {
        const std::filesystem::path file = m_workbench.document().project()->sourcePath();
        std::string sSource = readFile(file);
        const auto nAt = sSource.find(sOld);
        ASSERT_NE(nAt, std::string::npos) << sOld;
        writeFile(file, sSource.replace(nAt, sOld.size(), sNew));
    }

    std::string source() { return readFile(m_workbench.document().project()->sourcePath()); }
    [[nodiscard]] bool isPlaying() { return m_workbench.document().transport().state() == TRANSPORT_PLAY; }
    double variable(UINT uControl) { return m_workbench.variable(uControl); }
    CPanelSlotState state(UINT uSlot) { return m_workbench.view().model().state(uSlot); }

    bool becomes(UINT uControl, double dValue)
    {
        const bool bDone = CHand::waitFor([&] { return std::abs(variable(uControl) - dValue) < 1e-4; });
        EXPECT_TRUE(bDone) << "control " << uControl << " is " << variable(uControl) << ", not " << dValue;
        return bDone;
    }

    float meter(const QString& sName) { return onPanel<CLEDMeter>(sName).level(); }

    bool hasStatusLine(const QString& sLine)
    {
        for (QWidget* pWindow : QApplication::topLevelWidgets()) {
            for (auto* pView : pWindow->findChildren<QListView*>())
                if (pView->accessibleName() == "Status lines" && pView->model()->rowCount() > 0 &&
                    !pView->model()
                         ->match(pView->model()->index(0, 0), Qt::DisplayRole, sLine, 1, Qt::MatchContains)
                         .isEmpty())
                    return true;
        }
        return false;
    }

    void setUpFirstOfEachKind();
    void setUpWheelItem();
    void setUpButtons();
    void writeDSP();
    void moveSliderByMouse();
    void moveSliderByKeys();
    void moveLists();
    void moveWheel();
    void moveFixedWidgets();
    void watchMeters();
    void usePreset();
    void undoAndRedo();
    void keepPicturesOfWindows();
    void changeToLightScheme();

    CWorkbench m_workbench;
    CHand& m_hand = m_workbench.hand();
};

void Workbench::setUpFirstOfEachKind()
{
    rightClick("Slider 0, empty");
    auto& slider = shown<CSliderControlProps>();
    m_workbench.fillRows(
        slider, {{3, "Gain"}, {4, "x"}, {6, "m_fGain"}, {7, "0.000000"}, {8, "2.000000"}, {9, "1.000000"}});
    CWorkbench::keepPicture("workbench-slider-properties", slider);
    m_hand.clickButton(slider, "OK");
    EXPECT_TRUE(CHand::waitFor([&] { return !slider.isVisible() && state(GAIN).m_bAssigned; }));

    setUp([&] { rightClick("Bank 0, empty"); }, {{3, "Shape"}, {5, "m_uShape"}},
          "Sine,Triangle,Square,Noise");
    setUp([&] { rightClick("Switch 1, empty"); }, {{3, "Mute"}, {5, "m_uMute"}});
    setUp([&] { rightClick("Meter 0, empty"); }, {{3, "Level"}, {7, "None (advanced)"}, {11, "m_fLevel"}});
    auto& combo = onPanel<CPanelCombo>("Combo CMBO1, empty");
    setUp([&] { m_hand.choose(combo, "Click to Setup"); }, {{3, "Model"}, {5, "m_uModel"}},
          "Clean_Tube,Warm_Tape,Hot_Diode");
    for (const UINT uSlot : {GAIN, SHAPE, MUTE, LEVEL, MODEL})
        EXPECT_TRUE(state(uSlot).m_bAssigned) << uSlot;
    EXPECT_THAT(state(MODEL).m_items, testing::ElementsAre("Clean Tube", "Warm Tape", "Hot Diode"));
}

void Workbench::setUpWheelItem()
{
    rightClick("Alpha wheel");
    auto& setup = shown<CAlphaWheelSetupDialog>();
    m_hand.face(setup);
    m_hand.clickButton(setup, "New");
    auto& slider = shown<CSliderControlProps>();
    m_workbench.fillRows(slider, {{3, "Crossfade"}, {4, "%"}, {6, "m_fCrossfade"}});
    m_hand.clickButton(slider, "OK");
    EXPECT_TRUE(CHand::waitFor([&] { return !slider.isVisible() && state(CROSSFADE).m_bAssigned; }));
    m_hand.face(setup);
    m_hand.clickButton(setup, "Close");
    EXPECT_TRUE(CHand::waitFor([] { return !findShown<CAlphaWheelSetupDialog>(); }));
}

void Workbench::setUpButtons()
{
    m_hand.inDialog([&] { rightClick("Button B1"); },
                    [&](QDialog& dialog) {
                        m_hand.click(named(dialog, "Button 1"));
                        m_hand.key(Qt::Key_A, Qt::ControlModifier);
                        m_hand.type("Panic");
                        m_hand.clickButton(dialog, "OK");
                    });
    EXPECT_EQ(m_workbench.view().model().buttonText(50), "Panic");
}

void Workbench::writeDSP()
{
    replaceInSource(OLD_GAIN, NEW_GAIN);
    replaceInSource(OLD_BUTTON, NEW_BUTTON);
    m_workbench.clickOnPanel("Rebuild");
    ASSERT_TRUE(CHand::waitFor([&] { return !m_workbench.view().isBusy(); }));
    ASSERT_TRUE(m_workbench.document().plugInLoader().isPlugInLoaded());
    EXPECT_TRUE(CHand::waitFor([&] { return onPanel("Unload").isVisible(); }));
}

// With the gain at nothing the plug-in's meter is dark while the input's is not.
void Workbench::watchMeters()
{
    onPanel<CTrackBar>("Slider 0: Gain").setFocus();
    EXPECT_TRUE(CHand::waitFor([&] { return meter("Meter 0: Level") > 0.2F; }));
    EXPECT_TRUE(CHand::waitFor([&] { return meter("Output / Return level left") > 0.2F; }));
    EXPECT_TRUE(CHand::waitFor([&] { return onPanel<CLEDMeter>("Meter 0: Level").litLEDs() > 0; }));
    m_hand.key(Qt::Key_Home);
    EXPECT_TRUE(becomes(GAIN, 0.0));
    EXPECT_TRUE(CHand::waitFor(
        [&] { return meter("Input / Send level left") > 0.2F && meter("Meter 0: Level") < 0.01F; }));
    EXPECT_TRUE(CHand::waitFor([&] { return meter("Output / Return level left") < 0.01F; }));
    m_hand.key(Qt::Key_End);
    EXPECT_TRUE(becomes(GAIN, 2.0));
    EXPECT_TRUE(CHand::waitFor([&] { return meter("Meter 0: Level") > 0.9F; }));
    EXPECT_TRUE(CHand::waitFor([&] { return meter("Meter 0: Level") < 0.01F; })) << "in the silent part";
}

void Workbench::moveSliderByMouse()
{
    auto& bar = onPanel<CTrackBar>("Slider 0: Gain");
    const double dBefore = variable(GAIN);
    m_hand.click(bar, Qt::RightButton);
    EXPECT_FALSE(findShown<CSliderControlProps>()) << "no control is set up while its plug-in is loaded";
    const QPoint from = bar.thumbRect().center();
    m_hand.press(bar, from);
    for (int nStep = 1; nStep <= 5; ++nStep)
        m_hand.moveTo(bar, from + QPoint(0, 4 * nStep));
    m_hand.release(bar, from + QPoint(0, 20));
    EXPECT_LT(variable(GAIN), dBefore);
    EXPECT_TRUE(becomes(GAIN, 2.0 * state(GAIN).m_nPos / 256.0));
    const int nPos = state(GAIN).m_nPos;
    m_hand.turnWheel(bar, -2);
    EXPECT_TRUE(becomes(GAIN, 2.0 * (nPos - 8) / 256.0));
    m_hand.doubleClick(bar, bar.thumbRect().center());
    EXPECT_TRUE(becomes(GAIN, 1.0));
}

void Workbench::moveSliderByKeys()
{
    auto& bar = onPanel<CTrackBar>("Slider 0: Gain");
    m_hand.clickAt(bar, bar.thumbRect().center());
    m_hand.key(Qt::Key_Home);
    m_hand.key(Qt::Key_PageUp);
    m_hand.key(Qt::Key_Up);
    EXPECT_TRUE(becomes(GAIN, 2.0 * 17 / 256.0));
    auto& box = onPanel<CValueBox>("Slider 0: Gain, value");
    m_hand.click(box);
    m_hand.key(Qt::Key_A, Qt::ControlModifier);
    m_hand.type("0.5 x");
    m_hand.key(Qt::Key_Return);
    EXPECT_TRUE(becomes(GAIN, 0.5));
    EXPECT_EQ(box.value(), "0.50 x");
    EXPECT_EQ(state(GAIN).m_nPos, 64);
}

void Workbench::moveLists()
{
    const auto buttons = onPanel<CRadioBank>("Bank 0: Shape").findChildren<QRadioButton*>();
    m_hand.click(*buttons.at(2));
    EXPECT_TRUE(becomes(SHAPE, 2));
    m_hand.key(Qt::Key_Down);
    EXPECT_TRUE(becomes(SHAPE, 3));
    auto& mute = onPanel("Switch 1: Mute");
    m_hand.click(mute);
    EXPECT_TRUE(becomes(MUTE, 1));
    m_hand.key(Qt::Key_Space);
    EXPECT_TRUE(becomes(MUTE, 0));
    auto& model = onPanel<CPanelCombo>("Combo CMBO1: Model");
    m_hand.choose(model, "Hot Diode");
    EXPECT_TRUE(becomes(MODEL, 2));
    m_hand.key(Qt::Key_Up);
    EXPECT_TRUE(becomes(MODEL, 1));
}

void Workbench::moveWheel()
{
    auto& wheel = onPanel<CRotaryWheel>("Alpha wheel");
    m_hand.turnWheel(wheel, 4);
    auto& knob = onPanel<CRotaryWheel>("Value: Crossfade");
    const QPoint middle = knob.rect().center();
    m_hand.press(knob, middle);
    m_hand.moveTo(knob, middle - QPoint(0, 10));
    m_hand.release(knob, middle - QPoint(0, 10));
    EXPECT_GT(variable(CROSSFADE), 0.0);
    m_hand.key(Qt::Key_End);
    EXPECT_TRUE(becomes(CROSSFADE, 100.0));
    m_hand.key(Qt::Key_PageDown);
    EXPECT_TRUE(becomes(CROSSFADE, 100.0 * 240 / 256));
}

void Workbench::moveFixedWidgets()
{
    CAudioEngine& engine = m_workbench.document().audioEngine();
    auto& fader = onPanel<CTrackBar>("Output / Return gain");
    m_hand.clickAt(fader, fader.thumbRect().center());
    m_hand.key(Qt::Key_PageDown);
    EXPECT_TRUE(CHand::waitFor([&] { return engine.m_fOutputGain_dB < 0.0F; }));
    m_hand.key(Qt::Key_Delete);
    EXPECT_TRUE(CHand::waitFor([&] { return engine.m_fOutputGain_dB == 0.0F; }));
    const auto uBefore = engine.m_uChannelMode.load();
    m_workbench.clickOnPanel("FX channels: 1 -> 1");
    EXPECT_TRUE(CHand::waitFor([&] { return engine.m_uChannelMode != uBefore; }));
    m_workbench.clickOnPanel("FX channels: 2 -> 2");
    EXPECT_TRUE(CHand::waitFor([&] { return engine.m_uChannelMode == uBefore; }));
    m_workbench.clickOnPanel("Display: Log (f)");
    EXPECT_TRUE(CHand::waitFor([&] { return m_workbench.panel().display() == 1; }));
    m_hand.click(onPanel("Button B1: Panic"));
    EXPECT_TRUE(CHand::waitFor([&] { return hasStatusLine("    Panic was pressed"); }));
}

void Workbench::usePreset()
{
    const double dGain = variable(GAIN);
    const double dShape = variable(SHAPE);
    const double dModel = variable(MODEL);
    const double dCrossfade = variable(CROSSFADE);
    m_hand.inDialog([&] { m_workbench.clickOnPanel("Save preset"); },
                    [&](QDialog& dialog) {
                        m_hand.key(Qt::Key_A, Qt::ControlModifier);
                        m_hand.type("Quiet");
                        m_hand.clickButton(dialog, "OK");
                    });
    auto& bar = onPanel<CTrackBar>("Slider 0: Gain");
    m_hand.clickAt(bar, bar.thumbRect().center());
    m_hand.key(Qt::Key_End);
    EXPECT_TRUE(becomes(GAIN, 2.0));
    m_hand.click(*onPanel<CRadioBank>("Bank 0: Shape").findChildren<QRadioButton*>().at(0));
    m_hand.choose(onPanel<CPanelCombo>("Combo CMBO1: Model"), "Clean Tube");
    auto& knob = onPanel<CRotaryWheel>("Value: Crossfade");
    knob.setFocus();
    m_hand.key(Qt::Key_Home);
    EXPECT_TRUE(becomes(CROSSFADE, 0.0));
    m_hand.choose(onPanel<CPanelCombo>("Presets"), "Quiet");
    EXPECT_TRUE(becomes(GAIN, dGain));
    EXPECT_TRUE(becomes(SHAPE, dShape));
    EXPECT_TRUE(becomes(MODEL, dModel));
    EXPECT_TRUE(becomes(CROSSFADE, dCrossfade));
    EXPECT_EQ(onPanel<CValueBox>("Slider 0: Gain, value").value(), "0.50 x");
}

void Workbench::undoAndRedo()
{
    const std::vector<std::string> all = m_workbench.slotTexts();
    const std::string sCode = source();
    rightClick("Slider 1: Drive");
    auto& slider = shown<CSliderControlProps>();
    m_workbench.fillRows(slider, {{3, "Grit"}, {8, "36.000000"}});
    m_hand.clickButton(slider, "OK");
    ASSERT_TRUE(CHand::waitFor([&] { return state(1).m_sName == "Grit"; }));
    EXPECT_THAT(source(), HasSubstr("Grit"));
    m_hand.face(m_workbench.frame());
    m_hand.key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(CHand::waitFor([&] { return state(1).m_sName == "Drive"; }));
    EXPECT_EQ(m_workbench.slotTexts(), all);
    EXPECT_EQ(source(), sCode);
    m_hand.key(Qt::Key_Y, Qt::ControlModifier);
    ASSERT_TRUE(CHand::waitFor([&] { return state(1).m_sName == "Grit"; }));
    EXPECT_THAT(source(), HasSubstr("Grit"));
}

void Workbench::keepPicturesOfWindows()
{
    m_hand.inDialog(
        [&] {
            m_workbench.choose({"Audio/MIDI", "Setup Audio Devices"});
        },
        [&](QDialog& dialog) {
            EXPECT_THAT(utf8(named<QComboBox>(dialog, "Output Device", true).currentText()),
                        testing::StartsWith("system"));
            CWorkbench::keepPicture("workbench-sound-card", dialog);
            m_hand.key(Qt::Key_Escape); // its buttons may still move while rates come in
        });
    m_workbench.choose({"View", "Oscillator"});
    auto& oscillator = shown<COscDialog>();
    m_hand.face(oscillator);
    CWorkbench::keepPicture("workbench-oscillator", oscillator);
    m_hand.face(m_workbench.frame());
    m_workbench.choose({"View", "Oscillator"});
    EXPECT_TRUE(CHand::waitFor([&] { return !oscillator.isVisible(); }));
}

void Workbench::changeToLightScheme()
{
    m_hand.inDialog(
        [&] {
            m_workbench.choose({"View", "Preferences"});
        },
        [&](QDialog& dialog) {
            CWorkbench::keepPicture("workbench-preferences", dialog);
            auto* pTabs = dialog.findChild<QTabWidget*>();
            const int nPage = pTabs->count() - 1;
            m_hand.clickAt(*pTabs->tabBar(), pTabs->tabBar()->tabRect(nPage).center());
            CWorkbench::keepPicture("workbench-preferences", dialog);
            m_hand.choose(named<QComboBox>(dialog, "Colour Scheme"), "Light");
            m_hand.clickButton(dialog, "Save");
        });
    EXPECT_GT(CTheme::instance().colours().m_window.lightness(), 128);
}

TEST_F(Workbench, IsWalkedThroughFromANewProjectToTheNextDay)
{
    CWorkbench::keepPicture("workbench-empty", m_workbench.frame());
    m_workbench.createProject("ToneLab");
    ASSERT_TRUE(fillPanel(m_workbench));
    setUpFirstOfEachKind();
    setUpWheelItem();
    setUpButtons();
    CWorkbench::keepPicture("workbench-project", m_workbench.frame());
    keepPicturesOfWindows();
    ASSERT_NO_FATAL_FAILURE(writeDSP());

    m_workbench.loadTone();
    m_hand.face(m_workbench.frame());
    m_hand.key(Qt::Key_F5);
    ASSERT_TRUE(CHand::waitFor([&] { return isPlaying(); }));
    m_hand.key(Qt::Key_F5, Qt::ShiftModifier);
    ASSERT_TRUE(CHand::waitFor([&] { return !isPlaying(); }));
    m_hand.click(named<QToolButton>(m_workbench.frame(), "Loop"));
    ASSERT_TRUE(CHand::waitFor([&] { return isPlaying(); }));
    watchMeters();
    moveSliderByMouse();
    moveSliderByKeys();
    moveLists();
    moveWheel();
    moveFixedWidgets();
    EXPECT_TRUE(CHand::waitFor([&] { return meter("Meter 0: Level") > 0.2F; }));
    CWorkbench::keepPicture("workbench-loaded", m_workbench.frame());
    usePreset();
    changeToLightScheme();
    EXPECT_TRUE(CHand::waitFor([&] { return meter("Meter 0: Level") > 0.2F; }));
    CWorkbench::keepPicture("workbench-light", m_workbench.frame());
    m_hand.click(named<QToolButton>(m_workbench.frame(), "Stop"));
    EXPECT_TRUE(CHand::waitFor([&] {
        return !isPlaying() && meter("Output / Return level left") == 0.0F &&
               meter("Input / Send level left") == 0.0F;
    }));

    m_workbench.clickOnPanel("Unload");
    ASSERT_TRUE(CHand::waitFor([&] { return !m_workbench.document().plugInLoader().isPlugInLoaded(); }));
    ASSERT_NO_FATAL_FAILURE(undoAndRedo());
    const std::vector<std::string> all = m_workbench.slotTexts();
    EXPECT_EQ(all.size(), 40U + 4U + 4U + 10U + 8U + 5U);
    m_hand.key(Qt::Key_Q, Qt::ControlModifier);
    ASSERT_TRUE(CHand::waitFor([&] { return !m_workbench.frame().isVisible(); }));

    m_workbench.restart();
    EXPECT_TRUE(m_workbench.slotTexts().empty());
    m_workbench.choose({"File", "Recent Projects", "1  ToneLab"});
    ASSERT_TRUE(CHand::waitFor([&] { return m_workbench.document().project() != nullptr; }));
    EXPECT_EQ(m_workbench.slotTexts(), all);
    EXPECT_EQ(m_workbench.view().model().buttonText(50), "Panic");
}

// Counts at how many different numbers of calls a meter was painted.
class CPaintWatch : public QObject
{
  public:
    CPaintWatch(CWorkbench& workbench, QWidget& meter) : m_workbench(workbench)
    {
        meter.installEventFilter(this);
    }

    std::set<double> m_calls;

  protected:
    bool eventFilter(QObject*, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::Paint)
            m_calls.insert(m_workbench.variable(51));
        return false;
    }

  private:
    CWorkbench& m_workbench;
};

TEST_F(Workbench, MetersGoOnWhileAPlugInTakesItsTime)
{
    constexpr int CALLS = 12;
    constexpr double CALL_STEP = 1.0 / 1024.0;
    std::filesystem::copy_file(SLOW_PANEL, m_workbench.document().plugInFolder() / "SlowPanel.so");
    m_workbench.choose({"User Plug-Ins", "Reload"});
    m_workbench.choose({"User Plug-Ins", "SlowPanel"});
    ASSERT_TRUE(CHand::waitFor([&] { return m_workbench.view().model().isPlugInLoaded(); }));
    m_workbench.loadTone();
    m_hand.click(named<QToolButton>(m_workbench.frame(), "Loop"));
    ASSERT_TRUE(CHand::waitFor([&] { return isPlaying(); }));

    auto& bar = onPanel<CTrackBar>("Slider 0: Slow");
    CPaintWatch watch(m_workbench, onPanel<CLEDMeter>("Meter 0: Ramp"));
    const QPoint from = bar.thumbRect().center();
    m_hand.press(bar, from);
    int nStep = 0;
    ASSERT_TRUE(CHand::waitFor([&] {
        ++nStep;
        m_hand.moveTo(bar, from - QPoint(0, 5 + (nStep * 7) % 40));
        return variable(51) >= CALLS * CALL_STEP;
    }));
    m_hand.release(bar, from);
    EXPECT_GE(watch.m_calls.size(), static_cast<std::size_t>(CALLS / 2)) << "ticks between the calls";
}

} // namespace
} // namespace velmora::test
