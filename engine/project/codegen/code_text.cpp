#include "project/codegen/code_text.h"

#include "project/codegen/code_markers.h"
#include "project/project_names.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <set>
#include <vector>

namespace velmora {

namespace {

constexpr std::string_view BLANKS = " \t";

template <typename T>
T heldToFinite(T value)
{
    constexpr T LARGEST = std::numeric_limits<T>::max();
    return std::isnan(value) ? T(0) : std::clamp(value, -LARGEST, LARGEST);
}

template <typename T>
void appendWhole(std::string& sCode, T value)
{
    char text[16];
    sCode.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}

std::string inOneLine(std::string_view sText)
{
    std::string sLine;
    sLine.reserve(sText.size());
    for (std::size_t i = 0; i < sText.size(); ++i) {
        if (sText[i] == '\r' && i + 1 < sText.size() && sText[i + 1] == '\n')
            continue;
        sLine += sText[i] == '\r' || sText[i] == '\n' ? ' ' : sText[i];
    }
    return sLine;
}

bool isControlCharacter(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool startsMarker(std::string_view sText)
{
    return std::ranges::any_of(MARKER_BEGINNINGS, [&](auto sMarker) { return sText.starts_with(sMarker); });
}

// The compiler would read ??' and eight others as a single character.
bool startsTrigraph(std::string_view sText)
{
    return sText.size() > 2 && sText.starts_with("??") &&
           std::string_view("=/'()!<>-").find(sText[2]) != std::string_view::npos;
}

// The length in bytes of the UTF-8 character at the start of the text; 0 if there is none.
std::size_t lengthOfCharacter(std::string_view sText)
{
    const auto byteAt = [&](std::size_t i) {
        return i < sText.size() ? static_cast<unsigned char>(sText[i]) : 0u;
    };
    const unsigned uFirst = byteAt(0);
    const std::size_t uLength = uFirst < 0x80   ? 1
                                : uFirst < 0xC2 ? 0
                                : uFirst < 0xE0 ? 2
                                : uFirst < 0xF0 ? 3
                                : uFirst < 0xF5 ? 4
                                                : 0;
    for (std::size_t i = 1; i < uLength; ++i)
        if ((byteAt(i) & 0xC0) != 0x80)
            return 0;
    const bool bTooLong = (uFirst == 0xE0 && byteAt(1) < 0xA0) || (uFirst == 0xF0 && byteAt(1) < 0x90);
    const bool bOutside = (uFirst == 0xED && byteAt(1) > 0x9F) || (uFirst == 0xF4 && byteAt(1) > 0x8F);
    return bTooLong || bOutside ? 0 : uLength;
}

// U+202A to U+202E and U+2066 to U+2069: what follows would be shown in another order than it is compiled.
bool turnsDirection(std::string_view sCharacter)
{
    if (sCharacter.size() != 3)
        return false;
    const auto uLast = static_cast<unsigned char>(sCharacter[2]);
    return (sCharacter.starts_with("\xE2\x80") && uLast >= 0xAA && uLast <= 0xAE) ||
           (sCharacter.starts_with("\xE2\x81") && uLast >= 0xA6 && uLast <= 0xA9);
}

void appendOctal(std::string& sCode, std::string_view sBytes)
{
    for (const char c : sBytes) {
        const auto u = static_cast<unsigned char>(c);
        sCode += {'\\', static_cast<char>('0' + u / 64), static_cast<char>('0' + u / 8 % 8),
                  static_cast<char>('0' + u % 8)};
    }
}

// One character of ASCII in a string literal; sRest begins with it.
void appendLiteralCharacter(std::string& sCode, std::string_view sRest, bool bEndsTrigraphStart)
{
    const char c = sRest.front();
    if (c == '\t')
        sCode += "\\t";
    else if (isControlCharacter(c) || startsMarker(sRest))
        appendOctal(sCode, sRest.substr(0, 1));
    else if (c == '\\' || c == '"' || bEndsTrigraphStart)
        sCode += {'\\', c};
    else
        sCode += c;
}

std::string_view trimmedBlanks(std::string_view sText)
{
    const auto uFirst = sText.find_first_not_of(BLANKS);
    return uFirst == std::string_view::npos
               ? std::string_view{}
               : sText.substr(uFirst, sText.find_last_not_of(BLANKS) - uFirst + 1);
}

std::string madeIdentifier(std::string_view sText)
{
    std::string sName;
    for (const char c : sText)
        sName += (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ? c : '_';
    if (sName.empty() || (sName[0] >= '0' && sName[0] <= '9'))
        sName.insert(0, 1, '_');
    return isVariableName(sName) ? sName : sName + '_';
}

std::string identifierOr(std::string_view sName, const char* pUnnamed, UINT uControlId)
{
    if (sName.empty())
        return pUnnamed + std::to_string(uControlId);
    return isVariableName(sName) ? std::string(sName) : madeIdentifier(sName);
}

} // namespace

void appendUnsigned(std::string& sCode, UINT uValue)
{
    if (uValue < 10)
        sCode += static_cast<char>('0' + uValue);
    else
        appendWhole(sCode, uValue);
}

void appendInteger(std::string& sCode, int nValue)
{
    appendWhole(sCode, nValue);
}

void appendBoolean(std::string& sCode, bool bValue)
{
    sCode += bValue ? "true" : "false";
}

void appendFixed(std::string& sCode, double dValue, int nDecimals)
{
    if (dValue == 0.0 && !std::signbit(dValue)) {
        sCode.append("0.000000", static_cast<std::size_t>(nDecimals) + 2);
        return;
    }
    char text[320]; // sign, 309 digits, point, 6 decimals
    const auto end =
        std::to_chars(text, text + sizeof text, heldToFinite(dValue), std::chars_format::fixed, nDecimals);
    sCode.append(text, end.ptr);
}

void appendFixed(std::string& sCode, float fValue, int nDecimals)
{
    appendFixed(sCode, static_cast<double>(heldToFinite(fValue)), nDecimals);
}

int truncatedToInt(float fValue)
{
    constexpr double LOWEST = std::numeric_limits<int>::min();
    constexpr double HIGHEST = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(static_cast<double>(heldToFinite(fValue)), LOWEST, HIGHEST));
}

UINT truncatedToUnsigned(float fValue)
{
    constexpr double HIGHEST = std::numeric_limits<UINT>::max();
    return static_cast<UINT>(std::clamp(static_cast<double>(heldToFinite(fValue)), 0.0, HIGHEST));
}

void appendLiteral(std::string& sCode, std::string_view sText)
{
    const std::string sLine = inOneLine(sText);
    std::size_t uTrigraphStartEnd = 0; // the position of the second question mark, when not 0
    for (std::size_t i = 0; i < sLine.size();) {
        const std::string_view sRest = std::string_view(sLine).substr(i);
        const std::size_t uLength = lengthOfCharacter(sRest);
        if (startsTrigraph(sRest))
            uTrigraphStartEnd = i + 1;
        if (uLength == 1)
            appendLiteralCharacter(sCode, sRest, uTrigraphStartEnd > 0 && i == uTrigraphStartEnd);
        else if (uLength == 0 || turnsDirection(sRest.substr(0, uLength)))
            appendOctal(sCode, sRest.substr(0, std::max<std::size_t>(uLength, 1)));
        else
            sCode += sRest.substr(0, uLength);
        i += std::max<std::size_t>(uLength, 1);
    }
}

std::string commentText(std::string_view sText)
{
    const std::string sLine = inOneLine(sText);
    std::string sComment;
    for (std::size_t i = 0; i < sLine.size();) {
        const std::string_view sRest = std::string_view(sLine).substr(i);
        const std::size_t uLength = std::max<std::size_t>(lengthOfCharacter(sRest), 1);
        const std::string_view sCharacter = sRest.substr(0, uLength);
        const char cLast = sComment.empty() ? ' ' : sComment.back();
        if ((cLast == '*' && sRest[0] == '/') || (cLast == '/' && sRest[0] == '*'))
            sComment += ' ';
        if (isControlCharacter(sRest[0]) || turnsDirection(sCharacter))
            sComment += ' ';
        else
            sComment += sCharacter;
        if (startsMarker(sRest))
            sComment += ' ';
        i += uLength;
    }
    return sComment;
}

std::string variableIdentifier(const CUICtrl& control)
{
    return identifierOr(control.cVariableName, "unnamed_", control.uControlId);
}

std::string meterVariableIdentifier(const CUICtrl& control)
{
    return identifierOr(control.cMeterVariableName, "unnamedMeter_", control.uControlId);
}

std::string enumeratorList(std::string_view sList)
{
    const std::string sLine = inOneLine(sList);
    std::string sResult;
    std::set<std::string, std::less<>> used;
    for (std::size_t uStart = 0; uStart <= sLine.size();) {
        const std::size_t uEnd = std::min(sLine.find(',', uStart), sLine.size());
        const std::string_view sItem = std::string_view(sLine).substr(uStart, uEnd - uStart);
        const std::string_view sCore = trimmedBlanks(sItem);
        uStart = uEnd + 1;
        if (sCore.empty())
            continue;
        std::string sName = identifierOr(sCore, "", 0);
        while (!used.insert(sName).second)
            sName += '_';
        const auto uBefore = static_cast<std::size_t>(sCore.data() - sItem.data());
        if (!sResult.empty())
            sResult += ',';
        sResult.append(sItem, 0, uBefore).append(sName).append(sItem, uBefore + sCore.size());
    }
    return sResult;
}

} // namespace velmora
