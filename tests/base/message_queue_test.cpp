#include "base/message_queue.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace velmora::test {
namespace {

// What each of several threads puts in comes out once and in its order, while the reader runs.
TEST(CMessageQueue, KeepsTheOrderOfEachThread)
{
    constexpr unsigned THREADS = 3;
    constexpr std::ptrdiff_t MESSAGES = 20000;
    CMessageQueue queue;
    std::vector<std::thread> writers;
    for (unsigned uThread = 0; uThread < THREADS; ++uThread)
        writers.emplace_back([&queue, uThread] {
            for (std::ptrdiff_t n = 0; n < MESSAGES; ++n)
                while (!queue.put({uThread, 7, n}))
                    std::this_thread::yield();
        });
    std::vector<std::ptrdiff_t> next(THREADS, 0);
    for (std::ptrdiff_t nLeft = THREADS * MESSAGES; nLeft > 0;) {
        CWindowMessage message;
        if (!queue.take(message)) {
            std::this_thread::yield();
            continue;
        }
        ASSERT_LT(message.m_uMessage, THREADS);
        ASSERT_EQ(message.m_nParam, next[message.m_uMessage]++);
        --nLeft;
    }
    for (std::thread& writer : writers)
        writer.join();
    CWindowMessage message;
    EXPECT_FALSE(queue.take(message));
}

TEST(CMessageQueue, RefusesWhatDoesNotFitAndGoesOn)
{
    CMessageQueue queue;
    CWindowMessage message;
    for (int nRound = 0; nRound < 3; ++nRound) {
        for (std::size_t i = 0; i < CMessageQueue::CAPACITY; ++i)
            ASSERT_TRUE(queue.put({1, i, 0}));
        EXPECT_FALSE(queue.put({2, 0, 0}));
        for (std::size_t i = 0; i < CMessageQueue::CAPACITY; ++i) {
            ASSERT_TRUE(queue.take(message));
            ASSERT_EQ(message.m_uParam, i);
        }
        EXPECT_FALSE(queue.take(message));
    }
}

} // namespace
} // namespace velmora::test
