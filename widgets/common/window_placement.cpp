#include "widgets/common/window_placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QStringList>
#include <QWidget>
#include <array>

namespace velmora {

namespace {

const QString KEY = QStringLiteral("Settings/WindowPos");
constexpr int LEAST_EXTENT = 100;   // a smaller window is no place to work in
constexpr int MOST_EXTENT = 100000; // a larger one is a broken text

// The part of a screen that is nearest to the rectangle, and the rectangle moved and shrunk into it.
QRect fitted(QRect place)
{
    const QScreen* pBest = QGuiApplication::primaryScreen();
    qint64 nBest = 0;
    for (const QScreen* pScreen : QGuiApplication::screens()) {
        const QRect common = pScreen->availableGeometry() & place;
        const qint64 nArea = static_cast<qint64>(common.width()) * common.height();
        if (!common.isEmpty() && nArea > nBest) {
            pBest = pScreen;
            nBest = nArea;
        }
    }
    if (!pBest)
        return place;
    const QRect room = pBest->availableGeometry();
    place.setSize(place.size().boundedTo(room.size()));
    place.moveLeft(qBound(room.left(), place.left(), room.right() - place.width() + 1));
    place.moveTop(qBound(room.top(), place.top(), room.bottom() - place.height() + 1));
    return place;
}

} // namespace

QString CWindowPlacement::text() const
{
    return QString::asprintf("%u,%u,%d,%d,%d,%d,%d,%d,%d,%d", m_uFlags, m_uShowCommand, m_least.x(),
                             m_least.y(), m_greatest.x(), m_greatest.y(), m_normal.left(), m_normal.top(),
                             m_normal.left() + m_normal.width(), m_normal.top() + m_normal.height());
}

std::optional<CWindowPlacement> CWindowPlacement::parse(const QString& sText)
{
    const QStringList parts = sText.split(QLatin1Char(','));
    std::array<int, 10> numbers{};
    if (parts.size() != static_cast<qsizetype>(numbers.size()))
        return std::nullopt;
    for (std::size_t u = 0; u < numbers.size(); ++u) {
        bool bNumber = false;
        numbers[u] = parts[static_cast<qsizetype>(u)].trimmed().toInt(&bNumber);
        if (!bNumber || std::abs(numbers[u]) > MOST_EXTENT || (u < 2 && numbers[u] < 0))
            return std::nullopt;
    }
    CWindowPlacement result;
    result.m_uFlags = static_cast<unsigned>(numbers[0]);
    result.m_uShowCommand = static_cast<unsigned>(numbers[1]);
    result.m_least = {numbers[2], numbers[3]};
    result.m_greatest = {numbers[4], numbers[5]};
    result.m_normal = QRect(numbers[6], numbers[7], numbers[8] - numbers[6], numbers[9] - numbers[7]);
    if (result.m_normal.width() < LEAST_EXTENT || result.m_normal.height() < LEAST_EXTENT)
        return std::nullopt;
    return result;
}

void storeWindowPlacement(QSettings& profile, const QWidget& window)
{
    CWindowPlacement placement;
    placement.m_normal = window.isMaximized() || window.isMinimized() || window.isFullScreen()
                             ? window.normalGeometry()
                             : window.geometry();
    if (window.isMinimized()) {
        placement.m_uShowCommand = CWindowPlacement::MINIMIZED;
        placement.m_uFlags = window.isMaximized() ? CWindowPlacement::RESTORE_TO_MAXIMIZED : 0U;
    } else if (window.isMaximized() || window.isFullScreen()) {
        placement.m_uShowCommand = CWindowPlacement::MAXIMIZED;
    }
    profile.setValue(KEY, placement.text());
}

bool restoreWindowPlacement(const QSettings& profile, QWidget& window)
{
    // An unquoted value with commas is read as a list.
    const auto placement = CWindowPlacement::parse(profile.value(KEY).toStringList().join(QLatin1Char(',')));
    if (!placement)
        return false;
    window.setGeometry(fitted(placement->m_normal));

    // A window that was closed as an icon opens as it was before that.
    const bool bMaximized = placement->m_uShowCommand == CWindowPlacement::MAXIMIZED ||
                            (placement->m_uShowCommand == CWindowPlacement::MINIMIZED &&
                             (placement->m_uFlags & CWindowPlacement::RESTORE_TO_MAXIMIZED) != 0);
    window.setWindowState(bMaximized ? Qt::WindowMaximized : Qt::WindowNoState);
    return true;
}

} // namespace velmora
