#include "panel/panel_model.h"

#include "host/dsp_filter.h"
#include "host/guarded_call.h"

#include <algorithm>
#include <cmath>

namespace velmora {

void CPanelModel::setView(IPanelView* pView)
{
    m_pView = pView ? pView : &m_noView;
}

void CPanelModel::setEditedCallback(std::function<void()> edited)
{
    m_edited = std::move(edited);
}

void CPanelModel::setProject(CDSPProject* pProject)
{
    m_projectSlots.setProject(pProject);
    chooseButtons();
    m_texts.clear();
    view().panelChanged();
}

void CPanelModel::setFilter(CDSPFilter* pFilter)
{
    m_filterSlots.setFilter(pFilter);
    m_pending.clear();
    m_texts.clear();
    chooseButtons();
    view().panelChanged();
}

void CPanelModel::chooseButtons()
{
    const bool bLoaded = isPlugInLoaded();
    m_buttons.setSource(bLoaded ? filter()->m_pPlugIn : nullptr, bLoaded ? nullptr : project());
}

void CPanelModel::projectChanged()
{
    m_texts.clear();
    view().panelChanged();
}

void CPanelModel::valuesChanged()
{
    for (const UINT uSlot : m_filterSlots.assignedSlots())
        controlChanged(m_filterSlots.control(uSlot)->uControlId);
    view().commonRefresh();
}

// ------------------------------------------------------------------------------------------------
// What the slots show
// ------------------------------------------------------------------------------------------------

CPanelSlotState CPanelModel::state(UINT uSlot) const
{
    CPanelSlotState state = isPlugInLoaded() ? m_filterSlots.state(uSlot) : m_projectSlots.state(uSlot);
    const auto text = m_texts.find(uSlot);
    if (text != m_texts.end())
        state.m_sValue = text->second;
    return state;
}

std::vector<UINT> CPanelModel::alphaWheelSlots() const
{
    return isPlugInLoaded() ? m_filterSlots.alphaWheelSlots() : m_projectSlots.alphaWheelSlots();
}

// ------------------------------------------------------------------------------------------------
// What a hand does
// ------------------------------------------------------------------------------------------------

// A slider of the filter; null for any other slot.
CDSPFilterControl* CPanelModel::slider(UINT uSlot) const
{
    CDSPFilterControl* pControl = m_filterSlots.control(uSlot);
    return pControl && pControl->uControlType == FILTER_CONTROL_CONTINUOUSLY_VARIABLE ? pControl : nullptr;
}

// The filter's control in a slot has moved: the filter is to be told.
bool CPanelModel::changed(UINT uSlot)
{
    m_texts.erase(uSlot);
    view().slotChanged(uSlot);
    queue({m_filterSlots.control(uSlot)->uControlId, false});
    return true;
}

// An operation on the project's record in a slot has changed it, or not.
bool CPanelModel::edited(UINT uSlot, bool bDone)
{
    if (!bDone)
        return false;
    m_texts.erase(uSlot);
    view().slotChanged(uSlot);
    view().commonRefresh();
    if (m_edited)
        m_edited();
    return true;
}

bool CPanelModel::moveSlider(UINT uSlot, int nPos)
{
    if (!isPlugInLoaded())
        return edited(uSlot, m_projectSlots.moveSlider(uSlot, nPos));
    CDSPFilterControl* pControl = slider(uSlot);
    if (!pControl)
        return false;
    if (isModule())
        filter()->setControlPosition(pControl->uControlId, nPos);
    else
        pControl->setPosition(nPos);
    return changed(uSlot);
}

bool CPanelModel::resetSlider(UINT uSlot)
{
    if (!isPlugInLoaded())
        return edited(uSlot, m_projectSlots.resetSlider(uSlot));
    CDSPFilterControl* pControl = slider(uSlot);
    if (!pControl)
        return false;
    pControl->setCookedValue(m_filterSlots.initialValue(*pControl));
    if (isModule())
        filter()->controlChanged(pControl->uControlId);
    return changed(uSlot);
}

bool CPanelModel::enterText(UINT uSlot, std::string_view sText)
{
    if (!isPlugInLoaded())
        return edited(uSlot, m_projectSlots.enterText(uSlot, sText));
    const CPanelSlotState before = m_filterSlots.state(uSlot);
    if (!before.m_bAssigned || !before.m_bValueWritable ||
        !filter()->setControlText(before.m_uControlId, std::string(sText), true))
        return false;
    return changed(uSlot);
}

bool CPanelModel::selectItem(UINT uSlot, int nItem)
{
    if (!isPlugInLoaded())
        return edited(uSlot, m_projectSlots.selectItem(uSlot, nItem));
    CDSPFilterControl* pControl = m_filterSlots.control(uSlot);
    if (!pControl || nItem < 0 || nItem >= choiceCount(uSlot, pControl->m_Enum.size()))
        return false;
    pControl->setCookedValue(nItem);
    if (isModule())
        filter()->controlChanged(pControl->uControlId);
    return changed(uSlot);
}

bool CPanelModel::pressButton(UINT uButton)
{
    if (!CAssignableButtonStates::contains(uButton) || !isPlugInLoaded() || isModule())
        return false;
    if (m_buttons.turn(uButton))
        view().buttonChanged(uButton);
    queue({uButton, true});
    return true;
}

// ------------------------------------------------------------------------------------------------
// Telling the filter
// ------------------------------------------------------------------------------------------------

void CPanelModel::queue(const CPending& pending)
{
    const auto isSame = [&](const CPending& other) {
        return !other.m_bButton && other.m_uId == pending.m_uId;
    };
    if (!pending.m_bButton && std::ranges::any_of(m_pending, isSame))
        return;
    m_pending.push_back(pending);
    if (m_pending.size() == 1)
        view().changesPending();
}

bool CPanelModel::deliverChanges()
{
    // A plug-in may run an event loop of its own while it is being told.
    if (m_bDelivering || m_pending.empty())
        return false;
    const UINT uId = m_pending.front().m_uId;
    m_pending.pop_front();
    if (!isModule()) {
        m_bDelivering = true;
        const auto sThrown = thrownBy([&] { filter()->controlChanged(uId); });
        m_bDelivering = false;
        if (sThrown)
            view().plugInFailed("The plug-in threw an exception while a control was moved: " + *sThrown +
                                ".");
    }
    view().commonRefresh();
    return hasPending();
}

// ------------------------------------------------------------------------------------------------
// What the plug-in or a MIDI controller does
// ------------------------------------------------------------------------------------------------

void CPanelModel::controlChanged(UINT uControlId)
{
    CDSPFilterControl* pControl = m_filterSlots.control(m_filterSlots.slotOf(uControlId));
    if (!pControl)
        return;
    if (isModule())
        filter()->controlChanged(uControlId);
    else
        pControl->updateFromVariable();
    const UINT uSlot = m_filterSlots.slotOf(uControlId);
    m_texts.erase(uSlot);
    view().slotChanged(uSlot);
}

void CPanelModel::setSlotText(UINT uSlot, std::string_view sText)
{
    if (!state(uSlot).m_bAssigned)
        return;
    m_texts[uSlot] = sText;
    view().slotChanged(uSlot);
}

void CPanelModel::setSlotNormalized(UINT uSlot, float fNormalized)
{
    CDSPFilterControl* pControl = slider(uSlot);
    if (!pControl || !std::isfinite(fNormalized))
        return;
    pControl->setNormalized(fNormalized);
    if (isModule())
        filter()->controlChanged(pControl->uControlId);
    m_texts.erase(uSlot);
    view().slotChanged(uSlot);
    view().commonRefresh();
}

void CPanelModel::turnButton(UINT uButton)
{
    if (m_buttons.turn(uButton))
        view().buttonChanged(uButton);
}

} // namespace velmora
