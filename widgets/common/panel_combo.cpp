#include "widgets/common/panel_combo.h"

#include "widgets/common/instrument_paint.h"

#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSignalBlocker>
#include <QToolTip>
#include <QWheelEvent>

namespace velmora {

namespace {

constexpr int INSET = 6;
constexpr int ARROW = 8; // width

} // namespace

CPanelCombo::CPanelCombo(QWidget* pParent) : CSlotControl<QComboBox>(pParent)
{
    installAccessibleInstruments();
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(this, &QComboBox::activated, this, [this](int nItem) {
        if (m_bSetupState)
            emit setupRequested();
        else
            emit chosen(nItem);
    });
    setSetupState();
}

void CPanelCombo::setLabel(const QString& sLabel)
{
    m_sLabel = sLabel;
    updateGeometry();
    update();
}

void CPanelCombo::fill(const QStringList& items, int nItem)
{
    const QSignalBlocker blocker(this);
    clear();
    addItems(items);
    setCurrentIndex(nItem);
    update();
}

void CPanelCombo::setItems(const QStringList& items, int nItem)
{
    m_bSetupState = false;
    fill(items, nItem);
}

void CPanelCombo::setSelected(int nItem)
{
    const QSignalBlocker blocker(this);
    setCurrentIndex(nItem);
    update();
}

void CPanelCombo::setSetupState()
{
    m_bSetupState = true;
    fill({QStringLiteral("Click to Setup")}, 0);
}

QAccessible::Role CPanelCombo::accessibleRole() const
{
    return QAccessible::ComboBox;
}

int CPanelCombo::labelWidth() const
{
    return m_sLabel.isEmpty() ? 0 : fontMetrics().horizontalAdvance(m_sLabel) + 2 * INSET;
}

QSize CPanelCombo::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {labelWidth() + metrics.horizontalAdvance(QStringLiteral("Click to Setup")) + ARROW + 3 * INSET,
            metrics.height() + 2 * INSET};
}

QSize CPanelCombo::minimumSizeHint() const
{
    return {labelWidth() + 8 * ARROW, fontMetrics().height() + 4};
}

bool CPanelCombo::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip && toolTip().isEmpty() &&
        isTooLong(font(), currentText(), width() - labelWidth() - ARROW - 3 * INSET)) {
        QToolTip::showText(static_cast<QHelpEvent*>(pEvent)->globalPos(), currentText(), this);
        return true;
    }
    return CSlotControl<QComboBox>::event(pEvent);
}

void CPanelCombo::keyPressEvent(QKeyEvent* pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        showPopup();
        return;
    default:
        break;
    }
    const bool bOpens = pEvent->key() == Qt::Key_F4 ||
                        (pEvent->key() == Qt::Key_Down && pEvent->modifiers().testFlag(Qt::AltModifier));
    if (m_bSetupState && !bOpens)
        pEvent->ignore(); // a letter or an arrow must not choose the only entry
    else
        CSlotControl<QComboBox>::keyPressEvent(pEvent);
}

void CPanelCombo::wheelEvent(QWheelEvent* pEvent)
{
    if (!m_bSetupState)
        CSlotControl<QComboBox>::wheelEvent(pEvent);
    pEvent->accept(); // nothing behind the control is to scroll
}

void CPanelCombo::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        CSlotControl<QComboBox>::mousePressEvent(pEvent);
    else
        pEvent->ignore();
}

void CPanelCombo::paintEvent(QPaintEvent* /*pEvent*/)
{
    constexpr double HOVER = 0.08;
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setFont(font());
    const bool bQuiet = m_bSetupState || !isMovable();
    const QColor fill = bQuiet ? QColor() : mixed(colours.m_well, colours.m_text, underMouse() ? HOVER : 0.0);
    paintBox(painter, rect(), CTheme::RADIUS, fill, bQuiet ? colours.m_emptySlot : colours.m_line);

    const int nLabel = labelWidth();
    if (nLabel > 0) {
        const QRectF label(INSET, 0, nLabel - INSET, height());
        paintText(painter, label, Qt::AlignLeft | Qt::AlignVCenter,
                  bQuiet ? colours.m_quietText : roleColour(look()), m_sLabel);
    }
    const QRectF text = QRectF(rect()).adjusted(nLabel + INSET / 2.0, 0, -ARROW - 2 * INSET, 0);
    paintText(painter, text, Qt::AlignLeft | Qt::AlignVCenter, bQuiet ? colours.m_quietText : colours.m_text,
              currentText());

    const QPointF tip(width() - INSET - ARROW / 2.0, height() / 2.0 + ARROW / 4.0);
    QPainterPath arrow(tip);
    arrow.lineTo(tip + QPointF(-ARROW / 2.0, -ARROW / 2.0));
    arrow.lineTo(tip + QPointF(ARROW / 2.0, -ARROW / 2.0));
    arrow.closeSubpath();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(arrow, bQuiet ? colours.m_quietText : colours.m_text);
    if (hasFocus())
        paintFocus(painter, rect());
}

} // namespace velmora
