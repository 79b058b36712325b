#pragma once

#include <array>
#include <atomic>

namespace velmora {

// Hands large values from one writer thread to one reader thread, newest first, without a lock.
//
// How it works: three slots. The writer fills a slot of its own, then exchanges it for the middle one; the
// reader exchanges its own slot for the middle one when that is newer. So neither ever waits, and neither
// sees a slot that the other is using. A value that was not read in time is replaced by the next.
template <typename T>
class CLatestValue
{
  public:
    // The slot to fill; it holds some earlier value. [writer]
    [[nodiscard]] T& slot() noexcept { return m_slots[m_uWriting]; }

    // Makes the filled slot the newest value. [writer]
    void publish() noexcept
    {
        m_uWriting = m_uMiddle.exchange(m_uWriting | NEW, std::memory_order_acq_rel) & INDEX;
    }

    // The newest value, which stays as it is until the next call; null if nothing was published since the
    // last call. [reader]
    [[nodiscard]] const T* latest() noexcept
    {
        if (!(m_uMiddle.load(std::memory_order_relaxed) & NEW))
            return nullptr;
        m_uReading = m_uMiddle.exchange(m_uReading, std::memory_order_acq_rel) & INDEX;
        return &m_slots[m_uReading];
    }

  private:
    static constexpr unsigned INDEX = 3;
    static constexpr unsigned NEW = 4;

    std::array<T, 3> m_slots{};
    unsigned m_uWriting = 0;
    std::atomic<unsigned> m_uMiddle{1};
    unsigned m_uReading = 2;
};

} // namespace velmora
