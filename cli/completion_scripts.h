#pragma once

#include <string>

namespace velmora::cli {

// Completion scripts for the three shells: command words, options with their values, and files or
// folders where the command line takes some.
[[nodiscard]] std::string bashCompletion();
[[nodiscard]] std::string zshCompletion();
[[nodiscard]] std::string fishCompletion();

} // namespace velmora::cli
