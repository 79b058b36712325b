#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace velmora {

// A thread that does calls which may never come back, and someone who waits for them only so long. [main]
class CAudioWorker
{
  public:
    CAudioWorker();

    // Ends the thread; one that hangs is left alone.
    ~CAudioWorker();

    CAudioWorker(const CAudioWorker&) = delete;
    CAudioWorker& operator=(const CAudioWorker&) = delete;

    // Does the work on the thread and hands its answer over; none if it is not back within the limit. The
    // worker hangs from then on, and does no other work. As work may end at any later time, or never, it
    // must own what it uses.
    [[nodiscard]] std::optional<int> call(std::function<int()> work, std::chrono::milliseconds limit);

    [[nodiscard]] bool hangs() const { return m_bHangs; }

  private:
    struct CDesk;
    static void serve(const std::shared_ptr<CDesk>& pDesk);

    std::shared_ptr<CDesk> m_pDesk;
    std::thread m_thread;
    bool m_bHangs = false;
};

} // namespace velmora
