#include "cli/demo/markup.h"

#include "base/xml_text.h"
#include "cli/json_writer.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

namespace velmora::cli {

namespace {

constexpr std::string_view KEYWORDS[] = {
    "auto",     "bool",   "break",       "case",   "class",   "const",   "constexpr", "continue", "default",
    "do",       "double", "else",        "enum",   "false",   "float",   "for",       "if",       "inline",
    "int",      "long",   "namespace",   "new",    "nullptr", "private", "public",    "return",   "short",
    "sizeof",   "static", "static_cast", "struct", "switch",  "this",    "true",      "typedef",  "UINT",
    "unsigned", "using",  "virtual",     "void",   "while",
};

// Valid UTF-8 without the characters that XML forbids.
std::string allowedText(std::string_view sText)
{
    const std::string sUtf8 = toUtf8(sText);
    std::string sResult;
    for (std::size_t uIndex = 0; uIndex < sUtf8.size(); ++uIndex) {
        const char cByte = sUtf8[uIndex];
        const std::string_view sCharacter = std::string_view(sUtf8).substr(uIndex, 3);
        if (sCharacter == "\uFFFE" || sCharacter == "\uFFFF")
            uIndex += 2;
        else if (static_cast<unsigned char>(cByte) >= 0x20 || cByte == '\t' || cByte == '\n')
            sResult += cByte;
    }
    return sResult;
}

bool isNameByte(char cByte)
{
    return std::isalnum(static_cast<unsigned char>(cByte)) || cByte == '_';
}

std::size_t endOfLiteral(std::string_view sSource)
{
    std::size_t uEnd = 1;
    while (uEnd < sSource.size() && sSource[uEnd] != sSource[0] && sSource[uEnd] != '\n')
        uEnd += sSource[uEnd] == '\\' ? 2 : 1;
    return std::min(uEnd + 1, sSource.size());
}

std::size_t endOfBlockComment(std::string_view sSource)
{
    const std::size_t uEnd = sSource.find("*/", 2);
    return uEnd == std::string_view::npos ? sSource.size() : uEnd + 2;
}

struct CToken
{
    std::size_t m_uLength = 1;
    const char* m_pClass = nullptr;
};

CToken tokenAt(std::string_view sSource)
{
    if (sSource.starts_with("//"))
        return {std::min(sSource.find('\n'), sSource.size()), "c"};
    if (sSource.starts_with("/*"))
        return {endOfBlockComment(sSource), "c"};
    if (sSource[0] == '"' || sSource[0] == '\'')
        return {endOfLiteral(sSource), "s"};
    if (!isNameByte(sSource[0]))
        return {};
    const bool bNumber = std::isdigit(static_cast<unsigned char>(sSource[0]));
    const auto end = std::find_if_not(sSource.begin(), sSource.end(), [&](char cByte) {
        return isNameByte(cByte) || (bNumber && (cByte == '.' || cByte == '\''));
    });
    const std::string_view sWord(sSource.begin(), end);
    if (bNumber)
        return {sWord.size(), "n"};
    return {sWord.size(), std::ranges::find(KEYWORDS, sWord) == std::end(KEYWORDS) ? nullptr : "k"};
}

} // namespace

std::size_t sourceTokenLength(std::string_view sSource)
{
    return tokenAt(sSource).m_uLength;
}

std::string escapedText(std::string_view sText)
{
    std::string sResult;
    sResult += escapedXml(allowedText(sText));
    return sResult;
}

std::string base64(std::string_view sBytes)
{
    constexpr std::string_view DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string sResult;
    sResult.reserve((sBytes.size() + 2) / 3 * 4);
    for (std::size_t uIndex = 0; uIndex < sBytes.size(); uIndex += 3) {
        const std::size_t uCount = std::min<std::size_t>(3, sBytes.size() - uIndex);
        std::uint32_t uGroup = 0;
        for (std::size_t uByte = 0; uByte < 3; ++uByte)
            uGroup = uGroup << 8 | (uByte < uCount ? static_cast<unsigned char>(sBytes[uIndex + uByte]) : 0u);
        for (std::size_t uDigit = 0; uDigit < 4; ++uDigit)
            sResult += uDigit <= uCount ? DIGITS[uGroup >> (18 - 6 * uDigit) & 63] : '=';
    }
    return sResult;
}

std::string highlightedSource(std::string_view sSource)
{
    const std::string sAllowed = allowedText(sSource);
    std::string sResult;
    for (std::string_view sRest = sAllowed; !sRest.empty();) {
        const CToken token = tokenAt(sRest);
        if (token.m_pClass)
            sResult += "<span class=\"" + std::string(token.m_pClass) + "\">";
        sResult += escapedXml(sRest.substr(0, token.m_uLength));
        if (token.m_pClass)
            sResult += "</span>";
        sRest.remove_prefix(token.m_uLength);
    }
    return sResult;
}

} // namespace velmora::cli
