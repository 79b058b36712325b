#include "host/control_law.h"

#include "base/text.h"
#include "host/leading_number.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace velmora {

namespace {

constexpr double POSITIONS = 256.0;
constexpr float FLOAT_BITS_OF_INFINITY = 2139095040.0F; // 0x7F800000

template <typename T>
T truncatedTo(double dValue)
{
    constexpr auto LOWEST = static_cast<double>(std::numeric_limits<T>::lowest());
    constexpr auto HIGHEST = static_cast<double>(std::numeric_limits<T>::max());
    return std::isnan(dValue) ? T{0} : static_cast<T>(std::clamp(dValue, LOWEST, HIGHEST));
}

// The item whose band of the travel holds x. Band edges are 32-bit products.
std::optional<UINT> enumeratedIndex(UINT uItemCount, double x)
{
    const float fStep = 1.0F / static_cast<float>(uItemCount);
    for (UINT i = 0; i < uItemCount; ++i) {
        const float fBegin = static_cast<float>(i) * fStep;
        const float fEnd = static_cast<float>(i + 1) * fStep;
        if (fBegin <= x && fEnd > x)
            return i;
    }
    return std::nullopt;
}

double exponentialFromNormalized(const CControlLaw& law, double x)
{
    if (law.m_fLo == 0.0F)
        return x;
    return law.m_fLo * fastpow2(static_cast<float>(x) * fastlog2(law.m_fHi / law.m_fLo));
}

double exponentialFromCooked(const CControlLaw& law, double dCooked)
{
    if (law.m_fLo == 0.0F)
        return dCooked;
    return fastlog2(static_cast<float>(dCooked / law.m_fLo)) / fastlog2(law.m_fHi / law.m_fLo);
}

const char* floatFormat(double dCooked)
{
    const double dSize = std::abs(dCooked);
    if (dSize > 0.0 && dSize < 0.1)
        return "%.4f";
    const std::size_t uCharacters = formatted("%d", truncatedToInt(dCooked)).size();
    return uCharacters <= 3 ? "%.2f" : uCharacters == 4 ? "%.1f" : "%.0f";
}

std::string without(std::string_view sText, std::string_view sUnits)
{
    std::string sResult(sText);
    if (sUnits.empty())
        return sResult;
    for (auto uAt = sResult.find(sUnits); uAt != std::string::npos; uAt = sResult.find(sUnits, uAt))
        sResult.erase(uAt, sUnits.size());
    return sResult;
}

} // namespace

float fastlog2(float x)
{
    const auto uBits = std::bit_cast<std::uint32_t>(x);
    const auto fMantissa = std::bit_cast<float>((uBits & 0x7FFFFFU) | 0x3F000000U);
    return static_cast<float>(uBits) * 1.1920929e-7F - 124.22552F - 1.4980303F * fMantissa -
           1.72588F / (0.35208872F + fMantissa);
}

float fastpow2(float p)
{
    if (!(p < 128.0F))
        return std::isnan(p) ? p : std::numeric_limits<float>::infinity();
    const float fOffset = p < 0.0F ? 1.0F : 0.0F;
    const float fLimited = std::max(p, -126.0F);
    const float z = fLimited - std::trunc(fLimited) + fOffset;
    const float fBits =
        8388608.0F * (fLimited + 121.274055F + 27.728024F / (4.8425255F - z) - 1.4901291F * z);
    return std::bit_cast<float>(static_cast<std::uint32_t>(std::clamp(fBits, 0.0F, FLOAT_BITS_OF_INFINITY)));
}

double cookedFromNormalized(const CControlLaw& law, double dNormalized)
{
    if (law.m_uDataType == UINTData)
        if (const auto uIndex = enumeratedIndex(law.m_uItemCount, dNormalized))
            return *uIndex;
    if (law.m_bExp && !law.m_bLog)
        return exponentialFromNormalized(law, dNormalized);

    const double x = law.m_bLog ? std::log10(9.0 * dNormalized + 1.0) : dNormalized;
    const double dCooked = (static_cast<double>(law.m_fHi) - law.m_fLo) * x + law.m_fLo;
    return law.m_uDataType == intData ? std::nearbyint(dCooked) : dCooked;
}

double normalizedFromCooked(const CControlLaw& law, double dCooked)
{
    const bool bExponential = law.m_bExp && law.m_uDataType != UINTData;
    const double dNormalized =
        bExponential ? exponentialFromCooked(law, dCooked) : (dCooked - law.m_fLo) / (law.m_fHi - law.m_fLo);
    return law.m_bLog ? (std::pow(10.0, dNormalized) - 1.0) / 9.0 : dNormalized;
}

int positionFromNormalized(double dNormalized)
{
    return std::isfinite(dNormalized) ? truncatedToInt(POSITIONS * dNormalized) : 0;
}

int truncatedToInt(double dValue)
{
    return truncatedTo<int>(dValue);
}

UINT truncatedToUINT(double dValue)
{
    return truncatedTo<UINT>(dValue);
}

std::string valueText(UINT uDataType, double dCooked)
{
    switch (uDataType) {
    case intData:
        return formatted("%d", truncatedToInt(dCooked));
    case floatData:
        return formatted(floatFormat(dCooked), dCooked);
    case doubleData:
        return formatted("%.3f", dCooked);
    case UINTData:
        return formatted("%u", truncatedToUINT(dCooked));
    default:
        return {};
    }
}

std::optional<double> cookedFromText(const CControlLaw& law, std::string_view sText, std::string_view sUnits)
{
    const auto dTyped = leadingNumber(without(sText, sUnits));
    if (!dTyped)
        return std::nullopt;
    const auto [fLeast, fGreatest] = std::minmax(law.m_fLo, law.m_fHi);
    if (*dTyped >= fLeast && *dTyped <= fGreatest)
        return dTyped;
    return leadingNumber(formatted("%f", static_cast<double>(*dTyped < fLeast ? fLeast : fGreatest)));
}

} // namespace velmora
