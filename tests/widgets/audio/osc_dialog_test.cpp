#include "dsp/modules/oscillator.h"
#include "tests/widgets/audio/audio_windows_fixture.h"
#include "widgets/audio/osc_dialog.h"
#include "widgets/common/track_bar.h"
#include "widgets/common/value_box.h"

#include <QSet>

namespace velmora::test {

namespace {

struct CBench : CTransportBench
{
    CBench() { m_dialog.show(); }

    void type(const char* pBox, const char* pText)
    {
        auto* pValue = named<CValueBox>(m_dialog, pBox);
        ASSERT_TRUE(pValue) << pBox;
        pValue->edit();
        QTest::keyClicks(pValue, QString::fromUtf8(pText));
        QTest::keyClick(pValue, Qt::Key_Return);
    }
    QString shown(const char* pBox) { return named<CValueBox>(m_dialog, pBox)->text(); }

    COscillator m_source;
    COscDialog m_dialog{m_source, m_transport, m_dialogs};
};

// Boxes that are on show, of those that come and go.
QSet<QString> changingBoxes(const COscDialog& dialog)
{
    QSet<QString> boxes;
    for (const char* pName : {"Pulse Frequency", "Duty Cycle", "Sweep Period"})
        if (named<CValueBox>(dialog, pName)->isVisible())
            boxes << QString::fromUtf8(pName);
    return boxes;
}

} // namespace

TEST(OscDialog, startsAndStopsTheSignalAndFollowsTheTransport)
{
    CBench bench;
    click(bench.m_dialog, "Fire Impulse");
    EXPECT_THAT(bench.m_dialogs.m_messages, testing::ElementsAre("You must Start the oscillator first."));

    click(bench.m_dialog, "Start");
    EXPECT_EQ(bench.m_state.state(), TRANSPORT_OSC);
    EXPECT_TRUE(bench.m_engine.m_bOscillatorRuns);
    click(bench.m_dialog, "Fire Impulse");
    EXPECT_EQ(bench.m_dialogs.m_messages.size(), 1U);
    bench.m_source.setKind(OSCILLATOR_SINGLE_IMPULSE);
    float sound[4] = {};
    bench.m_source.processInterleaved(sound, sound, 2, 4, 0);
    EXPECT_GT(sound[0], 0.0F);

    click(bench.m_dialog, "Stop");
    EXPECT_FALSE(bench.m_engine.m_bOscillatorRuns);
    EXPECT_EQ(bench.m_state.state(), TRANSPORT_OSC);
    ASSERT_TRUE(button(bench.m_dialog, "Start"));

    bench.m_dialog.startOscillator();
    bench.m_transport.stopOsc();
    bench.m_dialog.tick();
    EXPECT_TRUE(button(bench.m_dialog, "Start"));
}

TEST(OscDialog, saysWhyItDoesNotStart)
{
    CBench bench;
    bench.enter(TRANSPORT_SOUND_IN);
    click(bench.m_dialog, "Start");
    EXPECT_TRUE(button(bench.m_dialog, "Start"));
    EXPECT_FALSE(bench.m_engine.m_bOscillatorRuns);
    EXPECT_TRUE(bench.hasNote("Sound input runs; stop it first."));
}

TEST(OscDialog, showsWhatBelongsToClassAndType)
{
    CBench bench;
    for (const COscillatorKind& kind : OSCILLATOR_KINDS) {
        click(bench.m_dialog, kind.m_pLabel);
        EXPECT_EQ(bench.m_source.kind(), kind.m_eKind);
        EXPECT_EQ(changingBoxes(bench.m_dialog),
                  kind.m_bPulsed ? QSet<QString>({"Pulse Frequency", "Duty Cycle"}) : QSet<QString>())
            << kind.m_pLabel;
    }
    click(bench.m_dialog, "Sweep Oscillator");
    EXPECT_EQ(bench.m_source.oscillatorClass(), OSCILLATOR_SWEEP);
    EXPECT_EQ(changingBoxes(bench.m_dialog), QSet<QString>({"Sweep Period"}));
    EXPECT_FALSE(button(bench.m_dialog, "Sinusoid")->isEnabled());
    bench.m_source.setClass(OSCILLATOR_STANDARD);
    bench.m_source.setKind(OSCILLATOR_PULSED_NOISE);
    bench.m_dialog.tick();
    EXPECT_TRUE(button(bench.m_dialog, "Pulsed Noise")->isChecked());
}

TEST(OscDialog, frequencySliderIsLogarithmicBetweenTheRangesEnds)
{
    CBench bench;
    auto* pTrack = named<CTrackBar>(bench.m_dialog, "Frequency");
    pTrack->setFocus();
    QTest::keyClick(pTrack, Qt::Key_Home);
    EXPECT_FLOAT_EQ(bench.m_source.getFrequency(), 20.0F);
    QTest::keyClick(pTrack, Qt::Key_End);
    EXPECT_FLOAT_EQ(bench.m_source.getFrequency(), 22050.0F);
    pTrack->setAccessibleValue(128);
    EXPECT_NEAR(bench.m_dialog.getFrequency(), std::sqrt(20.0 * 22050.0), 0.01);
    EXPECT_EQ(pTrack->position(), 128);
    QTest::keyClick(pTrack, Qt::Key_Delete);
    EXPECT_EQ(bench.m_dialog.getFrequency(), 1000.0);

    bench.m_dialog.setSweepHigh(2000.0);
    EXPECT_EQ(bench.m_source.frequencyHigh(), 2000.0F);
    QTest::keyClick(pTrack, Qt::Key_End);
    EXPECT_FLOAT_EQ(bench.m_source.getFrequency(), 2000.0F);
    for (const double dRefused : {20.0, 0.0, std::nan("")})
        bench.m_dialog.setSweepHigh(dRefused);
    EXPECT_EQ(bench.m_source.frequencyHigh(), 2000.0F);

    bench.m_source.setFrequencyRange(0.0F, 256.0F);
    pTrack->setAccessibleValue(64);
    EXPECT_FLOAT_EQ(bench.m_source.getFrequency(), 64.0F);
}

TEST(OscDialog, takesNumbersWithinTheirLimits)
{
    struct CCase
    {
        const char* m_pBox;
        const char* m_pTyped;
        unsigned m_uParameter;
        float m_fExpected;
        const char* m_pShown;
    };
    const CCase CASES[] = {
        {"Frequency", "440.5 Hz", OSCILLATOR_FREQUENCY, 440.5F, "440.50"},
        {"Frequency", "5", OSCILLATOR_FREQUENCY, 20.0F, "20.00"},
        {"Frequency", "high", OSCILLATOR_FREQUENCY, 20.0F, "20.00"},
        {"Amplitude", "-12", OSCILLATOR_AMPLITUDE, -12.0F, "-12.00"},
        {"Amplitude", "3 dBFS", OSCILLATOR_AMPLITUDE, 0.0F, "0.00"},
        {"Impulse Ht", "25 %", OSCILLATOR_IMPULSE_HEIGHT, 0.25F, "25"},
        {"Impulse Ht", "400", OSCILLATOR_IMPULSE_HEIGHT, 1.0F, "100"},
        {"Duty Cycle", "30", OSCILLATOR_DUTY_CYCLE, 30.0F, "30.00"},
        {"Pulse Frequency", "4", OSCILLATOR_PULSE_RATE, 4.0F, "4.00"},
    };
    CBench bench;
    click(bench.m_dialog, "Pulsed Noise");
    for (const CCase& row : CASES) {
        bench.type(row.m_pBox, row.m_pTyped);
        EXPECT_NEAR(bench.m_source.parameter(row.m_uParameter), row.m_fExpected, 1e-4) << row.m_pTyped;
        EXPECT_EQ(bench.shown(row.m_pBox), row.m_pShown) << row.m_pTyped;
    }
    bench.m_dialog.setFrequencyFromOutside(31.25);
    EXPECT_EQ(bench.m_dialog.getFrequency(), 31.25);
    bench.m_dialog.setFrequencyFromOutside(1e9);
    EXPECT_EQ(bench.m_dialog.getFrequency(), 22050.0);
    EXPECT_EQ(bench.m_dialog.getAmplitude(), 0.0);
}

} // namespace velmora::test
