#include "project/compiler/keystroke_engine.h"
#include "project/compiler/x11_window_system.h"
#include "real/virtual_screen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

using testing::HasSubstr;

class X11WindowSystem : public testing::Test
{
  protected:
    bool comesForward(CWindowHandle hWindow) { return CWindowEngine(m_system, hWindow).setForeground(10.0); }

    bool type(CWindowHandle hWindow, const char* pKeys)
    {
        CKeystrokeEngine engine(m_system, pKeys);
        engine.setWindow(hWindow);
        engine.setCheckForeground(true);
        const bool bSent = engine.send();
        m_sError = engine.error();
        return bSent;
    }

    CVirtualScreen m_screen;
    CX11WindowSystem m_system{m_screen.display()};
    std::string m_sError;
};

TEST_F(X11WindowSystem, FindsWindowsAndMovesTheFocus)
{
    CTestWindow first(m_screen, "First one");
    CTestWindow second(m_screen, "Second one");
    ASSERT_EQ(m_system.topLevelWindows().size(), 2u);
    CWindowEngine found(m_system, "Second", "");
    ASSERT_EQ(found.windows(), std::vector<CWindowHandle>{second.handle()});

    for (const CWindowHandle hWindow : {first.handle(), second.handle(), first.handle()}) {
        ASSERT_TRUE(comesForward(hWindow));
        EXPECT_EQ(m_system.foregroundWindow(), hWindow);
    }
    m_system.minimize(first.handle());
    EXPECT_TRUE(waitUntil(m_system, 10.0, [&] { return m_system.foregroundWindow() != first.handle(); }));
    m_system.restore(first.handle());
    EXPECT_TRUE(comesForward(first.handle()));
    EXPECT_FALSE(m_system.isZoomed(first.handle()));

    // A window that is not there does no harm.
    constexpr CWindowHandle GONE = 0x123456;
    m_system.requestForeground(GONE);
    m_system.minimize(GONE);
    m_system.restore(GONE);
    EXPECT_FALSE(m_system.isZoomed(GONE));
    EXPECT_TRUE(m_system.unavailableReason().empty());
}

TEST_F(X11WindowSystem, TypesIntoTheWindowInFrontAlone)
{
    CTestWindow window(m_screen, "Target");
    CTestWindow other(m_screen, "Other");
    ASSERT_TRUE(comesForward(window.handle()));

    constexpr std::pair<const char*, std::pair<int, const char*>> CASES[] = {
        {"<CTRL><F11>", {4, "+Control_L +F11 -F11 -Control_L"}},
        {"<CTRL+SHIFT>S", {6, "+Control_L +Shift_L +s -s -Shift_L -Control_L"}},
        {"<PAGEUP><DELETE>.", {6, "+Prior -Prior +Delete -Delete +period -period"}},
        {"<ALT_LOCK>a<DELAY 10>b<ALT_UNLOCK>", {8, "+Alt_L +a -a -Alt_L +Alt_L +b -b -Alt_L"}},
    };
    for (const auto& [pKeys, expected] : CASES) {
        ASSERT_TRUE(type(window.handle(), pKeys)) << pKeys << ": " << m_sError;
        const std::string sSeen = window.keys(expected.first);
        EXPECT_EQ(sSeen, expected.second) << pKeys;
        // The engine lets go of the modifiers at its end; nobody had them down.
        EXPECT_FALSE(m_system.areKeysHeld()) << pKeys;
    }

    ASSERT_TRUE(type(window.handle(), "<CAPSLOCK_ON>"));
    EXPECT_TRUE(waitUntil(m_system, 5.0, [&] { return m_system.isToggled(0x14); }));
    ASSERT_TRUE(type(window.handle(), "<CAPSLOCK_ON><CAPSLOCK_OFF>"));
    EXPECT_TRUE(waitUntil(m_system, 5.0, [&] { return !m_system.isToggled(0x14); }));
    static_cast<void>(window.keys(4));

    EXPECT_FALSE(type(other.handle(), "<F7>"));
    EXPECT_THAT(m_sError, HasSubstr("focus"));
    window.hold("Shift_R", true);
    EXPECT_FALSE(type(window.handle(), "<F7>"));
    EXPECT_THAT(m_sError, HasSubstr("held"));
    window.hold("Shift_R", false);
    EXPECT_EQ(window.keys(2), "+Shift_R -Shift_R");
}

TEST_F(X11WindowSystem, SurvivesTheEndOfItsDisplay)
{
    CTestWindow window(m_screen, "Target");
    ASSERT_TRUE(comesForward(window.handle()));
    m_screen.end();

    EXPECT_TRUE(m_system.topLevelWindows().empty());
    EXPECT_EQ(m_system.foregroundWindow(), 0u);
    EXPECT_THAT(m_system.unavailableReason(), HasSubstr(m_screen.display()));
    const CKeyEvent press{0x70, 0, false, false};
    EXPECT_THAT(m_system.sendKeys({&press, 1}), HasSubstr("command line compiler"));
}

TEST(X11WindowSystemWithoutManager, SaysWhatIsMissing)
{
    ::setenv("DISPLAY", "", 1);
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    CX11WindowSystem none;
    EXPECT_THAT(none.unavailableReason(), HasSubstr("DISPLAY"));
    EXPECT_THAT(none.unavailableReason(), HasSubstr("Wayland"));
    ::unsetenv("WAYLAND_DISPLAY");
    CX11WindowSystem wrong(":4711");
    EXPECT_THAT(wrong.unavailableReason(), HasSubstr(":4711"));
    EXPECT_TRUE(wrong.topLevelWindows().empty());
}

} // namespace
} // namespace velmora::test
