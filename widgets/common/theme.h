#pragma once

#include <QColor>
#include <QFont>
#include <QObject>

class QApplication;

namespace velmora {

class CDesktopScheme;

enum class EColourScheme
{
    System,
    Dark,
    Light
};

// The colours of one scheme. Every text colour stands out from what it is written on by at least 4.5 : 1.
struct CThemeColours
{
    QColor m_window;       // behind everything
    QColor m_panel;        // a group on the form
    QColor m_well;         // recessed: value boxes, lists, tracks
    QColor m_raised;       // buttons and thumbs
    QColor m_line;         // hairlines and borders
    QColor m_text;         // on window, panel, well and raised
    QColor m_quietText;    // captions of empty slots, units, hints; on window and panel
    QColor m_accent;       // assigned slots, the focus, what is switched on
    QColor m_accentText;   // on accent
    QColor m_live;         // marks a loaded plug-in and what acts on it
    QColor m_liveText;     // on live
    QColor m_warning;      // text, on window and panel
    QColor m_error;        // text, on window and panel
    QColor m_emptySlot;    // the outline of a slot without a control
    QColor m_display;      // LCD and graphs, the same in both schemes
    QColor m_displayText;  // on display
    QColor m_displayQuiet; // on display
};

// The one visual language of the program: colours, fonts, sizes. Everything that is drawn asks here.
// [main]
class CTheme : public QObject
{
    Q_OBJECT

  public:
    static CTheme& instance();

    // System follows the desktop's own choice.
    void setScheme(EColourScheme eScheme);
    [[nodiscard]] EColourScheme scheme() const { return m_eScheme; }
    [[nodiscard]] bool isDark() const;
    [[nodiscard]] const CThemeColours& colours() const;

    // Gives the application our style, palette and font, now and after each change.
    void applyTo(QApplication& application);

    // The program's font at a factor of its ordinary size.
    [[nodiscard]] static QFont font(double dFactor = 1.0, bool bBold = false);

    // The same with figures of equal width.
    [[nodiscard]] static QFont figures(double dFactor = 1.0);

    static constexpr int SPACING = 8;     // between widgets, in logical pixels
    static constexpr int MARGIN = 12;     // around a dialog's content
    static constexpr double RADIUS = 4.0; // of rounded corners

  signals:
    void changed();

  private:
    CTheme();
    void judgePalette();
    void apply();
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

    EColourScheme m_eScheme = EColourScheme::System;
    QApplication* m_pApplication = nullptr;
    CDesktopScheme* m_pDesktop;
    bool m_bPaletteIsDark = false;
    bool m_bApplying = false;
};

} // namespace velmora
