#pragma once

#include <optional>
#include <string_view>

namespace velmora {

// The number that a text begins with, blanks ahead of it apart: "5 dB" gives 5, ".5" gives 0.5. None if
// there is no number, or only "nan". Too large a number is infinite, too small a one 0. Independent of
// the locale. [any]
[[nodiscard]] std::optional<double> leadingNumber(std::string_view sText);

} // namespace velmora
