#pragma once

#include "cli/command.h"

#include <vector>

namespace velmora::cli {

// The rows of the commands "project ..." and "preset ...", for the table of all commands.
[[nodiscard]] std::vector<CCommand> projectCommandRows();

} // namespace velmora::cli
