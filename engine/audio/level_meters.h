#pragma once

#include "dsp/level_detector.h"

#include <array>
#include <atomic>
#include <cstddef>

namespace velmora {

// The six level meters.
enum EMeter : unsigned
{
    METER_INPUT_LEFT,
    METER_INPUT_RIGHT,
    METER_OUTPUT_LEFT,
    METER_OUTPUT_RIGHT,
    METER_SIDECHAIN_LEFT,
    METER_SIDECHAIN_RIGHT,
    METER_COUNT
};

// The meters' detectors, peak with an attack of 0 ms and a release of 100 ms, and the levels they show.
class CLevelMeters
{
  public:
    // Readies the detectors for a rate in Hz and clears them. [main, no stream running]
    void prepare(double dSampleRate);

    // The levels alone, until the next buffer. [any]
    void clear() noexcept;

    // After the last buffer, 0.0 (-60 dB and below) to 1.0 (0 dB). [any]
    [[nodiscard]] float level(EMeter eMeter) const
    {
        return m_levels[eMeter].load(std::memory_order_relaxed);
    }

    // Takes frames of two samples into a pair of meters, or one channel into both of a pair. [audio]
    void addFrames(EMeter eLeft, const float* pInterleaved, std::size_t uFrames) noexcept;
    void addMono(EMeter eLeft, const float* pSamples, std::size_t uCount) noexcept;

  private:
    void show(EMeter eLeft, float fLeft, float fRight) noexcept;

    std::array<CLevelDetector, METER_COUNT> m_detectors;
    std::array<std::atomic<float>, METER_COUNT> m_levels{};
};

} // namespace velmora
