#pragma once

#include "cli/command.h"

#include <vector>

namespace velmora::cli {

// The rows of the commands that process, play, make and measure sound.
[[nodiscard]] std::vector<CCommand> audioCommandRows();

} // namespace velmora::cli
