#include "real/jack_server.h"
#include "real/virtual_screen.h"

#include <QApplication>
#include <gtest/gtest.h>
#include <optional>

// With VELMORA_HAND=x11 the cases run on an X server of their own, with events that come from it; else
// without a display.
int main(int nArguments, char** ppArguments)
{
    velmora::test::isolateAudioServers();
    ::testing::InitGoogleTest(&nArguments, ppArguments);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const bool bX11 = qgetenv("VELMORA_HAND") == "x11";
    std::optional<velmora::test::CVirtualScreen> screen;
    if (bX11) {
        const int nScale = std::max(1, qEnvironmentVariableIntValue("QT_SCALE_FACTOR"));
        screen.emplace(1600 * nScale, 1200 * nScale);
    }
    qputenv("QT_QPA_PLATFORM", bX11 ? "xcb" : "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    qunsetenv("QT_STYLE_OVERRIDE");
    QApplication::setApplicationName("velmora");
    const QApplication application(nArguments, ppArguments);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
