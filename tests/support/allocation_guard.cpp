#include "support/allocation_guard.h"

#include <cerrno>
#include <cstddef>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VELMORA_SANITIZER_HEAP
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VELMORA_SANITIZER_HEAP
#endif

namespace {

// Plain data without a constructor: it may be touched before and after everything else of its thread.
thread_local unsigned long uHeapCalls = 0;

} // namespace

#ifdef VELMORA_SANITIZER_HEAP

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void*, size_t),
                                                         void (*)(const volatile void*));

namespace {

void countAllocation(const volatile void*, size_t)
{
    ++uHeapCalls;
}

void countRelease(const volatile void* pMemory)
{
    uHeapCalls += pMemory != nullptr;
}

// Installed when the first guard is made: hooks that ran earlier would meet a sanitizer still starting.
void installHooks()
{
    [[maybe_unused]] static const int nInstalled =
        __sanitizer_install_malloc_and_free_hooks(&countAllocation, &countRelease);
}

} // namespace

#else

extern "C" {

void* __libc_malloc(size_t uSize);
void* __libc_calloc(size_t uCount, size_t uSize);
void* __libc_realloc(void* pMemory, size_t uSize);
void* __libc_memalign(size_t uAlignment, size_t uSize);
void __libc_free(void* pMemory);

void* malloc(size_t uSize)
{
    ++uHeapCalls;
    return __libc_malloc(uSize);
}

void* calloc(size_t uCount, size_t uSize)
{
    ++uHeapCalls;
    return __libc_calloc(uCount, uSize);
}

void* realloc(void* pMemory, size_t uSize)
{
    ++uHeapCalls;
    return __libc_realloc(pMemory, uSize);
}

void* memalign(size_t uAlignment, size_t uSize)
{
    ++uHeapCalls;
    return __libc_memalign(uAlignment, uSize);
}

void* aligned_alloc(size_t uAlignment, size_t uSize)
{
    ++uHeapCalls;
    return __libc_memalign(uAlignment, uSize);
}

int posix_memalign(void** ppMemory, size_t uAlignment, size_t uSize)
{
    ++uHeapCalls;
    void* pMemory = __libc_memalign(uAlignment, uSize);
    if (!pMemory)
        return ENOMEM;
    *ppMemory = pMemory;
    return 0;
}

void free(void* pMemory)
{
    uHeapCalls += pMemory != nullptr;
    __libc_free(pMemory);
}
}

namespace {

void installHooks() {}

} // namespace

#endif

namespace velmora::test {

CAllocationGuard::CAllocationGuard()
{
    installHooks();
    m_uCountAtStart = uHeapCalls;
}

unsigned long CAllocationGuard::count() const
{
    return uHeapCalls - m_uCountAtStart;
}

} // namespace velmora::test
