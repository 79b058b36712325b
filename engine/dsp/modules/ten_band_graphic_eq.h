#pragma once

#include "dsp/modules/filter_chain.h"

namespace velmora {

// Ten bands of a graphic equalizer, an octave apart, between a low and a high shelf. The input is scaled by
// 0.25, in place, for 12 dB of headroom; it passes the low shelf, the bands from the lowest on and the high
// shelf; the output is scaled by 4. Each of the twelve has one control, its boost or cut of up to 12 dB.
class CTenBandGraphicEQ : public CFilterChain
{
  public:
    static constexpr UINT FILTER_ID = 5001;
    static constexpr UINT BANDS = 10;
    static constexpr UINT LOW_SHELF = 10; // children; 0 to 9 are the bands
    static constexpr UINT HIGH_SHELF = 11;

    CTenBandGraphicEQ();

    // The table's frequencies and types again, whatever the defaults of a single filter.
    bool resetToDefaults() override;

  protected:
    bool route(const CPass& pass, float* pIn, float* pOut) override;

  private:
    void setUpChildren();
};

} // namespace velmora
