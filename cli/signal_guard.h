#pragma once

#include "base/platform_fault_handler.h"

#include <optional>
#include <string_view>

namespace velmora::cli {

// From here on no signal that ends the program leaves an unfinished output file behind. An interrupt
// (Ctrl-C), a hang-up or a request to terminate ends it at once, but for work that can be cancelled, which
// it asks to stop; the second one does not wait for that. Writing to a pipe that nobody reads is an error
// like any other.
void watchForInterrupts();

// Whether the work in hand asks wasInterrupted() from time to time. [any]
void setCancellable(bool bCancellable);

// Whether an interrupt has come. [any]
[[nodiscard]] bool wasInterrupted();

// Has CCrashGuard look after exit() too. What registers for exit() later, such as a crash recorder, has its
// turn ahead of it, and must, because it ends the program at once. [main]
void watchForExit();

// While it lives, a fault inside a plug-in, or its call of exit(), ends the program with one line that names
// the plug-in and an exit status of EXIT_FAILED, and leaves no unfinished output file behind. A crash
// recorder has written its report by then. Only one at a time. [main]
class CCrashGuard
{
  public:
    explicit CCrashGuard(std::string_view sPlugInName);
    ~CCrashGuard();
    CCrashGuard(const CCrashGuard&) = delete;
    CCrashGuard& operator=(const CCrashGuard&) = delete;

  private:
    std::optional<CFaultWatch> m_watch;
};

} // namespace velmora::cli
