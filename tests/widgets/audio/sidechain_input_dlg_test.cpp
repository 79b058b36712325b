#include "tests/widgets/audio/audio_windows_fixture.h"
#include "widgets/audio/sidechain_input_dlg.h"
#include "widgets/common/fader.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/track_bar.h"

#include <QLineEdit>

namespace velmora::test {

namespace {

struct CBench : CTransportBench
{
    CBench()
    {
        m_sidechain.m_fGain_dB = -12.0F;
        m_dialog.show();
    }

    SidechainInputDlg m_dialog{m_sidechain, m_engine, m_state, m_dialogs};
};

} // namespace

TEST(SidechainInputDlg, switchesActAtOnceAndFollow)
{
    CBench bench;
    bench.m_dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&bench.m_dialog));
    click(bench.m_dialog, "Loop");
    EXPECT_TRUE(bench.m_sidechain.m_bLoop);
    QTest::keyClick(button(bench.m_dialog, "Loop"), Qt::Key_Up);
    EXPECT_FALSE(bench.m_sidechain.m_bLoop);
    click(bench.m_dialog, "Monitor");
    EXPECT_TRUE(bench.m_sidechain.m_bListen);
    click(bench.m_dialog, "Enable");
    EXPECT_TRUE(bench.m_sidechain.m_bEnabled);
    bench.m_sidechain.setEnabled(false, bench.m_engine);
    bench.m_sidechain.m_bLoop = true;
    bench.m_dialog.tick();
    EXPECT_FALSE(button(bench.m_dialog, "Enable")->isChecked());
    EXPECT_TRUE(button(bench.m_dialog, "Loop")->isChecked());
    EXPECT_FALSE(button(bench.m_dialog, "Once")->isChecked());
}

TEST(SidechainInputDlg, levelFollowsTheLawOfItsSlider)
{
    CBench bench;
    CTrackBar& track = bench.m_dialog.findChild<CFader*>()->trackBar();
    EXPECT_EQ(CTrackBar::HIGHEST - track.position(), CSidechain::positionFromLevel(-12.0F));
    track.setFocus();
    QTest::keyClick(&track, Qt::Key_Home);
    EXPECT_EQ(bench.m_sidechain.m_fGain_dB, 12.0F);
    QTest::keyClick(&track, Qt::Key_End);
    EXPECT_EQ(bench.m_sidechain.m_fGain_dB, -60.0F);
    QTest::keyClick(&track, Qt::Key_Delete);
    EXPECT_EQ(bench.m_sidechain.m_fGain_dB, 0.0F);
    EXPECT_EQ(track.position(), CTrackBar::HIGHEST - 43);
    QTest::keyClick(&track, Qt::Key_Up);
    QTest::keyClick(&track, Qt::Key_Down);
    EXPECT_EQ(bench.m_sidechain.m_fGain_dB, -0.09375F);
    bench.m_sidechain.m_fGain_dB = 0.1F; // the nearest position would be 42
    bench.m_dialog.tick();
    EXPECT_EQ(track.position(), CTrackBar::HIGHEST - 43);
}

TEST(SidechainInputDlg, opensAFileOnlyWhileStopped)
{
    CBench bench;
    const auto* pFile = named<QLineEdit>(bench.m_dialog, "Sidechain WAV File");
    bench.m_dialogs.m_openFile = bench.m_folder / "file.wav";
    click(bench.m_dialog, "Open");
    EXPECT_THAT(
        bench.m_dialogs.m_messages,
        testing::ElementsAre("You must stop audio streaming before loading the sidechain audio file."));
    bench.enter(TRANSPORT_STOP);
    click(bench.m_dialog, "Open");
    EXPECT_EQ(pFile->text(), "file.wav");
    EXPECT_TRUE(bench.m_dialogs.m_messages.empty());
    bench.m_dialogs.m_openFile = bench.m_folder / "file.aif";
    click(bench.m_dialog, "Open");
    EXPECT_THAT(bench.m_dialogs.m_messages, testing::ElementsAre("Not a .WAV file."));
    EXPECT_EQ(pFile->text(), "file.wav");
}

TEST(SidechainInputDlg, metersShowTheSidechain)
{
    CBench bench;
    bench.m_sidechain.m_bEnabled = true;
    bench.m_sidechain.load(bench.m_folder / "file.wav", bench.m_dialogs);
    bench.m_transport.onPlay();
    bench.m_system.run(10);
    bench.m_dialog.tick();
    auto* pMeter = named<CLEDMeter>(bench.m_dialog, "Sidechain, right");
    EXPECT_GT(pMeter->level(), 0.0F);
    EXPECT_EQ(pMeter->level(), bench.m_engine.meter(METER_SIDECHAIN_RIGHT));
    click(bench.m_dialog, "Enable");
    bench.m_dialog.tick();
    EXPECT_EQ(pMeter->level(), 0.0F);
}

} // namespace velmora::test
