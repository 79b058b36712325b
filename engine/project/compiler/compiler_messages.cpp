#include "project/compiler/compiler_messages.h"

#include "base/text.h"

#include <charconv>

namespace velmora {

namespace {

struct CSeverity
{
    std::string_view m_sMark;
    bool m_bWarning;
};
constexpr CSeverity SEVERITIES[] = {
    {": fatal error: ", false},
    {": fatal: ", false},
    {": error: ", false},
    {": warning: ", true},
};

// Takes ":123" off the end of the text; 0 if there is none.
int takeTrailingNumber(std::string_view& sText)
{
    const std::size_t uColon = sText.rfind(':');
    if (uColon == std::string_view::npos || uColon + 1 == sText.size())
        return 0;
    const char* pEnd = sText.data() + sText.size();
    int nNumber = 0;
    const auto [pStop, error] = std::from_chars(sText.data() + uColon + 1, pEnd, nNumber);
    if (error != std::errc() || pStop != pEnd || nNumber <= 0)
        return 0;
    sText = sText.substr(0, uColon);
    return nNumber;
}

bool isUndefinedReference(std::string_view sLine)
{
    return sLine.find("undefined reference to ") != std::string_view::npos;
}

// What stands ahead of a complaint without a line number: the name of the program that complains. Anything
// with a blank in it is a source line that the compiler quotes.
bool isProgramName(std::string_view sPlace)
{
    return !sPlace.empty() && sPlace.find_first_of(" \t\"'(") == std::string_view::npos;
}

// A summary such as "ld returned 1 exit status" only repeats what stands above it.
bool isSummary(std::string_view sPlace)
{
    const std::string_view sProgram = sPlace.substr(sPlace.rfind('/') + 1);
    return sProgram == "collect2" || sProgram.starts_with("clang");
}

} // namespace

std::vector<CCompilerMessage> parseMessages(std::string_view sOutput)
{
    std::vector<CCompilerMessage> result;
    for (const std::string& sLine : split(sOutput, '\n')) {
        CCompilerMessage message;
        std::size_t uPlaceEnd = std::string::npos;
        for (const CSeverity& severity : SEVERITIES) {
            const std::size_t uMark = sLine.find(severity.m_sMark);
            if (uMark >= uPlaceEnd)
                continue;
            uPlaceEnd = uMark;
            message.m_bWarning = severity.m_bWarning;
            message.m_sText = trimmed(std::string_view(sLine).substr(uMark + severity.m_sMark.size()));
        }
        std::string_view sPlace = std::string_view(sLine).substr(0, std::min(uPlaceEnd, sLine.size()));
        if (uPlaceEnd == std::string::npos && isUndefinedReference(sLine))
            message.m_sText = sLine;
        if (message.m_sText.empty())
            continue;
        const int nLast = takeTrailingNumber(sPlace);
        const int nLastButOne = takeTrailingNumber(sPlace);
        message.m_nLine = nLastButOne ? nLastButOne : nLast;
        message.m_nColumn = nLastButOne ? nLast : 0;
        if (message.m_nLine)
            message.m_sFile = sPlace;
        const bool bQuoted = !message.m_nLine && uPlaceEnd != std::string::npos && !isProgramName(sPlace);
        const bool bRepeats = !message.m_nLine && !result.empty() && isSummary(sPlace);
        if (!bQuoted && !bRepeats)
            result.push_back(std::move(message));
    }
    return result;
}

} // namespace velmora
