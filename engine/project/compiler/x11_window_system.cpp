#include "project/compiler/x11_window_system.h"

#include "base/patience.h"
#include "base/text.h"
#include "project/compiler/key_table.h"
#include "project/compiler/x11_connection.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <unistd.h>

namespace velmora {

namespace {

constexpr long SOURCE_IS_PAGER = 2; // a request that the window manager follows at once
constexpr long STATE_REMOVE = 0;
constexpr double ANSWER_POLL_SECONDS = 0.002;

struct CKeySymRow
{
    std::uint8_t m_uFirst; // virtual keys from this one on ...
    std::uint8_t m_uLast;  // ... to this one are consecutive symbols from m_symbol on
    KeySym m_symbol;
};

constexpr CKeySymRow KEY_SYMBOLS[] = {
    {0x08, 0x08, XK_BackSpace}, {0x09, 0x09, XK_Tab},         {0x0D, 0x0D, XK_Return},
    {0x10, 0x10, XK_Shift_L},   {0x11, 0x11, XK_Control_L},   {0x12, 0x12, XK_Alt_L},
    {0x13, 0x13, XK_Pause},     {0x14, 0x14, XK_Caps_Lock},   {0x1B, 0x1B, XK_Escape},
    {0x21, 0x21, XK_Prior},     {0x22, 0x22, XK_Next},        {0x23, 0x23, XK_End},
    {0x24, 0x24, XK_Home},      {0x25, 0x28, XK_Left},        {0x2C, 0x2C, XK_Print},
    {0x2D, 0x2D, XK_Insert},    {0x2E, 0x2E, XK_Delete},      {0x5B, 0x5C, XK_Super_L},
    {0x5D, 0x5D, XK_Menu},      {0x60, 0x69, XK_KP_0},        {0x70, 0x7B, XK_F1},
    {0x90, 0x90, XK_Num_Lock},  {0x91, 0x91, XK_Scroll_Lock},
};

KeySym symbolOfKey(std::uint8_t uVirtualKey)
{
    for (const CKeySymRow& row : KEY_SYMBOLS)
        if (uVirtualKey >= row.m_uFirst && uVirtualKey <= row.m_uLast)
            return row.m_symbol + (uVirtualKey - row.m_uFirst);
    // The symbols of printing keys are their characters.
    return static_cast<KeySym>(static_cast<unsigned char>(characterOfKey(uVirtualKey)));
}

std::string keyName(std::uint8_t uVirtualKey)
{
    if (const char cCharacter = characterOfKey(uVirtualKey); cCharacter != '\0')
        return formatted("\"%c\"", cCharacter);
    for (const CKeywordRow& row : keywordTable())
        if (row.m_eKind == EKeyword::key && row.m_uValue == uVirtualKey)
            return std::string(row.m_sName);
    return formatted("number 0x%02X", uVirtualKey);
}

bool isWaylandSession()
{
    const char* pDisplay = std::getenv("WAYLAND_DISPLAY");
    return pDisplay && *pDisplay;
}

std::string withHint(const std::string& sReason)
{
    return sReason +
           (isWaylandSession()
                ? " This is a Wayland session, which lets no program press keys in another's window: press "
                  "the key in the compiler's window yourself, or choose a command line compiler."
                : " Choose a command line compiler, or start a desktop on X11.");
}

} // namespace

class CX11WindowSystem::CConnection : public CX11Connection
{
  public:
    using CX11Connection::CX11Connection;

    // What the server and its window manager cannot do; empty if all is there.
    std::string missing()
    {
        int nIgnored[4];
        if (!XTestQueryExtension(display(), &nIgnored[0], &nIgnored[1], &nIgnored[2], &nIgnored[3]))
            return "The X server has no XTEST extension, so no keys can be sent.";
        const auto check = number(root(), "_NET_SUPPORTING_WM_CHECK", XA_WINDOW);
        if (!check || number(*check, "_NET_SUPPORTING_WM_CHECK", XA_WINDOW) != check)
            return "No window manager runs that lists its windows.";
        const std::vector<unsigned long> supported = numbers(root(), "_NET_SUPPORTED", XA_ATOM);
        for (const char* pNeeded : {"_NET_CLIENT_LIST", "_NET_ACTIVE_WINDOW"})
            if (std::ranges::find(supported, atom(pNeeded)) == supported.end())
                return formatted("The window manager does not know %s.", pNeeded);
        return {};
    }

    CWindow describe(Window window)
    {
        CWindow result;
        result.m_hWindow = window;
        result.m_sTitle = text(window, "_NET_WM_NAME", atom("UTF8_STRING"));
        if (result.m_sTitle.empty())
            result.m_sTitle = text(window, "WM_NAME", XA_STRING);
        const std::string sClass = text(window, "WM_CLASS", XA_STRING); // instance, 0, class, 0
        result.m_sClass = sClass.substr(0, sClass.find('\0'));
        result.m_uProcessId =
            static_cast<std::uint32_t>(number(window, "_NET_WM_PID", XA_CARDINAL).value_or(0));
        const std::vector<unsigned long> types = numbers(window, "_NET_WM_WINDOW_TYPE", XA_ATOM);
        result.m_bDialog = std::ranges::find(types, atom("_NET_WM_WINDOW_TYPE_DIALOG")) != types.end();
        result.m_bTransient = number(window, "WM_TRANSIENT_FOR", XA_WINDOW).value_or(None) != None;
        return result;
    }

    // Whether the keys go to this window or to something inside it.
    bool hasInputFocus(Window window)
    {
        Window focus = None;
        int nRevert = 0;
        XGetInputFocus(display(), &focus, &nRevert);
        for (int nLevel = 0; nLevel < 32 && focus > PointerRoot; ++nLevel) {
            if (focus == window)
                return true;
            Window root = None, parent = None, *pChildren = nullptr;
            unsigned uChildren = 0;
            if (!XQueryTree(display(), focus, &root, &parent, &pChildren, &uChildren))
                return false;
            if (pChildren)
                XFree(pChildren);
            focus = parent;
        }
        return false;
    }
};

CX11WindowSystem::CX11WindowSystem(std::string sDisplay) : m_sDisplay(std::move(sDisplay)) {}

CX11WindowSystem::~CX11WindowSystem() = default;

bool CX11WindowSystem::connect()
{
    if (!m_pConnection)
        m_pConnection = std::make_unique<CConnection>(m_sDisplay);
    return m_pConnection->isOpen();
}

std::string CX11WindowSystem::unavailableReason()
{
    if (!connect()) {
        const std::string sName = XDisplayName(m_sDisplay.empty() ? nullptr : m_sDisplay.c_str());
        const bool bDead = m_pConnection->isDead();
        m_pConnection.reset(); // a later call may find one
        if (bDead)
            return withHint("The X display \"" + sName + "\" has gone.");
        return withHint(sName.empty() ? "There is no X display (DISPLAY is not set)."
                                      : "The X display \"" + sName + "\" cannot be opened.");
    }
    std::string sMissing;
    {
        const CX11Connection::CErrorGuard guard(*m_pConnection);
        sMissing = m_pConnection->missing();
    }
    if (!m_pConnection->isOpen())
        return unavailableReason();
    return sMissing.empty() ? sMissing : withHint(sMissing);
}

std::vector<CWindow> CX11WindowSystem::topLevelWindows()
{
    std::vector<CWindow> windows;
    if (!connect())
        return windows;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    for (const Window window : m_pConnection->numbers(m_pConnection->root(), "_NET_CLIENT_LIST", XA_WINDOW))
        if (m_pConnection->isOpen())
            windows.push_back(m_pConnection->describe(window));
    return m_pConnection->isOpen() ? windows : std::vector<CWindow>();
}

CWindowHandle CX11WindowSystem::foregroundWindow()
{
    if (!connect())
        return 0;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    const Window active =
        m_pConnection->number(m_pConnection->root(), "_NET_ACTIVE_WINDOW", XA_WINDOW).value_or(None);
    return active != None && m_pConnection->hasInputFocus(active) && m_pConnection->isOpen() ? active : 0;
}

void CX11WindowSystem::requestForeground(CWindowHandle hWindow)
{
    if (!connect() || hWindow == 0)
        return;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    const Window root = m_pConnection->root();
    const auto wanted = m_pConnection->number(hWindow, "_NET_WM_DESKTOP", XA_CARDINAL);
    const auto shown = m_pConnection->number(root, "_NET_CURRENT_DESKTOP", XA_CARDINAL);
    constexpr unsigned long ALL_DESKTOPS = 0xFFFFFFFF;
    if (wanted && shown && *wanted != *shown && (*wanted & ALL_DESKTOPS) != ALL_DESKTOPS)
        m_pConnection->tellManager(root, "_NET_CURRENT_DESKTOP", {static_cast<long>(*wanted), CurrentTime});
    m_pConnection->tellManager(hWindow, "_NET_ACTIVE_WINDOW", {SOURCE_IS_PAGER, CurrentTime, 0});
}

bool CX11WindowSystem::waitForAnswer(CWindowHandle hWindow, double dSeconds)
{
    if (!connect())
        return false;
    // A ping of EWMH: a program reads its events in order, and so answers when it has read the others.
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    const std::vector<unsigned long> protocols = m_pConnection->numbers(hWindow, "WM_PROTOCOLS", XA_ATOM);
    const Atom ping = m_pConnection->atom("_NET_WM_PING");
    if (std::ranges::find(protocols, ping) == protocols.end())
        return false;
    Display* const pDisplay = m_pConnection->display();
    const Window root = m_pConnection->root();
    XSelectInput(pDisplay, root, SubstructureNotifyMask); // the answer is sent there
    const auto nPing = static_cast<long>(ping);
    const long nQuestion = (static_cast<long>(::getpid()) << 8) + (++m_nQuestion & 0xFF);
    m_pConnection->send(hWindow, hWindow, "WM_PROTOCOLS", NoEventMask,
                        {nPing, nQuestion, static_cast<long>(hWindow)});

    bool bAnswered = false;
    for (const double dStart = seconds(); !bAnswered && seconds() - dStart < dSeconds;) {
        XEvent event = {};
        if (XCheckTypedWindowEvent(pDisplay, root, ClientMessage, &event))
            bAnswered = event.xclient.data.l[0] == nPing && event.xclient.data.l[1] == nQuestion;
        else if (m_pConnection->isOpen())
            sleep(ANSWER_POLL_SECONDS);
        else
            break;
    }
    XSelectInput(pDisplay, root, NoEventMask);
    XSync(pDisplay, True); // forgets what else came
    return bAnswered;
}

void CX11WindowSystem::minimize(CWindowHandle hWindow)
{
    if (!connect())
        return;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    XIconifyWindow(m_pConnection->display(), hWindow, DefaultScreen(m_pConnection->display()));
}

void CX11WindowSystem::restore(CWindowHandle hWindow)
{
    if (!connect())
        return;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    const auto vertical = static_cast<long>(m_pConnection->atom("_NET_WM_STATE_MAXIMIZED_VERT"));
    const auto horizontal = static_cast<long>(m_pConnection->atom("_NET_WM_STATE_MAXIMIZED_HORZ"));
    m_pConnection->tellManager(hWindow, "_NET_WM_STATE",
                               {STATE_REMOVE, vertical, horizontal, SOURCE_IS_PAGER});
    XMapWindow(m_pConnection->display(), hWindow);
}

bool CX11WindowSystem::isZoomed(CWindowHandle hWindow)
{
    if (!connect())
        return false;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    const std::vector<unsigned long> states = m_pConnection->numbers(hWindow, "_NET_WM_STATE", XA_ATOM);
    const auto has = [&](const char* pState) {
        return std::ranges::find(states, m_pConnection->atom(pState)) != states.end();
    };
    return has("_NET_WM_STATE_MAXIMIZED_VERT") && has("_NET_WM_STATE_MAXIMIZED_HORZ");
}

std::uint8_t CX11WindowSystem::scanCode(std::uint8_t uVirtualKey)
{
    if (!connect())
        return 0;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    const KeySym symbol = symbolOfKey(uVirtualKey);
    return symbol == NoSymbol ? 0 : XKeysymToKeycode(m_pConnection->display(), symbol);
}

std::string CX11WindowSystem::sendKeys(std::span<const CKeyEvent> events)
{
    std::string sReason = unavailableReason();
    if (!sReason.empty())
        return sReason;
    for (const CKeyEvent& event : events)
        if (scanCode(event.m_uVirtualKey) == 0)
            return "The keyboard layout has no key " + keyName(event.m_uVirtualKey) +
                   ". Add a layout with Latin letters to the keyboard's settings.";

    const CX11Connection::CErrorGuard guard(*m_pConnection);
    Display* const pDisplay = m_pConnection->display();
    // Nothing leaves before the flush, so all of it arrives or nothing does.
    for (const CKeyEvent& event : events) {
        const KeyCode code = XKeysymToKeycode(pDisplay, symbolOfKey(event.m_uVirtualKey));
        XTestFakeKeyEvent(pDisplay, code, !event.m_bRelease, CurrentTime);
    }
    XFlush(pDisplay);
    return m_pConnection->isOpen() ? "" : "The X display went away while keys were sent.";
}

bool CX11WindowSystem::isToggled(std::uint8_t uVirtualKey)
{
    constexpr std::pair<std::uint8_t, const char*> LIGHTS[] = {
        {0x14, "Caps Lock"}, {0x90, "Num Lock"}, {0x91, "Scroll Lock"}};
    if (!connect())
        return false;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    for (const auto& [uKey, pLight] : LIGHTS) {
        Bool bOn = False;
        if (uKey == uVirtualKey)
            return XkbGetNamedIndicator(m_pConnection->display(), m_pConnection->atom(pLight), nullptr, &bOn,
                                        nullptr, nullptr) &&
                   bOn;
    }
    return false;
}

bool CX11WindowSystem::areKeysHeld()
{
    if (!connect())
        return false;
    const CX11Connection::CErrorGuard guard(*m_pConnection);
    std::array<char, 32> keys = {};
    XQueryKeymap(m_pConnection->display(), keys.data());
    return std::ranges::any_of(keys, [](char cByte) { return cByte != 0; });
}

void CX11WindowSystem::sleep(double dSeconds)
{
    const std::chrono::duration<double> duration(dSeconds);
    // Who looks again and again has a deadline of his own, and needs the time to pass.
    if (!waitPatiently(std::chrono::ceil<std::chrono::milliseconds>(duration)))
        std::this_thread::sleep_for(duration);
}

double CX11WindowSystem::seconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace velmora
