#pragma once

#include <QPoint>
#include <QRect>
#include <QString>
#include <optional>

class QSettings;
class QWidget;

namespace velmora {

// Where a window stands, as ten numbers: flags, show command, the least position, the greatest position, the
// normal rectangle as left, top, right, bottom (the last two outside it). Logical pixels of the desktop.
struct CWindowPlacement
{
    static constexpr unsigned RESTORE_TO_MAXIMIZED = 2; // a flag
    static constexpr unsigned NORMAL = 1;               // show commands
    static constexpr unsigned MINIMIZED = 2;
    static constexpr unsigned MAXIMIZED = 3;

    unsigned m_uFlags = 0;
    unsigned m_uShowCommand = NORMAL;
    QPoint m_least{-1, -1};
    QPoint m_greatest{-1, -1};
    QRect m_normal;

    // "%u,%u,%d,%d,%d,%d,%d,%d,%d,%d"
    [[nodiscard]] QString text() const;

    // None unless the text is ten numbers with a rectangle that holds something.
    [[nodiscard]] static std::optional<CWindowPlacement> parse(const QString& sText);
};

// The profile's section "Settings", key "WindowPos". [main]
void storeWindowPlacement(QSettings& profile, const QWidget& window);

// Gives the window the place that was stored, moved and shrunk so that all of it is on a screen that exists,
// and its state; does not show it. False, with the window as it was, if nothing usable is stored.
bool restoreWindowPlacement(const QSettings& profile, QWidget& window);

} // namespace velmora
