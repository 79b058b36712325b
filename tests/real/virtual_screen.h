#pragma once

#include "base/window_system.h"

#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace velmora::test {

// A program that runs beside the test and is ended with it.
class CBackgroundProgram
{
  public:
    // nKeptDescriptor is handed on to the program under the number 3. Throws std::runtime_error if it
    // cannot be started.
    explicit CBackgroundProgram(std::vector<std::string> arguments, int nKeptDescriptor = -1);
    ~CBackgroundProgram() { end(); }
    CBackgroundProgram(const CBackgroundProgram&) = delete;
    CBackgroundProgram& operator=(const CBackgroundProgram&) = delete;

    void end();

  private:
    pid_t m_nProcess = -1;
};

// An X server without a screen, of its own number, with a window manager in it. DISPLAY names it while it
// lives. Throws std::runtime_error if either does not come up.
class CVirtualScreen
{
  public:
    explicit CVirtualScreen(int nWidth = 1280, int nHeight = 900); // pixels
    ~CVirtualScreen();
    CVirtualScreen(const CVirtualScreen&) = delete;
    CVirtualScreen& operator=(const CVirtualScreen&) = delete;

    [[nodiscard]] const std::string& display() const { return m_sDisplay; }

    // Ends the server, as if the user had logged out.
    void end();

  private:
    std::unique_ptr<CBackgroundProgram> m_pServer;
    std::unique_ptr<CBackgroundProgram> m_pWindowManager;
    std::string m_sDisplay;
};

// A window of the test's own, to give the focus to. It keeps the keys that it got.
class CTestWindow
{
  public:
    CTestWindow(const CVirtualScreen& screen, const std::string& sTitle);
    ~CTestWindow();
    CTestWindow(const CTestWindow&) = delete;
    CTestWindow& operator=(const CTestWindow&) = delete;

    [[nodiscard]] CWindowHandle handle() const;

    // What has come since the last call: "+" or "-" and the key's name for each press and release, such as
    // "+Control_L +F11 -F11 -Control_L". Waits until there are nEvents of them, at most five seconds.
    [[nodiscard]] std::string keys(int nEvents);

    // Holds a key down, or lets go of it, as a person would.
    void hold(const char* pKey, bool bDown);

  private:
    struct CImplementation;
    std::unique_ptr<CImplementation> m_pImplementation;
};

// Waits until it is so, at most so long; false if it never was.
template <typename TCondition>
[[nodiscard]] bool waitUntil(IWindowSystem& system, double dSeconds, TCondition condition)
{
    const double dStart = system.seconds();
    while (!condition()) {
        if (system.seconds() - dStart >= dSeconds)
            return false;
        system.sleep(0.02);
    }
    return true;
}

} // namespace velmora::test
