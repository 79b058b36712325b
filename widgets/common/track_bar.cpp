#include "widgets/common/track_bar.h"

#include "widgets/common/instrument_paint.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr int GROOVE = 6;          // width
constexpr int WIDEST_THUMB = 30;   // across the track
constexpr int THUMB_PER_TRACK = 9; // a thumb is that part of the track, within these bounds
constexpr int SHORTEST_THUMB = 12;
constexpr int LONGEST_THUMB = 24;
constexpr int EDGE = 3;           // room for the ring of the focus
constexpr int FIRST_REPEAT = 300; // ms
constexpr int NEXT_REPEAT = 60;

} // namespace

CTrackBar::CTrackBar(QWidget* pParent) : CPositionControl(pParent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    connect(&m_repeat, &QTimer::timeout, this, [this] {
        m_repeat.setInterval(NEXT_REPEAT);
        pageTowardMouse();
    });
}

void CTrackBar::setOrientation(Qt::Orientation eOrientation)
{
    m_eOrientation = eOrientation;
    const bool bUpright = isVertical();
    setSizePolicy(bUpright ? QSizePolicy::Preferred : QSizePolicy::Expanding,
                  bUpright ? QSizePolicy::Expanding : QSizePolicy::Preferred);
    update();
}

// Grows from the low end.
double CTrackBar::along(const QPointF& point) const
{
    return isVertical() ? height() - point.y() : point.x();
}

int CTrackBar::thumbLength() const
{
    const int nTrack = isVertical() ? height() : width();
    return std::clamp(nTrack / THUMB_PER_TRACK, SHORTEST_THUMB, LONGEST_THUMB);
}

double CTrackBar::travel() const
{
    return std::max(1, (isVertical() ? height() : width()) - thumbLength() - 2 * EDGE);
}

double CTrackBar::pixelOf(double dPosition) const
{
    const double dAlong = EDGE + thumbLength() / 2.0 + travel() * dPosition / HIGHEST;
    return isVertical() ? height() - dAlong : dAlong;
}

QRect CTrackBar::thumbRect() const
{
    const int nLength = thumbLength();
    const int nAcross = std::min(WIDEST_THUMB, (isVertical() ? width() : height()) - 2 * EDGE);
    const int nStart = static_cast<int>(std::lround(pixelOf(position()) - nLength / 2.0));
    return isVertical() ? QRect((width() - nAcross) / 2, nStart, nAcross, nLength)
                        : QRect(nStart, (height() - nAcross) / 2, nLength, nAcross);
}

QSize CTrackBar::sizeHint() const
{
    return isVertical() ? QSize(34, 150) : QSize(150, 28);
}

QSize CTrackBar::minimumSizeHint() const
{
    return isVertical() ? QSize(18, 60) : QSize(60, 18);
}

void CTrackBar::moveToEnd(bool bHighest)
{
    CPositionControl::moveToEnd(bHighest != m_bCountsFromTop);
}

void CTrackBar::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    if (!isMovable())
        return;
    m_dMouse = along(pEvent->position());
    if (thumbRect().contains(pEvent->position().toPoint())) {
        setHeld(true);
        return;
    }
    m_bPagingUp = m_dMouse > along(QRectF(thumbRect()).center());
    pageTowardMouse();
    m_repeat.start(FIRST_REPEAT);
}

// A page at a time, until the thumb lies under the mouse.
void CTrackBar::pageTowardMouse()
{
    const QRectF thumb = thumbRect();
    const double dLow = along(isVertical() ? thumb.bottomLeft() : thumb.topLeft());
    const double dHigh = along(isVertical() ? thumb.topLeft() : thumb.topRight());
    if (m_bPagingUp ? m_dMouse > dHigh : m_dMouse < dLow)
        moveBy(m_bPagingUp ? pageSteps() : -pageSteps());
    else
        m_repeat.stop();
}

void CTrackBar::mouseMoveEvent(QMouseEvent* pEvent)
{
    const double dMouse = along(pEvent->position());
    if (isHeld())
        dragBy((dMouse - m_dMouse) * HIGHEST / travel() * fineness(pEvent->modifiers()));
    m_dMouse = dMouse;
}

void CTrackBar::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    m_repeat.stop();
    setHeld(false);
}

void CTrackBar::lookChanged()
{
    m_repeat.stop();
    CPositionControl::lookChanged();
}

// The part of the widget between two positions along the track, and two distances from its middle line.
QRectF CTrackBar::span(double dFrom, double dTo, double dLeft, double dRight) const
{
    const double dMiddle = (isVertical() ? width() : height()) / 2.0;
    const double dStart = pixelOf(dFrom);
    const double dEnd = pixelOf(dTo);
    const QRectF result = isVertical()
                              ? QRectF(QPointF(dMiddle + dLeft, dStart), QPointF(dMiddle + dRight, dEnd))
                              : QRectF(QPointF(dStart, dMiddle + dLeft), QPointF(dEnd, dMiddle + dRight));
    return result.normalized();
}

void CTrackBar::paintTrack(QPainter& painter) const
{
    const CThemeColours& colours = CTheme::instance().colours();
    const QRectF groove = span(LOWEST, HIGHEST, -GROOVE / 2.0, GROOVE / 2.0);
    if (!isMovable()) {
        paintBox(painter, groove, GROOVE / 2.0, QColor(), colours.m_emptySlot);
        return;
    }
    paintBox(painter, groove, GROOVE / 2.0, colours.m_well, colours.m_line);
    paintBox(painter, span(LOWEST, position(), -GROOVE / 2.0, GROOVE / 2.0), GROOVE / 2.0, roleColour(look()),
             QColor());
}

// Quarters of the travel on one side, the initial position on both.
void CTrackBar::paintMarks(QPainter& painter) const
{
    constexpr int QUARTERS = 4;
    constexpr double NEAR = GROOVE / 2.0 + 2.0;
    constexpr double FAR = NEAR + 4.0;
    const CThemeColours& colours = CTheme::instance().colours();
    const double dLine = hairline(painter);
    const auto mark = [&](double dPosition, double dWidth, double dLeft, double dRight,
                          const QColor& colour) {
        QRectF line = span(dPosition, dPosition, dLeft, dRight);
        line = isVertical() ? line.adjusted(0, -dWidth / 2, 0, dWidth / 2)
                            : line.adjusted(-dWidth / 2, 0, dWidth / 2, 0);
        painter.fillRect(onPixels(painter, line), colour);
    };
    for (int nQuarter = 0; m_bQuarterMarks && nQuarter <= QUARTERS; ++nQuarter)
        mark(nQuarter * HIGHEST / QUARTERS, dLine, -FAR, -NEAR, colours.m_line);
    if (initialPosition() < 0)
        return;
    mark(initialPosition(), 2.0, -FAR, -NEAR, colours.m_quietText);
    mark(initialPosition(), 2.0, NEAR, FAR, colours.m_quietText);
}

void CTrackBar::paintThumb(QPainter& painter) const
{
    constexpr double HOVER = 0.12;
    constexpr double HELD = 0.22;
    constexpr double NOTCH_WIDTH = 2.0;
    constexpr double NOTCH_EDGE = 4.0;
    const CThemeColours& colours = CTheme::instance().colours();
    const QRectF thumb = thumbRect();
    const double dLight = isHeld() ? HELD : underMouse() ? HOVER : 0.0;
    paintBox(painter, thumb, CTheme::RADIUS - 1, mixed(colours.m_raised, colours.m_text, dLight),
             isHeld() ? roleColour(look()) : colours.m_line);
    const QPointF middle = thumb.center();
    const double dHalf = NOTCH_WIDTH / 2;
    const QRectF notch = isVertical() ? QRectF(thumb.left() + NOTCH_EDGE, middle.y() - dHalf,
                                               thumb.width() - 2 * NOTCH_EDGE, NOTCH_WIDTH)
                                      : QRectF(middle.x() - dHalf, thumb.top() + NOTCH_EDGE, NOTCH_WIDTH,
                                               thumb.height() - 2 * NOTCH_EDGE);
    painter.fillRect(onPixels(painter, notch), roleColour(look()));
}

void CTrackBar::paintEvent(QPaintEvent* /*pEvent*/)
{
    QPainter painter(this);
    paintTrack(painter);
    if (isMovable()) {
        paintMarks(painter);
        paintThumb(painter);
    }
    if (hasFocus())
        paintFocus(painter, rect());
}

} // namespace velmora
