#include "project/compiler/contract_use.h"

#include "base/text.h"
#include "project/compiler/file_stamp.h"

#include <string>
#include <string_view>

namespace velmora {

namespace {

constexpr int MAX_DEPTH = 8;

// Moves behind blanks, line ends and comments; false if a comment has no end.
bool skipComments(std::string_view& sText)
{
    for (;;) {
        sText.remove_prefix(std::min(sText.find_first_not_of(" \t\r\n\f\v"), sText.size()));
        const bool bLine = sText.starts_with("//");
        if (!bLine && !sText.starts_with("/*"))
            return true;
        const std::size_t uEnd = bLine ? sText.find('\n') : sText.find("*/", 2);
        if (uEnd == std::string_view::npos)
            return false;
        // A backslash would carry the comment on into the next line.
        if (bLine && sText.substr(0, uEnd).find('\\') != std::string_view::npos)
            return false;
        sText.remove_prefix(uEnd + (bLine ? 1 : 2));
    }
}

// Takes the line that a directive stands on, without comment and "#"; empty if none stands there, or one
// that goes on in the next line.
std::string takeDirective(std::string_view& sText)
{
    const std::size_t uEnd = std::min(sText.find('\n'), sText.size());
    std::string_view sLine = sText.substr(0, uEnd);
    sText.remove_prefix(uEnd);
    if (!sLine.starts_with('#') || sLine.find_first_of("\\") != std::string_view::npos ||
        sLine.find("/*") != std::string_view::npos)
        return {};
    sLine = sLine.substr(0, std::min(sLine.find("//"), sLine.size()));
    return std::string(trimmed(sLine.substr(1)));
}

// The file that an include directive names in quotes; empty if it is anything else.
std::string quotedInclude(std::string_view sDirective)
{
    if (!sDirective.starts_with("include"))
        return {};
    const std::string_view sName = trimmed(sDirective.substr(std::string_view("include").size()));
    const bool bQuoted = sName.size() > 2 && sName.starts_with('"') && sName.find('"', 1) == sName.size() - 1;
    return bQuoted ? std::string(sName.substr(1, sName.size() - 2)) : std::string();
}

bool beginsWithContract(const std::filesystem::path& file, const std::filesystem::path& contractHeader,
                        int nDepth)
{
    const auto sContents = nDepth < MAX_DEPTH ? contentsOfFile(file) : std::nullopt;
    std::string_view sText = sContents ? std::string_view(*sContents) : std::string_view();
    std::string sGuard;
    bool bGuardDefined = false;
    while (skipComments(sText) && !sText.empty()) {
        const std::string sDirective = takeDirective(sText);
        const std::string sInclude = quotedInclude(sDirective);
        if (!sInclude.empty()) {
            if (bGuardDefined == sGuard.empty())
                return false; // a condition of another kind
            const auto included = (file.parent_path() / sInclude).lexically_normal();
            return included == contractHeader || beginsWithContract(included, contractHeader, nDepth + 1);
        }
        if (sGuard.empty() && sDirective.starts_with("ifndef "))
            sGuard = trimmed(sDirective.substr(7));
        else if (!sGuard.empty() && sDirective == "define " + sGuard)
            bGuardDefined = true;
        else if (sDirective != "pragma once")
            return false;
    }
    return false;
}

} // namespace

bool beginsWithContract(const std::filesystem::path& source, const std::filesystem::path& contractHeader)
{
    return beginsWithContract(source, contractHeader.lexically_normal(), 0);
}

} // namespace velmora
