#pragma once

#include "panel/assignable_button_states.h"
#include "panel/filter_slots.h"
#include "panel/panel_slot_state.h"
#include "panel/panel_view.h"
#include "panel/project_slots.h"

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPFilter;
class CDSPFilterControl;
class CDSPProject;

// The prototype panel without its looks: what stands in each slot, and what a moved slot does.
//
// Slots go by control id (project/control_slots.h), the items of the alpha wheel among them. With a filter
// loaded they act on its controls: a move writes the variable at once, while the filter is told by
// deliverChanges(), each control once with its last value, so that a slow plug-in never holds up the event
// loop for longer than one call. Without one they act on the initial values of the open project's records.
//
// Project and filter are not owned; each is to be taken away with a null before it goes. [main]
class CPanelModel
{
  public:
    // Null for none.
    void setView(IPanelView* pView);

    // Called after each change of an initial value, so that the project gets saved.
    void setEditedCallback(std::function<void()> edited);

    void setProject(CDSPProject* pProject);

    // A loaded plug-in, or a built-in module whose controls fill the slider slots and then the banks in the
    // order of its list. Changes that are still pending for the last filter are dropped.
    void setFilter(CDSPFilter* pFilter);

    // The project's records have changed, or values of the filter from outside (a preset).
    void projectChanged();
    void valuesChanged();

    [[nodiscard]] CDSPProject* project() const { return m_projectSlots.project(); }
    [[nodiscard]] CDSPFilter* filter() const { return m_filterSlots.filter(); }

    // A plug-in or a built-in module, whose controls the panel shows in place of the project's.
    [[nodiscard]] bool isPlugInLoaded() const { return filter() != nullptr; }
    [[nodiscard]] bool isModule() const { return m_filterSlots.isModule(); }

    [[nodiscard]] CPanelSlotState state(UINT uSlot) const;

    // The slots of the alpha wheel's items, in the order of their indices.
    [[nodiscard]] std::vector<UINT> alphaWheelSlots() const;

    // What a hand does. False, and nothing changes, for an empty slot, a text without a number, a slot of
    // another kind, and an item that there is not.
    bool moveSlider(UINT uSlot, int nPos);
    bool resetSlider(UINT uSlot); // back to the initial value
    bool enterText(UINT uSlot, std::string_view sText);
    bool selectItem(UINT uSlot, int nItem); // of a bank, a combo, or a switch (0 or 1)

    // The assignable buttons, 50 to 52. A latching one changes its look with each click; false without a
    // plug-in.
    bool pressButton(UINT uButton);
    [[nodiscard]] bool buttonState(UINT uButton) const { return m_buttons.isPressed(uButton); }
    [[nodiscard]] bool isButtonLatching(UINT uButton) const { return m_buttons.isLatching(uButton); }
    [[nodiscard]] std::string buttonText(UINT uButton) const { return m_buttons.text(uButton); }

    // Tells the filter of one pending change, then refreshes. True if more are left.
    [[nodiscard]] bool hasPending() const { return !m_pending.empty(); }
    bool deliverChanges();

    // What the plug-in or a MIDI controller does (messages 4025, 4026, 4028, 4030). A normalised position
    // runs from 0.0 to 1.0.
    void controlChanged(UINT uControlId);
    void setSlotText(UINT uSlot, std::string_view sText);
    void setSlotNormalized(UINT uSlot, float fNormalized);
    void turnButton(UINT uButton);

  private:
    struct CPending
    {
        UINT m_uId;
        bool m_bButton; // an assignable button: each click counts
    };

    void chooseButtons();
    [[nodiscard]] CDSPFilterControl* slider(UINT uSlot) const;
    bool changed(UINT uSlot);
    bool edited(UINT uSlot, bool bDone);
    void queue(const CPending& pending);
    IPanelView& view() const { return *m_pView; }

    IPanelView m_noView;
    IPanelView* m_pView = &m_noView;
    std::function<void()> m_edited;
    CProjectSlots m_projectSlots;
    CFilterSlots m_filterSlots;
    std::map<UINT, std::string> m_texts; // of value boxes that the plug-in has written to
    std::deque<CPending> m_pending;
    bool m_bDelivering = false;
    CAssignableButtonStates m_buttons;
};

} // namespace velmora
