#include "support/lock_guard_counter.h"

#include <ctime>
#include <dlfcn.h>
#include <pthread.h>
#include <semaphore.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VELMORA_SANITIZER_LOCKS
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VELMORA_SANITIZER_LOCKS
#endif

namespace {

// Plain data without a constructor: it may be touched before and after everything else of its thread.
thread_local unsigned long uLockCalls = 0;

} // namespace

#ifndef VELMORA_SANITIZER_LOCKS

namespace {

template <typename Function>
Function nextOf(Function, const char* pName)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, pName));
}

} // namespace

// One counting function: its name, its parameters, and the arguments it hands on. The next function is looked
// up at the first call; two threads that do so at once find the same.
#define VELMORA_COUNTED(name, parameters, arguments)                                                         \
    extern "C" int name parameters noexcept(noexcept(name arguments))                                        \
    {                                                                                                        \
        static decltype(&name) pNext;                                                                        \
        auto pKnown = __atomic_load_n(&pNext, __ATOMIC_RELAXED);                                             \
        if (!pKnown) {                                                                                       \
            pKnown = nextOf(pKnown, #name);                                                                  \
            __atomic_store_n(&pNext, pKnown, __ATOMIC_RELAXED);                                              \
        }                                                                                                    \
        ++uLockCalls;                                                                                        \
        return pKnown arguments;                                                                             \
    }

VELMORA_COUNTED(pthread_mutex_lock, (pthread_mutex_t * pLock), (pLock))
VELMORA_COUNTED(pthread_mutex_trylock, (pthread_mutex_t * pLock), (pLock))
VELMORA_COUNTED(pthread_mutex_timedlock, (pthread_mutex_t * pLock, const timespec* pUntil), (pLock, pUntil))
VELMORA_COUNTED(pthread_rwlock_rdlock, (pthread_rwlock_t * pLock), (pLock))
VELMORA_COUNTED(pthread_rwlock_tryrdlock, (pthread_rwlock_t * pLock), (pLock))
VELMORA_COUNTED(pthread_rwlock_wrlock, (pthread_rwlock_t * pLock), (pLock))
VELMORA_COUNTED(pthread_rwlock_trywrlock, (pthread_rwlock_t * pLock), (pLock))
VELMORA_COUNTED(pthread_cond_signal, (pthread_cond_t * pCondition), (pCondition))
VELMORA_COUNTED(pthread_cond_broadcast, (pthread_cond_t * pCondition), (pCondition))
VELMORA_COUNTED(pthread_cond_wait, (pthread_cond_t * pCondition, pthread_mutex_t* pLock), (pCondition, pLock))
VELMORA_COUNTED(pthread_cond_timedwait,
                (pthread_cond_t * pCondition, pthread_mutex_t* pLock, const timespec* pUntil),
                (pCondition, pLock, pUntil))
VELMORA_COUNTED(sem_wait, (sem_t * pSemaphore), (pSemaphore))
VELMORA_COUNTED(sem_post, (sem_t * pSemaphore), (pSemaphore))

#endif

namespace velmora::test {

CLockGuardCounter::CLockGuardCounter() : m_uCountAtStart(uLockCalls) {}

unsigned long CLockGuardCounter::count() const
{
    return uLockCalls - m_uCountAtStart;
}

bool CLockGuardCounter::counts()
{
#ifdef VELMORA_SANITIZER_LOCKS
    return false;
#else
    return true;
#endif
}

} // namespace velmora::test
