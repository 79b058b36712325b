#include "widgets/panel/routing_section.h"

#include "panel/panel_laws.h"
#include "widgets/panel/choice_bar.h"
#include "widgets/panel/panel_label.h"

namespace velmora {

CRoutingSection::CRoutingSection(QWidget* pParent)
    : QWidget(pParent), m_pCaption(new CPanelLabel(this)),
      m_pFX(new CChoiceBar(QStringLiteral("FX routing"), {QStringLiteral("Insert"), QStringLiteral("Aux FX")},
                           this)),
      m_pChannels(new CChoiceBar(
          QStringLiteral("FX channels"),
          {QStringLiteral("1 -> 1"), QStringLiteral("1 -> 2"), QStringLiteral("2 -> 2")}, this))
{
    m_pCaption->setText(QStringLiteral("FX Routing"));
    m_pCaption->setLook(CPanelLabel::ELook::Quiet);
    setCode(0);
    for (CChoiceBar* pBar : {m_pFX, m_pChannels})
        connect(pBar, &CChoiceBar::chosen, this, [this] { emit changed(code()); });
}

void CRoutingSection::setCode(int nCode)
{
    const auto routing = routingOfCode(static_cast<unsigned>(nCode));
    if (!routing)
        return;
    m_pFX->setCurrent(static_cast<int>(routing->m_eFX));
    m_pChannels->setCurrent(static_cast<int>(routing->m_eChannels));
}

int CRoutingSection::code() const
{
    return static_cast<int>(routingCode(
        {static_cast<ERoutingFX>(m_pFX->current()), static_cast<ERoutingChannels>(m_pChannels->current())}));
}

void CRoutingSection::resizeEvent(QResizeEvent*)
{
    const int nGap = height() / 20;
    const int nCaption = height() / 4;
    const int nBar = (height() - nCaption - nGap) / 2;
    m_pCaption->setGeometry(0, 0, width(), nCaption);
    m_pFX->setGeometry(0, nCaption, width(), nBar);
    m_pChannels->setGeometry(0, height() - nBar, width(), nBar);
}

} // namespace velmora
