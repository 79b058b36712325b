#include "widgets/common/panel_button.h"

#include "widgets/common/instrument_paint.h"

#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace velmora {

namespace {

constexpr int INSET = 6;
constexpr double STATE_FONT = 0.85;

} // namespace

CPanelButton::CPanelButton(QWidget* pParent, EButtonKind eKind) : CSlotControl<QPushButton>(pParent)
{
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setKind(eKind);
}

void CPanelButton::setKind(EButtonKind eKind)
{
    m_eKind = eKind;
    setCheckable(eKind != EButtonKind::Push);
    update();
}

void CPanelButton::setStateText(const QString& sText)
{
    m_sStateText = sText;
    setAccessibleDescription(sText);
    updateGeometry();
    update();
}

QSize CPanelButton::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int nLines = m_sStateText.isEmpty() ? 1 : 2;
    const int nText = std::max(metrics.horizontalAdvance(text()), metrics.horizontalAdvance(m_sStateText));
    const int nLamp = m_eKind == EButtonKind::TwoState ? metrics.height() : 0;
    return {nText + nLamp + 3 * INSET, nLines * metrics.height() + 2 * INSET};
}

QSize CPanelButton::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(QStringLiteral("SW 1")) + 2 * INSET, metrics.height() + 4};
}

bool CPanelButton::hitButton(const QPoint& point) const
{
    return isMovable() && CSlotControl<QPushButton>::hitButton(point);
}

void CPanelButton::keyPressEvent(QKeyEvent* pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Space:
    case Qt::Key_Select:
        if (!isMovable()) {
            pEvent->ignore();
            return;
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (isMovable() && !pEvent->isAutoRepeat())
            click();
        return;
    default:
        break;
    }
    CSlotControl<QPushButton>::keyPressEvent(pEvent);
}

bool CPanelButton::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip && toolTip().isEmpty() && sizeHint().width() - INSET > width()) {
        QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(), text(), this);
        return true;
    }
    return CSlotControl<QPushButton>::event(pEvent);
}

// What is on is filled; a switch shows it by its lamp.
void CPanelButton::paintEvent(QPaintEvent* /*pEvent*/)
{
    constexpr double HOVER = 0.10;
    constexpr double PRESSED = 0.25;
    constexpr double RING_INSET = 2.0; // of the focus in a filled button
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setFont(font());
    const bool bQuiet = !isMovable();
    const bool bSwitch = m_eKind == EButtonKind::TwoState;
    const bool bFilled = !bQuiet && !bSwitch && (isDown() || isChecked());
    const double dLight = isDown() ? PRESSED : underMouse() ? HOVER : 0.0;
    const QColor face = bFilled ? roleColour(look()) : mixed(colours.m_raised, colours.m_text, dLight);
    paintBox(painter, rect(), CTheme::RADIUS, bQuiet ? QColor() : face,
             bQuiet ? colours.m_emptySlot : colours.m_line);

    QRectF place = QRectF(rect()).adjusted(INSET, 2, -INSET, -2);
    if (bSwitch && !bQuiet) {
        const int nLamp = std::min(height() - INSET, painter.fontMetrics().height()) * 3 / 4;
        const QRectF lamp(INSET, (height() - nLamp) / 2, nLamp, nLamp);
        paintBox(painter, lamp, nLamp / 2.0, isChecked() ? roleColour(look()) : colours.m_well,
                 colours.m_line);
        place.setLeft(lamp.right() + INSET);
    }
    const QColor text = bFilled ? roleTextColour(look()) : bQuiet ? colours.m_quietText : colours.m_text;
    paintCaption(painter, place, text);
    if (hasFocus() && bFilled)
        paintFocus(painter, QRectF(rect()).adjusted(RING_INSET, RING_INSET, -RING_INSET, -RING_INSET), text);
    else if (hasFocus())
        paintFocus(painter, rect());
}

void CPanelButton::paintCaption(QPainter& painter, const QRectF& place, const QColor& colour) const
{
    const double dLine = painter.fontMetrics().height();
    if (m_sStateText.isEmpty() || place.height() < 2 * dLine * STATE_FONT) {
        paintText(painter, place, Qt::AlignCenter, colour, text());
        return;
    }
    const double dMiddle = place.center().y();
    paintText(painter, {place.left(), dMiddle - dLine, place.width(), dLine}, Qt::AlignCenter, colour,
              text());
    QFont small = font();
    if (small.pixelSize() > 0)
        small.setPixelSize(static_cast<int>(small.pixelSize() * STATE_FONT));
    else
        small.setPointSizeF(small.pointSizeF() * STATE_FONT);
    painter.setFont(small);
    paintText(painter, {place.left(), dMiddle, place.width(), dLine}, Qt::AlignCenter, colour, m_sStateText);
}

} // namespace velmora
