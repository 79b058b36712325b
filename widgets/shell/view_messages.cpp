#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "panel/panel_laws.h"
#include "widgets/common/message_dialogs.h"
#include "widgets/panel/prototype_panel.h"
#include "widgets/shell/designer_view.h"

#include <string>

namespace velmora {

// What the private messages do; view_message_table.cpp says which is which.

// The display selector itself is shown by the panel; the routing acts on the engine.
std::ptrdiff_t CDesignerView::onRoutingButton(std::size_t, std::ptrdiff_t)
{
    if (const auto routing = routingOfCode(static_cast<unsigned>(m_pPanel->routing())))
        m_pDocument->audioEngine().m_uChannelMode = channelModeOf(*routing);
    return 0;
}

std::ptrdiff_t CDesignerView::onCommitEdit(std::size_t, std::ptrdiff_t nSlot)
{
    if (m_pPanel->commitValue(static_cast<UINT>(nSlot)))
        m_pPanel->selectNextValue(static_cast<UINT>(nSlot));
    return 0;
}

std::ptrdiff_t CDesignerView::onSelectEdit(std::size_t, std::ptrdiff_t nSlot)
{
    m_pPanel->selectValue(static_cast<UINT>(nSlot));
    return 0;
}

std::ptrdiff_t CDesignerView::onShowOscillator(std::size_t, std::ptrdiff_t)
{
    m_pToolWindows->show(EToolWindow::Oscillator, true);
    return 0;
}

std::ptrdiff_t CDesignerView::onHideOscillator(std::size_t, std::ptrdiff_t)
{
    m_pToolWindows->show(EToolWindow::Oscillator, false);
    return 0;
}

std::ptrdiff_t CDesignerView::onToggleSidechain(std::size_t, std::ptrdiff_t)
{
    m_pToolWindows->show(EToolWindow::Sidechain, !m_pToolWindows->isShown(EToolWindow::Sidechain));
    return 0;
}

std::ptrdiff_t CDesignerView::onShowSidechain(std::size_t, std::ptrdiff_t)
{
    m_pToolWindows->show(EToolWindow::Sidechain, true);
    return 0;
}

// The dialog has stored the control; the panel follows.
std::ptrdiff_t CDesignerView::onSliderProperties(std::size_t, std::ptrdiff_t)
{
    showProject();
    return 0;
}

std::ptrdiff_t CDesignerView::onGroupClosed(std::size_t uShowAgain, std::ptrdiff_t)
{
    if (uShowAgain)
        m_pPanelDialogs->setUpAlphaWheel();
    return 0;
}

std::ptrdiff_t CDesignerView::onAlphaWheelClosed(std::size_t, std::ptrdiff_t)
{
    afterEdit(m_pCommands->writeCode());
    return 0;
}

std::ptrdiff_t CDesignerView::onEditItem(std::size_t uId, std::ptrdiff_t nIndex)
{
    m_pPanelDialogs->editItem(static_cast<UINT>(uId), static_cast<int>(nIndex));
    return 0;
}

std::ptrdiff_t CDesignerView::onRemoveItem(std::size_t uId, std::ptrdiff_t)
{
    if (m_pPanelDialogs->mayStore())
        afterEdit(m_pCommands->removeControl(static_cast<UINT>(uId)));
    return 0;
}

std::ptrdiff_t CDesignerView::onItemOrder(std::size_t, std::ptrdiff_t)
{
    showProject();
    return 0;
}

std::ptrdiff_t CDesignerView::onMenuGroup(std::size_t, std::ptrdiff_t)
{
    showProject();
    return 0;
}

template <EStripEvent eEvent>
std::ptrdiff_t CDesignerView::onStrip(std::size_t, std::ptrdiff_t)
{
    m_pCompiler->onEvent(eEvent);
    return 0;
}

template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::starting>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::ready>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::running>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::debugging>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::notFound>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::dead>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::building>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::linking>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::buildSucceeded>(std::size_t, std::ptrdiff_t);
template std::ptrdiff_t CDesignerView::onStrip<EStripEvent::buildFailed>(std::size_t, std::ptrdiff_t);

std::ptrdiff_t CDesignerView::onStartOscillator(std::size_t, std::ptrdiff_t)
{
    m_pToolWindows->startOscillator();
    return 0;
}

std::ptrdiff_t CDesignerView::onStopOscillator(std::size_t, std::ptrdiff_t)
{
    m_pToolWindows->stopOscillator();
    return 0;
}

std::ptrdiff_t CDesignerView::onSetFrequency(std::size_t, std::ptrdiff_t nHz)
{
    m_pToolWindows->setOscillatorFrequency(static_cast<double>(nHz));
    return 0;
}

// Lines of a plug-in stand out by four blanks.
std::ptrdiff_t CDesignerView::onStatusText(std::size_t, std::ptrdiff_t nText)
{
    if (const char* pText = reinterpret_cast<const char*>(nText))
        m_dialogs.note("    " + std::string(pText));
    return 0;
}

std::ptrdiff_t CDesignerView::onControlChanged(std::size_t, std::ptrdiff_t nControlId)
{
    m_model.controlChanged(static_cast<UINT>(nControlId));
    return 0;
}

std::ptrdiff_t CDesignerView::onSlotText(std::size_t uSlot, std::ptrdiff_t nText)
{
    if (const char* pText = reinterpret_cast<const char*>(nText))
        m_model.setSlotText(static_cast<UINT>(uSlot), pText);
    return 0;
}

std::ptrdiff_t CDesignerView::onSlotNormalized(std::size_t uSlot, std::ptrdiff_t nNormalized)
{
    if (const auto* pNormalized = reinterpret_cast<const float*>(nNormalized))
        m_model.setSlotNormalized(static_cast<UINT>(uSlot), *pNormalized);
    return 0;
}

std::ptrdiff_t CDesignerView::onButton(std::size_t, std::ptrdiff_t nButton)
{
    m_model.turnButton(static_cast<UINT>(nButton));
    return 0;
}

} // namespace velmora
