#pragma once

#include <string>
#include <string_view>

namespace velmora::cli {

// The definition of a class' operation in C++ source, from its head to its closing brace; empty if the
// source has none. Braces in comments and literals do not count.
[[nodiscard]] std::string operationIn(std::string_view sSource, std::string_view sOperation);

// The definition of whichever of the plug-in's three processing operations the source has.
[[nodiscard]] std::string processingOperationIn(std::string_view sSource);

} // namespace velmora::cli
