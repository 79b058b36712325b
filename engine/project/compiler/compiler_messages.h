#pragma once

#include "project/compiler/toolchain.h"

#include <string_view>
#include <vector>

namespace velmora {

// Finds the complaints in what GCC, Clang or a linker wrote. Source lines that they quote are not mistaken
// for complaints. [any]
[[nodiscard]] std::vector<CCompilerMessage> parseMessages(std::string_view sOutput);

} // namespace velmora
