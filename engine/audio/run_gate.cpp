#include "audio/run_gate.h"

#include <thread>

namespace velmora {

namespace {

constexpr std::chrono::microseconds POLL_INTERVAL{50};

// Whether the condition came true in time.
template <typename Condition>
bool waitUntil(Condition&& isMet, std::chrono::steady_clock::time_point deadline) noexcept
{
    while (!isMet()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(POLL_INTERVAL);
    }
    return true;
}

} // namespace

void CRunGate::enter() noexcept
{
    m_runGate.wait();
    m_uInside.fetch_add(1, std::memory_order_relaxed); // seen by whoever has the token next
    m_runGate.set();
}

void CRunGate::leave() noexcept
{
    m_uInside.fetch_sub(1, std::memory_order_release);
}

bool CRunGate::close(std::chrono::milliseconds patience) noexcept
{
    if (m_bClosed)
        return true;
    const auto deadline = std::chrono::steady_clock::now() + patience;
    // A callback has the token for a few instructions only, unless its thread died in them.
    if (!waitUntil([this] { return m_runGate.tryWait(); }, deadline))
        return false;
    m_bClosed = waitUntil([this] { return !isInside(); }, deadline);
    if (!m_bClosed)
        m_runGate.set();
    return m_bClosed;
}

void CRunGate::open() noexcept
{
    if (!m_bClosed)
        return;
    m_bClosed = false;
    m_runGate.set();
}

} // namespace velmora
