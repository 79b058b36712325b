#include "widgets/common/instrument_paint.h"

#include "widgets/common/theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr double FOCUS_WIDTH = 1.5;
constexpr int SMALLEST_FONT = 9; // logical pixels

double deviceScale(const QPainter& painter)
{
    return std::max(1.0, painter.deviceTransform().m11());
}

} // namespace

QRectF onPixels(const QPainter& painter, const QRectF& rect)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRectF device = toDevice.mapRect(rect);
    const QPointF topLeft(std::round(device.left()), std::round(device.top()));
    const QPointF bottomRight(std::round(device.right()), std::round(device.bottom()));
    return toDevice.inverted().mapRect(QRectF(topLeft, bottomRight));
}

double hairline(const QPainter& painter)
{
    const double dScale = deviceScale(painter);
    return std::floor(dScale) / dScale;
}

void paintBox(QPainter& painter, const QRectF& rect, double dRadius, const QColor& fill, const QColor& line)
{
    const double dLine = line.isValid() ? hairline(painter) : 0.0;
    const double dInset = dLine / 2.0;
    const QRectF box = onPixels(painter, rect).adjusted(dInset, dInset, -dInset, -dInset);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(line.isValid() ? QPen(line, dLine) : QPen(Qt::NoPen));
    painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(box, dRadius, dRadius);
    painter.restore();
}

void paintFocus(QPainter& painter, const QRectF& rect, const QColor& colour)
{
    const double dInset = FOCUS_WIDTH / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour.isValid() ? colour : CTheme::instance().colours().m_accent, FOCUS_WIDTH));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(dInset, dInset, -dInset, -dInset), CTheme::RADIUS, CTheme::RADIUS);
    painter.restore();
}

void paintText(QPainter& painter, const QRectF& rect, int nAlignment, const QColor& colour,
               const QString& sText)
{
    const QFontMetricsF metrics(painter.font(), painter.device());
    painter.setPen(colour);
    painter.drawText(rect, nAlignment | Qt::TextSingleLine,
                     metrics.elidedText(sText, Qt::ElideRight, rect.width()));
}

bool isTooLong(const QFont& font, const QString& sText, double dWidth)
{
    return QFontMetricsF(font).horizontalAdvance(sText) > dWidth;
}

QColor mixed(const QColor& first, const QColor& second, double dShare)
{
    const auto mix = [dShare](int nFirst, int nSecond) {
        return static_cast<int>(std::lround(nFirst + (nSecond - nFirst) * dShare));
    };
    return {mix(first.red(), second.red()), mix(first.green(), second.green()),
            mix(first.blue(), second.blue())};
}

QFont fontOfHeight(QFont font, double dLineHeight)
{
    constexpr double LINE_PER_SIZE = 1.25;
    font.setPixelSize(std::max(SMALLEST_FONT, static_cast<int>(dLineHeight / LINE_PER_SIZE)));
    return font;
}

} // namespace velmora
