#pragma once

#include "pluginconstants.h"

#include <span>
#include <string>
#include <string_view>

namespace velmora {

// One property of a control that the project's file keeps, under the name that a person knows it by.
struct CControlField
{
    std::string_view m_sName; // "low limit"
    bool (*m_pIsSame)(const CUICtrl& left, const CUICtrl& right);
    std::string (*m_pText)(const CUICtrl& control); // its value for a person; null where that says nothing
};

// All properties but the id, which tells controls apart. [any]
[[nodiscard]] std::span<const CControlField> controlFields();

// The same id and the same in every property. [any]
[[nodiscard]] bool isSameControl(const CUICtrl& left, const CUICtrl& right);

} // namespace velmora
