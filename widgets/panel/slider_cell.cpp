#include "widgets/panel/slider_cell.h"

#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/common/track_bar.h"
#include "widgets/common/value_box.h"
#include "widgets/panel/panel_label.h"

#include <QCoreApplication>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>

namespace velmora {

namespace {

// Of the panel's font: the value stands with its units in the box, if need be in smaller print.
constexpr double VALUE_TEXT = 0.9;
constexpr double LONG_VALUE_TEXT = 0.8;
constexpr int BOX_INSETS = 8; // logical pixels

} // namespace

CSliderCell::CSliderCell(UINT uSlot, QWidget* pParent)
    : CSlotCell(uSlot, pParent), m_pTrackBar(new CTrackBar(this)), m_pName(new CPanelLabel(this)),
      m_pValueBox(new CValueBox(this)), m_pUnits(new CPanelLabel(this))
{
    m_pName->setMaxLines(2);
    m_pName->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_pUnits->setLook(CPanelLabel::ELook::Quiet);
    m_pUnits->setFontFactor(0.9);
    m_pUnits->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    leaveMenuToPanel(m_pValueBox);

    connect(m_pTrackBar, &CTrackBar::moved, this, &CSlotCell::moved);
    connect(m_pTrackBar, &CTrackBar::resetRequested, this, &CSlotCell::resetRequested);
    connect(m_pValueBox, &CValueBox::committed, this, &CSlotCell::textEntered);
}

void CSliderCell::showState(const CPanelSlotState& state, ESlotRole eRole)
{
    if (eRole != m_eRole) {
        m_eRole = eRole;
        update();
    }
    const QString sName = qs(state.m_sName);
    const QString sValue = qs(state.m_sValue);
    const QString sSpoken = spokenName(state);

    m_pName->setText(sName);
    m_pName->setLook(state.m_bAssigned ? CPanelLabel::ELook::Strong : CPanelLabel::ELook::Quiet);
    m_pUnits->setText(state.m_bAssigned ? qs(state.m_sUnits) : QString());

    m_pTrackBar->setRole(eRole);
    m_pTrackBar->setAccessibleName(sSpoken);
    m_pTrackBar->setValueText(sValue);
    m_pTrackBar->setInitialPosition(state.m_bAssigned ? state.m_nInitialPos : -1);
    m_pTrackBar->setPosition(state.m_bAssigned ? state.m_nPos : 0);

    m_pValueBox->setVisible(state.m_bAssigned);
    m_pValueBox->setRole(eRole);
    m_pValueBox->setReadOnly(!state.m_bValueWritable);
    m_pValueBox->setAccessibleName(sSpoken + QStringLiteral(", value"));
    m_pValueBox->setValue(sValue);
    fitValue();
}

QWidget* CSliderCell::focusTarget()
{
    return m_pTrackBar;
}

// A slot that stands for nothing needs no key; in the box the arrows along the line move the cursor.
bool CSliderCell::usesArrow(const QWidget& focused, Qt::Key eKey) const
{
    const bool bAlongLine = eKey == Qt::Key_Left || eKey == Qt::Key_Right;
    if (&focused == m_pValueBox)
        return bAlongLine;
    return m_eRole != ESlotRole::Empty && !bAlongLine;
}

void CSliderCell::setTabStop(bool bTabStop)
{
    CSlotCell::setTabStop(bTabStop);
    m_pValueBox->setFocusPolicy(bTabStop ? Qt::StrongFocus : Qt::ClickFocus);
}

bool CSliderCell::isWritable() const
{
    return m_eRole != ESlotRole::Empty && !m_pValueBox->isReadOnly();
}

void CSliderCell::editValue()
{
    m_pValueBox->edit();
}

void CSliderCell::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::FontChange)
        place();
    CSlotCell::changeEvent(pEvent);
}

void CSliderCell::resizeEvent(QResizeEvent*)
{
    place();
}

void CSliderCell::place()
{
    constexpr int PAD = 3;
    const int nBar = std::clamp(width() / 5, 18, 44);
    m_pTrackBar->setGeometry(PAD, PAD, nBar, height() - 2 * PAD);

    const int nLeft = PAD + nBar + PAD;
    const int nWidth = width() - nLeft - PAD;
    const int nLine = fontMetrics().height();
    const int nBox = std::max(nLine + 6, height() / 5);
    const int nBoxTop = std::clamp((height() - nBox) / 2 + nLine / 4, 2 * nLine, height() - nBox - nLine);
    m_pName->setGeometry(nLeft, PAD, nWidth, nBoxTop - PAD);
    m_pValueBox->setGeometry(nLeft, nBoxTop, nWidth, nBox);
    m_pUnits->setGeometry(nLeft + 2, nBoxTop + nBox + 1, nWidth - 2, nLine);
    fitValue();
}

void CSliderCell::fitValue()
{
    QFont figures = font();
    figures.setPointSizeF(font().pointSizeF() * VALUE_TEXT);
    if (QFontMetrics(figures).horizontalAdvance(m_pValueBox->value()) > m_pValueBox->width() - BOX_INSETS)
        figures.setPointSizeF(font().pointSizeF() * LONG_VALUE_TEXT);
    if (figures != m_pValueBox->font())
        m_pValueBox->setFont(figures);
}

// The wheel moves the slider wherever it turns over the slot.
void CSliderCell::wheelEvent(QWheelEvent* pEvent)
{
    QCoreApplication::sendEvent(m_pTrackBar, pEvent);
}

void CSliderCell::paintEvent(QPaintEvent*)
{
    const CThemeColours& colours = CTheme::instance().colours();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const bool bEmpty = m_eRole == ESlotRole::Empty;
    painter.setPen(QPen(bEmpty ? colours.m_emptySlot : colours.m_line, 1.0));
    painter.setBrush(bEmpty ? QBrush(Qt::NoBrush) : QBrush(colours.m_window));
    painter.drawRoundedRect(frame, CTheme::RADIUS, CTheme::RADIUS);
    if (bEmpty)
        return;
    // A bar along the top edge tells from afar what is in use.
    painter.setPen(Qt::NoPen);
    painter.setBrush(roleColour(m_eRole));
    painter.drawRoundedRect(QRectF(1.0, 1.0, width() - 2.0, 3.0), 1.5, 1.5);
}

} // namespace velmora
