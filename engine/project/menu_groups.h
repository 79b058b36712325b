#pragma once

#include "pluginconstants.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPProject;

// Menu groups of the alpha wheel's items: a name that several controls share. A control keeps the name of its
// group itself, in the last sixteen of its free words (uFluxCapControl): four bytes of UTF-8 a word, the
// first one lowest, zero behind the end. So it goes wherever the control goes. [main]

inline constexpr std::size_t LONGEST_MENU_GROUP = 63; // bytes

// Empty for none, and where the words hold something else than a name.
[[nodiscard]] std::string menuGroupOf(const CUICtrl& control);

// An empty name takes the control out of its group. A longer one is cut at a whole character.
void setMenuGroup(CUICtrl& control, std::string_view sName);

// The names that the project's controls have, each once, in the order of the controls.
[[nodiscard]] std::vector<std::string> menuGroups(const CDSPProject& project);

// Gives each control of the group another one. Answers how many there were.
std::size_t renameMenuGroup(CDSPProject& project, std::string_view sFrom, std::string_view sTo);

// Why a new or changed name can not be taken: the texts of the menu group dialog, in its order. Empty if it
// can. known are the names that exist.
[[nodiscard]] std::string checkNewMenuGroup(const std::vector<std::string>& known, std::string_view sName);

} // namespace velmora
