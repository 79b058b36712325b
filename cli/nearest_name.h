#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora::cli {

// The name most like sName, or an empty text if none is near. Nearness is the number of letters to
// insert, delete, replace or exchange with their neighbour.
[[nodiscard]] std::string nearestName(std::string_view sName, const std::vector<std::string_view>& names);

} // namespace velmora::cli
