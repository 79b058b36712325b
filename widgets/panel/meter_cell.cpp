#include "widgets/panel/meter_cell.h"

#include "widgets/common/led_meter.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/panel/panel_label.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

namespace velmora {

namespace {

constexpr double SMALL_TEXT = 0.88; // of the panel's font

} // namespace

CMeterCell::CMeterCell(UINT uSlot, QWidget* pParent)
    : CSlotCell(uSlot, pParent), m_pMeter(new CLEDMeter(this)), m_pText(new CPanelLabel(this)),
      m_pNumber(new CPanelLabel(this))
{
    m_pText->setVertical(true);
    m_pText->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_pText->setFontFactor(SMALL_TEXT);
    m_pNumber->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    m_pNumber->setFontFactor(SMALL_TEXT);
    m_pNumber->setText(QString::number(uSlot - findControlSlots(uSlot)->m_uFirstId));
    m_pMeter->setFocusPolicy(Qt::StrongFocus);
    m_pMeter->installEventFilter(this);
}

void CMeterCell::showState(const CPanelSlotState& state, ESlotRole eRole)
{
    m_pMeter->setRole(eRole);
    m_pMeter->setActive(state.m_bAssigned);
    m_pMeter->setColourScheme(state.m_uMeterColorScheme);
    m_pMeter->setUpsideDown(state.m_bUpsideDownMeter);
    m_pMeter->setAccessibleName(spokenName(state));
    m_pText->setText(state.m_bAssigned ? qs(state.m_sName) : QString());
    m_pNumber->setLook(state.m_bAssigned ? CPanelLabel::ELook::Text : CPanelLabel::ELook::Quiet);
    if (!state.m_bAssigned)
        m_pMeter->setLevel(0.0F);
}

QWidget* CMeterCell::focusTarget()
{
    return m_pMeter;
}

// The focus is shown around the meter, which itself only paints LEDs.
bool CMeterCell::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() == QEvent::FocusIn || pEvent->type() == QEvent::FocusOut)
        update();
    return CSlotCell::eventFilter(pWatched, pEvent);
}

void CMeterCell::paintEvent(QPaintEvent*)
{
    if (!m_pMeter->hasFocus())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(CTheme::instance().colours().m_accent, 2.0));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), CTheme::RADIUS, CTheme::RADIUS);
}

void CMeterCell::resizeEvent(QResizeEvent*)
{
    constexpr int PAD = 2;
    const int nText = fontMetrics().height();
    const int nHeight = height() - nText - 2 * PAD;
    const int nSide = std::min(nText, width() * 2 / 5);
    m_pMeter->setGeometry(PAD, PAD, width() - nSide - 2 * PAD, nHeight);
    m_pText->setGeometry(width() - nSide - 1, PAD, nSide, nHeight);
    m_pNumber->setGeometry(0, height() - nText, width() - nSide + PAD, nText);
}

} // namespace velmora
