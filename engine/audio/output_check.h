#pragma once

#include <span>

namespace velmora {

// Watches what comes out of a plug-in: how loud it gets, and what is no sound at all.
class COutputCheck
{
  public:
    // One more buffer, -1.0 to +1.0 being full scale. [audio]
    void add(std::span<const float> samples);

    // The largest size of a finite sample; 1.0 is full scale.
    [[nodiscard]] float peak() const { return m_fPeak; }

    // Finite samples beyond full scale.
    [[nodiscard]] long long overs() const { return m_nOvers; }

    // Samples that are infinite or not a number.
    [[nodiscard]] long long notFinite() const { return m_nNotFinite; }

  private:
    float m_fPeak = 0.0F;
    long long m_nOvers = 0;
    long long m_nNotFinite = 0;
};

} // namespace velmora
