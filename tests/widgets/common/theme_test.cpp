#include "widgets/common/desktop_scheme.h"
#include "widgets/common/icons.h"
#include "widgets/common/theme.h"

#include <QApplication>
#include <QDBusVariant>
#include <QFontMetricsF>
#include <QImage>
#include <QPalette>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace velmora {
namespace {

double luminance(const QColor& colour)
{
    const auto linear = [](double dPart) {
        return dPart <= 0.03928 ? dPart / 12.92 : std::pow((dPart + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const auto [dLow, dHigh] = std::minmax({luminance(one), luminance(other)});
    return (dHigh + 0.05) / (dLow + 0.05);
}

using CPart = QColor CThemeColours::*;

TEST(Theme, EveryTextStandsOutFromWhatItIsWrittenOn)
{
    struct CCase
    {
        const char* m_pName;
        CPart m_text;
        std::vector<CPart> m_grounds;
    };
    using C = CThemeColours;
    const std::vector<CPart> surfaces{&C::m_window, &C::m_panel, &C::m_well};
    const std::vector<CPart> withButtons{&C::m_window, &C::m_panel, &C::m_well, &C::m_raised};
    const std::vector<CCase> cases{
        {"text", &C::m_text, withButtons},
        {"quiet", &C::m_quietText, surfaces},
        {"accent", &C::m_accent, withButtons},
        {"live", &C::m_live, surfaces},
        {"warning", &C::m_warning, surfaces},
        {"error", &C::m_error, surfaces},
        {"on accent", &C::m_accentText, {&C::m_accent}},
        {"on live", &C::m_liveText, {&C::m_live}},
        {"display", &C::m_displayText, {&C::m_display}},
        {"quiet display", &C::m_displayQuiet, {&C::m_display}},
    };
    for (const EColourScheme eScheme : {EColourScheme::Dark, EColourScheme::Light}) {
        CTheme::instance().setScheme(eScheme);
        const CThemeColours& colours = CTheme::instance().colours();
        for (const CCase& item : cases)
            for (const CPart ground : item.m_grounds)
                EXPECT_GE(contrast(colours.*item.m_text, colours.*ground), 4.5)
                    << item.m_pName << " on " << (colours.*ground).name().toStdString();
    }
}

TEST(Theme, DressesTheApplicationAndFollowsTheDesktop)
{
    CTheme& theme = CTheme::instance();
    int nChanges = 0;
    const auto connection = QObject::connect(&theme, &CTheme::changed, [&nChanges] { ++nChanges; });
    theme.setScheme(EColourScheme::System);
    theme.applyTo(*qApp);
    for (const bool bDark : {true, false, true}) {
        // A desktop that changes its scheme changes the palette of its programs.
        QApplication::setPalette(QPalette(bDark ? QColor(40, 40, 40) : QColor(240, 240, 240)));
        EXPECT_EQ(theme.isDark(), bDark);
        EXPECT_EQ(QApplication::palette().color(QPalette::Window), theme.colours().m_window);
    }
    EXPECT_GE(nChanges, 3);
    theme.setScheme(EColourScheme::Light);
    EXPECT_FALSE(theme.isDark());
    EXPECT_GT(QApplication::palette().color(QPalette::Window).lightness(), 128);
    QObject::disconnect(connection);

    const QFontMetricsF figures(CTheme::figures());
    for (const QChar c : QStringLiteral("123456789"))
        EXPECT_EQ(figures.horizontalAdvance(c), figures.horizontalAdvance(QLatin1Char('0')));
    EXPECT_DOUBLE_EQ(CTheme::font(2.0).pointSizeF(), 2.0 * CTheme::font().pointSizeF());
}

TEST(DesktopScheme, ReadsWhatThePortalTells)
{
    CDesktopScheme scheme;
    int nChanges = 0;
    QObject::connect(&scheme, &CDesktopScheme::changed, [&nChanges] { ++nChanges; });
    const auto tell = [&scheme](const char* pGroup, const char* pKey, unsigned uChoice) {
        return QMetaObject::invokeMethod(&scheme, "settingChanged", Q_ARG(QString, pGroup),
                                         Q_ARG(QString, pKey), Q_ARG(QDBusVariant, QDBusVariant(uChoice)));
    };
    EXPECT_EQ(scheme.isDark(), std::nullopt);
    const char* const pGroup = "org.freedesktop.appearance";
    for (const auto& [uChoice, bDark] :
         {std::pair{1U, std::optional(true)}, std::pair{2U, std::optional(false)},
          std::pair{0U, std::optional<bool>()}, std::pair{1U, std::optional(true)}}) {
        ASSERT_TRUE(tell(pGroup, "color-scheme", uChoice));
        EXPECT_EQ(scheme.isDark(), bDark);
    }
    ASSERT_TRUE(tell(pGroup, "accent-color", 2U));
    ASSERT_TRUE(tell("org.gnome.other", "color-scheme", 2U));
    EXPECT_EQ(scheme.isDark(), true);
    EXPECT_EQ(nChanges, 4);
}

int inkOf(const QImage& picture, const QColor& colour)
{
    int nCount = 0;
    for (int nY = 0; nY < picture.height(); ++nY)
        for (int nX = 0; nX < picture.width(); ++nX)
            nCount += picture.pixelColor(nX, nY) == colour ? 1 : 0;
    return nCount;
}

TEST(Icons, EachIsAPictureOfItsOwnInTheColoursOfTheTheme)
{
    CTheme& theme = CTheme::instance();
    theme.applyTo(*qApp);
    std::vector<QImage> seen;
    for (int n = 0; n < static_cast<int>(EIcon::Count); ++n) {
        const QIcon icon = themeIcon(static_cast<EIcon>(n));
        for (const EColourScheme eScheme : {EColourScheme::Dark, EColourScheme::Light}) {
            theme.setScheme(eScheme);
            const CThemeColours& colours = theme.colours();
            const bool bSign = n >= static_cast<int>(EIcon::Information);
            const QImage normal = icon.pixmap(QSize(64, 64)).toImage();
            EXPECT_GT(inkOf(normal, bSign ? colours.m_accent : colours.m_text), 20) << n;
            EXPECT_GT(inkOf(icon.pixmap(QSize(64, 64), QIcon::Normal, QIcon::On).toImage(), colours.m_accent),
                      20)
                << n;
            EXPECT_NE(icon.pixmap(QSize(64, 64), QIcon::Disabled).toImage(), normal) << n;
            EXPECT_EQ(std::count(seen.begin(), seen.end(), normal), 0) << n;
            seen.push_back(normal);
        }
    }
}

} // namespace
} // namespace velmora
