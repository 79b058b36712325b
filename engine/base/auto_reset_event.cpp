#include "base/auto_reset_event.h"

namespace velmora {

// The exchange is sequentially consistent because the wake-up is left out when nobody is seen waiting: a
// plain store could still be on its way when the waiters are counted, and one who went to sleep in between
// would never be woken.
void CAutoResetEvent::set() noexcept
{
    if (m_uSet.exchange(1, std::memory_order_seq_cst) == 0)
        m_uSet.notify_one();
}

void CAutoResetEvent::reset() noexcept
{
    m_uSet.store(0, std::memory_order_release);
}

void CAutoResetEvent::wait() noexcept
{
    while (!tryWait())
        m_uSet.wait(0, std::memory_order_relaxed);
}

bool CAutoResetEvent::tryWait() noexcept
{
    unsigned uExpected = 1;
    return m_uSet.compare_exchange_strong(uExpected, 0, std::memory_order_acquire, std::memory_order_relaxed);
}

} // namespace velmora
