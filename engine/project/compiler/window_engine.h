#pragma once

#include "base/window_system.h"

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// How the texts of a CWindowEngine are compared.
struct CWindowMatch
{
    bool m_bWholeTitle = false;  // the title is the text; else it contains it
    bool m_bWithDialogs = false; // boxes count as well
};

// The windows of a title and a class, found when it is made and then worked on together. [main]
class CWindowEngine
{
  public:
    // An empty text fits every window.
    CWindowEngine(IWindowSystem& system, std::string_view sTitle, std::string_view sClass,
                  const CWindowMatch& match = {});

    // One window that is known already.
    CWindowEngine(IWindowSystem& system, CWindowHandle hWindow);

    [[nodiscard]] const std::vector<CWindowHandle>& windows() const { return m_windows; }

    // Looks again for the windows of the texts; one that was known by its handle stays.
    void refresh();

    void minimize(); // each window, the foreground asked for as well
    void restore();  // each window but a maximised one, which that would shrink

    // Brings the last of the windows forward, asking again every 400 ms, and waits at most so long for it
    // to take the keys. False if it does not.
    [[nodiscard]] bool setForeground(double dSeconds = 2.0);

    // Whether one of the windows takes the keys.
    [[nodiscard]] bool isForeground();

  private:
    IWindowSystem& m_system;
    std::string m_sTitle;
    std::string m_sClass;
    CWindowMatch m_match;
    bool m_bByHandle = false;
    std::vector<CWindowHandle> m_windows;
};

} // namespace velmora
