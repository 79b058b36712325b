#pragma once

#include <string>

namespace velmora {

class CDSPProject;

// The body of the region in the plug-in's .h: a declaration for each control's variable and meter variable,
// and the enumerations of the UINT ones, in list order. [main]
[[nodiscard]] std::string headerRegionBody(const CDSPProject& project);

} // namespace velmora
