#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace velmora {

// One private window message (host/view_messages.h, pluginconstants.h).
struct CWindowMessage
{
    unsigned m_uMessage = 0;
    std::size_t m_uParam = 0;
    std::ptrdiff_t m_nParam = 0;
};

// Messages from any number of threads to one, in the order in which they were put in, without a lock and
// without memory of the heap.
//
// How it works: each cell carries a ticket. A writer takes the next position for itself if the ticket of its
// cell equals that position, that is if the reader has emptied the cell in the round before; it fills the
// cell and adds one to the ticket. The reader takes a cell whose ticket is one ahead of its own position, and
// adds a whole round to it.
class CMessageQueue
{
  public:
    static constexpr std::size_t CAPACITY = 1024;

    CMessageQueue()
    {
        for (std::size_t i = 0; i < CAPACITY; ++i)
            m_cells[i].m_uTicket.store(i, std::memory_order_relaxed);
    }
    CMessageQueue(const CMessageQueue&) = delete;
    CMessageQueue& operator=(const CMessageQueue&) = delete;

    // False if the queue is full; the message is lost then. [any]
    bool put(const CWindowMessage& message)
    {
        std::size_t uAt = m_uWrite.load(std::memory_order_relaxed);
        for (;;) {
            CCell& cell = m_cells[uAt % CAPACITY];
            const std::size_t uTicket = cell.m_uTicket.load(std::memory_order_acquire);
            if (uTicket == uAt) {
                if (!m_uWrite.compare_exchange_weak(uAt, uAt + 1, std::memory_order_relaxed))
                    continue;
                cell.m_message = message;
                cell.m_uTicket.store(uAt + 1, std::memory_order_release);
                return true;
            }
            if (static_cast<std::ptrdiff_t>(uTicket - uAt) < 0)
                return false;
            uAt = m_uWrite.load(std::memory_order_relaxed);
        }
    }

    // The oldest message; false if there is none. [one thread]
    bool take(CWindowMessage& message)
    {
        CCell& cell = m_cells[m_uRead % CAPACITY];
        if (cell.m_uTicket.load(std::memory_order_acquire) != m_uRead + 1)
            return false;
        message = cell.m_message;
        cell.m_uTicket.store(m_uRead + CAPACITY, std::memory_order_release);
        ++m_uRead;
        return true;
    }

  private:
    struct CCell
    {
        std::atomic<std::size_t> m_uTicket;
        CWindowMessage m_message;
    };

    std::array<CCell, CAPACITY> m_cells;
    std::atomic<std::size_t> m_uWrite{0};
    std::size_t m_uRead = 0;
};

} // namespace velmora
