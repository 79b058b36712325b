#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora::cli {

// The text as it may stand in HTML or SVG, between tags or in an attribute. Bytes that are no UTF-8 are
// read as Latin-1; control characters other than tab and line end, which no such document may hold,
// are left out.
[[nodiscard]] std::string escapedText(std::string_view sText);

// The bytes in base 64 (RFC 4648), without line ends.
[[nodiscard]] std::string base64(std::string_view sBytes);

// C++ source as escaped text whose comments, keywords, numbers and literals stand in elements of the
// classes c, k, n and s.
[[nodiscard]] std::string highlightedSource(std::string_view sSource);

// The length of the comment, literal, word, number or single byte that C++ source begins with; the
// source is not empty.
[[nodiscard]] std::size_t sourceTokenLength(std::string_view sSource);

} // namespace velmora::cli
