#pragma once

#include "dsp/modules/multi_filter.h"

#include <atomic>

namespace velmora {

// Second-order high-pass and low-pass filters for crossovers: both are at -6 dB at fc and, one of them with
// its phase reversed, add up to an all-pass.
class CLinkwitzRileyFilter : public CMultiFilter
{
  public:
    CLinkwitzRileyFilter();

    // Negates the output. [main]
    void setReversePhase(bool bReverses);
    [[nodiscard]] bool reversesPhase() const { return m_bReversesPhase.load(std::memory_order_relaxed); }

    float processSample(float fInput, float* pState, int nChannel) override;
    using CMultiFilter::processSample;

  protected:
    [[nodiscard]] CDesign design() const override;

  private:
    std::atomic<bool> m_bReversesPhase{false};
};

} // namespace velmora
