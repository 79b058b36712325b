#include "widgets/panel/alpha_wheel_section.h"

#include "panel/alpha_wheel.h"
#include "widgets/common/lcd_strip.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/rotary_wheel.h"
#include "widgets/panel/panel_label.h"

#include <algorithm>

namespace velmora {

CAlphaWheelSection::CAlphaWheelSection(QWidget* pParent)
    : QWidget(pParent), m_pLCD(new CLCDStrip(this)),
      m_pWheelKnob(new CRotaryWheel(EWheelKind::AlphaWheel, this)),
      m_pValueKnob(new CRotaryWheel(EWheelKind::ValueKnob, this)), m_pWheelName(new CPanelLabel(this)),
      m_pValueName(new CPanelLabel(this))
{
    m_pWheelName->setText(QStringLiteral("AW Knob"));
    m_pValueName->setText(QStringLiteral("Value"));
    for (CPanelLabel* pLabel : {m_pWheelName, m_pValueName}) {
        pLabel->setLook(CPanelLabel::ELook::Quiet);
        pLabel->setAlignment(Qt::AlignCenter);
    }
    m_pLCD->setAccessibleName(QStringLiteral("Alpha wheel display"));
    m_pWheelKnob->setAccessibleName(QStringLiteral("Alpha wheel"));
    connect(m_pWheelKnob, &CRotaryWheel::turned, this, [this](int nDetents) {
        if (m_pWheel)
            m_pWheel->turn(nDetents);
        showItem();
    });
    connect(m_pValueKnob, &CRotaryWheel::moved, this, [this](int nPos) {
        if (m_pWheel)
            m_pWheel->moveValue(nPos);
        showItem();
    });
    connect(m_pValueKnob, &CRotaryWheel::resetRequested, this, [this] {
        if (m_pWheel && m_pWheel->slot())
            emit resetRequested(*m_pWheel->slot());
    });
    showItem();
}

void CAlphaWheelSection::setWheel(CAlphaWheel* pWheel)
{
    m_pWheel = pWheel;
    showAll();
}

void CAlphaWheelSection::setLive(bool bLive)
{
    m_bLive = bLive;
}

void CAlphaWheelSection::showAll()
{
    if (m_pWheel)
        m_pWheel->refresh();
    showItem();
}

void CAlphaWheelSection::showItem()
{
    const int nCount = m_pWheel ? m_pWheel->count() : 0;
    const bool bItem = nCount > 0;
    const ESlotRole eRole = !bItem ? ESlotRole::Empty : m_bLive ? ESlotRole::Live : ESlotRole::Assigned;
    const QString sName = bItem ? qs(m_pWheel->nameLine()) : QString();
    const QString sValue = bItem ? qs(m_pWheel->valueLine()) : QString();

    m_pLCD->setRole(eRole);
    m_pLCD->setLines(sName, sValue);
    m_pLCD->setCounter(bItem ? m_pWheel->position() + 1 : 0, nCount);
    m_pWheelKnob->setRole(eRole);
    m_pWheelKnob->setItem(bItem ? m_pWheel->position() : 0, nCount);
    m_pWheelKnob->setValueText(sName);
    m_pValueKnob->setRole(eRole);
    m_pValueKnob->setPosition(bItem ? m_pWheel->valuePosition() : 0);
    m_pValueKnob->setValueText(sValue);
    m_pValueKnob->setAccessibleName(bItem ? QStringLiteral("Value: ") + sName
                                          : QStringLiteral("Value knob, empty"));
}

void CAlphaWheelSection::resizeEvent(QResizeEvent*)
{
    const int nGap = height() / 24;
    const int nLCD = height() * 2 / 5;
    const int nCaption = height() / 9;
    const int nKnobTop = nLCD + nGap;
    const int nKnob = height() - nKnobTop - nCaption;
    const int nColumn = width() / 2;
    m_pLCD->setGeometry(0, 0, width(), nLCD);
    m_pWheelKnob->setGeometry(0, nKnobTop, nColumn, nKnob);
    m_pValueKnob->setGeometry(nColumn, nKnobTop, width() - nColumn, nKnob);
    m_pWheelName->setGeometry(0, height() - nCaption, nColumn, nCaption);
    m_pValueName->setGeometry(nColumn, height() - nCaption, width() - nColumn, nCaption);
}

} // namespace velmora
