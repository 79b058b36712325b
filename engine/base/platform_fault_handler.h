#pragma once

namespace velmora {

// What a thread does in the program, for whoever reads a report of its fault.
enum class EThreadRole : unsigned char
{
    other,
    main,
    audio,
    midi
};

// "audio thread".
[[nodiscard]] const char* threadRoleText(EThreadRole eRole) noexcept;

// "SIGSEGV" and "segmentation fault"; for a signal that is no fault "signal" and "unknown signal".
[[nodiscard]] const char* faultSignalName(int nSignal) noexcept;
[[nodiscard]] const char* faultSignalText(int nSignal) noexcept;

// Says what this thread does, and gives it a stack for the handler of its faults, which a thread that used up
// its own stack needs. Cheap enough for each callback: but for the first call of a thread it is a store and a
// test. The first one makes a few system calls; it allocates nothing and takes no lock. The stacks come from
// a pool of 32 in static memory, and that of a thread that has ended is given to the next; when all are
// taken, and when the thread has such a stack already, the thread keeps what it has. [any]
void watchThread(EThreadRole eRole) noexcept;

// What this thread was said to do. Safe in a signal handler. [any]
[[nodiscard]] EThreadRole threadRole() noexcept;

struct CFault
{
    int m_nSignal;
    EThreadRole m_eRole; // of the thread that faulted
};

// What happens at a fault, in this order.
enum class EFaultStep
{
    record, // saves what can be saved, and returns
    finish  // may end the program in its own way
};

// While one of these lives, its function is called when any thread faults: SIGSEGV, SIGBUS, SIGFPE, SIGILL or
// SIGABRT. Then the signal takes the course that it would have taken without: the handler that was installed
// before gets it as if it were the first, or the program ends by it and leaves its core dump.
//
// Only the first fault counts: a second thread that faults waits for the first one's handler, and a fault
// within the handler ends the program at once. One watch for each step at a time. [main]
class CFaultWatch
{
  public:
    // The function runs on the thread that faulted, on the handler's stack of a few kilobytes. It may call
    // only what is safe in a signal handler.
    using faultFunction = void (*)(const CFault& fault);

    CFaultWatch(EFaultStep eStep, faultFunction pFunction);
    ~CFaultWatch();
    CFaultWatch(const CFaultWatch&) = delete;
    CFaultWatch& operator=(const CFaultWatch&) = delete;

  private:
    EFaultStep m_eStep;
};

} // namespace velmora
