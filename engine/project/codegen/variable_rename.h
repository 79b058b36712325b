#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

// Gives a variable another name throughout a C++ text: wherever the name stands as a word of its own, in
// comments and string literals too, but not as a part of a longer name. What is no name of a variable, as a
// file from elsewhere may bear it ("int"), stays. Answers how many there were.
std::size_t renameIdentifier(std::string& sText, std::string_view sFrom, std::string_view sTo);

} // namespace velmora
