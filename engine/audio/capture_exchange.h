#pragma once

#include "base/latest_value.h"

#include <array>
#include <atomic>
#include <cstddef>

namespace velmora {

// The 4096 samples that the analyzer looks at, full scale 32768.
struct CCaptureFrame
{
    static constexpr std::size_t SAMPLES = 4096;

    std::array<float, SAMPLES> m_left{};  // what went into the filter
    std::array<float, SAMPLES> m_right{}; // what came out; the same as left when the filter is bypassed
    int m_nChannels = 0;                  // of the interleaved samples
    bool m_bBypass = false;
};

// Collects what goes into the filter and what comes out, and hands both to the analyzer at each 4096 samples.
class CCaptureExchange
{
  public:
    // Whether the analyzer is running. [main]
    void setRunning(bool bRunning) { m_bRunning.store(bRunning, std::memory_order_relaxed); }
    [[nodiscard]] bool isRunning() const { return m_bRunning.load(std::memory_order_relaxed); }

    // Begins a frame anew. [audio], or [main] with no stream running
    void rewind() noexcept { m_uPosition = 0; }

    // Adds nSamples floats over all channels. True when a frame became complete: when the position is 4096
    // exactly. A position beyond it, which a buffer that does not divide 4096 brings about, ends the
    // collecting until rewind(). bOutputIsInput: the display shows the input twice. [audio]
    bool add(const float* pIn, const float* pOut, std::size_t uSamples, int nChannels, bool bBypass,
             bool bOutputIsInput) noexcept;

    // The newest complete frame; null if there was none since the last call. It stays as it is until the next
    // call. [main]
    [[nodiscard]] const CCaptureFrame* latest() { return m_frames.latest(); }

  private:
    std::atomic<bool> m_bRunning{false};
    std::size_t m_uPosition = 0; // samples in the frame that is being filled
    CLatestValue<CCaptureFrame> m_frames;
};

} // namespace velmora
