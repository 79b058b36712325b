#include "cli/demo/plot_axis.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace velmora::cli {

namespace {

constexpr double DECIBEL_STEPS[] = {1, 2, 3, 6, 12, 24, 48, 96};
constexpr double DEGREE_STEPS[] = {1, 2, 5, 10, 15, 30, 45, 90, 180, 360};
constexpr int FITTED_STEPS = 8;      // about as many as a fitted axis has
constexpr int LABELS_PER_DECADE = 3; // 1, 2 and 5
constexpr double ROUNDING = 1e-9;    // of a step

bool canBeDrawn(const CPlotAxis& axis)
{
    return std::isfinite(axis.m_dLow) && std::isfinite(axis.m_dHigh) && axis.m_dLow < axis.m_dHigh &&
           (axis.m_eScale != EPlotScale::logarithmic || axis.m_dLow > 0.0);
}

double decimalStep(double dAtLeast)
{
    const double dDecade = std::pow(10.0, std::floor(std::log10(dAtLeast)));
    for (const double dDigit : {1.0, 2.0, 5.0})
        if (dDigit * dDecade >= dAtLeast * (1.0 - ROUNDING))
            return dDigit * dDecade;
    return 10.0 * dDecade;
}

// The smallest step of the scale that cuts the range into at most nSteps pieces.
double stepFor(EPlotScale eScale, double dRange, int nSteps)
{
    const double dAtLeast = dRange / std::max(1, nSteps);
    const std::span<const double> table = eScale == EPlotScale::decibel  ? std::span(DECIBEL_STEPS)
                                          : eScale == EPlotScale::degree ? std::span(DEGREE_STEPS)
                                                                         : std::span<const double>();
    const auto found = std::lower_bound(table.begin(), table.end(), dAtLeast);
    return dAtLeast < 1.0 || found == table.end() ? decimalStep(dAtLeast) : *found;
}

int decimalsOf(double dStep)
{
    return std::max(0, static_cast<int>(-std::floor(std::log10(dStep) + ROUNDING)));
}

std::string shortFrequency(double dValue)
{
    return dValue >= 1000.0 ? shortestDecimal(dValue / 1000.0) + "k" : shortestDecimal(dValue);
}

std::vector<CPlotTick> logarithmicTicks(const CPlotAxis& axis, int nMaxLabels)
{
    std::vector<CPlotTick> result;
    const double dDecades = std::log10(axis.m_dHigh / axis.m_dLow);
    const bool bRoomForMore = LABELS_PER_DECADE * dDecades + 1.0 <= nMaxLabels;
    const int nFirst = static_cast<int>(std::floor(std::log10(axis.m_dLow)));
    const int nLast = static_cast<int>(std::ceil(std::log10(axis.m_dHigh)));
    for (int nDecade = nFirst; nDecade <= nLast; ++nDecade) {
        for (int nDigit = 1; nDigit <= 9; ++nDigit) {
            const double dValue = nDigit * std::pow(10.0, nDecade);
            if (dValue < axis.m_dLow * (1.0 - ROUNDING) || dValue > axis.m_dHigh * (1.0 + ROUNDING))
                continue;
            const bool bLabel = nDigit == 1 || (bRoomForMore && (nDigit == 2 || nDigit == 5));
            result.push_back({dValue, bLabel ? shortFrequency(dValue) : std::string()});
        }
    }
    return result;
}

} // namespace

std::string printedNumber(double dValue, int nDecimals)
{
    std::string sText = formatted("%.*f", nDecimals, dValue);
    if (sText[0] == '-') {
        const bool bZero = sText.find_first_of("123456789in") == std::string::npos;
        sText = (bZero ? "" : "\u2212") + sText.substr(1);
    }
    return sText;
}

double positionOnAxis(const CPlotAxis& axis, double dValue)
{
    if (!canBeDrawn(axis))
        return std::numeric_limits<double>::quiet_NaN();
    if (axis.m_eScale != EPlotScale::logarithmic)
        return (dValue - axis.m_dLow) / (axis.m_dHigh - axis.m_dLow);
    if (!(dValue > 0.0))
        return std::numeric_limits<double>::quiet_NaN();
    return std::log(dValue / axis.m_dLow) / std::log(axis.m_dHigh / axis.m_dLow);
}

std::vector<CPlotTick> axisTicks(const CPlotAxis& axis, int nMaxLabels)
{
    if (!canBeDrawn(axis))
        return {};
    if (axis.m_eScale == EPlotScale::logarithmic)
        return logarithmicTicks(axis, nMaxLabels);
    std::vector<CPlotTick> result;
    const double dStep = stepFor(axis.m_eScale, axis.m_dHigh - axis.m_dLow, nMaxLabels - 1);
    const int nDecimals = decimalsOf(dStep);
    for (double dIndex = std::ceil(axis.m_dLow / dStep - ROUNDING);
         dIndex <= std::floor(axis.m_dHigh / dStep + ROUNDING); dIndex += 1.0)
        result.push_back({dIndex * dStep, printedNumber(dIndex * dStep, nDecimals)});
    return result;
}

CPlotAxis fittedAxis(EPlotScale eScale, std::string sUnit, double dLow, double dHigh)
{
    double dFrom = std::isfinite(dLow) ? dLow : 0.0;
    double dTo = std::isfinite(dHigh) ? dHigh : 0.0;
    if (dFrom > dTo)
        std::swap(dFrom, dTo);
    if (dTo - dFrom <= std::max(std::abs(dFrom), std::abs(dTo)) * ROUNDING) {
        const double dHalf = eScale == EPlotScale::linear ? std::max(std::abs(dFrom) * 0.5, 0.5) : 6.0;
        dFrom -= dHalf;
        dTo += dHalf;
    }
    const double dStep = stepFor(eScale, dTo - dFrom, FITTED_STEPS);
    return {eScale, std::floor(dFrom / dStep + ROUNDING) * dStep, std::ceil(dTo / dStep - ROUNDING) * dStep,
            std::move(sUnit)};
}

} // namespace velmora::cli
