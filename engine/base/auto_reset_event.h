#pragma once

#include <atomic>

namespace velmora {

// An event that lets exactly one waiter through for each time it was set.
//
// How it works: one atomic word. set() raises it and wakes a waiter; wait() sleeps in the operating system
// until it can lower a raised word. Setting a raised event changes nothing. An event that is raised costs
// wait() a single compare-and-swap and no system call, which is why the audio thread may pass through a gate
// made of one. The word has the size that the system's own wait takes, so that no other object's waiters are
// woken or looked up.
class CAutoResetEvent
{
  public:
    explicit CAutoResetEvent(bool bSet = false) : m_uSet(bSet ? 1U : 0U) {}

    // Raises the event. [any]
    void set() noexcept;

    // Lowers it. [any]
    void reset() noexcept;

    // Waits until the event is raised and lowers it again, without a time-out. [any]
    void wait() noexcept;

    // As wait(), but returns false at once if the event is not raised. [any]
    [[nodiscard]] bool tryWait() noexcept;

  private:
    std::atomic<unsigned> m_uSet;
};

} // namespace velmora
