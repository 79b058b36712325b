#include "dsp/modules/hf_exciter_xm1.h"

#include "base/text.h"
#include "dsp/modules/buffer_mix.h"
#include "dsp/modules/multi_filter.h"

#include <array>
#include <cmath>

namespace velmora {

namespace {

constexpr UINT OUT_LEVEL = 0; // own parameter
constexpr CModuleParameter PARAMETERS[] = {
    {"Out Level", "dB", {0.50118723F, 0.0F, 1.0F}, {0.794328F, 0.0F, 1.0F}, false, EModuleText::decibels},
};

constexpr CModuleOption TYPES[] = {
    {XM1_NORMAL, "Normal"},
    {XM1_NO_APF, "No APF"},
    {XM1_INVERTED_APF, "Inv APF"},
};
constexpr CModuleChoice CHOICES[] = {{"Exciter Type", TYPES}};

// What a new module holds.
constexpr std::string_view CONSTRUCTION =
    "560.80078125,234.296875,1.0,2164.453125,300.0,0.15848932,458.59375,6.0,1.0,3363.28125,12.0,0.50118723";

// Where the numbers of a preset belong; the last one is the output level.
struct CPresetValue
{
    UINT m_uChild;
    UINT m_uParameter;
};
constexpr std::array<CPresetValue, 11> PRESET_VALUES = {{
    {0, MULTIFILTER_FC},
    {0, MULTIFILTER_Q},
    {0, MULTIFILTER_VOLUME},
    {1, MULTIFILTER_FC},
    {1, MULTIFILTER_Q},
    {1, MULTIFILTER_VOLUME},
    {2, MULTIFILTER_FC},
    {2, MULTIFILTER_BOOST_CUT},
    {2, MULTIFILTER_Q},
    {3, MULTIFILTER_FC},
    {3, MULTIFILTER_BOOST_CUT},
}};

} // namespace

CHF_Exciter_XM1::CHF_Exciter_XM1() : CHF_Exciter_2("HF Exciter XM1", FILTER_ID, PARAMETERS, CHOICES, PATHS)
{
    makeChildren({{{{MULTIFILTER_FC, "APF1 fc", ""}, {MULTIFILTER_Q, "APF1 BW", ""}},
                   {{MULTIFILTER_FC, "APF2 fc", ""},
                    {MULTIFILTER_Q, "APF2 BW", ""},
                    {MULTIFILTER_VOLUME, "Process", ""}},
                   {{MULTIFILTER_FC, "Lo fc", ""}},
                   {{MULTIFILTER_FC, "Hi fc", ""}}}});
    setValues(CONSTRUCTION);
}

bool CHF_Exciter_XM1::loadPreset(std::string_view sName)
{
    return sName == PRESET_NAME && setValues(PRESET);
}

bool CHF_Exciter_XM1::setValues(std::string_view sValues)
{
    const auto texts = split(sValues, ',');
    if (texts.size() != PRESET_VALUES.size() + 1)
        return false;
    std::array<float, PRESET_VALUES.size() + 1> values{};
    for (std::size_t u = 0; u < values.size(); ++u) {
        values[u] = static_cast<float>(parseNumber(texts[u]).value_or(NAN));
        if (!std::isfinite(values[u]))
            return false;
    }
    for (std::size_t u = 0; u < PRESET_VALUES.size(); ++u)
        childAt(PRESET_VALUES[u].m_uChild).setParameter(PRESET_VALUES[u].m_uParameter, values[u]);
    return setParameter(OUT_LEVEL, values.back());
}

bool CHF_Exciter_XM1::resetToDefaults()
{
    const bool bDone = CHF_Exciter_2::resetToDefaults();
    return setValues(DEFAULTS) && bDone;
}

bool CHF_Exciter_XM1::route(const CPass& pass, float* pIn, float* pOut)
{
    const bool bDone = CHF_Exciter_2::route(pass, pIn, pOut);
    scaleBuffer(pOut, pass.m_uSamples, parameter(OUT_LEVEL));
    return bDone;
}

} // namespace velmora
