#include "project/compiler/window_engine.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr double ASK_AGAIN_SECONDS = 0.4;
constexpr double LOOK_AGAIN_SECONDS = 0.01;

} // namespace

CWindowEngine::CWindowEngine(IWindowSystem& system, std::string_view sTitle, std::string_view sClass,
                             const CWindowMatch& match)
    : m_system(system), m_sTitle(sTitle), m_sClass(sClass), m_match(match)
{
    refresh();
}

CWindowEngine::CWindowEngine(IWindowSystem& system, CWindowHandle hWindow)
    : m_system(system), m_bByHandle(true), m_windows{hWindow}
{
}

void CWindowEngine::refresh()
{
    if (m_bByHandle)
        return;
    m_windows.clear();
    for (const CWindow& window : m_system.topLevelWindows()) {
        const bool bTitle = m_match.m_bWholeTitle && !m_sTitle.empty()
                                ? window.m_sTitle == m_sTitle
                                : window.m_sTitle.find(m_sTitle) != std::string::npos;
        const bool bClass = m_sClass.empty() || window.m_sClass == m_sClass;
        const bool bKind = m_match.m_bWithDialogs || (!window.m_bDialog && !window.m_bTransient);
        if (bTitle && bClass && bKind)
            m_windows.push_back(window.m_hWindow);
    }
}

void CWindowEngine::minimize()
{
    for (const CWindowHandle hWindow : m_windows) {
        m_system.minimize(hWindow);
        m_system.requestForeground(hWindow);
    }
}

void CWindowEngine::restore()
{
    for (const CWindowHandle hWindow : m_windows)
        if (!m_system.isZoomed(hWindow))
            m_system.restore(hWindow);
}

bool CWindowEngine::setForeground(double dSeconds)
{
    if (m_windows.empty())
        return false;
    const double dStart = m_system.seconds();
    double dAsked = dStart - ASK_AGAIN_SECONDS;
    while (!isForeground()) {
        const double dNow = m_system.seconds();
        if (dNow - dStart >= dSeconds)
            return false;
        if (dNow - dAsked >= ASK_AGAIN_SECONDS) {
            m_system.requestForeground(m_windows.back());
            dAsked = dNow;
        }
        m_system.sleep(LOOK_AGAIN_SECONDS);
    }
    return true;
}

bool CWindowEngine::isForeground()
{
    const CWindowHandle hForeground = m_system.foregroundWindow();
    return hForeground != 0 && std::ranges::find(m_windows, hForeground) != m_windows.end();
}

} // namespace velmora
