#include "real/xtest_input.h"

#include "project/compiler/x11_connection.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <cstdlib>
#include <stdexcept>

namespace velmora::test {

struct CXTestInput::CImplementation
{
    explicit CImplementation(const char* pDisplay) : m_connection(pDisplay ? pDisplay : "") {}

    void press(KeyCode keyCode, bool bDown)
    {
        XTestFakeKeyEvent(m_connection.display(), keyCode, bDown, CurrentTime);
        XSync(m_connection.display(), False);
    }

    CX11Connection m_connection;
};

CXTestInput::CXTestInput() : m_pImplementation(std::make_unique<CImplementation>(std::getenv("DISPLAY")))
{
    if (!m_pImplementation->m_connection.isOpen())
        throw std::runtime_error("no X server to type into");
}

CXTestInput::~CXTestInput() = default;

bool CXTestInput::hasSize(unsigned long window, int nWidth, int nHeight)
{
    CX11Connection& connection = m_pImplementation->m_connection;
    const CX11Connection::CErrorGuard guard(connection);
    XWindowAttributes attributes = {};
    return XGetWindowAttributes(connection.display(), window, &attributes) && attributes.width == nWidth &&
           attributes.height == nHeight;
}

bool CXTestInput::moveTo(unsigned long window, int nX, int nY)
{
    CX11Connection& connection = m_pImplementation->m_connection;
    const CX11Connection::CErrorGuard guard(connection);
    int nRootX = 0;
    int nRootY = 0;
    Window child = 0;
    if (!XTranslateCoordinates(connection.display(), window, connection.root(), nX, nY, &nRootX, &nRootY,
                               &child))
        return false;
    XTestFakeMotionEvent(connection.display(), -1, nRootX, nRootY, CurrentTime);
    XSync(connection.display(), False);
    return true;
}

void CXTestInput::button(unsigned uButton, bool bDown)
{
    Display* const pDisplay = m_pImplementation->m_connection.display();
    XTestFakeButtonEvent(pDisplay, uButton, bDown, CurrentTime);
    XSync(pDisplay, False);
}

bool CXTestInput::key(unsigned long keySymbol)
{
    Display* const pDisplay = m_pImplementation->m_connection.display();
    const KeyCode keyCode = XKeysymToKeycode(pDisplay, keySymbol);
    if (keyCode == 0)
        return false;
    const bool bShift = XkbKeycodeToKeysym(pDisplay, keyCode, 0, 0) != keySymbol &&
                        XkbKeycodeToKeysym(pDisplay, keyCode, 0, 1) == keySymbol;
    if (bShift)
        hold(XK_Shift_L, true);
    m_pImplementation->press(keyCode, true);
    m_pImplementation->press(keyCode, false);
    if (bShift)
        hold(XK_Shift_L, false);
    return true;
}

void CXTestInput::hold(unsigned long keySymbol, bool bDown)
{
    m_pImplementation->press(XKeysymToKeycode(m_pImplementation->m_connection.display(), keySymbol), bDown);
}

} // namespace velmora::test
