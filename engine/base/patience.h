#pragma once

#include <chrono>
#include <string_view>

namespace velmora {

// Port: how a long wait is passed. A program with a window goes on serving it meanwhile and offers to give
// up; without one the thread sleeps. [main]
class IPatience
{
  public:
    virtual ~IPatience() = default;

    // Returns when the time is over, or earlier with false if the user has given up; who waits then stops
    // trying. sFor is a sentence that says what is waited for; it may be empty.
    [[nodiscard]] virtual bool wait(std::chrono::milliseconds duration, std::string_view sFor) = 0;
};

// While it lives, the waits of the thread that made it go through the hook given. One inside another takes
// its place until it ends. A main window keeps one for as long as it lives; commands find out with
// isWaiting() that they were called from inside a wait.
class CPatienceScope
{
  public:
    explicit CPatienceScope(IPatience& patience);
    ~CPatienceScope();

    CPatienceScope(const CPatienceScope&) = delete;
    CPatienceScope& operator=(const CPatienceScope&) = delete;

  private:
    IPatience* m_pOuter;
};

// Waits as the calling thread's hook does it, else sleeps. False if the user has given up. [any but audio]
[[nodiscard]] bool waitPatiently(std::chrono::milliseconds duration, std::string_view sFor = {});

// Whether the calling thread has a hook: a wait that ends by an event is then cut into short ones. [any]
[[nodiscard]] bool isPatient();

// True within a wait of the calling thread that a hook passes: events that arrive then must not begin another
// command. [any]
[[nodiscard]] bool isWaiting();

} // namespace velmora
