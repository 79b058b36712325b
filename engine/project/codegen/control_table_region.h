#pragma once

#include <string>

namespace velmora {

class CDSPProject;

// The body of the commented region in the plug-in's .cpp: which index userInterfaceChange() receives from
// which control, assignable button and joystick list. [main]
[[nodiscard]] std::string controlTableBody(const CDSPProject& project);

} // namespace velmora
