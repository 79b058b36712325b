#pragma once

#include <string>

namespace velmora::cli {

// The command reference as a Markdown page: docs/cli.md.
[[nodiscard]] std::string markdownPage();

} // namespace velmora::cli
