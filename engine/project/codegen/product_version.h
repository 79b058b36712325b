#pragma once

#include <string>
#include <string_view>

namespace velmora {

// The product version of the running program, four numbers with points between them.
[[nodiscard]] std::string productVersion();

// A four-part product version with its points removed, read as a decimal number: 6.6.1.3 gives 6613.
[[nodiscard]] unsigned versionNumber(std::string_view sProductVersion);

// versionNumber() of the running program.
[[nodiscard]] unsigned runningVersionNumber();

} // namespace velmora
