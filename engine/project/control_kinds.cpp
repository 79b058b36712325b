#include "project/control_kinds.h"

#include <algorithm>
#include <iterator>

namespace velmora {

namespace {

constexpr CControlKind KINDS[] = {
    {FILTER_CONTROL_CONTINUOUSLY_VARIABLE, "FILTER_CONTROL_CONTINUOUSLY_VARIABLE", "slider"},
    {FILTER_CONTROL_DIRECT_DATA_ENTRY, "FILTER_CONTROL_DIRECT_DATA_ENTRY", "text"},
    {FILTER_CONTROL_RADIO_SWITCH_VARIABLE, "FILTER_CONTROL_RADIO_SWITCH_VARIABLE", "radio"},
    {FILTER_CONTROL_LED_METER, "FILTER_CONTROL_LED_METER", "meter"},
    {FILTER_CONTROL_COMBO_VARIABLE, "FILTER_CONTROL_COMBO_VARIABLE", "list"},
    {USER_VARIABLE_TYPE, "105", "variable"},
    {VSTGUI_VARIABLE_TYPE, "106", "GUI variable"},
};

} // namespace

const CControlKind* findControlKind(UINT uControlType)
{
    const auto kind = std::ranges::find(KINDS, uControlType, &CControlKind::m_uType);
    return kind == std::end(KINDS) ? nullptr : &*kind;
}

} // namespace velmora
