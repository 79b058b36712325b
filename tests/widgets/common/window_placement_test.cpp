#include "support/test_support.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/window_placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWidget>
#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(WindowPlacement, IsTenNumbers)
{
    const char* pText = "2,3,-1,-1,-8,-8,100,50,740,530";
    const auto placement = CWindowPlacement::parse(pText);
    ASSERT_TRUE(placement);
    EXPECT_EQ(placement->m_uFlags, CWindowPlacement::RESTORE_TO_MAXIMIZED);
    EXPECT_EQ(placement->m_uShowCommand, CWindowPlacement::MAXIMIZED);
    EXPECT_EQ(placement->m_greatest, QPoint(-8, -8));
    EXPECT_EQ(placement->m_normal, QRect(100, 50, 640, 480));
    EXPECT_EQ(placement->text(), pText);

    for (const char* pBroken : {"", "1,2,3", "0,1,-1,-1,-1,-1,0,0,640,x", "0,1,-1,-1,-1,-1,640,480,0,0",
                                "0,1,-1,-1,-1,-1,0,0,640,480,9", "-1,1,-1,-1,-1,-1,0,0,640,480",
                                "0,1,-1,-1,-1,-1,0,0,2147483647,480", "0,1,-1,-1,-1,-1,0,0,20,20"})
        EXPECT_FALSE(CWindowPlacement::parse(pBroken)) << pBroken;
}

TEST(WindowPlacement, IsStoredAndComesBackOntoAScreen)
{
    const test::CTemporaryFolder folder;
    const QString sFile = pathText(folder / "profile.ini");
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    {
        QWidget window;
        window.setGeometry(20, 30, 400, 300);
        window.showMaximized();
        QSettings profile(sFile, QSettings::IniFormat);
        EXPECT_FALSE(restoreWindowPlacement(profile, window)) << "nothing is stored yet";
        storeWindowPlacement(profile, window);
    }
    EXPECT_NE(test::readFile(folder / "profile.ini").find("[Settings]\nWindowPos="), std::string::npos);
    QSettings profile(sFile, QSettings::IniFormat);
    QWidget restored;
    ASSERT_TRUE(restoreWindowPlacement(profile, restored));
    EXPECT_TRUE(restored.isMaximized());

    struct CCase
    {
        const char* m_pText;
        QRect m_expected;
    };
    for (const CCase& item :
         {CCase{"0,1,-1,-1,-1,-1,10,20,310,220", QRect(10, 20, 300, 200)},
          CCase{"0,2,-1,-1,-1,-1,-5000,-5000,-4700,-4800", QRect(screen.left(), screen.top(), 300, 200)},
          CCase{"0,1,-1,-1,-1,-1,0,0,90000,90000", screen}}) {
        test::writeFile(folder / "profile.ini", std::string("[Settings]\nWindowPos=") + item.m_pText + "\n");
        profile.sync();
        QWidget window;
        ASSERT_TRUE(restoreWindowPlacement(profile, window)) << item.m_pText;
        EXPECT_EQ(window.geometry(), item.m_expected) << item.m_pText;
        EXPECT_EQ(window.windowState(), Qt::WindowNoState);
    }
}

} // namespace
} // namespace velmora
