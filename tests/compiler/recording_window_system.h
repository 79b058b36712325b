#pragma once

#include "base/window_system.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace velmora::test {

// Windows and a keyboard that exist in the test alone, with a clock that only sleep() moves. m_calls takes
// down what was asked for, keys as "+11" and "-11" with the virtual key in hexadecimal digits.
class CRecordingWindowSystem : public IWindowSystem
{
  public:
    std::string unavailableReason() override { return m_sUnavailable; }
    std::vector<CWindow> topLevelWindows() override { return m_windows; }
    CWindowHandle foregroundWindow() override { return m_hForeground; }
    void requestForeground(CWindowHandle hWindow) override
    {
        record("foreground", hWindow);
        const bool bThere = std::ranges::count(m_windows, hWindow, &CWindow::m_hWindow) > 0;
        if (m_bGivesFocus && bThere)
            m_hForeground = hWindow;
    }
    bool waitForAnswer(CWindowHandle, double) override { return m_bAnswers; }
    void minimize(CWindowHandle hWindow) override { record("minimize", hWindow); }
    void restore(CWindowHandle hWindow) override { record("restore", hWindow); }
    bool isZoomed(CWindowHandle) override { return m_bZoomed; }
    std::uint8_t scanCode(std::uint8_t uVirtualKey) override { return uVirtualKey; }
    std::string sendKeys(std::span<const CKeyEvent> events) override
    {
        std::string sCall = "keys";
        for (const CKeyEvent& event : events) {
            constexpr const char* DIGITS = "0123456789ABCDEF";
            sCall += event.m_bRelease ? " -" : " +";
            sCall += {DIGITS[event.m_uVirtualKey / 16], DIGITS[event.m_uVirtualKey % 16]};
        }
        m_calls.push_back(sCall);
        if (m_onKeys)
            m_onKeys(sCall);
        return m_sKeyError;
    }
    bool isToggled(std::uint8_t) override { return m_bToggled; }
    bool areKeysHeld() override { return m_dSeconds < m_dHeldUntil; }
    void sleep(double dSeconds) override
    {
        m_dSeconds += dSeconds;
        if (m_onSleep)
            m_onSleep();
    }
    double seconds() override { return m_dSeconds; }

    // The calls so far, which are forgotten then.
    std::vector<std::string> takeCalls() { return std::exchange(m_calls, {}); }

    std::string m_sUnavailable;
    std::vector<CWindow> m_windows;
    CWindowHandle m_hForeground = 0;
    bool m_bGivesFocus = true;
    bool m_bAnswers = true;
    bool m_bZoomed = false;
    bool m_bToggled = false;
    double m_dHeldUntil = 0.0; // s
    double m_dSeconds = 1000.0;
    std::string m_sKeyError;
    std::function<void(const std::string& sCall)> m_onKeys;
    std::function<void()> m_onSleep;
    std::vector<std::string> m_calls;

  private:
    void record(const char* pWhat, CWindowHandle hWindow)
    {
        m_calls.push_back(std::string(pWhat) + " " + std::to_string(hWindow));
    }
};

// What the engine's destructor sends.
inline constexpr const char* ALL_MODIFIERS_UP = "keys -11 -12 -10";

} // namespace velmora::test
