#pragma once

#include "base/message_target.h"
#include "pluginconstants.h"

namespace velmora {

// The window that a plug-in sees: hands its messages on to the host's message target.
class CHostWindow
{
  public:
    // The target must outlive every plug-in that was given the handle.
    explicit CHostWindow(IMessageTarget& target) : m_window{{&postMessage, &sendMessage}, &target} {}

    CHostWindow(const CHostWindow&) = delete;
    CHostWindow& operator=(const CHostWindow&) = delete;

    // What goes into CPlugIn::m_hParentWnd. [main]
    [[nodiscard]] hostWindow* handle() { return &m_window; }

  private:
    struct CWindow : hostWindow
    {
        CWindow(const hostWindow& functions, IMessageTarget* pTarget)
            : hostWindow(functions), m_pTarget(pTarget)
        {
        }
        IMessageTarget* m_pTarget;
    };

    static IMessageTarget& targetOf(hostWindow* pWindow)
    {
        return *static_cast<CWindow*>(pWindow)->m_pTarget;
    }
    static void postMessage(hostWindow* pWindow, UINT uMessage, size_t uParam, ptrdiff_t nParam)
    {
        targetOf(pWindow).post(uMessage, uParam, nParam);
    }
    static ptrdiff_t sendMessage(hostWindow* pWindow, UINT uMessage, size_t uParam, ptrdiff_t nParam)
    {
        return targetOf(pWindow).send(uMessage, uParam, nParam);
    }

    CWindow m_window;
};

} // namespace velmora
