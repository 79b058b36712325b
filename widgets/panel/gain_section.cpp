#include "widgets/panel/gain_section.h"

#include "widgets/common/fader.h"
#include "widgets/common/led_meter.h"
#include "widgets/common/track_bar.h"
#include "widgets/panel/panel_label.h"

#include <QEvent>

namespace velmora {

namespace {

constexpr int PEAK_HOLD = 40;       // ticks
constexpr double LOWEST = -60.0;    // dB
constexpr double SCALE_TEXT = 0.88; // of the panel's font

} // namespace

CGainSection::CGainSection(const QString& sLabel, QWidget* pParent)
    : QWidget(pParent), m_pLabel(new CPanelLabel(this)), m_pFader(new CFader(this)), m_sides{}
{
    m_pLabel->setText(sLabel);
    m_pLabel->setAlignment(Qt::AlignCenter);
    m_pFader->setAccessibleName(sLabel + QStringLiteral(" gain"));
    m_pFader->trackBar().setAccessibleName(m_pFader->accessibleName());
    const QStringList names{QStringLiteral("L"), QStringLiteral("R")};
    const QStringList spoken{QStringLiteral(" level left"), QStringLiteral(" level right")};
    for (std::size_t i = 0; i < m_sides.size(); i++) {
        const auto nSide = static_cast<qsizetype>(i);
        auto* pMeter = new CLEDMeter(this);
        pMeter->setDecibels(LOWEST, 0.0);
        pMeter->setPeakHold(PEAK_HOLD);
        pMeter->setAccessibleName(sLabel + spoken[nSide]);
        auto* pName = new CPanelLabel(this);
        pName->setText(names[nSide]);
        pName->setLook(CPanelLabel::ELook::Quiet);
        pName->setAlignment(Qt::AlignCenter);
        m_sides[i] = {pMeter, pName};
    }
}

void CGainSection::setLevels(float fLeft, float fRight)
{
    m_sides[0].m_pMeter->setLevel(fLeft);
    m_sides[1].m_pMeter->setLevel(fRight);
}

void CGainSection::changeEvent(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::FontChange)
        place();
    QWidget::changeEvent(pEvent);
}

void CGainSection::resizeEvent(QResizeEvent*)
{
    place();
}

void CGainSection::place()
{
    constexpr int PAD = 2;
    const int nMeter = width() / 7;
    const int nLine = fontMetrics().height();
    const int nTop = nLine + 2 * PAD;
    QFont scale = font();
    scale.setPointSizeF(scale.pointSizeF() * SCALE_TEXT);
    m_pFader->setFont(scale);
    m_pLabel->setGeometry(0, 0, width(), nTop);
    m_pFader->setGeometry(0, nTop, width() - 2 * (nMeter + PAD), height() - nTop);
    for (int i = 0; i < 2; i++) {
        const CSide& side = m_sides[static_cast<std::size_t>(i)];
        const int nLeft = width() - (2 - i) * (nMeter + PAD) + PAD;
        side.m_pMeter->setGeometry(nLeft, nTop + 2 * PAD, nMeter, height() - nTop - nLine - 4 * PAD);
        side.m_pName->setGeometry(nLeft, height() - nLine - 2, nMeter, nLine);
    }
}

} // namespace velmora
