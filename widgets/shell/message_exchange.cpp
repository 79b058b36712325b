#include "widgets/shell/message_exchange.h"

#include <QMetaObject>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace velmora {

namespace {

constexpr std::chrono::seconds PATIENCE{5};

} // namespace

// A message whose sender waits.
struct CMessageExchange::CRequest
{
    enum class EState
    {
        Waiting,
        Taken,
        Answered,
        Withdrawn
    };

    CWindowMessage m_message;
    std::mutex m_lock;
    std::condition_variable m_changed;
    EState m_eState = EState::Waiting;
    std::ptrdiff_t m_nAnswer = 0;

    void set(EState eState)
    {
        const std::lock_guard guard(m_lock);
        m_eState = eState;
        m_changed.notify_all();
    }

    // False if the sender has gone away; what the message points at is gone with it.
    bool take()
    {
        const std::lock_guard guard(m_lock);
        if (m_eState == EState::Withdrawn)
            return false;
        m_eState = EState::Taken;
        return true;
    }

    std::ptrdiff_t wait()
    {
        std::unique_lock guard(m_lock);
        m_changed.wait_for(guard, PATIENCE, [this] { return m_eState != EState::Waiting; });
        if (m_eState == EState::Waiting)
            m_eState = EState::Withdrawn;
        m_changed.wait(guard, [this] { return m_eState != EState::Taken; });
        return m_nAnswer;
    }
};

CMessageExchange::CMessageExchange(handler handler) : m_handler(std::move(handler)) {}

void CMessageExchange::post(unsigned uMessage, std::size_t uParam, std::ptrdiff_t nParam)
{
    if (!m_queue.put({uMessage, uParam, nParam}))
        m_uLost.fetch_add(1, std::memory_order_relaxed);
}

std::ptrdiff_t CMessageExchange::send(unsigned uMessage, std::size_t uParam, std::ptrdiff_t nParam)
{
    const CWindowMessage message{uMessage, uParam, nParam};
    if (std::this_thread::get_id() == m_owner)
        return m_handler(message);
    const auto pRequest = std::make_shared<CRequest>();
    pRequest->m_message = message;
    QMetaObject::invokeMethod(
        this,
        [this, pRequest] {
            if (!pRequest->take())
                return;
            pRequest->m_nAnswer = m_handler(pRequest->m_message);
            pRequest->set(CRequest::EState::Answered);
        },
        Qt::QueuedConnection);
    return pRequest->wait();
}

// Not more than were there at the start, so that a plug-in that posts without end does not hold the window.
void CMessageExchange::drain()
{
    CWindowMessage message;
    for (std::size_t i = 0; i < CMessageQueue::CAPACITY && m_queue.take(message); ++i)
        m_handler(message);
}

} // namespace velmora
