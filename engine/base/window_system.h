#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velmora {

// A top-level window of any program; 0 is none.
using CWindowHandle = std::uint64_t;

struct CWindow
{
    CWindowHandle m_hWindow = 0;
    std::string m_sTitle;           // UTF-8
    std::string m_sClass;           // the class that its program gave it
    std::uint32_t m_uProcessId = 0; // 0 when not told
    bool m_bDialog = false;         // a box of its program, not a main window
    bool m_bTransient = false;      // belongs to another window of its program
    bool operator==(const CWindow&) const = default;
};

// One movement of one key.
struct CKeyEvent
{
    std::uint8_t m_uVirtualKey = 0; // Windows' numbers: 0x41 is A, 0x70 is F1
    std::uint8_t m_uScanCode = 0;   // what scanCode() says
    bool m_bExtended = false;       // one of the keys that came with the second keyboard block
    bool m_bRelease = false;
    bool operator==(const CKeyEvent&) const = default;
};

// Port: the windows of other programs, and the keyboard as if a person sat at it. Nothing but
// waitForAnswer() waits for another program, so what was asked for may show a moment later. A system that has
// gone away lists no windows and takes no keys. [main]
class IWindowSystem
{
  public:
    virtual ~IWindowSystem() = default;

    // Why windows cannot be driven here; empty when they can.
    [[nodiscard]] virtual std::string unavailableReason() = 0;

    [[nodiscard]] virtual std::vector<CWindow> topLevelWindows() = 0;

    // The window that takes the keys; 0 if none does, or while it changes.
    [[nodiscard]] virtual CWindowHandle foregroundWindow() = 0;
    virtual void requestForeground(CWindowHandle hWindow) = 0;

    // Waits until the window's program has dealt with all that it was sent so far, keys included, at most so
    // long. False if it has not by then, or cannot tell.
    [[nodiscard]] virtual bool waitForAnswer(CWindowHandle hWindow, double dSeconds) = 0;

    virtual void minimize(CWindowHandle hWindow) = 0;
    virtual void restore(CWindowHandle hWindow) = 0;                // neither minimised nor maximised
    [[nodiscard]] virtual bool isZoomed(CWindowHandle hWindow) = 0; // maximised

    // The keyboard's own number of a key, in 8 bits; 0 if the keyboard has no such key.
    [[nodiscard]] virtual std::uint8_t scanCode(std::uint8_t uVirtualKey) = 0;

    // Sends the events as one: all or none of them arrive, with nothing in between. Empty when sent, else
    // why not.
    [[nodiscard]] virtual std::string sendKeys(std::span<const CKeyEvent> events) = 0;

    // Whether the light of Caps Lock, Num Lock or Scroll Lock is on.
    [[nodiscard]] virtual bool isToggled(std::uint8_t uVirtualKey) = 0;

    // Whether a person holds any key down.
    [[nodiscard]] virtual bool areKeysHeld() = 0;

    // Time, so that a test need not wait for it.
    virtual void sleep(double dSeconds) = 0;
    [[nodiscard]] virtual double seconds() = 0; // from any fixed moment
};

} // namespace velmora
