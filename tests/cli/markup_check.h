#pragma once

#include <string>
#include <string_view>

namespace velmora::test {

// What is wrong with the text as an XML document; empty if it is well-formed and no id stands twice.
// Knows elements, attributes, the five named entities and the document type line: what the program
// writes, and no more.
[[nodiscard]] std::string markupFault(std::string_view sDocument);

// How often a piece of text occurs.
[[nodiscard]] int occurrences(std::string_view sText, std::string_view sPiece);

// The text between sBegin and sEnd, from the first sBegin on; empty if they do not occur.
[[nodiscard]] std::string between(std::string_view sText, std::string_view sBegin, std::string_view sEnd);

} // namespace velmora::test
