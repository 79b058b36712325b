#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace velmora {

// How the drawn controls draw: edges lie on whole device pixels at every scale. All sizes in logical pixels.

// A rectangle moved to the nearest device pixels.
[[nodiscard]] QRectF onPixels(const QPainter& painter, const QRectF& rect);

// A hairline's width: whole device pixels, at least one.
[[nodiscard]] double hairline(const QPainter& painter);

// A box with round corners and a hairline inside its edge. An invalid colour leaves out the filling or the
// line.
void paintBox(QPainter& painter, const QRectF& rect, double dRadius, const QColor& fill, const QColor& line);

// The mark of the focus: a ring just inside a rectangle, in the accent or another colour.
void paintFocus(QPainter& painter, const QRectF& rect, const QColor& colour = {});

// Text that does not fit ends in dots.
void paintText(QPainter& painter, const QRectF& rect, int nAlignment, const QColor& colour,
               const QString& sText);

// True if it would end in dots.
[[nodiscard]] bool isTooLong(const QFont& font, const QString& sText, double dWidth);

// A colour between two others: 0.0 is the first, 1.0 the second.
[[nodiscard]] QColor mixed(const QColor& first, const QColor& second, double dShare);

// The font in the size, in logical pixels, at which a line fills that height.
[[nodiscard]] QFont fontOfHeight(QFont font, double dLineHeight);

} // namespace velmora
