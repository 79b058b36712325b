#pragma once

#include "host/module_list.h"

#include <string>
#include <string_view>

namespace velmora {

// Appends every built-in module, in the order in which they are offered, each with its controls made. A new
// module is added to the table in the source of this file, and nowhere else. [main]
void addBuiltInModules(CModuleList& modules);

struct CChosenModule
{
    int m_nIndex = -1;     // in the list; -1 for none
    std::string m_sReason; // why there is none
};

// The module of a name, or the only one whose name begins like that; upper and lower case are alike. [main]
[[nodiscard]] CChosenModule chooseModule(const CModuleList& modules, std::string_view sBeginning);

} // namespace velmora
