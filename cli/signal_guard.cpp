#include "cli/signal_guard.h"

#include "base/safe_file.h"
#include "cli/command.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <unistd.h>

namespace velmora::cli {

namespace {

volatile std::sig_atomic_t g_nInterrupted = 0;
volatile std::sig_atomic_t g_nCancellable = 0;

std::array<char, 256> g_plugInName;
volatile std::sig_atomic_t g_nGuarding = 0;

void endBySignal(int nSignal)
{
    removeUnfinishedFiles();
    ::signal(nSignal, SIG_DFL);
    ::raise(nSignal);
}

void onInterrupt(int nSignal)
{
    if (g_nCancellable == 0 || g_nInterrupted != 0) {
        endBySignal(nSignal); // when this handler has returned
        return;
    }
    g_nInterrupted = 1;
    constexpr std::string_view STOPPING = "\nStopping; once more to stop at once.\n";
    [[maybe_unused]] const auto nWritten = ::write(STDERR_FILENO, STOPPING.data(), STOPPING.size());
}

void onBrokenPipe(int) {}

// Ends the program without another step of its own. Calls nothing but what is safe in a signal handler.
[[noreturn]] void endWithMessage(std::initializer_list<const char*> texts)
{
    for (const char* pText : texts)
        [[maybe_unused]] const auto nWritten = ::write(STDERR_FILENO, pText, std::strlen(pText));
    removeUnfinishedFiles();
    ::_exit(EXIT_FAILED);
}

void onFault(const CFault& fault)
{
    endWithMessage(
        {"The plug-in ", g_plugInName.data(), " crashed (signal ", faultSignalName(fault.m_nSignal), ").\n"});
}

void onExit()
{
    if (g_nGuarding == 0)
        return;
    std::fflush(nullptr); // what the plug-in printed may say why
    endWithMessage({"The plug-in ", g_plugInName.data(), " ended the program.\n"});
}

void handle(int nSignal, void (*pHandler)(int))
{
    struct sigaction action = {};
    action.sa_handler = pHandler;
    action.sa_flags = SA_RESTART;
    ::sigaction(nSignal, &action, nullptr);
}

} // namespace

void watchForInterrupts()
{
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction inherited = {};
        ::sigaction(nSignal, nullptr, &inherited);
        if (nSignal != SIGHUP || inherited.sa_handler != SIG_IGN) // nohup means it
            handle(nSignal, onInterrupt);
    }
    for (const int nSignal : {SIGQUIT, SIGXCPU})
        handle(nSignal, endBySignal);
    handle(SIGPIPE, onBrokenPipe); // unlike SIG_IGN, child processes do not inherit it
    ::signal(SIGXFSZ, SIG_IGN);    // a file beyond the user's limit is reported like a full disk
}

void setCancellable(bool bCancellable)
{
    g_nCancellable = bCancellable ? 1 : 0;
}

bool wasInterrupted()
{
    return g_nInterrupted != 0;
}

void watchForExit()
{
    [[maybe_unused]] static const int REGISTERED = std::atexit(onExit);
}

CCrashGuard::CCrashGuard(std::string_view sPlugInName)
{
    const auto uLength = std::min(sPlugInName.size(), g_plugInName.size() - 1);
    *std::copy_n(sPlugInName.begin(), uLength, g_plugInName.begin()) = '\0';
    watchForExit();
    g_nGuarding = 1;
    watchThread(EThreadRole::main);
    m_watch.emplace(EFaultStep::finish, onFault);
}

CCrashGuard::~CCrashGuard()
{
    g_nGuarding = 0;
}

} // namespace velmora::cli
