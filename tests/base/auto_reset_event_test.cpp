#include "base/auto_reset_event.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace velmora {
namespace {

// As the gate of the audio thread: several pass one at a time, each hands on to the next.
TEST(AutoResetEvent, IsAGateThatOnlyOnePassesAtATime)
{
    constexpr int THREADS = 4;
    constexpr int ROUNDS = 2000;
    CAutoResetEvent gate(true);
    int nPassed = 0; // guarded by the gate alone
    std::vector<std::jthread> threads;
    for (int t = 0; t < THREADS; ++t) {
        threads.emplace_back([&] {
            for (int r = 0; r < ROUNDS; ++r) {
                gate.wait();
                ++nPassed;
                gate.set();
            }
        });
    }
    threads.clear();
    EXPECT_EQ(nPassed, THREADS * ROUNDS);
    gate.set(); // a raised event stays a single one
    EXPECT_TRUE(gate.tryWait());
    EXPECT_FALSE(gate.tryWait());
}

} // namespace
} // namespace velmora
