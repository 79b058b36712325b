#pragma once

#include "cli/command_line.h"
#include "project/control_properties.h"

#include <string>

namespace velmora::cli {

// Applies the options of a slot's property dialog to a control that is being edited; what is not given stays
// as it is. Answers why the options do not fit the slot, empty if they do. Whether the values are good is for
// checkControl() to say.
[[nodiscard]] std::string applyControlOptions(const CCommandLine& line, CControlEdit& edit);

} // namespace velmora::cli
