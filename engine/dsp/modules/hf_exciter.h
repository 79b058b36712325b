#pragma once

#include "dsp/modules/filter_chain.h"

namespace velmora {

// Splits the sound at a crossover, moves the two bands against each other in time, and lifts the highs of
// their sum:
//
//     in (scaled by 0.5, in place) --+-- child 2, high-pass -- child 0, "Delay1" --+-- child 4, shelf -- out
//                                    +-- child 1, low-pass --- child 3, "Delay2" --+
//
// Both filters are of the first order and begin at the same frequency, so that without delays the bands add
// up to the input again. The delays are without feedback and dry sound; the shelf begins 6 dB up from 5 kHz
// on.
class CHF_Exciter : public CFilterChain
{
  public:
    static constexpr UINT FILTER_ID = 5002;

    CHF_Exciter();

    bool resetToDefaults() override;
    bool prepareForPlay() override;

  protected:
    bool route(const CPass& pass, float* pIn, float* pOut) override;

  private:
    void setUpChildren();
    void limitDelays();
};

} // namespace velmora
