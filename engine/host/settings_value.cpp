#include "host/settings_value.h"

#include "base/text.h"
#include "host/leading_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace velmora {

namespace {

// Digits with an optional sign ahead of them, as far as they go, held to -nLimit..nLimit.
long long leadingInteger(std::string_view sText, long long nLimit)
{
    sText = trimmed(sText);
    const bool bNegative = sText.starts_with('-');
    if (bNegative || sText.starts_with('+'))
        sText.remove_prefix(1);
    long long nSize = 0;
    for (const char c : sText) {
        if (c < '0' || c > '9')
            break;
        nSize = std::min(nSize * 10 + (c - '0'), nLimit);
    }
    return bNegative ? -nSize : nSize;
}

unsigned leadingUnsigned(std::string_view sText)
{
    return static_cast<unsigned>(leadingInteger(sText, std::numeric_limits<unsigned>::max()));
}

int leadingSigned(std::string_view sText)
{
    constexpr long long LEAST = std::numeric_limits<int>::min();
    constexpr long long GREATEST = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(leadingInteger(sText, -LEAST), LEAST, GREATEST));
}

double leadingFinite(std::string_view sText)
{
    const double dValue = leadingNumber(sText).value_or(0.0);
    return std::isfinite(dValue) ? dValue : 0.0;
}

template <typename T>
bool isWholeNumber(std::string_view sText)
{
    sText = trimmed(sText);
    T value{};
    const auto result = std::from_chars(sText.data(), sText.data() + sText.size(), value);
    return result.ec == std::errc() && result.ptr == sText.data() + sText.size();
}

bool isFiniteNumber(std::string_view sText)
{
    const auto dValue = parseNumber(sText);
    return dValue && std::isfinite(*dValue);
}

} // namespace

CSettingValue parsedSetting(ESettingType eType, std::string_view sText)
{
    switch (eType) {
    case ESettingType::Unsigned:
        return leadingUnsigned(sText);
    case ESettingType::Signed:
        return leadingSigned(sText);
    case ESettingType::Bool:
        return equalsIgnoreCase(sText, "true");
    case ESettingType::Double:
        return leadingFinite(sText);
    default:
        return std::string(sText);
    }
}

std::string settingText(const CSettingValue& value)
{
    struct CPrinter
    {
        std::string operator()(unsigned uValue) const { return std::to_string(uValue); }
        std::string operator()(int nValue) const { return std::to_string(nValue); }
        std::string operator()(bool bValue) const { return bValue ? "true" : "false"; }
        std::string operator()(double dValue) const { return shortestDecimal(dValue); }
        std::string operator()(const std::string& sValue) const { return sValue; }
    };
    return std::visit(CPrinter(), value);
}

std::string whatSettingTakes(ESettingType eType, std::string_view sText)
{
    switch (eType) {
    case ESettingType::Unsigned:
        return isWholeNumber<unsigned>(sText) ? "" : "a whole number from 0 to 4294967295";
    case ESettingType::Signed:
        return isWholeNumber<int>(sText) ? "" : "a whole number from -2147483648 to 2147483647";
    case ESettingType::Bool:
        return equalsIgnoreCase(sText, "true") || equalsIgnoreCase(sText, "false") ? "" : "true or false";
    case ESettingType::Double:
        return isFiniteNumber(sText) ? "" : "a number, such as 44100 or 22050.5";
    default:
        break;
    }
    if (sText.find_first_of("\r\n") != std::string_view::npos)
        return "one line of text, without line ends";
    return sText.size() <= MAX_SETTING_LINE ? "" : formatted("a text of at most %zu bytes", MAX_SETTING_LINE);
}

} // namespace velmora
