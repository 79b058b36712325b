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

constexpr std::array FAULT_SIGNALS = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
std::array<struct sigaction, FAULT_SIGNALS.size()> g_oldActions;

// The faults' handler has a stack of its own, for the plug-in that used up the thread's.
alignas(16) std::array<char, 64 * 1024> g_handlerStack;

stack_t g_oldStack;

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
    if (g_nCancellable == 0 || g_nInterrupted != 0)
        endBySignal(nSignal);
    g_nInterrupted = 1;
    constexpr std::string_view STOPPING = "\nStopping; once more to stop at once.\n";
    [[maybe_unused]] const auto nWritten = ::write(STDERR_FILENO, STOPPING.data(), STOPPING.size());
}

void onBrokenPipe(int) {}

const char* nameOf(int nSignal)
{
    switch (nSignal) {
    case SIGSEGV:
        return "SIGSEGV";
    case SIGBUS:
        return "SIGBUS";
    case SIGFPE:
        return "SIGFPE";
    case SIGILL:
        return "SIGILL";
    default:
        return "SIGABRT";
    }
}

// Ends the program without another step of its own. Calls nothing but what is safe in a signal handler.
[[noreturn]] void endWithMessage(std::initializer_list<const char*> texts)
{
    for (const char* pText : texts)
        [[maybe_unused]] const auto nWritten = ::write(STDERR_FILENO, pText, std::strlen(pText));
    removeUnfinishedFiles();
    ::_exit(EXIT_FAILED);
}

void onFault(int nSignal)
{
    endWithMessage({"The plug-in ", g_plugInName.data(), " crashed (signal ", nameOf(nSignal), ").\n"});
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

CCrashGuard::CCrashGuard(std::string_view sPlugInName)
{
    const auto uLength = std::min(sPlugInName.size(), g_plugInName.size() - 1);
    *std::copy_n(sPlugInName.begin(), uLength, g_plugInName.begin()) = '\0';
    [[maybe_unused]] static const int REGISTERED = std::atexit(onExit);
    g_nGuarding = 1;

    stack_t stack = {};
    stack.ss_sp = g_handlerStack.data();
    stack.ss_size = g_handlerStack.size();
    ::sigaltstack(&stack, &g_oldStack);

    struct sigaction action = {};
    action.sa_handler = onFault;
    action.sa_flags = SA_ONSTACK | SA_RESETHAND;
    for (std::size_t u = 0; u < FAULT_SIGNALS.size(); ++u)
        ::sigaction(FAULT_SIGNALS[u], &action, &g_oldActions[u]);
}

CCrashGuard::~CCrashGuard()
{
    g_nGuarding = 0;
    for (std::size_t u = 0; u < FAULT_SIGNALS.size(); ++u)
        ::sigaction(FAULT_SIGNALS[u], &g_oldActions[u], nullptr);
    ::sigaltstack(&g_oldStack, nullptr);
}

} // namespace velmora::cli
