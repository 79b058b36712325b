#include "base/platform_fault_handler.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

namespace velmora {

namespace {

struct CFaultSignal
{
    int m_nSignal;
    const char* m_pName;
    const char* m_pText;
};

constexpr std::array<CFaultSignal, 5> FAULT_SIGNALS = {{
    {SIGSEGV, "SIGSEGV", "segmentation fault"},
    {SIGBUS, "SIGBUS", "bus error"},
    {SIGFPE, "SIGFPE", "division by zero or another arithmetic error"},
    {SIGILL, "SIGILL", "illegal instruction"},
    {SIGABRT, "SIGABRT", "abort"},
}};

constexpr CFaultSignal UNKNOWN_SIGNAL = {0, "signal", "unknown signal"};

const CFaultSignal& faultSignal(int nSignal) noexcept
{
    const auto found = std::ranges::find(FAULT_SIGNALS, nSignal, &CFaultSignal::m_nSignal);
    return found == FAULT_SIGNALS.end() ? UNKNOWN_SIGNAL : *found;
}

// ------------------------------------------------------------------------------------------------
// Stacks for the handler
// ------------------------------------------------------------------------------------------------

constexpr std::size_t STACK_BYTES = 64 * 1024; // the processor's state alone takes up to 11 of them
constexpr std::size_t STACK_COUNT = 32;

// There is no notice of a thread's end: a thread_local destructor would allocate at the thread's start.
// Instead a stack knows the thread that took it, and is free again when that one is no more.
struct CHandlerStack
{
    std::atomic<pid_t> m_nOwner{0};
    alignas(16) std::byte m_bytes[STACK_BYTES];
};

constinit std::array<CHandlerStack, STACK_COUNT> g_stacks{};

[[gnu::tls_model("initial-exec")]] constinit thread_local EThreadRole t_eRole = EThreadRole::other;
[[gnu::tls_model("initial-exec")]] constinit thread_local bool t_bHasStack = false;

bool isAlive(pid_t nThread) noexcept
{
    return ::tgkill(::getpid(), nThread, 0) == 0 || errno != ESRCH;
}

void takeStack() noexcept
{
    stack_t present = {};
    if (::sigaltstack(nullptr, &present) != 0 || (present.ss_flags & SS_DISABLE) == 0)
        return;
    const pid_t nThread = ::gettid();
    for (CHandlerStack& stack : g_stacks) {
        pid_t nOwner = stack.m_nOwner.load();
        if (nOwner != 0 && nOwner != nThread && isAlive(nOwner))
            continue;
        if (!stack.m_nOwner.compare_exchange_strong(nOwner, nThread))
            continue;
        stack_t taken = {};
        taken.ss_sp = stack.m_bytes;
        taken.ss_size = sizeof stack.m_bytes;
        ::sigaltstack(&taken, nullptr);
        return;
    }
}

// ------------------------------------------------------------------------------------------------
// The handler
// ------------------------------------------------------------------------------------------------

constexpr int WAIT_FOR_FIRST_MILLISECONDS = 30000; // a disk that does not answer must not hold us for ever
constexpr int WAIT_STEP_MILLISECONDS = 10;

std::array<struct sigaction, FAULT_SIGNALS.size()> g_earlierActions;
constinit std::array<std::atomic<CFaultWatch::faultFunction>, 2> g_steps{};
constinit std::atomic<pid_t> g_nFirstThread{0}; // that faulted
constinit std::atomic<bool> g_bHandled{false};
static_assert(decltype(g_steps)::value_type::is_always_lock_free);

// Gives the signal back to whoever had it before. A fault of an instruction comes again by itself when the
// handler returns to it; a signal that was sent must be sent again, and arrives as soon as the handler
// returns.
void handOn(int nSignal, const siginfo_t& info, const struct sigaction& earlier)
{
    ::sigaction(nSignal, &earlier, nullptr);
    if (info.si_code <= 0)
        ::raise(nSignal);
}

void waitForFirst()
{
    for (int nWaited = 0; !g_bHandled && nWaited < WAIT_FOR_FIRST_MILLISECONDS;
         nWaited += WAIT_STEP_MILLISECONDS)
        ::poll(nullptr, 0, WAIT_STEP_MILLISECONDS);
}

void onFault(int nSignal, siginfo_t* pInfo, void*)
{
    const int nErrno = errno;
    pid_t nFirst = 0;
    if (g_nFirstThread.compare_exchange_strong(nFirst, ::gettid())) {
        const CFault fault = {nSignal, t_eRole};
        for (const auto& step : g_steps)
            if (const auto pFunction = step.load())
                pFunction(fault);
        g_bHandled = true;
    } else if (nFirst != ::gettid()) {
        waitForFirst();
    } else if (!g_bHandled) { // abort() called by the handler; a fault of it never gets here
        struct sigaction byDefault = {};
        byDefault.sa_handler = SIG_DFL;
        handOn(nSignal, *pInfo, byDefault);
        return;
    }
    const auto uSignal = static_cast<std::size_t>(&faultSignal(nSignal) - FAULT_SIGNALS.data());
    handOn(nSignal, *pInfo, g_earlierActions[uSignal]);
    errno = nErrno;
}

void installHandler()
{
    struct sigaction action = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    for (const CFaultSignal& signal : FAULT_SIGNALS)
        ::sigaddset(&action.sa_mask, signal.m_nSignal); // blocked, they end a handler that faults
    for (std::size_t u = 0; u < FAULT_SIGNALS.size(); ++u) {
        ::sigaction(FAULT_SIGNALS[u].m_nSignal, nullptr, &g_earlierActions[u]);
        ::sigaction(FAULT_SIGNALS[u].m_nSignal, &action, nullptr);
    }
}

// Leaves alone what somebody else has put in our place since.
void removeHandler()
{
    for (std::size_t u = 0; u < FAULT_SIGNALS.size(); ++u) {
        struct sigaction present = {};
        ::sigaction(FAULT_SIGNALS[u].m_nSignal, nullptr, &present);
        if (present.sa_sigaction == onFault)
            ::sigaction(FAULT_SIGNALS[u].m_nSignal, &g_earlierActions[u], nullptr);
    }
}

bool isWatching()
{
    return std::ranges::any_of(g_steps, [](const auto& step) { return step.load() != nullptr; });
}

} // namespace

const char* threadRoleText(EThreadRole eRole) noexcept
{
    static constexpr std::array<const char*, 4> TEXTS = {"another thread", "main thread", "audio thread",
                                                         "MIDI thread"};
    return TEXTS[static_cast<std::size_t>(eRole) % TEXTS.size()];
}

const char* faultSignalName(int nSignal) noexcept
{
    return faultSignal(nSignal).m_pName;
}

const char* faultSignalText(int nSignal) noexcept
{
    return faultSignal(nSignal).m_pText;
}

void watchThread(EThreadRole eRole) noexcept
{
    t_eRole = eRole;
    if (t_bHasStack)
        return;
    t_bHasStack = true;
    takeStack();
}

EThreadRole threadRole() noexcept
{
    return t_eRole;
}

CFaultWatch::CFaultWatch(EFaultStep eStep, faultFunction pFunction) : m_eStep(eStep)
{
    if (!isWatching())
        installHandler();
    g_steps[static_cast<std::size_t>(m_eStep)] = pFunction;
}

CFaultWatch::~CFaultWatch()
{
    g_steps[static_cast<std::size_t>(m_eStep)] = nullptr;
    if (!isWatching())
        removeHandler();
}

} // namespace velmora
