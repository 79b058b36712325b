#include "host/leading_number.h"

#include "base/text.h"

#include <charconv>
#include <limits>

namespace velmora {

namespace {

bool isDigit(std::string_view sText, std::size_t uIndex)
{
    return uIndex < sText.size() && sText[uIndex] >= '0' && sText[uIndex] <= '9';
}

bool beginsWithNumber(std::string_view sText)
{
    return isDigit(sText, 0) || (sText.starts_with('.') && isDigit(sText, 1));
}

} // namespace

std::optional<double> leadingNumber(std::string_view sText)
{
    sText = trimmed(sText);
    const bool bNegative = sText.starts_with('-');
    if (bNegative || sText.starts_with('+'))
        sText.remove_prefix(1);
    if (!beginsWithNumber(sText))
        return std::nullopt;

    double dSize = 0.0;
    const auto result = std::from_chars(sText.data(), sText.data() + sText.size(), dSize);
    if (result.ec == std::errc::result_out_of_range) {
        const std::string_view sNumber(sText.data(), static_cast<std::size_t>(result.ptr - sText.data()));
        const bool bTooSmall =
            sNumber.find_first_of("eE") != std::string_view::npos
                ? sNumber.find("e-") != std::string_view::npos || sNumber.find("E-") != std::string_view::npos
                : sNumber.starts_with("0.") || sNumber.starts_with('.');
        dSize = bTooSmall ? 0.0 : std::numeric_limits<double>::infinity();
    }
    return bNegative ? -dSize : dSize;
}

} // namespace velmora
