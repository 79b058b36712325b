#include "project/control_slots.h"

#include "base/text.h"
#include "project/control_list.h"

#include <algorithm>
#include <array>
#include <vector>

namespace velmora {

namespace {

using enum EControlForm;

constexpr UINT SLIDER = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
constexpr UINT SWITCH = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;
constexpr UINT METER = FILTER_CONTROL_LED_METER;
constexpr UINT COMBO = FILTER_CONTROL_COMBO_VARIABLE;

// clang-format off
constexpr std::array<CControlSlots, 7> SLOTS = {{
    //  ids              form       type    name                   captions                       items  fixed  wheel
    {0,   39,            Slider,    SLIDER, "slider",              "Control ",                    256,   false, false},
    {41,  44,            RadioBank, SWITCH, "radio bank",          "Bank 0,Bank 1,Bank 2,Bank 3", 8,     false, false},
    {45,  48,            Switch,    SWITCH, "switch",              "SW 1,SW 2,SW 3,SW 4",         2,     false, false},
    {50,  59,            LEDMeter,  METER,  "LED meter",           "",                            0,     false, false},
    {60,  63,            Combo,     COMBO,  "joystick combo box",  "A,B,C,D",                     256,   true,  false},
    {70,  73,            Combo,     COMBO,  "combo box",           "CMBO1,CMBO2,CMBO3,CMBO4",     256,   false, false},
    {FIRST_SLOT_ID, LAST_SLOT_ID, Slider, SLIDER, "alpha wheel item", "",                         256,   false, true},
}};
// clang-format on

} // namespace

std::span<const CControlSlots> controlSlots()
{
    return SLOTS;
}

const CControlSlots* findControlSlots(UINT uId)
{
    const auto found =
        std::ranges::find_if(SLOTS, [=](const CControlSlots& slots) { return slots.contains(uId); });
    return found == SLOTS.end() ? nullptr : &*found;
}

std::string slotCaption(UINT uId)
{
    const CControlSlots* pSlots = findControlSlots(uId);
    if (!pSlots || pSlots->m_sCaptions.empty())
        return {};
    const auto captions = split(pSlots->m_sCaptions, ',');
    const UINT uIndex = uId - pSlots->m_uFirstId;
    return captions.size() > 1 ? captions[uIndex] : captions[0] + std::to_string(uIndex);
}

std::optional<UINT> freeAlphaWheelId(const CUIControlList& list)
{
    std::vector<bool> taken(LAST_SLOT_ID + 1);
    for (const CUICtrl* pControl : controlsOf(list))
        if (pControl->uControlId <= LAST_SLOT_ID)
            taken[pControl->uControlId] = true;
    const auto free = std::find(taken.begin() + FIRST_SLOT_ID, taken.end(), false);
    if (free == taken.end())
        return std::nullopt;
    return static_cast<UINT>(free - taken.begin());
}

} // namespace velmora
