#pragma once

namespace velmora::test {

// Counts what this thread takes from and gives back to the heap while the guard stands, through
// operator new, malloc() and their kin, in the program and in the libraries it loads. Guards nest.
//
// How it works: without sanitizers a test program that uses the guard replaces malloc() and its kin by
// functions that count for the calling thread and go on to the C library's. Under a sanitizer, which has
// replaced them already, the sanitizer's hooks count.
class CAllocationGuard
{
  public:
    CAllocationGuard();

    // Allocations and releases since the guard was made.
    [[nodiscard]] unsigned long count() const;

  private:
    unsigned long m_uCountAtStart;
};

} // namespace velmora::test
