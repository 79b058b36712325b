#pragma once

#include "dsp/numeric.h"

#include <atomic>

namespace velmora {

// A gain in dB that is set on one thread and used on another. The linear factor, 10^(dB / 20), is worked out
// again only when the dB have changed. [audio]
class CDecibelGain
{
  public:
    [[nodiscard]] float linear(const std::atomic<float>& fGain_dB) noexcept
    {
        const float fNow_dB = fGain_dB.load(std::memory_order_relaxed);
        if (fNow_dB != m_fGain_dB) {
            m_fGain_dB = fNow_dB;
            m_fLinear = dB2Lin(fNow_dB);
        }
        return m_fLinear;
    }

  private:
    float m_fGain_dB = 0.0F;
    float m_fLinear = 1.0F;
};

} // namespace velmora
