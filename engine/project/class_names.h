#pragma once

#include "project/dsp_project.h"

#include <set>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

// The names that a plug-in's class already holds, so that a new one does not break the generated code.
// [main]

using CNameSet = std::set<std::string, std::less<>>;

// What plugin.h and pluginconstants.h declare: members and operations of CPlugIn, types, constants, macros.
[[nodiscard]] std::span<const std::string_view> contractNames();

// Not to be had for a variable or a list's item: a contract name, a macro of the headers behind it, a
// temporary of the generated code (ui0, pPreset0, pJSProg), a name of the compiler's own (__x, _X), or the
// project's class.
[[nodiscard]] bool isReservedName(const CDSPProject& project, std::string_view sName);

// Variables and meter variables that the controls declare, pExcept apart.
[[nodiscard]] CNameSet declaredVariables(const CDSPProject& project, const CUICtrl* pExcept = nullptr);

// Items of the enumerated lists, pExcept's apart.
[[nodiscard]] CNameSet declaredItems(const CDSPProject& project, const CUICtrl* pExcept = nullptr);

// Reserved, a declared variable or an item: a new variable can not have this name.
[[nodiscard]] bool isTakenInClass(const CDSPProject& project, std::string_view sName,
                                  const CUICtrl* pExcept = nullptr);

} // namespace velmora
