#pragma once

#include "dsp/modules/hf_exciter_2.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

enum EXM1Type : UINT
{
    XM1_NORMAL = 330,
    XM1_NO_APF = 331,
    XM1_INVERTED_APF = 332,
};

// The exciter of CHF_Exciter_2 with fixed boosts and other types: "Normal" is P(x) + S(x), "No APF" is S(x),
// "Inv APF" is S(x) - P(x); then the output level. "Process" is the gain behind the second all-pass filter,
// so it tells how much of the turned sound there is.
//
// A preset is a text of twelve numbers between commas: fc, bandwidth and gain of each all-pass filter; fc,
// boost and Q of the low shelf; fc and boost of the high shelf; output level. Frequencies and bandwidths are
// in Hz, boosts in dB, gains and level linear. A new module holds the factory preset to more digits; a reset
// to defaults has more of the process and of the level than that, as it always had.
class CHF_Exciter_XM1 : public CHF_Exciter_2
{
  public:
    static constexpr UINT FILTER_ID = 5004;
    static constexpr std::string_view PRESET_NAME = "HF_Exciter_XM1.pre";
    static constexpr std::string_view PRESET =
        "561.0,234.0,1.000000,2164.0,300.000000,0.15848932,459.0,6.000000,1.000000,3363.0,12.000000,"
        "0.50118723";
    static constexpr std::string_view DEFAULTS =
        "560.800781,234.296875,1.000000,2164.453125,300.000000,0.250000,458.593750,6.000000,1.000000,"
        "3363.281250,12.000000,0.794328";

    CHF_Exciter_XM1();

    // PRESET_NAME alone.
    [[nodiscard]] std::vector<std::string> presetNames() const override { return {std::string(PRESET_NAME)}; }
    bool loadPreset(std::string_view sName) override;

    // Takes over the numbers of a preset. False, and nothing changes, for a text that is none. [main]
    bool setValues(std::string_view sValues);

    bool resetToDefaults() override;

  protected:
    bool route(const CPass& pass, float* pIn, float* pOut) override;

  private:
    static constexpr CPath PATHS[] = {
        {XM1_NORMAL, 1.0F, false, false},
        {XM1_NO_APF, 0.0F, false, false},
        {XM1_INVERTED_APF, -1.0F, false, false},
    };
};

} // namespace velmora
