#include "tests/widgets/audio/audio_windows_fixture.h"
#include "widgets/audio/sound_card_dialog.h"
#include "widgets/common/led_meter.h"

#include <QComboBox>
#include <QLabel>
#include <QSpinBox>
#include <numbers>

namespace velmora::test {

namespace {

CAudioDeviceInfo deviceNamed(const char* pName, int nInputs, int nOutputs)
{
    CAudioDeviceInfo device = CFakeAudioSystem().m_devices.front();
    device.m_sName = pName;
    device.m_nMaxInputChannels = nInputs;
    device.m_nMaxOutputChannels = nOutputs;
    return device;
}

// The dialog over a card, a microphone and speakers.
struct CBench : CTransportBench
{
    CBench()
    {
        m_system.m_devices.push_back(deviceNamed("microphone", 1, 0));
        m_system.m_devices.push_back(deviceNamed("speakers", 0, 2));
        static_cast<void>(m_devices.rescan(m_choice));
        m_settings.setInputDeviceName("card");
        m_settings.setOutputDeviceName("card");
        m_settings.setSampleRate(44100.0);
        m_system.m_calls.clear();
    }

    // On show, with its rates tested.
    CSoundCardDialog& open()
    {
        m_pDialog = std::make_unique<CSoundCardDialog>(
            CSoundCardDialog::CParts{m_devices, m_settings, m_folder / "socket.log", m_state, m_dialogs,
                                     [this] { m_transport.onStop(); }});
        m_pDialog->show();
        settle();
        return *m_pDialog;
    }

    void settle()
    {
        QCoreApplication::processEvents();
        ASSERT_TRUE(QTest::qWaitFor([this] { return box("Sample Rate")->count() > 1; }));
    }

    QComboBox* box(const char* pName) { return named<QComboBox>(*m_pDialog, pName); }

    void choose(const char* pName, const char* pText)
    {
        QComboBox* pBox = box(pName);
        const int nPlace = pBox->findText(QString::fromUtf8(pText), Qt::MatchStartsWith);
        ASSERT_GE(nPlace, 0) << pText;
        pBox->setFocus();
        QTest::keyClick(pBox, Qt::Key_Home);
        for (int nStep = 0; nStep < nPlace; ++nStep)
            QTest::keyClick(pBox, Qt::Key_Down);
        settle();
    }

    QString texts()
    {
        QString sTexts;
        for (const QLabel* pLabel : m_pDialog->findChildren<QLabel*>())
            if (pLabel->isVisible())
                sTexts += pLabel->text() + QLatin1Char('\n');
        return sTexts;
    }

    bool waitForCall(const std::string& sCall)
    {
        return QTest::qWaitFor([&] { return std::ranges::count(m_system.m_calls, sCall) > 0; });
    }

    std::unique_ptr<CSoundCardDialog> m_pDialog;
};

} // namespace

TEST(SoundCardDialog, okStoresAndAppliesAndCancelDoesNot)
{
    for (const bool bOK : {false, true}) {
        CBench bench;
        bench.m_system.m_refusedRates = {8000.0, 11025.0, 192000.0};
        CSoundCardDialog& dialog = bench.open();
        EXPECT_EQ(bench.box("Sample Rate")->findData(8000.0), -1);
        EXPECT_EQ(bench.box("Input Device")->findData("speakers"), -1);
        EXPECT_EQ(bench.box("Device Under Test")->currentText(), "None");
        bench.choose("Output Device", "speakers");
        bench.choose("Device Under Test", "card");
        bench.choose("Sample Rate", "48000 Hz");
        bench.choose("Buffer Size", "256 frames");
        click(dialog, "High");
        named<QSpinBox>(dialog, "Latency multiplier")->setValue(3);
        EXPECT_TRUE(bench.texts().contains(
            "One buffer: 5.3 ms\n"
            "Asked of the devices: input 120.0 ms, output 120.0 ms, together 240.0 ms"))
            << bench.texts().toStdString();
        click(dialog, bOK ? "OK" : "Cancel");
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(bench.m_system.openStreams(), 0U);

        EXPECT_EQ(bench.m_devices.outputDevice(), bOK ? 2 : 0);
        CSettings stored;
        std::string sError;
        ASSERT_TRUE(stored.load(bench.m_folder / "socket.log", bench.m_folder.path(), sError));
        EXPECT_EQ(bench.m_settings.outputDeviceName(), bOK ? "speakers" : "card");
        if (!bOK)
            continue;
        EXPECT_EQ(stored.outputDeviceName(), "speakers");
        EXPECT_EQ(stored.DUTDeviceName(), "card");
        EXPECT_EQ(stored.sampleRate(), 48000.0);
        EXPECT_EQ(stored.framesPerBuffer(), 256U);
        EXPECT_FALSE(stored.useLowLatency());
        EXPECT_EQ(stored.latencyMultiplier(), 3U);
    }
}

TEST(SoundCardDialog, toneFadesInAndOutAtMinusTwentyDecibels)
{
    CBench bench;
    CSoundCardDialog& dialog = bench.open();
    click(dialog, "Test Tone");
    bench.m_system.run(100);
    const std::vector<float> tone = bench.m_system.m_output;
    ASSERT_EQ(tone.size(), 2U * 64U * 100U);
    for (const std::size_t uFrame : {0U, 200U, 3000U, 6000U}) {
        const double dRamp = std::min(1.0, static_cast<double>(uFrame) / (0.02 * 44100.0));
        const double dExpected =
            0.1 * dRamp * std::sin(2.0 * std::numbers::pi * 1000.0 / 44100.0 * static_cast<double>(uFrame));
        EXPECT_NEAR(tone[2 * uFrame], dExpected, 1e-5) << uFrame;
        EXPECT_EQ(tone[2 * uFrame], tone[2 * uFrame + 1]) << uFrame;
    }
    bench.m_system.m_output.clear();
    click(dialog, "Stop Tone");
    EXPECT_LT(bench.m_system.run(100), 100U); // completes by itself
    for (std::size_t u = 2; u < bench.m_system.m_output.size(); ++u)
        EXPECT_LT(std::abs(bench.m_system.m_output[u] - bench.m_system.m_output[u - 2]), 0.0146F) << u;
    EXPECT_NEAR(bench.m_system.m_output.back(), 0.0F, 1e-3F);
    EXPECT_EQ(bench.m_system.allocationsInCallbacks(), 0U);
    EXPECT_TRUE(bench.waitForCall("close"));
}

TEST(SoundCardDialog, meterHearsTheInputWhileNothingPlays)
{
    CBench bench;
    bench.m_settings.setInputDeviceName("microphone");
    bench.m_system.m_input.assign(6400, 0.5F);
    CSoundCardDialog& dialog = bench.open();
    ASSERT_TRUE(bench.waitForCall("start"));
    EXPECT_EQ(bench.m_system.lastRequest().m_input->m_nChannels, 1);
    EXPECT_EQ(bench.m_system.lastRequest().m_input->m_nDevice, 1);
    bench.m_system.run(50);
    auto* pRight = named<CLEDMeter>(dialog, "Input, right");
    EXPECT_TRUE(QTest::qWaitFor([&] { return pRight->level() > 0.85F; })); // -6 dB is 0.9

    bench.enter(TRANSPORT_PLAY);
    EXPECT_TRUE(bench.waitForCall("close"));
    EXPECT_FALSE(button(dialog, "OK")->isEnabled());
    EXPECT_TRUE(bench.texts().contains("Audio runs."));
    bench.forget();
    click(dialog, "Stop Audio");
    EXPECT_EQ(bench.m_state.state(), TRANSPORT_STOP);
    EXPECT_TRUE(bench.waitForCall("start"));
    EXPECT_TRUE(button(dialog, "OK")->isEnabled());
}

TEST(SoundCardDialog, tellsOfDevicesThatAreMissingFailOrGo)
{
    CBench bench;
    bench.m_settings.setOutputDeviceName("headphones");
    bench.m_system.m_errors["open"] = -9985;
    CSoundCardDialog& dialog = bench.open();
    EXPECT_TRUE(bench.texts().contains("The output device \"headphones\" is not there; \"card\" is used."));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bench.texts().contains("The input device does not start: "); }));
    click(dialog, "Test Tone");
    EXPECT_TRUE(bench.texts().contains("The output device does not start: "));
    EXPECT_TRUE(button(dialog, "Test Tone"));

    bench.m_system.m_errors.clear();
    click(dialog, "Test Tone");
    bench.m_system.kill();
    EXPECT_TRUE(QTest::qWaitFor([&] { return bench.texts().contains("The device has stopped."); }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return button(dialog, "Test Tone") != nullptr; }));

    bench.m_system.revive();
    bench.m_system.m_afterRescan = std::vector<CAudioDeviceInfo>{};
    bench.m_system.m_nDefaultInput = bench.m_system.m_nDefaultOutput = -1;
    click(dialog, "Rescan");
    bench.settle();
    EXPECT_TRUE(bench.texts().contains("No audio input or output device found!"));
    EXPECT_FALSE(bench.box("Input Device")->isEnabled());
    EXPECT_FALSE(button(dialog, "Test Tone")->isEnabled());
    EXPECT_EQ(bench.m_settings.outputDeviceName(), "headphones");
    EXPECT_TRUE(bench.m_dialogs.m_messages.empty());
}

} // namespace velmora::test
