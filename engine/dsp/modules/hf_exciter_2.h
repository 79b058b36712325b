#pragma once

#include "dsp/modules/filter_chain.h"

#include <array>

namespace velmora {

enum EExciterType : UINT
{
    EXCITER_TYPE_A = 330,
    EXCITER_NO_APF = 331,
    EXCITER_TYPE_C = 332,
    EXCITER_TYPE_D = 333,
};

// Adds a sound whose phase was turned by two all-pass filters to one that passed two shelves. The input is
// scaled by 0.5, in place. By type, with P the all-pass filters (children 0 and 1) and S the shelves (2, 3):
//
//     "Type A"  P(x) + S(x)
//     "No APF"  S(x)
//     "Type C"  (P(x) + S(x) + x) / 3
//     "Type D"  S(w(P(x))), w the waveshaper of soft_shaper.h, which adds harmonics to loud sounds
class CHF_Exciter_2 : public CFilterChain
{
  public:
    static constexpr UINT FILTER_ID = 5003;

    CHF_Exciter_2();

    bool resetToDefaults() override;

    [[nodiscard]] UINT exciterType() const { return choice(0); }    // [any]
    bool setExciterType(UINT uCode) { return setChoice(0, uCode); } // [main]

  protected:
    // What a type does. A table of them belongs to each class.
    struct CPath
    {
        UINT m_uType;
        float m_fAllPass; // weight of the all-pass filters beside the shelves; 0 leaves them out
        bool m_bDry;      // and the input beside them, all with an equal share of the whole
        bool m_bShapes;   // all-pass filters, waveshaper and shelves one behind the other
    };

    CHF_Exciter_2(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                  std::span<const CModuleChoice> choices, std::span<const CPath> paths);

    bool route(const CPass& pass, float* pIn, float* pOut) override;

    static constexpr UINT ALL_PASS_1 = 0;
    static constexpr UINT ALL_PASS_2 = 1;
    static constexpr UINT LOW_SHELF = 2;
    static constexpr UINT HIGH_SHELF = 3;

    // The four of them, with the controls that they show.
    void makeChildren(const std::array<std::vector<CShownSetting>, 4>& shown);

  private:
    static constexpr CPath PATHS[] = {
        {EXCITER_TYPE_A, 1.0F, false, false},
        {EXCITER_NO_APF, 0.0F, false, false},
        {EXCITER_TYPE_C, 1.0F, true, false},
        {EXCITER_TYPE_D, 1.0F, false, true},
    };

    void setUpChildren();
    [[nodiscard]] bool runPair(const CPass& pass, UINT uFirst, float* pIn, float* pOut) const;

    std::span<const CPath> m_paths;
};

} // namespace velmora
