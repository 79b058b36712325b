#include "widgets/common/theme.h"

#include "widgets/common/desktop_scheme.h"
#include "widgets/common/theme_style.h"

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPalette>
#include <QToolTip>
#include <algorithm>

namespace velmora {

namespace {

constexpr double SMALLEST_POINTS = 9.0;

const CThemeColours DARK_COLOURS{
    .m_window = 0x1d1f22,
    .m_panel = 0x26292d,
    .m_well = 0x141517,
    .m_raised = 0x363a40,
    .m_line = 0x5a6069,
    .m_text = 0xe6e8ea,
    .m_quietText = 0x9ba2aa,
    .m_accent = 0x5fb3d9,
    .m_accentText = 0x0b1a22,
    .m_live = 0x86cf6a,
    .m_liveText = 0x0f1d09,
    .m_warning = 0xe8b84f,
    .m_error = 0xff8f85,
    .m_emptySlot = 0x3a3e44,
    .m_display = 0x0e1a18,
    .m_displayText = 0xa9f0d6,
    .m_displayQuiet = 0x63a893,
};

const CThemeColours LIGHT_COLOURS{
    .m_window = 0xe6e8eb,
    .m_panel = 0xf2f3f5,
    .m_well = 0xffffff,
    .m_raised = 0xd6dae0,
    .m_line = 0x8f959e,
    .m_text = 0x1b1e22,
    .m_quietText = 0x555c65,
    .m_accent = 0x14638a,
    .m_accentText = 0xffffff,
    .m_live = 0x24682a,
    .m_liveText = 0xffffff,
    .m_warning = 0x7a4f00,
    .m_error = 0xad2018,
    .m_emptySlot = 0xc6cbd1,
    .m_display = 0x0e1a18,
    .m_displayText = 0xa9f0d6,
    .m_displayQuiet = 0x63a893,
};

// dShare of the one colour, the rest of the other.
QColor mixed(const QColor& one, const QColor& other, double dShare)
{
    const auto part = [dShare](int nOne, int nOther) {
        return static_cast<int>(nOne * dShare + nOther * (1.0 - dShare));
    };
    return {part(one.red(), other.red()), part(one.green(), other.green()), part(one.blue(), other.blue())};
}

// The colour of visited links, which nothing here shows, is left to the desktop: so a new palette of the
// desktop is still a change of the application's, and is told.
QPalette paletteOf(const CThemeColours& colours, bool bDark)
{
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole eRole, const QColor& colour) {
        palette.setColor(eRole, colour);
    };
    set(QPalette::Window, colours.m_window);
    set(QPalette::WindowText, colours.m_text);
    set(QPalette::Base, colours.m_well);
    set(QPalette::AlternateBase, colours.m_panel);
    set(QPalette::Text, colours.m_text);
    set(QPalette::PlaceholderText, colours.m_quietText);
    set(QPalette::Button, colours.m_raised);
    set(QPalette::ButtonText, colours.m_text);
    set(QPalette::BrightText, colours.m_error);
    set(QPalette::ToolTipBase, colours.m_panel);
    set(QPalette::ToolTipText, colours.m_text);
    set(QPalette::Highlight, colours.m_accent);
    set(QPalette::HighlightedText, colours.m_accentText);
    set(QPalette::Link, colours.m_accent);
    set(QPalette::Light, bDark ? colours.m_line : colours.m_well);
    set(QPalette::Midlight, mixed(colours.m_raised, bDark ? colours.m_line : colours.m_well, 0.5));
    set(QPalette::Mid, colours.m_line);
    set(QPalette::Dark, bDark ? colours.m_well : colours.m_line);
    set(QPalette::Shadow, bDark ? QColor(Qt::black) : colours.m_line.darker(130));

    const QColor disabledText = mixed(colours.m_quietText, colours.m_window, 0.6);
    for (const QPalette::ColorRole eRole : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                            QPalette::PlaceholderText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, eRole, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::Base, colours.m_window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.m_raised);
    return palette;
}

bool hasEqualFigures(const QFont& font)
{
    const QFontMetricsF metrics(font);
    const double dZero = metrics.horizontalAdvance(QLatin1Char('0'));
    const QString sFigures = QStringLiteral("123456789");
    return std::all_of(sFigures.begin(), sFigures.end(),
                       [&](QChar c) { return metrics.horizontalAdvance(c) == dZero; });
}

} // namespace

CTheme& CTheme::instance()
{
    static CTheme theme;
    return theme;
}

CTheme::CTheme() : m_pDesktop(new CDesktopScheme(this))
{
    connect(m_pDesktop, &CDesktopScheme::changed, this, &CTheme::apply);
}

void CTheme::setScheme(EColourScheme eScheme)
{
    m_eScheme = eScheme;
    apply();
}

bool CTheme::isDark() const
{
    if (m_eScheme == EColourScheme::System)
        return m_pDesktop->isDark().value_or(m_bPaletteIsDark);
    return m_eScheme == EColourScheme::Dark;
}

const CThemeColours& CTheme::colours() const
{
    return isDark() ? DARK_COLOURS : LIGHT_COLOURS;
}

void CTheme::applyTo(QApplication& application)
{
    if (m_pApplication)
        m_pApplication->removeEventFilter(this);
    m_pApplication = &application;
    m_pApplication->installEventFilter(this);
    QApplication::setStyle(new CThemeStyle);
    judgePalette();
    apply();

    // Pictures that nobody sees belong to no desktop.
    if (QGuiApplication::platformName() != QStringLiteral("offscreen"))
        m_pDesktop->follow();
}

// With our own palette in place the desktop's is behind it; an application without one shows it.
void CTheme::judgePalette()
{
    m_bApplying = true;
    if (QApplication::palette().color(QPalette::Window) == colours().m_window)
        QApplication::setPalette(QPalette());
    m_bPaletteIsDark = QApplication::palette().color(QPalette::Window).lightness() < 128;
    m_bApplying = false;
}

void CTheme::apply()
{
    if (m_pApplication) {
        m_bApplying = true;
        QFont base = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
        if (base.pointSizeF() < SMALLEST_POINTS)
            base.setPointSizeF(SMALLEST_POINTS);
        const QPalette palette = paletteOf(colours(), isDark());
        QApplication::setFont(base);
        QApplication::setPalette(palette);
        QToolTip::setPalette(palette);
        m_bApplying = false;
    }
    emit changed();
}

bool CTheme::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ApplicationPaletteChange && pWatched == m_pApplication && !m_bApplying) {
        judgePalette();
        apply();
    }
    return QObject::eventFilter(pWatched, pEvent);
}

QFont CTheme::font(double dFactor, bool bBold)
{
    QFont result = QApplication::font();
    result.setPointSizeF(std::max(1.0, result.pointSizeF() * dFactor));
    result.setBold(bBold);
    return result;
}

QFont CTheme::figures(double dFactor)
{
    QFont result = font(dFactor);
    if (hasEqualFigures(result))
        return result;
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(result.pointSizeF());
    return fixed;
}

} // namespace velmora
