#include "widgets/common/rotary_wheel.h"

#include "widgets/common/instrument_paint.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmora {

namespace {

constexpr double EDGE = 3.0;          // room for the ring of the focus
constexpr double DRAG_LENGTH = 200.0; // pixels for the knob's whole travel
constexpr double DEAD_RADIUS = 4.0;   // around the middle, where a direction means nothing
constexpr double FIRST_ANGLE = 225.0; // of the knob's low end: degrees, counted to the left from 3 o'clock
constexpr double KNOB_TRAVEL = 270.0; // degrees

// A point of a circle; degrees to the left from 3 o'clock.
QPointF pointAt(const QPointF& middle, double dRadius, double dDegrees)
{
    const double dAngle = dDegrees * std::numbers::pi / 180.0;
    return middle + QPointF(std::cos(dAngle), -std::sin(dAngle)) * dRadius;
}

QRectF circle(const QPointF& middle, double dRadius)
{
    return {middle.x() - dRadius, middle.y() - dRadius, 2 * dRadius, 2 * dRadius};
}

} // namespace

CRotaryWheel::CRotaryWheel(EWheelKind eKind, QWidget* pParent) : CPositionControl(pParent), m_eKind(eKind) {}

void CRotaryWheel::setItem(int nItem, int nItems)
{
    m_nItem = nItem;
    m_nItems = nItems;
    announceValue(this);
}

QAccessible::Role CRotaryWheel::accessibleRole() const
{
    return QAccessible::Dial;
}

QString CRotaryWheel::accessibleValueText() const
{
    if (!isEndless() || !valueText().isEmpty())
        return CPositionControl::accessibleValueText();
    return m_nItems > 0 ? QStringLiteral("%1 / %2").arg(m_nItem + 1).arg(m_nItems) : QString();
}

std::optional<IAccessibleInstrument::CRange> CRotaryWheel::accessibleRange() const
{
    if (!isEndless())
        return CPositionControl::accessibleRange();
    return CRange{0.0, std::max(0.0, m_nItems - 1.0), 1.0, static_cast<double>(m_nItem)};
}

void CRotaryWheel::setAccessibleValue(double dValue)
{
    if (!isEndless())
        CPositionControl::setAccessibleValue(dValue);
    else if (isMovable())
        moveBy(std::round(dValue) - m_nItem);
}

void CRotaryWheel::moveBy(double dSteps)
{
    if (!isEndless()) {
        CPositionControl::moveBy(dSteps);
        return;
    }
    // What a drag or a smooth wheel has gathered takes nothing from whole detents.
    m_dPartDetent += dSteps - std::trunc(dSteps);
    const double dGathered = std::trunc(m_dPartDetent);
    const double dWhole = std::trunc(dSteps) + dGathered;
    m_dPartDetent -= dGathered;
    if (dWhole == 0.0)
        return;
    m_dTurned += dWhole;
    update();
    emit turned(static_cast<int>(dWhole));
}

void CRotaryWheel::moveToEnd(bool bHighest)
{
    if (!isEndless())
        CPositionControl::moveToEnd(bHighest);
    else if (m_nItems > 0)
        moveBy((bHighest ? m_nItems - 1 : 0) - m_nItem);
}

double CRotaryWheel::wheelSteps() const
{
    return isEndless() ? 1.0 : CPositionControl::wheelSteps();
}

double CRotaryWheel::pageSteps() const
{
    constexpr double PAGE_OF_DETENTS = 4.0;
    return isEndless() ? PAGE_OF_DETENTS : CPositionControl::pageSteps();
}

double CRotaryWheel::fineness(Qt::KeyboardModifiers modifiers) const
{
    return isEndless() ? 1.0 : CPositionControl::fineness(modifiers);
}

QSize CRotaryWheel::sizeHint() const
{
    return isEndless() ? QSize(110, 110) : QSize(56, 56);
}

QSize CRotaryWheel::minimumSizeHint() const
{
    return isEndless() ? QSize(60, 60) : QSize(36, 36);
}

QRectF CRotaryWheel::disc() const
{
    return circle(QRectF(rect()).center(), std::min(width(), height()) / 2.0 - EDGE);
}

// The direction from the middle in detents; none close to it.
std::optional<double> CRotaryWheel::detentsAt(const QPointF& point) const
{
    const QPointF arm = point - disc().center();
    if (std::hypot(arm.x(), arm.y()) < DEAD_RADIUS)
        return std::nullopt;
    return std::atan2(arm.x(), -arm.y()) / (2 * std::numbers::pi) * DETENTS;
}

void CRotaryWheel::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    if (!isMovable())
        return;
    m_mouse = pEvent->position();
    m_dPartDetent = 0.0;
    setHeld(true);
}

void CRotaryWheel::mouseMoveEvent(QMouseEvent* pEvent)
{
    const QPointF old = m_mouse;
    if (!isHeld())
        return;
    m_mouse = pEvent->position();
    if (!isEndless()) {
        dragBy((old.y() - m_mouse.y()) * HIGHEST / DRAG_LENGTH * fineness(pEvent->modifiers()));
        return;
    }
    const auto dFrom = detentsAt(old);
    const auto dTo = detentsAt(m_mouse);
    if (dFrom && dTo)
        moveBy(std::remainder(*dTo - *dFrom, DETENTS)); // the shorter way around
}

void CRotaryWheel::mouseReleaseEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    m_dPartDetent = 0.0;
    setHeld(false);
}

void CRotaryWheel::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    if (isEndless())
        mousePressEvent(pEvent); // a quick second turn, not a reset
    else
        CPositionControl::mouseDoubleClickEvent(pEvent);
}

void CRotaryWheel::paintEvent(QPaintEvent* /*pEvent*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEndless())
        paintWheel(painter, disc());
    else
        paintKnob(painter, disc());
    if (hasFocus())
        paintFocus(painter, rect());
}

QColor CRotaryWheel::faceColour() const
{
    constexpr double HOVER = 0.08;
    constexpr double HELD = 0.16;
    const CThemeColours& colours = CTheme::instance().colours();
    if (!isMovable())
        return {};
    return mixed(colours.m_raised, colours.m_text, isHeld() ? HELD : underMouse() ? HOVER : 0.0);
}

// A disc with a grip for the finger, and a mark at each detent of the rim.
void CRotaryWheel::paintWheel(QPainter& painter, const QRectF& disc) const
{
    constexpr double FACE = 0.86; // shares of the radius
    constexpr double GRIP_AT = 0.56;
    constexpr double GRIP = 0.17;
    const CThemeColours& colours = CTheme::instance().colours();
    const QColor quiet = isMovable() ? colours.m_line : colours.m_emptySlot;
    const QPointF middle = disc.center();
    const double dRadius = disc.width() / 2;
    painter.setPen(QPen(quiet, 1.0));
    for (int nDetent = 0; nDetent < DETENTS; ++nDetent) {
        const double dDegrees = 360.0 * nDetent / DETENTS;
        painter.drawLine(pointAt(middle, dRadius * (FACE + 0.06), dDegrees),
                         pointAt(middle, dRadius, dDegrees));
    }
    const double dFace = dRadius * FACE;
    paintBox(painter, circle(middle, dFace), dFace, faceColour(), quiet);
    const QPointF gripAt = pointAt(middle, dRadius * GRIP_AT, 90.0 - 360.0 * m_dTurned / DETENTS);
    const QColor grip = isMovable() ? colours.m_well : QColor();
    painter.setPen(QPen(roleColour(look()), isMovable() ? 2.0 : 1.0));
    painter.setBrush(grip.isValid() ? QBrush(grip) : QBrush(Qt::NoBrush));
    painter.drawEllipse(circle(gripAt, dRadius * GRIP));
}

void CRotaryWheel::paintKnob(QPainter& painter, const QRectF& disc) const
{
    constexpr double ARC = 4.0;   // width
    constexpr double FACE = 0.72; // shares of the radius
    constexpr double HAND = 0.2;
    constexpr int PARTS = 16; // Qt's arcs count in sixteenths of a degree
    const CThemeColours& colours = CTheme::instance().colours();
    const bool bQuiet = !isMovable();
    const double dSpan = KNOB_TRAVEL * position() / HIGHEST;
    const auto arc = [&](const QColor& colour, double dWidth, double dDegrees) {
        painter.setPen(QPen(colour, dWidth, Qt::SolidLine, Qt::FlatCap));
        painter.drawArc(disc.adjusted(ARC / 2, ARC / 2, -ARC / 2, -ARC / 2),
                        static_cast<int>(FIRST_ANGLE * PARTS), static_cast<int>(-dDegrees * PARTS));
    };
    arc(bQuiet ? colours.m_emptySlot : colours.m_line, bQuiet ? 1.0 : ARC, KNOB_TRAVEL);
    if (!bQuiet)
        arc(roleColour(look()), ARC, dSpan);
    const QPointF middle = disc.center();
    const double dFace = disc.width() / 2 * FACE;
    paintBox(painter, circle(middle, dFace), dFace, faceColour(),
             bQuiet ? colours.m_emptySlot : colours.m_line);
    if (bQuiet)
        return;
    painter.setPen(QPen(roleColour(look()), 2.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(pointAt(middle, dFace * HAND, FIRST_ANGLE - dSpan),
                     pointAt(middle, dFace - 3.0, FIRST_ANGLE - dSpan));
}

} // namespace velmora
