#include "host/view_messages.h"
#include "pluginconstants.h"
#include "widgets/shell/designer_view.h"

#include <algorithm>
#include <array>

namespace velmora {

// One private message of the view and what it does.
struct CDesignerView::CMessageRow
{
    unsigned m_uMessage;
    messageHandler m_pHandler;
};

const CDesignerView::CMessageRow* CDesignerView::findMessage(unsigned uMessage)
{
    using view = CDesignerView;
    static constexpr std::array<CMessageRow, 32> TABLE = {{
        {MESSAGE_ROUTING_BUTTON, &view::onRoutingButton},
        {MESSAGE_COMMIT_EDIT, &view::onCommitEdit},
        {MESSAGE_SHOW_OSCILLATOR, &view::onShowOscillator},
        {MESSAGE_HIDE_OSCILLATOR, &view::onHideOscillator},
        {MESSAGE_TOGGLE_SIDECHAIN, &view::onToggleSidechain},
        {MESSAGE_SLIDER_PROPERTIES, &view::onSliderProperties},
        {MESSAGE_LCD_GROUP_CLOSED, &view::onGroupClosed},
        {MESSAGE_ALPHA_WHEEL_CLOSED, &view::onAlphaWheelClosed},
        {MESSAGE_EDIT_LCD_ITEM, &view::onEditItem},
        {MESSAGE_REMOVE_LCD_ITEM, &view::onRemoveItem},
        {MESSAGE_LCD_ORDER, &view::onItemOrder},
        {MESSAGE_MENU_GROUP, &view::onMenuGroup},
        {MESSAGE_SELECT_EDIT, &view::onSelectEdit},
        {MESSAGE_COMPILER_STARTING, &view::onStrip<EStripEvent::starting>},
        {MESSAGE_COMPILER_READY, &view::onStrip<EStripEvent::ready>},
        {MESSAGE_COMPILER_RUNNING, &view::onStrip<EStripEvent::running>},
        {MESSAGE_COMPILER_DEBUGGING, &view::onStrip<EStripEvent::debugging>},
        {MESSAGE_COMPILER_NOT_FOUND, &view::onStrip<EStripEvent::notFound>},
        {MESSAGE_COMPILER_DEAD, &view::onStrip<EStripEvent::dead>},
        {MESSAGE_COMPILER_BUILDING, &view::onStrip<EStripEvent::building>},
        {MESSAGE_COMPILER_LINKING, &view::onStrip<EStripEvent::linking>},
        {MESSAGE_BUILD_SUCCEEDED, &view::onStrip<EStripEvent::buildSucceeded>},
        {MESSAGE_BUILD_FAILED, &view::onStrip<EStripEvent::buildFailed>},
        {MESSAGE_START_OSCILLATOR, &view::onStartOscillator},
        {MESSAGE_STOP_OSCILLATOR, &view::onStopOscillator},
        {MESSAGE_SET_OSCILLATOR, &view::onSetFrequency},
        {MESSAGE_SHOW_SIDECHAIN, &view::onShowSidechain},
        {PLUGIN_MESSAGE_STATUS_TEXT, &view::onStatusText},
        {PLUGIN_MESSAGE_UPDATE_GUI, &view::onControlChanged},
        {MESSAGE_SLOT_TEXT, &view::onSlotText},
        {MESSAGE_SLOT_NORMALIZED, &view::onSlotNormalized},
        {PLUGIN_MESSAGE_BUTTON_CHANGE, &view::onButton},
    }};
    const auto pFound = std::ranges::find(TABLE, uMessage, &CMessageRow::m_uMessage);
    return pFound == TABLE.end() ? nullptr : &*pFound;
}

bool CDesignerView::isMessageKnown(unsigned uMessage)
{
    return findMessage(uMessage) != nullptr;
}

std::ptrdiff_t CDesignerView::onMessage(const CWindowMessage& message)
{
    const CMessageRow* pRow = m_pDocument ? findMessage(message.m_uMessage) : nullptr;
    return pRow ? (this->*pRow->m_pHandler)(message.m_uParam, message.m_nParam) : 0;
}

} // namespace velmora
