#include "base/text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <locale.h>

namespace velmora {

std::string_view trimmed(std::string_view sText)
{
    constexpr std::string_view BLANKS = " \t\r\n\v\f";
    const auto uFirst = sText.find_first_not_of(BLANKS);
    if (uFirst == std::string_view::npos)
        return {};
    return sText.substr(uFirst, sText.find_last_not_of(BLANKS) - uFirst + 1);
}

std::vector<std::string> split(std::string_view sText, char cSeparator)
{
    std::vector<std::string> pieces;
    if (sText.empty())
        return pieces;
    for (;;) {
        const auto uEnd = sText.find(cSeparator);
        pieces.emplace_back(sText.substr(0, uEnd));
        if (uEnd == std::string_view::npos)
            return pieces;
        sText.remove_prefix(uEnd + 1);
    }
}

bool equalsIgnoreCase(std::string_view sLeft, std::string_view sRight)
{
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    return std::ranges::equal(sLeft, sRight, [&](char a, char b) { return lower(a) == lower(b); });
}

namespace {

// Makes this thread write numbers as in the "C" locale, whatever the program or a plug-in chose.
class CPlainLocale
{
  public:
    CPlainLocale() : m_old(::uselocale(plain())) {}
    ~CPlainLocale() { ::uselocale(m_old); }
    CPlainLocale(const CPlainLocale&) = delete;
    CPlainLocale& operator=(const CPlainLocale&) = delete;

  private:
    static locale_t plain()
    {
        static const locale_t PLAIN = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return PLAIN;
    }

    locale_t m_old;
};

} // namespace

std::string formatted(const char* pFormat, ...)
{
    const CPlainLocale plainLocale;
    va_list arguments;
    va_start(arguments, pFormat);
    va_list again;
    va_copy(again, arguments);
    const int nLength = std::vsnprintf(nullptr, 0, pFormat, arguments);
    va_end(arguments);
    std::string sText(nLength > 0 ? static_cast<std::size_t>(nLength) : 0, '\0');
    std::vsnprintf(sText.data(), sText.size() + 1, pFormat, again);
    va_end(again);
    return sText;
}

std::optional<double> parseNumber(std::string_view sText)
{
    sText = trimmed(sText);
    if (sText.starts_with('+') && sText.size() > 1 && sText[1] != '-')
        sText.remove_prefix(1);
    double dValue = 0.0;
    const auto result = std::from_chars(sText.data(), sText.data() + sText.size(), dValue);
    if (sText.empty() || result.ec != std::errc() || result.ptr != sText.data() + sText.size())
        return std::nullopt;
    return dValue;
}

std::string fixedDecimals(double dValue, int nDecimals)
{
    if (std::isnan(dValue))
        return "nan";
    std::string sText = formatted("%.*f", nDecimals, dValue);
    if (sText.starts_with('-') && sText.find_first_not_of("-0.") == std::string::npos)
        sText.erase(0, 1);
    return sText;
}

std::string shortestDecimal(double dValue)
{
    char text[400]; // the smallest double has 324 places behind the point, the largest 309 before it
    const auto result = std::to_chars(text, text + sizeof text, dValue, std::chars_format::fixed);
    return {text, result.ptr};
}

} // namespace velmora
