#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>

namespace velmora {

// How the callbacks of a stream keep up. Written by the one audio thread that runs them, read by any.
class CCallbackStatistics
{
  public:
    // What is known since reset().
    struct CFigures
    {
        std::uint64_t m_uBuffers = 0;
        std::uint64_t m_uHostUnderruns = 0; // gaps that the audio system reports
        std::uint64_t m_uInputLosses = 0;   // input that the audio system lost
        std::uint64_t m_uOverruns = 0;      // callbacks of ours that took longer than their buffer lasts
        double m_dLoad = 0.0;               // of the last buffers, smoothed; 1.0 is all of a buffer's time
        double m_dPeakLoad = 0.0;
        double m_dPeakFilterLoad = 0.0; // the filter's part
    };

    // Forgets all. [main, no stream running]
    void reset(double dSampleRate);

    [[nodiscard]] CFigures figures() const; // [any]

    // What the given fraction of all callbacks, 0.0 to 1.0, did not exceed: the upper bound of the
    // histogram's step, in microseconds; 0.0 if there was none. [any]
    [[nodiscard]] double percentileMicroseconds(double dFraction) const;

    using clock = std::chrono::steady_clock;

    // One callback: its length in frames, what the audio system reported (EAudioCallbackStatus), how long it
    // and the filter in it took. [audio]
    void add(unsigned uFrames, unsigned uStatus, clock::duration total, clock::duration filter) noexcept;

  private:
    // Steps of the histogram: eight to an octave, from 1/8 us on.
    static constexpr std::size_t STEPS = 256;

    double m_dSampleRate = 44100.0; // Hz
    std::atomic<std::uint64_t> m_uBuffers{0};
    std::atomic<std::uint64_t> m_uHostUnderruns{0};
    std::atomic<std::uint64_t> m_uInputLosses{0};
    std::atomic<std::uint64_t> m_uOverruns{0};
    std::atomic<double> m_dLoad{0.0};
    std::atomic<double> m_dPeakLoad{0.0};
    std::atomic<double> m_dPeakFilterLoad{0.0};
    std::array<std::atomic<std::uint32_t>, STEPS> m_histogram{};
};

} // namespace velmora
