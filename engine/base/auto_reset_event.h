#pragma once

#include <atomic>

namespace velmora {

// An event that lets exactly one waiter through for each time it was set.
//
// How it works: one atomic flag. set() raises it and wakes a waiter; wait() sleeps in the operating
// system until it can lower a raised flag. Setting a raised event changes nothing. An event that is
// raised costs wait() a single compare-and-swap and no system call, which is why the audio thread may
// pass through a gate made of one.
class CAutoResetEvent
{
  public:
    explicit CAutoResetEvent(bool bSet = false) : m_bSet(bSet) {}

    // Raises the event. [any]
    void set() noexcept;

    // Lowers it. [any]
    void reset() noexcept;

    // Waits until the event is raised and lowers it again, without a time-out. [any]
    void wait() noexcept;

    // As wait(), but returns false at once if the event is not raised. [any]
    [[nodiscard]] bool tryWait() noexcept;

  private:
    std::atomic<bool> m_bSet;
};

} // namespace velmora
