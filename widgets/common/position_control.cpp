#include "widgets/common/position_control.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr double NOTCH = 120.0; // of a wheel, in eighths of a degree

} // namespace

CPositionControl::CPositionControl(QWidget* pParent) : CSlotControl<QWidget>(pParent)
{
    installAccessibleInstruments();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
}

void CPositionControl::setPosition(int nPosition)
{
    nPosition = std::clamp(nPosition, LOWEST, HIGHEST);
    if (nPosition == m_nPosition)
        return; // what fine moves have gathered stays
    m_nPosition = nPosition;
    m_dExact = nPosition;
    update();
    announceValue(this);
}

void CPositionControl::setInitialPosition(int nPosition)
{
    m_nInitialPosition = std::min(nPosition, HIGHEST);
    update();
}

QAccessible::Role CPositionControl::accessibleRole() const
{
    return QAccessible::Slider;
}

QString CPositionControl::accessibleValueText() const
{
    if (!valueText().isEmpty())
        return valueText();
    return QStringLiteral("%1 %").arg(std::lround(100.0 * m_nPosition / HIGHEST));
}

std::optional<IAccessibleInstrument::CRange> CPositionControl::accessibleRange() const
{
    return CRange{LOWEST, HIGHEST, 1.0, static_cast<double>(m_nPosition)};
}

void CPositionControl::setAccessibleValue(double dValue)
{
    if (isMovable())
        moveTo(std::round(dValue));
}

void CPositionControl::moveTo(double dPosition)
{
    m_dExact = std::clamp<double>(dPosition, LOWEST, HIGHEST);
    const int nPosition = static_cast<int>(std::lround(m_dExact));
    if (nPosition == m_nPosition)
        return;
    m_nPosition = nPosition;
    update();
    emit moved(nPosition);
    announceValue(this);
}

void CPositionControl::moveBy(double dSteps)
{
    moveTo(m_dExact + dSteps);
}

void CPositionControl::moveToEnd(bool bHighest)
{
    moveTo(bHighest ? HIGHEST : LOWEST);
}

double CPositionControl::fineness(Qt::KeyboardModifiers modifiers) const
{
    return modifiers.testFlag(Qt::ShiftModifier) ? FINE : 1.0;
}

void CPositionControl::setHeld(bool bHeld)
{
    m_bHeld = bHeld;
    m_dDragged = m_dExact;
    update();
}

void CPositionControl::lookChanged()
{
    setHeld(false);
    CSlotControl<QWidget>::lookChanged();
}

void CPositionControl::dragBy(double dSteps)
{
    m_dDragged += dSteps;
    moveTo(m_dDragged);
}

void CPositionControl::wheelEvent(QWheelEvent* pEvent)
{
    pEvent->accept(); // nothing behind the control is to scroll
    if (!isMovable())
        return;
    // With Alt, and on some desktops with Shift, a wheel turns sideways.
    const QPoint delta = pEvent->angleDelta();
    const double dNotches = (delta.y() != 0 ? delta.y() : delta.x()) / NOTCH;
    moveBy(dNotches * wheelSteps() * fineness(pEvent->modifiers()));
}

void CPositionControl::keyPressEvent(QKeyEvent* pEvent)
{
    constexpr Qt::KeyboardModifiers OTHERS = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (!isMovable() || (pEvent->modifiers() & OTHERS)) {
        QWidget::keyPressEvent(pEvent);
        return;
    }
    switch (pEvent->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        moveBy(1.0);
        break;
    case Qt::Key_Down:
    case Qt::Key_Left:
        moveBy(-1.0);
        break;
    case Qt::Key_PageUp:
        moveBy(pageSteps());
        break;
    case Qt::Key_PageDown:
        moveBy(-pageSteps());
        break;
    case Qt::Key_Home:
        moveToEnd(false);
        break;
    case Qt::Key_End:
        moveToEnd(true);
        break;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        emit resetRequested();
        break;
    default:
        QWidget::keyPressEvent(pEvent);
        break;
    }
}

void CPositionControl::mouseDoubleClickEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->ignore();
        return;
    }
    if (isMovable())
        emit resetRequested();
}

void CPositionControl::changeEvent(QEvent* pEvent)
{
    QWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::EnabledChange)
        update();
}

} // namespace velmora
