#pragma once

#include "base/auto_reset_event.h"

#include <atomic>
#include <chrono>

namespace velmora {

// The handshake by which the main thread keeps the audio thread out while it swaps a filter.
//
// How it works: the run gate is a token in an auto-reset event, and buffer-done is a count that is 0. A
// callback that begins takes the token, counts itself in, and puts the token back at once; when it ends it
// counts itself out. The main thread takes the token and keeps it, so that no callback can begin, and then
// waits until the count is 0. Taking the token, where a plain reset might be undone by a
// callback between its wait and its set, is what makes the order certain: when close() answers true no
// callback is inside and none begins before open(). The main thread looks at the count again and again rather
// than sleep on it, so that the audio thread never has to wake anyone.
//
// All that a callback did happens before close() returns, and all that was done while the gate was closed
// happens before the next callback. Streams call back one at a time; a callback that hangs stays inside,
// however many others come and go after it, so that nothing is taken apart under it.
class CRunGate
{
  public:
    // What a plug-in may take for one buffer before close() gives up.
    static constexpr std::chrono::milliseconds PATIENCE{2000};

    // The two ends of a callback. enter() waits while the gate is closed. [audio]
    void enter() noexcept;
    void leave() noexcept;

    // Waits until no callback is inside and keeps the next one out; true at once if the gate is closed.
    // False, with the gate open, if a callback does not come back. [main]
    [[nodiscard]] bool close(std::chrono::milliseconds patience = PATIENCE) noexcept;

    // Lets callbacks through again; nothing happens if the gate is open. [main]
    void open() noexcept;

    [[nodiscard]] bool isClosed() const { return m_bClosed; } // [main]

    // Whether a callback is inside. [any]
    [[nodiscard]] bool isInside() const { return m_uInside.load(std::memory_order_acquire) != 0; }

  private:
    CAutoResetEvent m_runGate{true};
    std::atomic<unsigned> m_uInside{0}; // 0: buffer-done
    bool m_bClosed = false;             // [main]
};

// A callback's passage through the gate. [audio]
class CGatePassage
{
  public:
    explicit CGatePassage(CRunGate& gate) noexcept : m_gate(gate) { m_gate.enter(); }
    ~CGatePassage() { m_gate.leave(); }
    CGatePassage(const CGatePassage&) = delete;
    CGatePassage& operator=(const CGatePassage&) = delete;

  private:
    CRunGate& m_gate;
};

// Keeps the gate closed for a scope; a gate that was closed before stays closed after it. [main]
class CClosedGate
{
  public:
    explicit CClosedGate(CRunGate& gate)
        : m_gate(gate), m_bWasClosed(gate.isClosed()), m_bClosed(gate.close())
    {
    }
    ~CClosedGate()
    {
        if (m_bClosed && !m_bWasClosed)
            m_gate.open();
    }
    CClosedGate(const CClosedGate&) = delete;
    CClosedGate& operator=(const CClosedGate&) = delete;

    [[nodiscard]] explicit operator bool() const { return m_bClosed; }

  private:
    CRunGate& m_gate;
    bool m_bWasClosed;
    bool m_bClosed;
};

} // namespace velmora
