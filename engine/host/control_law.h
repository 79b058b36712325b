#pragma once

#include "pluginconstants.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

// The law between the position of a control and the cooked value, that is the value of the variable that
// it is bound to. Normalised positions run from 0.0 to 1.0, the positions of a control's widget from 0 to
// 256. All functions: [any].

// What the law depends on.
struct CControlLaw
{
    float m_fLo = 0.0F;    // low end of the range, in the control's units
    float m_fHi = 1.0F;    // high end
    UINT m_uDataType = 4;  // intData to UINTData; 4 is none
    bool m_bLog = false;   // logarithmic law; goes ahead of the exponential one
    bool m_bExp = false;   // exponential law, volt per octave
    UINT m_uItemCount = 0; // items of the enumerated list
};

// log2(x) for x > 0, with an error below 2e-4. Works on the bits of the number: those of the exponent,
// corrected by a rational function of the mantissa. Exact results are not to be had, not even for 1.
[[nodiscard]] float fastlog2(float x);

// 2^p, with a relative error below 1e-4, built the same way; p below -126 counts as -126.
[[nodiscard]] float fastpow2(float p);

// The cooked value at a normalised position x, by the first of these that applies:
//     enumerated list of n items     the i with i / n <= x < (i + 1) / n; none at x = 1
//     logarithmic                    lo + (hi - lo) * log10(9 x + 1)
//     exponential                    lo * 2^(x * log2(hi / lo)), or x itself if lo is 0; never rounded
//     linear                         lo + (hi - lo) * x
// For intData the result is rounded to a whole number, halves to the even one.
[[nodiscard]] double cookedFromNormalized(const CControlLaw& law, double dNormalized);

// The normalised position of a cooked value v: (v - lo) / (hi - lo) or, with the exponential law and a type
// other than UINTData, log2(v / lo) / log2(hi / lo), or v itself if lo is 0. With the logarithmic law that
// goes through (10^p - 1) / 9. Not limited to 0..1; not a number for an empty range.
[[nodiscard]] double normalizedFromCooked(const CControlLaw& law, double dCooked);

// 256 times the normalised position, truncated; 0 where an empty range leaves none. The factor holds for
// every control, whatever its range of positions.
[[nodiscard]] int positionFromNormalized(double dNormalized);

// Conversions that truncate toward zero and stay within the range of the type; 0 for not a number.
[[nodiscard]] int truncatedToInt(double dValue);
[[nodiscard]] UINT truncatedToUINT(double dValue);

// A cooked value as the panel shows it, without units:
//     intData, UINTData    whole number
//     doubleData           three decimals
//     floatData            two decimals; one if the integer part takes 4 characters, none above; four for
//                          a value between 0 and 0.1 in size
// Empty for a control without a data type.
[[nodiscard]] std::string valueText(UINT uDataType, double dCooked);

// The cooked value that a person typed. The units are taken out of the text, the rest is trimmed, the
// number in front is read and limited to lo..hi by way of the limit's own text with six decimals. None if
// there is no number.
[[nodiscard]] std::optional<double> cookedFromText(const CControlLaw& law, std::string_view sText,
                                                   std::string_view sUnits);

} // namespace velmora
