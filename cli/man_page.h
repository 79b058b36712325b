#pragma once

#include <string>

namespace velmora::cli {

// The manual page velmora-cli(1) in roff's man macros.
[[nodiscard]] std::string manPage();

} // namespace velmora::cli
