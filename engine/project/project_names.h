#pragma once

#include <string>
#include <string_view>

namespace velmora {

// Rules for the names that end up as names in the generated class. [any]

// A project's name becomes a class and several files. It is made of ASCII letters alone, and not the name of
// a class or file that every project has.
[[nodiscard]] bool isProjectNameValid(std::string_view sName);

// What is suggested for a refused name: its letters, behind "My" if the name is one that every project has.
[[nodiscard]] std::string cleanedProjectName(std::string_view sName);

// Made of ASCII letters, digits and underscores; so is an empty text.
[[nodiscard]] bool hasOnlyNameCharacters(std::string_view sName);

// A C++ identifier of ASCII letters, digits and underscores, not beginning with a digit and no keyword.
[[nodiscard]] bool isVariableName(std::string_view sName);

// A keyword, or a word that stands for an operator, of any C++ from 1998 to 2020.
[[nodiscard]] bool isKeyword(std::string_view sName);

} // namespace velmora
