#pragma once

#if defined(__SSE2__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <cstdint>
#endif

namespace velmora {

// While it lives, this thread's processor takes subnormal numbers (below 1.18e-38 in float) for zero and
// makes none, so that a decaying filter does not become a hundred times slower. What the thread had set
// before comes back afterwards. Does nothing on a processor that it does not know. [any]
class CDenormalsOff
{
  public:
#if defined(__SSE2__)
    CDenormalsOff() noexcept : m_uBefore(_mm_getcsr())
    {
        if ((m_uBefore & OFF) != OFF)
            _mm_setcsr(m_uBefore | OFF);
    }
    ~CDenormalsOff()
    {
        if ((m_uBefore & OFF) != OFF)
            _mm_setcsr(m_uBefore);
    }
#elif defined(__aarch64__)
    CDenormalsOff() noexcept
    {
        asm volatile("mrs %0, fpcr" : "=r"(m_uBefore));
        asm volatile("msr fpcr, %0" ::"r"(m_uBefore | OFF));
    }
    ~CDenormalsOff()
    {
        asm volatile("msr fpcr, %0" ::"r"(m_uBefore));
    }
#else
    CDenormalsOff() noexcept {}
    ~CDenormalsOff() {}
#endif
    CDenormalsOff(const CDenormalsOff&) = delete;
    CDenormalsOff& operator=(const CDenormalsOff&) = delete;

  private:
#if defined(__SSE2__)
    static constexpr unsigned OFF = 0x8040; // results to zero, inputs as zero
    unsigned m_uBefore;
#elif defined(__aarch64__)
    static constexpr std::uint64_t OFF = 1U << 24; // both
    std::uint64_t m_uBefore = 0;
#endif
};

} // namespace velmora
