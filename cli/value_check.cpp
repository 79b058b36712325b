#include "cli/value_check.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

namespace velmora::cli {

namespace {

// Long numbers with an exponent.
std::string shownLimit(double dLimit)
{
    constexpr double LONGEST_WHOLE = 1e15;
    return std::abs(dLimit) < LONGEST_WHOLE ? shortestDecimal(dLimit) : formatted("%g", dLimit);
}

std::string limitsOf(const CValueRule& rule)
{
    const bool bLow = rule.m_dLowest > -std::numeric_limits<double>::max();
    const bool bHigh = rule.m_dHighest < std::numeric_limits<double>::max();
    if (bLow && bHigh)
        return " from " + shownLimit(rule.m_dLowest) + " to " + shownLimit(rule.m_dHighest);
    if (bLow)
        return " of at least " + shownLimit(rule.m_dLowest);
    return bHigh ? " of at most " + shownLimit(rule.m_dHighest) : "";
}

std::string faultOfNumber(const std::string& sValue, const CValueRule& rule)
{
    const auto number = parseNumber(sValue);
    const bool bWhole = rule.m_eKind == EValueKind::WholeNumber;
    if (number && std::isfinite(*number) && *number >= rule.m_dLowest && *number <= rule.m_dHighest &&
        (!bWhole || *number == std::floor(*number)))
        return {};
    return std::string(bWhole ? "must be a whole number" : "must be a number") + limitsOf(rule);
}

std::string faultOfChoice(const std::string& sValue, const CValueRule& rule)
{
    if (std::ranges::find(rule.m_choices, sValue) != rule.m_choices.end())
        return {};
    std::string sText = "must be one of";
    for (std::size_t u = 0; u < rule.m_choices.size(); ++u)
        sText += (u == 0 ? " " : ", ") + std::string(rule.m_choices[u]);
    return sText;
}

std::string faultOfAssignment(const std::string& sValue, const CValueRule& rule)
{
    constexpr double HIGHEST_ID = 4294967294.0; // the highest word names no control
    const bool bPosition = rule.m_eKind == EValueKind::PositionAssignment;
    const auto uEquals = sValue.find('=');
    const CValueRule idRule{EValueKind::WholeNumber, 0, HIGHEST_ID};
    const CValueRule positionRule{EValueKind::WholeNumber, rule.m_dLowest, rule.m_dHighest};
    if (uEquals != std::string::npos && faultOfNumber(sValue.substr(0, uEquals), idRule).empty() &&
        (!bPosition || faultOfNumber(sValue.substr(uEquals + 1), positionRule).empty()))
        return {};
    return "must be a control's id, an equals sign and " +
           (bPosition ? "a whole number" + limitsOf(rule) : "a value");
}

} // namespace

std::string checkValue(std::string& sValue, const CValueRule& rule)
{
    switch (rule.m_eKind) {
    case EValueKind::Number:
    case EValueKind::WholeNumber:
        return faultOfNumber(sValue, rule);
    case EValueKind::Choice:
        return faultOfChoice(sValue, rule);
    case EValueKind::Assignment:
    case EValueKind::PositionAssignment:
        return faultOfAssignment(sValue, rule);
    case EValueKind::File:
    case EValueKind::Folder: {
        if (sValue.empty())
            return "must not be empty";
        std::error_code error;
        const auto absolute = std::filesystem::absolute(sValue, error);
        const bool bGoesUp = std::ranges::find(absolute, "..") != absolute.end(); // perhaps behind a link
        if (!error)
            sValue = (bGoesUp ? absolute : absolute.lexically_normal()).string();
        return {};
    }
    default:
        return {};
    }
}

} // namespace velmora::cli
