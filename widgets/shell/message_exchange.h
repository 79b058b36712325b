#pragma once

#include "base/message_queue.h"
#include "base/message_target.h"

#include <QObject>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace velmora {

// Brings the private messages of plug-ins and of the engine to the window's thread.
//
// How it works: post() puts the message into a queue without a lock, which drain() empties, on a timer. A
// send() from the window's thread is a call. From any other thread it waits for the window's thread, which is
// asked through its event loop; if that does not come within five seconds, because it waits for the
// sender itself, say, the message is withdrawn and the answer is 0.
class CMessageExchange : public QObject, public IMessageTarget
{
    Q_OBJECT

  public:
    using handler = std::function<std::ptrdiff_t(const CWindowMessage&)>;

    // The handler runs on the thread that this is made on.
    explicit CMessageExchange(handler handler);

    void post(unsigned uMessage, std::size_t uParam, std::ptrdiff_t nParam) override;
    std::ptrdiff_t send(unsigned uMessage, std::size_t uParam, std::ptrdiff_t nParam) override;

    // Delivers what was posted so far. [main]
    void drain();

    // Messages that did not fit into the queue since the last call. [main]
    [[nodiscard]] unsigned takeLost() { return m_uLost.exchange(0); }

  private:
    struct CRequest;

    const handler m_handler;
    const std::thread::id m_owner = std::this_thread::get_id();
    CMessageQueue m_queue;
    std::atomic<unsigned> m_uLost{0};
};

} // namespace velmora
