#include "widgets/common/radio_bank_button.h"

#include "widgets/common/instrument_paint.h"
#include "widgets/common/radio_bank.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace velmora {

CRadioBankButton::CRadioBankButton(CRadioBank& bank) : QRadioButton(&bank), m_bank(bank)
{
    setAttribute(Qt::WA_Hover);
}

bool CRadioBankButton::hitButton(const QPoint& point) const
{
    return m_bank.isUsable() && rect().contains(point);
}

void CRadioBankButton::keyPressEvent(QKeyEvent* pEvent)
{
    if (m_bank.isUsable())
        QRadioButton::keyPressEvent(pEvent);
    else
        pEvent->ignore();
}

bool CRadioBankButton::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip && isTooLong(font(), text(), textRect().width())) {
        QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(), text(), this);
        return true;
    }
    return QRadioButton::event(pEvent);
}

int CRadioBankButton::lampSize() const
{
    return std::min(height() - 2, fontMetrics().height() * 3 / 4);
}

QRectF CRadioBankButton::textRect() const
{
    return QRectF(rect()).adjusted(INSET + lampSize() + INSET, 0, -INSET, 0);
}

void CRadioBankButton::paintEvent(QPaintEvent* /*pEvent*/)
{
    constexpr double HOVER = 0.06;
    constexpr double DOT = 0.25; // from the lamp's edge
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setFont(font());
    const bool bQuiet = !m_bank.isUsable();
    if (!bQuiet && underMouse())
        painter.fillRect(rect(), mixed(colours.m_panel, colours.m_text, HOVER));
    const int nLamp = lampSize();
    const QRectF lamp(INSET, (height() - nLamp) / 2, nLamp, nLamp);
    paintBox(painter, lamp, nLamp / 2.0, bQuiet ? QColor() : colours.m_well,
             bQuiet        ? colours.m_emptySlot
             : isChecked() ? roleColour(m_bank.look())
                           : colours.m_line);
    if (isChecked() && !bQuiet) {
        const double dInset = nLamp * DOT;
        const QRectF dot = lamp.adjusted(dInset, dInset, -dInset, -dInset);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(roleColour(m_bank.look()));
        painter.drawEllipse(dot);
    }
    paintText(painter, textRect(), Qt::AlignLeft | Qt::AlignVCenter,
              bQuiet ? colours.m_quietText : colours.m_text, text());
    if (hasFocus())
        paintFocus(painter, QRectF(rect()).adjusted(1, 0, -1, 0));
}

} // namespace velmora
