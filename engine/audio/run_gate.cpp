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

CRunGate::ticket CRunGate::enter() noexcept
{
    m_runGate.wait();
    if (++m_uLast == 0)
        ++m_uLast;
    const ticket uTicket = m_uLast;
    m_uInside.store(uTicket, std::memory_order_relaxed); // seen by whoever has the token next
    m_runGate.set();
    return uTicket;
}

void CRunGate::leave(ticket uTicket) noexcept
{
    m_uInside.compare_exchange_strong(uTicket, 0, std::memory_order_release, std::memory_order_relaxed);
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

void CRunGate::abandonCallback() noexcept
{
    m_uInside.store(0, std::memory_order_release);
    if (!m_bClosed)
        m_runGate.set();
}

} // namespace velmora
