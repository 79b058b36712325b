#include "widgets/common/progress_box.h"
#include "widgets/common/progress_panel.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QTest>
#include <gtest/gtest.h>
#include <thread>

namespace velmora {
namespace {

using std::chrono::milliseconds;

CProgressPanel* panelOf(QWidget& window)
{
    return window.findChild<CProgressPanel*>();
}

TEST(ProgressBox, StaysAwayFromShortWorkAndStandsAboveTheWindowInLongWork)
{
    QWidget window;
    window.show();
    CProgressBox box("Copying", &window);
    EXPECT_TRUE(box.report(0.1));
    EXPECT_FALSE(box.isShown());
    std::this_thread::sleep_for(milliseconds(CProgressBox::DELAY_MS + 20));
    EXPECT_TRUE(box.report(0.42));
    ASSERT_TRUE(panelOf(window));
    EXPECT_TRUE(box.isShown());
    EXPECT_EQ(panelOf(window)->windowModality(), Qt::WindowModal);
    EXPECT_EQ(panelOf(window)->findChild<QProgressBar*>()->value(), 42);
    EXPECT_EQ(panelOf(window)->findChild<QLabel*>()->text(), "Copying");

    QTest::keyClick(panelOf(window), Qt::Key_Escape);
    EXPECT_TRUE(box.isShown()) << "until the work has stopped";
    EXPECT_FALSE(box.report(0.5));
    EXPECT_TRUE(box.isCancelled());
    QApplication::processEvents(); // the work has returned
    EXPECT_FALSE(box.isShown());
    EXPECT_TRUE(box.isCancelled());
    EXPECT_TRUE(box.report(0.0)) << "the next work begins afresh";
}

TEST(ProgressBox, WaitsWithTheWindowsServedAndNeverEntersItself)
{
    QWidget window;
    window.show();
    CProgressBox box("Building", &window);
    int nTicks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        ++nTicks;
        EXPECT_EQ(box.report(1.0), !box.isCancelled()); // answers, and serves nobody
    });
    timer.start(5);
    EXPECT_TRUE(box.wait(milliseconds(50), "Waiting for the compiler."));
    EXPECT_GT(nTicks, 0);

    QTimer cancel;
    QObject::connect(&cancel, &QTimer::timeout, [&] {
        if (!panelOf(window))
            return;
        EXPECT_EQ(panelOf(window)->findChild<QLabel*>()->text(), "Waiting for the compiler.");
        QTest::keyClick(panelOf(window), Qt::Key_Escape);
    });
    cancel.start(5);
    const CPatienceScope scope(box);
    EXPECT_FALSE(waitPatiently(std::chrono::minutes(5))) << "given up long before";
    EXPECT_FALSE(box.wait(milliseconds(1), {}));
}

} // namespace
} // namespace velmora
