#pragma once

#include "panel/panel_slot_state.h"

#include <map>
#include <string>
#include <vector>

namespace velmora {

class CDSPFilter;
class CDSPFilterControl;

// The slots while a filter is loaded. A plug-in's controls stand in the slots of their ids. Those of a
// built-in module fill the slider slots and the radio banks in the order of its list, and the free combo
// boxes where a choice has more options than a bank has buttons. [main]
class CFilterSlots
{
  public:
    static constexpr UINT NO_SLOT = 0xFFFFFFFF;

    // Not owned; null for none. A module's values when it is seen for the first time count as its initial
    // ones.
    void setFilter(CDSPFilter* pFilter);

    // Null for a filter without controls and plug-in.
    [[nodiscard]] CDSPFilter* filter() const { return m_pFilter; }
    [[nodiscard]] bool isModule() const;

    // The control in a slot; null for an empty one. Valid until the filter makes its controls anew.
    [[nodiscard]] CDSPFilterControl* control(UINT uSlot) const;

    // Where a control stands; NO_SLOT if nowhere.
    [[nodiscard]] UINT slotOf(UINT uControlId) const;

    [[nodiscard]] std::vector<UINT> assignedSlots() const;
    [[nodiscard]] std::vector<UINT> alphaWheelSlots() const;

    // An unassigned state for an empty slot.
    [[nodiscard]] CPanelSlotState state(UINT uSlot) const;

    // Initial value of the control in a slot that has one.
    [[nodiscard]] double initialValue(const CDSPFilterControl& control) const;

  private:
    void placeModule();

    CDSPFilter* m_pFilter = nullptr;
    std::map<UINT, UINT> m_moduleIds;                             // control id by slot
    std::map<std::string, std::map<UINT, double>> m_moduleStarts; // by module and control id
};

} // namespace velmora
