#include "audio/audio_worker.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace velmora {

// Where work is laid down and answers are fetched.
struct CAudioWorker::CDesk
{
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::function<int()> m_work;
    std::optional<int> m_answer;
    bool m_bClosed = false;
};

CAudioWorker::CAudioWorker() : m_pDesk(std::make_shared<CDesk>()), m_thread(serve, m_pDesk) {}

CAudioWorker::~CAudioWorker()
{
    {
        const std::lock_guard lock(m_pDesk->m_mutex);
        m_pDesk->m_bClosed = true;
    }
    m_pDesk->m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void CAudioWorker::serve(const std::shared_ptr<CDesk>& pDesk)
{
    std::unique_lock lock(pDesk->m_mutex);
    for (;;) {
        pDesk->m_changed.wait(lock, [&] { return pDesk->m_work || pDesk->m_bClosed; });
        if (!pDesk->m_work)
            return;
        auto work = std::exchange(pDesk->m_work, nullptr);
        lock.unlock();
        const int nAnswer = work();
        work = nullptr; // what it owns is let go of before the answer is there
        lock.lock();
        pDesk->m_answer = nAnswer;
        pDesk->m_changed.notify_all();
    }
}

std::optional<int> CAudioWorker::call(std::function<int()> work, std::chrono::milliseconds limit)
{
    if (m_bHangs)
        return {};
    std::unique_lock lock(m_pDesk->m_mutex);
    m_pDesk->m_work = std::move(work);
    m_pDesk->m_changed.notify_all();
    if (m_pDesk->m_changed.wait_for(lock, limit, [&] { return m_pDesk->m_answer.has_value(); }))
        return std::exchange(m_pDesk->m_answer, std::nullopt);
    m_bHangs = m_pDesk->m_bClosed = true;
    m_thread.detach();
    return {};
}

} // namespace velmora
