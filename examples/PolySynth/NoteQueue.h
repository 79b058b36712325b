// CNoteQueue: hands notes from the threads that play to the audio thread, without a lock.

#pragma once

#include "plugin.h"

#include <atomic>
#include <cstddef>

// One message of the keyboard.
struct SNoteEvent
{
    enum EKind
    {
        noteOn,
        noteOff,
        allNotesOff,
        pitchBend,
        modWheel
    };

    EKind eKind = allNotesOff;
    UINT uNote = 0;      // 0 to 127
    float fValue = 0.0f; // gain of the velocity or wheel 0.0 to 1.0, bend -1.0 to +1.0
};

// A ring of slots. Any number of threads may push (several keyboards, the piano on the screen); one
// thread, the audio thread, pops. Nobody ever waits for anybody.
//
// How it works: each slot carries a turn number. A slot at place p may be written when its turn is p, and
// read when it is p + 1; the reader then adds the ring's size, which frees it for the next round. A writer
// wins place p by moving m_uWritten from p to p + 1, fills the slot, and publishes it by storing the turn
// with release order; the reader's acquire load of that turn then also sees the event.
// Source: D. Vyukov, "Bounded MPMC queue", 1024cores.net, 2010, with one reader.
class CNoteQueue
{
  public:
    static constexpr size_t SIZE = 256; // events, a power of two

    CNoteQueue()
    {
        for (size_t i = 0; i < SIZE; ++i)
            m_slots[i].uTurn.store(i, std::memory_order_relaxed);
    }

    // False, and nothing happens, if the queue is full. [any]
    bool push(const SNoteEvent& event)
    {
        size_t uPlace = m_uWritten.load(std::memory_order_relaxed);
        for (;;) {
            SSlot& slot = m_slots[uPlace % SIZE];
            const size_t uTurn = slot.uTurn.load(std::memory_order_acquire);
            if (uTurn == uPlace) {
                if (m_uWritten.compare_exchange_weak(uPlace, uPlace + 1, std::memory_order_relaxed)) {
                    slot.event = event;
                    slot.uTurn.store(uPlace + 1, std::memory_order_release);
                    return true;
                }
            } else if (static_cast<ptrdiff_t>(uTurn - uPlace) < 0) {
                return false; // still holds an event of the round before
            } else {
                uPlace = m_uWritten.load(std::memory_order_relaxed); // another writer was faster
            }
        }
    }

    // False if there is nothing to read. [audio]
    bool pop(SNoteEvent& event)
    {
        SSlot& slot = m_slots[m_uRead % SIZE];
        if (slot.uTurn.load(std::memory_order_acquire) != m_uRead + 1)
            return false;
        event = slot.event;
        slot.uTurn.store(m_uRead + SIZE, std::memory_order_release);
        ++m_uRead;
        return true;
    }

  private:
    struct SSlot
    {
        std::atomic<size_t> uTurn{0};
        SNoteEvent event;
    };

    SSlot m_slots[SIZE];
    std::atomic<size_t> m_uWritten{0}; // events that writers have taken a place for
    size_t m_uRead = 0;                // events read
};
