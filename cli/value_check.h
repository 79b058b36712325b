#pragma once

#include "cli/command.h"

#include <string>

namespace velmora::cli {

// What is wrong with a value, as the end of a sentence such as "must be a number"; empty if nothing is. A
// path becomes absolute, because commands change the current directory.
[[nodiscard]] std::string checkValue(std::string& sValue, const CValueRule& rule);

} // namespace velmora::cli
