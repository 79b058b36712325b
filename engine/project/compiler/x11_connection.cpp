#include "project/compiler/x11_connection.h"

#include <X11/Xatom.h>
#include <algorithm>
#include <cstring>

namespace velmora {

namespace {

constexpr long MAX_ITEMS = 65536;

// The connection that a guard protects, and whom to call for the others. X calls its handlers without any
// pointer of ours, and the driver works on the main thread alone.
Display* s_pGuarded = nullptr;
XErrorHandler s_pOthersErrors = nullptr;
XIOErrorHandler s_pOthersIOErrors = nullptr;

int keepError(Display* pDisplay, XErrorEvent* pEvent)
{
    // A window that has gone meanwhile: its properties read as missing, and that is all there is to it.
    return pDisplay != s_pGuarded && s_pOthersErrors ? s_pOthersErrors(pDisplay, pEvent) : 0;
}

int keepIOError(Display* pDisplay)
{
    return pDisplay != s_pGuarded && s_pOthersIOErrors ? s_pOthersIOErrors(pDisplay) : 0;
}

void markDead(Display*, void* pDead)
{
    *static_cast<bool*>(pDead) = true;
}

} // namespace

CX11Connection::CErrorGuard::CErrorGuard(CX11Connection& connection)
    : m_connection(connection), m_pOldErrorHandler(XSetErrorHandler(keepError)),
      m_pOldIOErrorHandler(XSetIOErrorHandler(keepIOError))
{
    s_pGuarded = connection.m_pDisplay;
    s_pOthersErrors = m_pOldErrorHandler;
    s_pOthersIOErrors = m_pOldIOErrorHandler;
}

CX11Connection::CErrorGuard::~CErrorGuard()
{
    if (m_connection.isOpen())
        XSync(m_connection.m_pDisplay, False);
    XSetErrorHandler(m_pOldErrorHandler);
    XSetIOErrorHandler(m_pOldIOErrorHandler);
    s_pGuarded = nullptr;
}

CX11Connection::CX11Connection(const std::string& sDisplay)
    : m_pDisplay(XOpenDisplay(sDisplay.empty() ? nullptr : sDisplay.c_str()))
{
    if (!m_pDisplay)
        return;
    XSetIOErrorExitHandler(m_pDisplay, markDead, &m_bDead);
    m_root = DefaultRootWindow(m_pDisplay);
}

CX11Connection::~CX11Connection()
{
    if (!m_pDisplay)
        return;
    const XErrorHandler pOldErrorHandler = XSetErrorHandler(keepError);
    const XIOErrorHandler pOldIOErrorHandler = XSetIOErrorHandler(keepIOError);
    s_pGuarded = m_pDisplay;
    XCloseDisplay(m_pDisplay);
    s_pGuarded = nullptr;
    XSetErrorHandler(pOldErrorHandler);
    XSetIOErrorHandler(pOldIOErrorHandler);
}

Atom CX11Connection::atom(const char* pName)
{
    return XInternAtom(m_pDisplay, pName, False);
}

std::string CX11Connection::property(Window window, const char* pProperty, Atom type, int nFormat,
                                     unsigned long& uItems)
{
    Atom actualType = None;
    int nActualFormat = 0;
    unsigned long uLeft = 0;
    unsigned char* pData = nullptr;
    uItems = 0;
    const long nLength = nFormat == 32 ? MAX_ITEMS : MAX_ITEMS / 4;
    const int nResult = XGetWindowProperty(m_pDisplay, window, atom(pProperty), 0, nLength, False, type,
                                           &actualType, &nActualFormat, &uItems, &uLeft, &pData);
    std::string sBytes;
    if (nResult == Success && pData && actualType == type && nActualFormat == nFormat)
        sBytes.assign(reinterpret_cast<const char*>(pData),
                      uItems * (nFormat == 32 ? sizeof(unsigned long) : 1));
    else
        uItems = 0;
    if (nResult == Success && pData)
        XFree(pData);
    return sBytes;
}

std::vector<unsigned long> CX11Connection::numbers(Window window, const char* pProperty, Atom type)
{
    unsigned long uItems = 0;
    const std::string sBytes = property(window, pProperty, type, 32, uItems);
    std::vector<unsigned long> values(uItems);
    if (uItems > 0)
        std::memcpy(values.data(), sBytes.data(), sBytes.size());
    return values;
}

std::optional<unsigned long> CX11Connection::number(Window window, const char* pProperty, Atom type)
{
    const std::vector<unsigned long> values = numbers(window, pProperty, type);
    return values.empty() ? std::nullopt : std::optional(values.front());
}

std::string CX11Connection::text(Window window, const char* pProperty, Atom type)
{
    unsigned long uItems = 0;
    return property(window, pProperty, type, 8, uItems);
}

void CX11Connection::tellManager(Window window, const char* pMessage, std::initializer_list<long> data)
{
    send(m_root, window, pMessage, SubstructureRedirectMask | SubstructureNotifyMask, data);
}

void CX11Connection::send(Window receiver, Window window, const char* pMessage, long nEventMask,
                          std::initializer_list<long> data)
{
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = atom(pMessage);
    event.xclient.format = 32;
    std::copy(data.begin(), data.end(), event.xclient.data.l);
    XSendEvent(m_pDisplay, receiver, False, nEventMask, &event);
}

} // namespace velmora
