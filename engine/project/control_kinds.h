#pragma once

#include "pluginconstants.h"

namespace velmora {

// The two kinds beside the contract's: a user variable, kept in presets and shown on no panel, and one of
// the data type choice "VSTGUI".
constexpr UINT USER_VARIABLE_TYPE = 105;
constexpr UINT VSTGUI_VARIABLE_TYPE = 106;

// One value of CUICtrl::uControlType.
struct CControlKind
{
    UINT m_uType;
    const char* m_pSymbol; // what generated code bears: a constant of the contract, or the number itself
    const char* m_pName;   // for people: "slider"
};

// The kind of a type; null for any other number.
[[nodiscard]] const CControlKind* findControlKind(UINT uControlType);

[[nodiscard]] constexpr bool isUserVariableType(UINT uControlType)
{
    return uControlType == USER_VARIABLE_TYPE || uControlType == VSTGUI_VARIABLE_TYPE;
}

} // namespace velmora
