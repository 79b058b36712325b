#pragma once

#include "project/dsp_project.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// Enumerated lists: the items of a bank, combo box or enumerated slider, separated by commas. Each becomes
// an enumeration of the plug-in's class, which all controls with the same list share. [main]

// A list as typed, without blanks, then without tabs and line ends at its ends, then without one trailing
// and one leading comma.
[[nodiscard]] std::string cleanedEnumeratedList(std::string_view sList);

// The different lists of the enumerated controls in list order, empty ones and pExcept's apart.
[[nodiscard]] std::vector<std::string> enumeratedLists(const CUIControlList& list,
                                                       const CUICtrl* pExcept = nullptr);

// Why a cleaned list can not become an enumeration: an item that is no name of C++, that stands twice, or
// that sVariableName or another name of the class already has. Empty if it can.
[[nodiscard]] std::string checkListItems(const CDSPProject& project, std::string_view sList,
                                         std::string_view sVariableName, const CUICtrl* pExisting);

// The lists of other controls that storing a list for pExisting (null for a new control) would alter: its
// old list when others share it, and each list that has an item in common with the new one. None if the
// control keeps its list.
[[nodiscard]] std::vector<std::string> listsAlteredBy(const CDSPProject& project, std::string_view sList,
                                                      const CUICtrl* pExisting);

// The most items that every enumerated control with one of these lists can take.
[[nodiscard]] std::size_t maximumItems(const CUIControlList& list, const std::vector<std::string>& lists);

// Gives a record the list, the limits 0 to items - 1, and an initial value within them.
void setEnumeratedList(CUICtrl& record, std::string_view sList);

// Every enumerated control with one of the lists gets the new one, as setEnumeratedList() does it.
void alterEnumeratedLists(CUIControlList& list, const std::vector<std::string>& altered,
                          std::string_view sNewList);

} // namespace velmora
