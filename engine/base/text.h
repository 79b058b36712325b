#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// Without blanks, tabs and line ends at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view sText);

// The pieces between separators; an empty text has none.
[[nodiscard]] std::vector<std::string> split(std::string_view sText, char cSeparator);

// Without regard to the case of ASCII letters.
[[nodiscard]] bool equalsIgnoreCase(std::string_view sLeft, std::string_view sRight);

// What printf would write for the format and arguments, in the "C" locale.
[[nodiscard]] std::string formatted(const char* pFormat, ...) __attribute__((format(printf, 1, 2)));

// The number that the whole text is, blanks at its ends apart; none if it is not one. Independent of
// the locale.
[[nodiscard]] std::optional<double> parseNumber(std::string_view sText);

// With so many decimals; zero without a sign, "inf", "-inf" or "nan" for what is no finite number.
[[nodiscard]] std::string fixedDecimals(double dValue, int nDecimals);

// The shortest plain decimal text, without an exponent, that reads back as the same double.
[[nodiscard]] std::string shortestDecimal(double dValue);

} // namespace velmora
