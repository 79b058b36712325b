#pragma once

#include "project/dsp_project.h"

#include <array>
#include <string>
#include <string_view>

namespace velmora {

// Rules of the user variables: variables of the plug-in's class without a control on the panel, which are
// stored in presets. [main]

// The choices of the datatype, in order; the index is CUserVariableRequest::m_uDataType.
inline constexpr std::array<std::string_view, 5> USER_VARIABLE_DATA_TYPES = {"integer", "float", "double",
                                                                             "UINT", "VSTGUI"};

// Shown after a variable was added or removed.
inline constexpr std::string_view USER_VARIABLE_ADDED = "User-variable was added.";
inline constexpr std::string_view USER_VARIABLE_REMOVED = "User-variable was removed.";

// What a person asks for.
struct CUserVariableRequest
{
    UINT m_uDataType = 0; // index of USER_VARIABLE_DATA_TYPES
    std::string m_sName;
    std::string m_sInitialValue; // as typed
};

// Why the variable can not be added; empty if it can.
[[nodiscard]] std::string checkUserVariable(const CDSPProject& project, const CUserVariableRequest& request);

// The record of a request that was checked, with the next free id.
[[nodiscard]] CUICtrl makeUserVariable(const CDSPProject& project, const CUserVariableRequest& request);

} // namespace velmora
