#include "project/project_names.h"

#include "base/text.h"
#include "project/class_names.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

// clang-format off
constexpr std::array KEYWORDS = std::to_array<std::string_view>({
    "alignas", "alignof", "and", "and_eq", "asm", "auto", "bitand", "bitor", "bool", "break", "case", "catch",
    "char", "char16_t", "char32_t", "char8_t", "class", "co_await", "co_return", "co_yield", "compl", "concept",
    "const", "const_cast", "consteval", "constexpr", "constinit", "continue", "decltype", "default", "delete",
    "do", "double", "dynamic_cast", "else", "enum", "explicit", "export", "extern", "false", "float", "for",
    "friend", "goto", "if", "inline", "int", "long", "mutable", "namespace", "new", "noexcept", "not", "not_eq",
    "nullptr", "operator", "or", "or_eq", "private", "protected", "public", "register", "reinterpret_cast",
    "requires", "return", "short", "signed", "sizeof", "static", "static_assert", "static_cast", "struct",
    "switch", "template", "this", "thread_local", "throw", "true", "try", "typedef", "typeid", "typename",
    "union", "unsigned", "using", "virtual", "void", "volatile", "wchar_t", "while", "xor", "xor_eq",
});
// clang-format on
static_assert(std::ranges::is_sorted(KEYWORDS));

// Files that every project has beside those of its own name; some file systems do not tell cases apart.
constexpr std::array<std::string_view, 10> FILE_NAMES = {
    "GUIViewAttributes", "VELMPlugInContainer", "VSTGUIController", "VelmoraDLL",    "lookuptables", "plugin",
    "pluginconstants",   "pluginobjects",       "resource",         "synthfunctions"};

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// A class of that name, or files, would stand in for those of every project.
bool isTaken(std::string_view sName)
{
    return std::ranges::find(contractNames(), "C" + std::string(sName)) != contractNames().end() ||
           std::ranges::any_of(FILE_NAMES, [=](auto sFile) { return equalsIgnoreCase(sFile, sName); });
}

} // namespace

bool isProjectNameValid(std::string_view sName)
{
    return !sName.empty() && cleanedProjectName(sName) == sName;
}

std::string cleanedProjectName(std::string_view sName)
{
    std::string sCleaned;
    std::ranges::copy_if(sName, std::back_inserter(sCleaned), isLetter);
    return isTaken(sCleaned) ? "My" + sCleaned : sCleaned;
}

bool hasOnlyNameCharacters(std::string_view sName)
{
    return std::ranges::all_of(sName, [](char c) { return isLetter(c) || isDigit(c) || c == '_'; });
}

bool isVariableName(std::string_view sName)
{
    return !sName.empty() && !isDigit(sName[0]) && hasOnlyNameCharacters(sName) && !isKeyword(sName);
}

bool isKeyword(std::string_view sName)
{
    return std::ranges::binary_search(KEYWORDS, sName);
}

} // namespace velmora
