#pragma once

#include "base/text.h"

#include <cmath>
#include <string>

namespace velmora {

// Small conversions shared by filters, measurements and graphs. All: [any], but the two that make text.

// Decibels to a linear factor: 10^(dB / 20).
[[nodiscard]] inline float dB2Lin(float fdB)
{
    return std::pow(10.0f, fdB / 20.0f);
}

// A linear factor to decibels: 20 log10(x), without a floor: 0 gives minus infinity.
[[nodiscard]] inline float lin2dB(float fFactor)
{
    return 20.0f * std::log10(fFactor);
}

// The straight line through (x1, y1) and (x2, y2) at x; y1 if x1 and x2 are equal.
[[nodiscard]] inline float linearInterp(float fX1, float fX2, float fY1, float fY2, float fX)
{
    const float fSpan = fX2 - fX1;
    if (fSpan == 0.0f)
        return fY1;
    const float fFraction = (fX - fX1) / fSpan;
    return fFraction * fY2 + (1.0f - fFraction) * fY1;
}

// A fraction 0..1 to the range fMin..fMax.
[[nodiscard]] inline float mapLinear(float fMin, float fMax, float fFraction)
{
    return (fMax - fMin) * fFraction + fMin;
}

// The inverse of mapLinear.
[[nodiscard]] inline float mapLinearInverse(float fMin, float fMax, float fValue)
{
    return (fValue - fMin) / (fMax - fMin);
}

// A fraction 0..1 to fMin..fMax in equal ratios: min (max / min)^fraction. The fraction itself if fMin
// is 0.0.
[[nodiscard]] inline float mapLog(float fMin, float fMax, float fFraction)
{
    return fMin == 0.0f ? fFraction : fMin * std::pow(fMax / fMin, fFraction);
}

// The inverse of mapLog. The value itself if fMin is 0.0.
[[nodiscard]] inline float mapLogInverse(float fMin, float fMax, float fValue)
{
    return fMin == 0.0f ? fValue : std::log(fValue / fMin) / std::log(fMax / fMin);
}

// Where a value lies between fMin and fMax on a logarithmic scale, 0..1.
[[nodiscard]] inline float mapLog10(float fMin, float fMax, float fValue)
{
    return (std::log10(fValue) - std::log10(fMin)) / (std::log10(fMax) - std::log10(fMin));
}

// Where the tenth power of a value lies between those of fMin and fMax, 0..1; a steep volume curve.
[[nodiscard]] inline float mapPow10(float fMin, float fMax, float fValue)
{
    const float fMinPower = std::pow(fMin, 10.0f);
    return (std::pow(fValue, 10.0f) - fMinPower) / (std::pow(fMax, 10.0f) - fMinPower);
}

// Fixed-point text with nDecimals digits behind the point. [any but audio]
[[nodiscard]] inline std::string floatToText(float fValue, int nDecimals)
{
    return formatted("%.*f", nDecimals, static_cast<double>(fValue));
}

// Plain decimal text. [any but audio]
[[nodiscard]] inline std::string intToText(int nValue)
{
    return std::to_string(nValue);
}

} // namespace velmora
