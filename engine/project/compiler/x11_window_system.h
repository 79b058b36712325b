#pragma once

#include "base/window_system.h"

#include <memory>
#include <string>

namespace velmora {

// The windows of an X server, by what its window manager tells (EWMH), and its keyboard, through the XTEST
// extension. The server is spoken to at the first call, not before. An error of the server, or its end, is
// told by unavailableReason() and never ends the program. [main]
class CX11WindowSystem : public IWindowSystem
{
  public:
    // An empty name means the one in the environment's DISPLAY.
    explicit CX11WindowSystem(std::string sDisplay = {});
    ~CX11WindowSystem() override;

    [[nodiscard]] std::string unavailableReason() override;
    [[nodiscard]] std::vector<CWindow> topLevelWindows() override;
    [[nodiscard]] CWindowHandle foregroundWindow() override;
    void requestForeground(CWindowHandle hWindow) override;
    [[nodiscard]] bool waitForAnswer(CWindowHandle hWindow, double dSeconds) override;
    void minimize(CWindowHandle hWindow) override;
    void restore(CWindowHandle hWindow) override;
    [[nodiscard]] bool isZoomed(CWindowHandle hWindow) override;
    [[nodiscard]] std::uint8_t scanCode(std::uint8_t uVirtualKey) override;
    [[nodiscard]] std::string sendKeys(std::span<const CKeyEvent> events) override;
    [[nodiscard]] bool isToggled(std::uint8_t uVirtualKey) override;
    [[nodiscard]] bool areKeysHeld() override;
    void sleep(double dSeconds) override;
    [[nodiscard]] double seconds() override;

  private:
    class CConnection;
    [[nodiscard]] bool connect();
    std::string m_sDisplay;
    long m_nQuestion = 0; // counts the pings
    std::unique_ptr<CConnection> m_pConnection;
};

} // namespace velmora
