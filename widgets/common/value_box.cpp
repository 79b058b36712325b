#include "widgets/common/value_box.h"

#include "widgets/common/instrument_paint.h"

#include <QEvent>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPalette>
#include <QToolTip>

namespace velmora {

namespace {

constexpr int INSET = 2; // between edge and text

} // namespace

CValueBox::CValueBox(QWidget* pParent) : CSlotControl<QLineEdit>(pParent)
{
    setFrame(false);
    setAlignment(Qt::AlignCenter);
    setTextMargins(1, 0, 1, 0);
    CValueBox::lookChanged();
}

void CValueBox::setValue(const QString& sText)
{
    m_sValue = sText;
    if ((hasFocus() && isModified()) || text() == sText)
        return;
    const bool bAllSelected = hasFocus() && selectedText() == text();
    setText(sText);
    if (bAllSelected)
        selectAll();
    else if (!hasFocus())
        setCursorPosition(0); // of a text that is too long the beginning shows
}

void CValueBox::edit()
{
    setFocus(Qt::ShortcutFocusReason);
    selectAll();
}

QSize CValueBox::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(QStringLiteral("-20480.0 Hz")) + 4 * INSET,
            metrics.height() + 2 * INSET};
}

QSize CValueBox::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(QStringLiteral("0.00 dB")) + 4 * INSET, metrics.height() + 2};
}

// The ground is painted here.
void CValueBox::lookChanged()
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPalette own;
    own.setColor(QPalette::Base, Qt::transparent);
    own.setColor(QPalette::Text, look() == ESlotRole::Empty ? colours.m_quietText : colours.m_text);
    setPalette(own);
    update();
}

void CValueBox::commit()
{
    if (!isModified())
        return;
    setModified(false);
    emit committed(text());
}

bool CValueBox::event(QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::ShortcutOverride:
        // Escape belongs to the edit as long as there is one.
        if (static_cast<QKeyEvent*>(pEvent)->key() == Qt::Key_Escape && isModified()) {
            pEvent->accept();
            return true;
        }
        break;
    case QEvent::ToolTip:
        if (toolTip().isEmpty() && isTooLong(font(), text(), width() - 4 * INSET)) {
            QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(), text(), this);
            return true;
        }
        break;
    case QEvent::ReadOnlyChange:
        update();
        break;
    default:
        break;
    }
    return CSlotControl<QLineEdit>::event(pEvent);
}

void CValueBox::keyPressEvent(QKeyEvent* pEvent)
{
    if (pEvent->key() == Qt::Key_Escape && isModified()) {
        setText(m_sValue);
        selectAll();
        return;
    }
    if (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter)
        commit();
    CSlotControl<QLineEdit>::keyPressEvent(pEvent);
}

void CValueBox::focusOutEvent(QFocusEvent* pEvent)
{
    if (pEvent->reason() != Qt::PopupFocusReason)
        commit();
    CSlotControl<QLineEdit>::focusOutEvent(pEvent);
}

void CValueBox::paintEvent(QPaintEvent* pEvent)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    const bool bEmpty = look() == ESlotRole::Empty;
    const QColor fill = bEmpty || isReadOnly() ? QColor() : colours.m_well;
    paintBox(painter, rect(), CTheme::RADIUS - 1, fill,
             bEmpty || isReadOnly() ? colours.m_emptySlot : colours.m_line);
    if (hasFocus())
        paintFocus(painter, rect());
    painter.end();
    CSlotControl<QLineEdit>::paintEvent(pEvent);
}

} // namespace velmora
