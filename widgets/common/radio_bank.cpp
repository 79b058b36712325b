#include "widgets/common/radio_bank.h"

#include "widgets/common/instrument_paint.h"
#include "widgets/common/radio_bank_button.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

namespace velmora {

CRadioBank::CRadioBank(QWidget* pParent) : CSlotControl<QWidget>(pParent)
{
    installAccessibleInstruments();
    for (int nItem = 0; nItem < BUTTONS; ++nItem) {
        auto* pButton = new CRadioBankButton(*this);
        pButton->hide();
        m_buttons[static_cast<std::size_t>(nItem)] = pButton;
        connect(pButton, &QRadioButton::clicked, this, [this, nItem] {
            arrangeTabStop();
            emit chosen(nItem);
        });
    }
    arrangeTabStop();
}

void CRadioBank::setLabel(const QString& sLabel)
{
    m_sLabel = sLabel;
    place();
    update();
}

void CRadioBank::setItems(const QStringList& items)
{
    m_nCount = static_cast<int>(std::min<qsizetype>(items.size(), BUTTONS));
    for (int nItem = 0; nItem < BUTTONS; ++nItem) {
        QRadioButton* pButton = m_buttons[static_cast<std::size_t>(nItem)];
        pButton->setText(nItem < m_nCount ? items[nItem] : QString());
        pButton->setVisible(nItem < m_nCount);
    }
    setSelected(selected() < m_nCount ? selected() : -1);
}

QString CRadioBank::item(int nItem) const
{
    return nItem >= 0 && nItem < m_nCount ? m_buttons[static_cast<std::size_t>(nItem)]->text() : QString();
}

// Exclusive buttons would not let go of the last one.
void CRadioBank::setSelected(int nItem)
{
    for (CRadioBankButton* pButton : m_buttons)
        pButton->setAutoExclusive(false);
    for (int nButton = 0; nButton < BUTTONS; ++nButton)
        m_buttons[static_cast<std::size_t>(nButton)]->setChecked(nButton == nItem && nItem < m_nCount);
    for (CRadioBankButton* pButton : m_buttons)
        pButton->setAutoExclusive(true);
    arrangeTabStop();
    announceValue(this);
}

int CRadioBank::selected() const
{
    const auto button =
        std::ranges::find_if(m_buttons, [](const auto* pButton) { return pButton->isChecked(); });
    return button == m_buttons.end() ? -1 : static_cast<int>(button - m_buttons.begin());
}

// The pressed button, or else the first, is where Tab leads.
void CRadioBank::arrangeTabStop()
{
    const int nStop = std::max(0, selected());
    for (int nItem = 0; nItem < BUTTONS; ++nItem)
        m_buttons[static_cast<std::size_t>(nItem)]->setFocusPolicy(nItem == nStop ? Qt::StrongFocus
                                                                                  : Qt::ClickFocus);
    setFocusProxy(m_buttons[static_cast<std::size_t>(nStop)]);
}

QAccessible::Role CRadioBank::accessibleRole() const
{
    return QAccessible::Grouping;
}

QString CRadioBank::accessibleFallbackName() const
{
    return m_sLabel;
}

QString CRadioBank::accessibleValueText() const
{
    return item(selected());
}

int CRadioBank::labelHeight() const
{
    return m_sLabel.isEmpty() ? 0 : fontMetrics().height() + 2;
}

QRect CRadioBank::boxRect() const
{
    return rect().adjusted(0, labelHeight(), 0, 0);
}

// Rows keep their height when there are fewer than eight.
void CRadioBank::place()
{
    const QRect box = boxRect().adjusted(1, 2, -1, -2);
    for (int nItem = 0; nItem < BUTTONS; ++nItem) {
        const int nTop = box.top() + box.height() * nItem / BUTTONS;
        const int nBottom = box.top() + box.height() * (nItem + 1) / BUTTONS;
        m_buttons[static_cast<std::size_t>(nItem)]->setGeometry(box.left(), nTop, box.width(),
                                                                nBottom - nTop);
    }
}

QSize CRadioBank::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    int nText = metrics.horizontalAdvance(QStringLiteral("Radio88"));
    for (const CRadioBankButton* pButton : m_buttons)
        nText = std::max(nText, metrics.horizontalAdvance(pButton->text()));
    return {nText + metrics.height() + 3 * CRadioBankButton::INSET,
            labelHeight() + BUTTONS * (metrics.height() + 4) + 4};
}

QSize CRadioBank::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(QStringLiteral("Radio88")) + metrics.height() +
                3 * CRadioBankButton::INSET,
            labelHeight() + BUTTONS * metrics.height() + 4};
}

void CRadioBank::lookChanged()
{
    update();
    for (CRadioBankButton* pButton : m_buttons) {
        if (pButton)
            pButton->update();
    }
}

void CRadioBank::paintEvent(QPaintEvent* /*pEvent*/)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setFont(font());
    if (!m_sLabel.isEmpty())
        paintText(painter, QRectF(0, 0, width(), labelHeight()), Qt::AlignLeft | Qt::AlignVCenter,
                  captionColour(look()), m_sLabel);
    paintBox(painter, boxRect(), CTheme::RADIUS, QColor(), isUsable() ? colours.m_line : colours.m_emptySlot);
}

void CRadioBank::resizeEvent(QResizeEvent* /*pEvent*/)
{
    place();
}

void CRadioBank::changeEvent(QEvent* pEvent)
{
    QWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::FontChange)
        place();
}

} // namespace velmora
