#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

namespace velmora {

class CDSPFilter;
struct CEngineBuffer;

// Fades from one filter to another over some buffers. Both get the same input, the old one in a copy of its
// own since a plug-in may write into what it is given; of frame k of L comes
//   out = old + k / L (new - old).
// A null filter is the dry input. An old filter whose output is not finite counts as silent, so that it does
// not spoil the new one's.
//
// How it works: the main thread begins a fade while the run gate is closed. From then on it belongs to the
// audio thread, which moves the position on and, after its last use of the old filter, lowers the running
// flag. The main thread takes it back by seeing that flag low, or by closing the gate.
class CFilterCrossfade
{
  public:
    // Takes all memory: for buffers of up to uMaxSamples over all channels.
    explicit CFilterCrossfade(std::size_t uMaxSamples);

    // Frames that a fade takes, 1 or more. [main, no stream running]
    void setLength(unsigned uFrames) { m_uLength = uFrames; }

    // [main, run gate closed]
    void begin(CDSPFilter* pOld) noexcept;

    // Stops where it stands: from the next buffer on the new filter sounds alone. [audio], or [main, run gate
    // closed]
    void end() noexcept { m_bRunning.store(false, std::memory_order_release); }

    // Whether the old filter may still be called. [any]
    [[nodiscard]] bool isRunning() const { return m_bRunning.load(std::memory_order_acquire); }

    // Frames done. [any]
    [[nodiscard]] unsigned position() const { return m_uPosition.load(std::memory_order_relaxed); }

    // Runs both filters and mixes their outputs into the buffer's. [audio, while it is running]
    void process(CDSPFilter* pNew, const CEngineBuffer& buffer);

  private:
    CEngineBuffer copyOf(const CEngineBuffer& buffer) noexcept;
    void mix(const CEngineBuffer& buffer) noexcept;

    CDSPFilter* m_pOld = nullptr;
    unsigned m_uLength = 441;
    std::atomic<unsigned> m_uPosition{0};
    std::atomic<bool> m_bRunning{false};
    std::vector<float> m_in;
    std::vector<float> m_mono;
    std::vector<float> m_sidechain;
    std::vector<float> m_out;
};

} // namespace velmora
