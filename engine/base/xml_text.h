#pragma once

#include <string>
#include <string_view>

namespace velmora {

// The text as it stands in an XML element or between the double quotes of an attribute.
[[nodiscard]] std::string escapedXml(std::string_view sText);

} // namespace velmora
