#include "cli/signal_guard.h"

#include "base/safe_file.h"
#include "cli/command.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
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

void onInterrupt(int nSignal)
{
    if (g_nCancellable != 0 && g_nInterrupted == 0) {
        g_nInterrupted = 1;
        return;
    }
    removeUnfinishedFiles();
    ::signal(nSignal, SIG_DFL);
    ::raise(nSignal);
}

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

// Calls nothing but what is safe in a signal handler.
void onFault(int nSignal)
{
    const auto write = [](const char* pText) {
        [[maybe_unused]] const auto nWritten = ::write(STDERR_FILENO, pText, std::strlen(pText));
    };
    write("The plug-in ");
    write(g_plugInName.data());
    write(" crashed (signal ");
    write(nameOf(nSignal));
    write(").\n");
    removeUnfinishedFiles();
    ::_exit(EXIT_FAILED);
}

} // namespace

void watchForInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = onInterrupt;
    action.sa_flags = SA_RESTART;
    for (const int nSignal : {SIGINT, SIGTERM})
        ::sigaction(nSignal, &action, nullptr);
    ::signal(SIGXFSZ, SIG_IGN); // a file beyond the user's limit is reported like a full disk
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
    for (std::size_t u = 0; u < FAULT_SIGNALS.size(); ++u)
        ::sigaction(FAULT_SIGNALS[u], &g_oldActions[u], nullptr);
    ::sigaltstack(&g_oldStack, nullptr);
}

} // namespace velmora::cli
