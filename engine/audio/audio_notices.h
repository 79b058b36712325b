#pragma once

#include <array>
#include <atomic>
#include <optional>

namespace velmora {

// What the audio thread has to tell the main thread.
enum class EAudioNotice : unsigned
{
    captureReady,     // 4096 more samples stand in the capture exchange
    driverError,      // a stream was given no output buffer
    oscillatorCalled, // processPortAudioOSC() ran without a driver error; the figure counts the buffers
    notFinite,        // the output held NaN or infinity and was silenced
    limited,          // the output was beyond +24 dBFS and was limited; the figure is its peak, linear
    overload,         // a filter needed longer than the buffer lasts; the figure is its load, 1.0 = 100 %
    count
};

// Hands notices from audio threads to the main thread without a lock and without a queue that could fill:
// each kind is one flag, so that notices of a kind that come before they are taken become one, which keeps
// the largest figure.
class CAudioNotices
{
  public:
    // [audio]
    void post(EAudioNotice eNotice, float fFigure = 0.0F) noexcept
    {
        auto& figure = m_figures[static_cast<unsigned>(eNotice)];
        float fLargest = figure.load(std::memory_order_relaxed);
        while (fFigure > fLargest && !figure.compare_exchange_weak(fLargest, fFigure)) {
        }
        m_uPending.fetch_or(1U << static_cast<unsigned>(eNotice), std::memory_order_release);
    }

    struct CNotice
    {
        EAudioNotice m_eNotice;
        float m_fFigure;
    };

    // The next notice that has not been taken, in the order of the list; none when there is none. [main]
    [[nodiscard]] std::optional<CNotice> take() noexcept
    {
        const unsigned uPending = m_uPending.load(std::memory_order_acquire);
        for (unsigned i = 0; i < static_cast<unsigned>(EAudioNotice::count); ++i) {
            if (!(uPending & (1U << i)))
                continue;
            m_uPending.fetch_and(~(1U << i), std::memory_order_acq_rel);
            return CNotice{static_cast<EAudioNotice>(i), m_figures[i].exchange(0.0F)};
        }
        return std::nullopt;
    }

  private:
    std::atomic<unsigned> m_uPending{0};
    std::array<std::atomic<float>, static_cast<unsigned>(EAudioNotice::count)> m_figures{};
};

} // namespace velmora
