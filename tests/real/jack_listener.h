#pragma once

#include "real/jack_client.h"

#include <atomic>
#include <chrono>
#include <vector>

namespace velmora::test {

// An output device that keeps what is played into it, from its first period to its last.
class CJackListener : public CJackClient
{
  public:
    // Keeps at most dSeconds of sound; what comes later is not kept, and recorded() then fails.
    explicit CJackListener(double dSeconds, const std::string& sName = "listener", int nChannels = 2,
                           int nSampleRate = 48000);
    ~CJackListener() override;

    // Forgets what was played so far; returns when the recording has begun anew, at a period's start.
    void restart();

    // What was played so far, interleaved. Throws std::runtime_error if there was more than fits.
    [[nodiscard]] std::vector<float> recorded() const;

    // Frames that were kept so far. [any]
    [[nodiscard]] std::size_t frames() const { return m_uFrames.load(std::memory_order_acquire); }

    // Waits until uFrames more than now have come; false if they do not come for a long time.
    [[nodiscard]] bool waitForMore(std::size_t uFrames,
                                   std::chrono::seconds patience = std::chrono::seconds(30)) const;

  private:
    void process(std::span<const std::span<float>> channels) override;

    std::vector<float> m_samples;
    std::atomic<std::size_t> m_uFrames{0};
    std::atomic<bool> m_bFull{false};
    std::atomic<bool> m_bRestart{false};
};

} // namespace velmora::test
