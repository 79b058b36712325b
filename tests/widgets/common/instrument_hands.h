#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

namespace velmora {

// What hands do to a drawn control beyond QTest's clicks and keys.

inline void moveMouse(QWidget& widget, const QPointF& to, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, modifiers);
    QApplication::sendEvent(&widget, &move);
}

inline void drag(QWidget& widget, const QPoint& from, const QPoint& by,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::mousePress(&widget, Qt::LeftButton, modifiers, from);
    moveMouse(widget, from + by, modifiers);
    QTest::mouseRelease(&widget, Qt::LeftButton, modifiers, from + by);
}

// True if the control took the event.
inline bool turnWheel(QWidget& widget, int nNotches, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const QPointF middle = QRectF(widget.rect()).center();
    QWheelEvent wheel(middle, widget.mapToGlobal(middle), {}, QPoint(0, 120 * nNotches), Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &wheel);
    return wheel.isAccepted();
}

} // namespace velmora
