#include "project/codegen/product_version.h"
#include "widgets/common/qt_text.h"
#include "widgets/shell/about_dialog.h"
#include "widgets/shell/splash_screen.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(SplashScreen, StaysItsTimeUnlessTheUserHasHadEnough)
{
    constexpr int LONG_MS = 600000;
    bool bStood = false;
    const std::vector<std::pair<int, std::function<void(QWidget&)>>> cases{
        {60, [&bStood](QWidget& splash) { bStood = splash.isVisible(); }},
        {LONG_MS, [](QWidget& splash) { QTest::mouseClick(&splash, Qt::LeftButton); }},
        {LONG_MS, [](QWidget& splash) { QTest::keyClick(&splash, Qt::Key_Space); }},
    };
    for (const auto& [nLeastMs, meanwhile] : cases) {
        CSplashScreen splash;
        splash.begin(nLeastMs);
        const QImage empty = splash.grab().toImage();
        splash.addLine("Velmora(TM) " + qs(productVersion()));
        EXPECT_NE(splash.grab().toImage(), empty);
        EXPECT_FALSE(splash.isEnded());
        QTimer::singleShot(0, &splash, [&splash, &meanwhile = meanwhile] { meanwhile(splash); });
        splash.finish();
        EXPECT_TRUE(splash.isEnded());
        EXPECT_FALSE(splash.isVisible());
    }
    EXPECT_TRUE(bStood);
}

TEST(SplashScreen, DoesNotCoverABox)
{
    CSplashScreen splash;
    splash.begin();
    QDialog box;
    bool bCovers = true;
    QTimer::singleShot(0, &box, [&] {
        bCovers = splash.isVisible();
        box.reject();
    });
    box.exec();
    EXPECT_FALSE(bCovers);
    EXPECT_TRUE(splash.isVisible()) << "it comes back for the rest of its time";
}

TEST(AboutDialog, NamesTheVersionAndWhatItIsBuiltOnAndCopies)
{
    CAboutDialog dialog;
    QString sAll;
    for (const QLabel* pLabel : dialog.findChildren<QLabel*>())
        sAll += pLabel->text() + '\n';
    for (const QString& sPart :
         {QStringLiteral("Velmora(tm)"), qs(productVersion()), QStringLiteral("Qt"),
          QStringLiteral("PortAudio"), QStringLiteral("libsndfile"), QStringLiteral("RtMidi")})
        EXPECT_TRUE(sAll.contains(sPart)) << sPart.toStdString();
    for (QPushButton* pButton : dialog.findChildren<QPushButton*>())
        if (pButton->text().contains("Copy"))
            pButton->click();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), CAboutDialog::versionText());
    EXPECT_TRUE(CAboutDialog::versionText().startsWith("Velmora " + qs(productVersion()) + "\nQt "));
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

} // namespace
} // namespace velmora
