#pragma once

#include "pluginconstants.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// What a slot of the panel shows. Positions run from 0 to 256; 256 is the high end.
struct CPanelSlotState
{
    bool m_bAssigned = false;
    UINT m_uControlId = 0;   // differs from the slot for a built-in module
    UINT m_uControlType = 0; // FILTER_CONTROL_...
    std::string m_sName;     // of an empty slot: its caption
    std::string m_sUnits;
    std::string m_sValue;          // text of the value box, with the units
    bool m_bValueWritable = false; // the value box takes typed text
    int m_nPos = 0;
    int m_nInitialPos = 0;            // where resetSlider() leads
    std::vector<std::string> m_items; // of the enumerated list, a combo's with blanks for underscores; of an
                                      // empty bank or combo: what it reads
    int m_nItem = -1;                 // the chosen one; -1 if the value names none
    double m_dValue = 0.0;            // in the control's units, as are the limits
    double m_dLo = 0.0;
    double m_dHi = 0.0;
    UINT m_uMeterColorScheme = 0; // of a meter
    bool m_bUpsideDownMeter = false;
};

// The look of a slot without a control: its caption, and what the buttons of a bank or the list of a combo
// box read.
[[nodiscard]] CPanelSlotState emptySlotState(UINT uSlot, bool bProjectOpen);

// Whether a control of that type can stand in a slot.
[[nodiscard]] bool slotTakes(UINT uSlot, UINT uControlType);

// How many items of a slot can be chosen: those of its list, or without a list as many as it has room for.
[[nodiscard]] int choiceCount(UINT uSlot, std::size_t uListedItems);

// Items as a slot shows them.
[[nodiscard]] std::vector<std::string> shownItems(UINT uSlot, std::vector<std::string> items);

[[nodiscard]] std::string withUnits(std::string_view sValue, std::string_view sUnits);

} // namespace velmora
