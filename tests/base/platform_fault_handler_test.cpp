#include "base/platform_fault_handler.h"
#include "base/platform_protected_memory.h"
#include "support/allocation_guard.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace velmora {
namespace {

constexpr std::array FAULTS = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

void say(const char* pText)
{
    [[maybe_unused]] const auto nWritten = ::write(STDERR_FILENO, pText, std::strlen(pText));
}

void sayRecord(const CFault& fault)
{
    say(fault.m_eRole == EThreadRole::audio ? "audio " : "other ");
    say(faultSignalName(fault.m_nSignal));
}

void sayFinish(const CFault&)
{
    say(" finish");
}

// Stands for whoever handled faults before; ends with a status of its own for each signal.
void onEarlier(int nSignal)
{
    ::_exit(40 + nSignal);
}

void installEarlier()
{
    struct sigaction action = {};
    action.sa_handler = onEarlier;
    action.sa_flags = SA_ONSTACK;
    for (const int nSignal : FAULTS)
        ::sigaction(nSignal, &action, nullptr);
}

void leaveNoCore()
{
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
}

void writeToProtectedMemory()
{
    CProtectedMemory memory;
    if (memory.assign({"text"}))
        const_cast<char*>(memory.text(0).data())[0] = 'T';
}

int useUpStack(int nDepth)
{
    volatile char page[1024];
    page[0] = static_cast<char>(nDepth);
    return nDepth > 1000000000 ? nDepth : useUpStack(nDepth + 1) + page[0];
}

void faultAsAudioThread(void (*pFault)())
{
    std::thread([pFault] {
        watchThread(EThreadRole::audio);
        pFault();
    }).join();
}

class FaultHandlerDeathTest : public testing::Test
{
  protected:
    FaultHandlerDeathTest() { testing::GTEST_FLAG(death_test_style) = "threadsafe"; }
};

TEST_F(FaultHandlerDeathTest, EachStepIsTakenAndTheEarlierHandlerGetsTheFault)
{
    struct CCase
    {
        void (*m_pFault)();
        int m_nSignal;
    };
    const std::vector<CCase> cases = {
        {[] { ::raise(SIGBUS); }, SIGBUS}, {[] { ::raise(SIGFPE); }, SIGFPE},
        {[] { ::raise(SIGILL); }, SIGILL}, {[] { std::abort(); }, SIGABRT},
        {writeToProtectedMemory, SIGSEGV}, {[] { [[maybe_unused]] volatile int n = useUpStack(0); }, SIGSEGV},
    };
    for (const CCase& fault : cases) {
        const int nSignal = fault.m_nSignal;
        const auto crash = [pFault = fault.m_pFault] {
            installEarlier();
            const CFaultWatch finish(EFaultStep::finish, sayFinish);
            const CFaultWatch record(EFaultStep::record, sayRecord);
            faultAsAudioThread(pFault);
        };
        const std::string sSaid = std::string("^audio ") + faultSignalName(nSignal) + " finish$";
        EXPECT_EXIT(crash(), testing::ExitedWithCode(40 + nSignal), sSaid);
    }
}

TEST_F(FaultHandlerDeathTest, AFaultOfTheHandlerEndsTheProgramAtOnce)
{
    const auto crash = [](CFaultWatch::faultFunction pFunction) {
        leaveNoCore();
        installEarlier();
        const CFaultWatch record(EFaultStep::record, pFunction);
        ::raise(SIGFPE);
    };
    EXPECT_EXIT(crash([](const CFault&) { writeToProtectedMemory(); }), testing::KilledBySignal(SIGSEGV), "");
    EXPECT_EXIT(crash([](const CFault&) { std::abort(); }), testing::KilledBySignal(SIGABRT), "");
}

// Each of many threads faults; the first one's handler waits until the others are under way.
TEST_F(FaultHandlerDeathTest, OnlyTheFirstOfManyFaultsIsRecorded)
{
    static std::atomic<int> nAboutToFault = 0;
    const auto crash = [] {
        installEarlier();
        const CFaultWatch record(EFaultStep::record, [](const CFault& fault) {
            while (nAboutToFault < 8)
                ::usleep(1000);
            ::usleep(20000);
            sayRecord(fault);
        });
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([] {
                watchThread(EThreadRole::audio);
                ++nAboutToFault;
                writeToProtectedMemory();
            });
        for (std::thread& thread : threads)
            thread.join();
    };
    EXPECT_EXIT(crash(), testing::ExitedWithCode(40 + SIGSEGV), "^audio SIGSEGV$");
}

TEST(FaultHandlerTest, PutsBackWhatWasInstalledBefore)
{
    struct sigaction before = {}, during = {}, after = {};
    ::sigaction(SIGILL, nullptr, &before);
    {
        const auto pRecord = std::make_unique<CFaultWatch>(EFaultStep::record, sayRecord);
        const CFaultWatch finish(EFaultStep::finish, sayFinish);
        ::sigaction(SIGILL, nullptr, &during);
    }
    ::sigaction(SIGILL, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
    EXPECT_NE(during.sa_handler, before.sa_handler);
}

TEST(FaultHandlerTest, GivesEachThreadAStackWithoutAllocatingEvenAfterManyThreads)
{
    for (int i = 0; i < 100; ++i)
        std::thread([] {
            const test::CAllocationGuard guard;
            watchThread(EThreadRole::midi);
            watchThread(EThreadRole::audio);
            EXPECT_EQ(guard.count(), 0U);
            EXPECT_EQ(threadRole(), EThreadRole::audio);
            stack_t stack = {};
            ::sigaltstack(nullptr, &stack);
            EXPECT_EQ(stack.ss_flags & SS_DISABLE, 0);
        }).join();
    EXPECT_EQ(threadRole(), EThreadRole::other);
}

} // namespace
} // namespace velmora
