#pragma once

namespace velmora::test {

// Counts how often this thread locks, waits for or signals a mutex, a read-write lock, a condition variable
// or a semaphore while the counter stands, in the program and in the libraries it loads. Counters nest.
//
// How it works: a test program that uses the counter brings functions of its own under the names of the
// thread library's. They come first in the search for symbols, also for shared libraries; each counts for the
// calling thread and goes on to the next function of its name. Under a sanitizer, which has put itself in
// that place, there are none: counts() is false then, and the count stays 0.
class CLockGuardCounter
{
  public:
    CLockGuardCounter();

    // Calls since the counter was made.
    [[nodiscard]] unsigned long count() const;

    // Whether this build counts at all.
    [[nodiscard]] static bool counts();

  private:
    unsigned long m_uCountAtStart;
};

} // namespace velmora::test
