#pragma once

#include "project/codegen/project_values_region.h"

#include <string>

namespace velmora {

class CDSPProject;

// The body of the region in initUI() of the plug-in's .cpp: initial values and a CUICtrl for each control in
// list order, then what project_values_region.h writes. About 9 kB for each control. [main]
[[nodiscard]] std::string initUIBody(const CDSPProject& project, const CCompiledPresets& presets);

} // namespace velmora
