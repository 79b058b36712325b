#pragma once

#include "pluginconstants.h"

#include <span>
#include <string>
#include <string_view>

namespace velmora {

struct CModuleRange
{
    float m_fDefault; // may lie outside the range
    float m_fLow;
    float m_fHigh;
};

// How the value of a parameter is shown, and typed.
enum class EModuleText
{
    number,   // as the panel shows floats
    whole,    // without decimals
    percent,  // 0.5 is "50"
    decibels, // 0.5 is "-6.0"; silence, and all below it, is "-96.0"
};

// A number that a module is set with, and the slider that goes with it.
struct CModuleParameter
{
    const char* m_pName;
    const char* m_pUnits; // of what is shown
    CModuleRange m_atConstruction;
    CModuleRange m_afterReset;   // set by a reset to defaults
    bool m_bLogarithmic = false; // equal ratios over equal ways of the slider
    EModuleText m_eText = EModuleText::number;
    bool m_bHasControl = true;
};

struct CModuleOption
{
    UINT m_uCode;
    const char* m_pLabel;
};

// One of several options, and the radio buttons that go with it.
struct CModuleChoice
{
    const char* m_pName;
    std::span<const CModuleOption> m_options;
    UINT m_uDefault = 0; // position in the options
};

// One coefficient as the block diagram names it, and where its value lives. The value is written with relaxed
// atomic stores and lives as long as the filter.
struct CModuleCoefficient
{
    std::string m_sLabel;
    const float* m_pValue;
};

// The value of a parameter as text without units.
[[nodiscard]] std::string moduleText(EModuleText eText, float fValue);

// The same, as the number that stands in that text: 0.5 in percent is 50. Decibels are held at -96.
[[nodiscard]] double shownValue(EModuleText eText, double dValue);

// The inverse of shownValue(); -96 dB and less is 0.
[[nodiscard]] double valueOfShown(EModuleText eText, double dShown);

} // namespace velmora
