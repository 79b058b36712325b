#include "base/auto_reset_event.h"

namespace velmora {

void CAutoResetEvent::set() noexcept
{
    m_bSet.store(true, std::memory_order_release);
    m_bSet.notify_one();
}

void CAutoResetEvent::reset() noexcept
{
    m_bSet.store(false, std::memory_order_release);
}

void CAutoResetEvent::wait() noexcept
{
    while (!tryWait())
        m_bSet.wait(false, std::memory_order_acquire);
}

bool CAutoResetEvent::tryWait() noexcept
{
    bool bExpected = true;
    return m_bSet.compare_exchange_strong(bExpected, false, std::memory_order_acquire);
}

} // namespace velmora
