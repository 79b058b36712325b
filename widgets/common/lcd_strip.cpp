#include "widgets/common/lcd_strip.h"

#include "widgets/common/instrument_paint.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace velmora {

namespace {

constexpr double INSET = 8.0;
constexpr double EDGE = 3.0; // above the first line and below the second

} // namespace

CLCDStrip::CLCDStrip(QWidget* pParent) : CSlotControl<QWidget>(pParent)
{
    installAccessibleInstruments();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void CLCDStrip::setLines(const QString& sFirst, const QString& sSecond)
{
    if (sFirst == m_sFirst && sSecond == m_sSecond)
        return;
    m_sFirst = sFirst;
    m_sSecond = sSecond;
    update();
    announceValue(this);
}

void CLCDStrip::setCounter(int nItem, int nItems)
{
    m_nItem = nItem;
    m_nItems = nItems;
    update();
}

QString CLCDStrip::counterText() const
{
    return m_nItems > 0 ? QStringLiteral("%1/%2").arg(m_nItem).arg(m_nItems) : QString();
}

QAccessible::Role CLCDStrip::accessibleRole() const
{
    return QAccessible::StaticText;
}

QString CLCDStrip::accessibleValueText() const
{
    QStringList parts{m_sFirst, m_sSecond, counterText()};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QFont CLCDStrip::lineFont() const
{
    const double dLine = (height() - 2 * EDGE) / 2;
    const double dWished = QFontMetricsF(font()).height() * 1.3;
    return fontOfHeight(CTheme::figures(), std::min(dLine, dWished));
}

double CLCDStrip::counterWidth() const
{
    const QString sCounter = counterText();
    return sCounter.isEmpty() ? 0.0 : QFontMetricsF(lineFont()).horizontalAdvance(sCounter) + INSET;
}

// The counter stands behind the first line.
QRectF CLCDStrip::lineRect(int nLine) const
{
    const double dLine = (height() - 2 * EDGE) / 2;
    const double dWidth = width() - 2 * INSET - (nLine == 0 ? counterWidth() : 0.0);
    return {INSET, EDGE + nLine * dLine, dWidth, dLine};
}

QSize CLCDStrip::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.averageCharWidth() * 28, static_cast<int>(2 * metrics.height() * 1.3 + 2 * EDGE)};
}

QSize CLCDStrip::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.averageCharWidth() * 14, static_cast<int>(2 * metrics.height() + 2 * EDGE)};
}

bool CLCDStrip::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip && toolTip().isEmpty() &&
        (isTooLong(lineFont(), m_sFirst, lineRect(0).width()) ||
         isTooLong(lineFont(), m_sSecond, lineRect(1).width()))) {
        QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(),
                           m_sFirst + QLatin1Char('\n') + m_sSecond, this);
        return true;
    }
    return CSlotControl<QWidget>::event(pEvent);
}

void CLCDStrip::paintEvent(QPaintEvent* /*pEvent*/)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setFont(lineFont());
    const bool bQuiet = look() == ESlotRole::Empty;
    paintBox(painter, rect(), CTheme::RADIUS, colours.m_display, colours.m_line);
    const QColor text = bQuiet ? colours.m_displayQuiet : colours.m_displayText;
    paintText(painter, lineRect(0), Qt::AlignLeft | Qt::AlignVCenter, text, m_sFirst);
    paintText(painter, lineRect(1), Qt::AlignLeft | Qt::AlignVCenter, text, m_sSecond);
    QRectF counter = lineRect(0);
    counter.setLeft(counter.right());
    counter.setRight(width() - INSET);
    paintText(painter, counter, Qt::AlignRight | Qt::AlignVCenter, colours.m_displayQuiet, counterText());
}

} // namespace velmora
