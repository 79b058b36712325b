#pragma once

#include "pluginconstants.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

// The fixed slots of the prototype panel. A control's id says which slot it fills. [any]

// The property dialog that a slot opens.
enum class EControlForm
{
    Slider,
    RadioBank,
    Switch,
    LEDMeter,
    Combo
};

// Slots of one kind, with consecutive ids.
struct CControlSlots
{
    UINT m_uFirstId;
    UINT m_uLastId;
    EControlForm m_eForm;
    UINT m_uControlType;          // FILTER_CONTROL_...
    std::string_view m_sName;     // of one slot of the kind
    std::string_view m_sCaptions; // of the empty slots, separated by commas; a single one is numbered from 0
    std::size_t m_uMaxItems;      // most items of an enumerated list
    bool m_bFixedName;            // the control bears the slot's caption as its name
    bool m_bAlphaWheel;           // items of the alpha wheel's LCD, without a slot on the panel

    [[nodiscard]] bool contains(UINT uId) const { return uId >= m_uFirstId && uId <= m_uLastId; }
};

// All slots, ordered by id. The gaps belong to no slot.
[[nodiscard]] std::span<const CControlSlots> controlSlots();

// The kind of slot that an id belongs to; null for an id in a gap.
[[nodiscard]] const CControlSlots* findControlSlots(UINT uId);

// The caption of a slot while it is empty, such as "Control 3", "Bank 0", "SW 1", "A" or "CMBO1". Empty for
// a meter, an item of the alpha wheel, and an id in a gap.
[[nodiscard]] std::string slotCaption(UINT uId);

// The first id of the alpha wheel that no control has; none when all 1024 are used.
[[nodiscard]] std::optional<UINT> freeAlphaWheelId(const CUIControlList& list);

} // namespace velmora
