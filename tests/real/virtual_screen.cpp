#include "real/virtual_screen.h"

#include "project/compiler/x11_connection.h"
#include "project/compiler/x11_window_system.h"

#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace velmora::test {

namespace {

constexpr int START_MILLISECONDS = 30000; // on a machine under load
constexpr double START_SECONDS = START_MILLISECONDS / 1000.0;
constexpr int KEPT_DESCRIPTOR = 3;

} // namespace

CBackgroundProgram::CBackgroundProgram(std::vector<std::string> arguments, int nKeptDescriptor)
{
    std::vector<char*> pointers;
    for (std::string& sArgument : arguments)
        pointers.push_back(sArgument.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (const int nStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, nStream, "/dev/null", O_RDWR, 0);
    if (nKeptDescriptor >= 0)
        ::posix_spawn_file_actions_adddup2(&actions, nKeptDescriptor, KEPT_DESCRIPTOR);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, KEPT_DESCRIPTOR + (nKeptDescriptor >= 0));
    const int nError =
        ::posix_spawnp(&m_nProcess, pointers.front(), &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (nError != 0)
        throw std::runtime_error("cannot start " + arguments.front());
}

void CBackgroundProgram::end()
{
    if (m_nProcess < 0)
        return;
    ::kill(m_nProcess, SIGTERM);
    for (int nTry = 0; nTry < 500 && ::waitpid(m_nProcess, nullptr, WNOHANG) == 0; ++nTry) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (nTry == 400)
            ::kill(m_nProcess, SIGKILL);
    }
    m_nProcess = -1;
}

CVirtualScreen::CVirtualScreen(int nWidth, int nHeight)
{
    std::array<int, 2> ends = {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    m_pServer = std::make_unique<CBackgroundProgram>(
        std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(KEPT_DESCRIPTOR), "-screen", "0",
                                 std::to_string(nWidth) + "x" + std::to_string(nHeight) + "x24", "-nolisten",
                                 "tcp", "-noreset"},
        ends[1]);
    ::close(ends[1]);
    // The server writes its number when it is ready.
    std::string sNumber;
    char cDigit = 0;
    pollfd readable{ends[0], POLLIN, 0};
    while (::poll(&readable, 1, START_MILLISECONDS) > 0 && ::read(ends[0], &cDigit, 1) == 1 && cDigit != '\n')
        sNumber += cDigit;
    ::close(ends[0]);
    if (sNumber.empty())
        throw std::runtime_error("Xvfb does not start");
    m_sDisplay = ":" + sNumber;
    ::setenv("DISPLAY", m_sDisplay.c_str(), 1);
    ::unsetenv("WAYLAND_DISPLAY");

    m_pWindowManager =
        std::make_unique<CBackgroundProgram>(std::vector<std::string>{"openbox", "--sm-disable"});
    CX11WindowSystem system(m_sDisplay);
    if (!waitUntil(system, START_SECONDS, [&] { return system.unavailableReason().empty(); }))
        throw std::runtime_error("openbox does not start: " + system.unavailableReason());
}

CVirtualScreen::~CVirtualScreen()
{
    m_pWindowManager.reset();
    end();
}

void CVirtualScreen::end()
{
    m_pServer.reset();
}

struct CTestWindow::CImplementation
{
    explicit CImplementation(const std::string& sDisplay) : m_connection(sDisplay) {}

    CX11Connection m_connection;
    Window m_window = None;
};

CTestWindow::CTestWindow(const CVirtualScreen& screen, const std::string& sTitle)
    : m_pImplementation(std::make_unique<CImplementation>(screen.display()))
{
    if (!m_pImplementation->m_connection.isOpen())
        throw std::runtime_error("no display " + screen.display());
    Display* const pDisplay = m_pImplementation->m_connection.display();
    Window& window = m_pImplementation->m_window;
    window = XCreateSimpleWindow(pDisplay, m_pImplementation->m_connection.root(), 0, 0, 300, 200, 0, 0, 0);
    XStoreName(pDisplay, window, sTitle.c_str());
    XSelectInput(pDisplay, window, KeyPressMask | KeyReleaseMask);
    // A window manager that is still setting itself up may miss a window.
    CX11WindowSystem system(screen.display());
    for (double dStart = system.seconds(); system.seconds() - dStart < START_SECONDS;) {
        XUnmapWindow(pDisplay, window);
        XMapWindow(pDisplay, window);
        XSync(pDisplay, False);
        if (waitUntil(system, 1.0, [&] {
                return std::ranges::count(system.topLevelWindows(), window, &CWindow::m_hWindow) == 1;
            }))
            return;
    }
    throw std::runtime_error("the window manager takes no window");
}

CTestWindow::~CTestWindow() = default;

CWindowHandle CTestWindow::handle() const
{
    return m_pImplementation->m_window;
}

std::string CTestWindow::keys(int nEvents)
{
    Display* const pDisplay = m_pImplementation->m_connection.display();
    std::string sKeys;
    for (int nTry = 0; nTry < 500 && nEvents > 0; ++nTry) {
        while (XPending(pDisplay) > 0) {
            XEvent event = {};
            XNextEvent(pDisplay, &event);
            if (event.type != KeyPress && event.type != KeyRelease)
                continue;
            sKeys += sKeys.empty() ? "" : " ";
            sKeys += event.type == KeyPress ? '+' : '-';
            sKeys += XKeysymToString(XLookupKeysym(&event.xkey, 0));
            --nEvents;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return sKeys;
}

void CTestWindow::hold(const char* pKey, bool bDown)
{
    Display* const pDisplay = m_pImplementation->m_connection.display();
    XTestFakeKeyEvent(pDisplay, XKeysymToKeycode(pDisplay, XStringToKeysym(pKey)), bDown, CurrentTime);
    XSync(pDisplay, False);
}

} // namespace velmora::test
