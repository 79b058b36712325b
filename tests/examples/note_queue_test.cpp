#include "examples/PolySynth/NoteQueue.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace velmora::test {

TEST(NoteQueue, losesNothingFromSeveralWriters)
{
    constexpr UINT WRITERS = 3;
    constexpr UINT EVENTS = 20000;
    CNoteQueue queue;
    std::vector<std::jthread> writers;
    for (UINT uWriter = 0; uWriter < WRITERS; ++uWriter)
        writers.emplace_back([&queue, uWriter] {
            for (UINT i = 0; i < EVENTS; ++i)
                while (!queue.push({SNoteEvent::noteOn, i, static_cast<float>(uWriter)}))
                    std::this_thread::yield();
        });

    UINT expected[WRITERS] = {};
    SNoteEvent event;
    for (UINT uRead = 0; uRead < WRITERS * EVENTS;) {
        if (!queue.pop(event)) {
            std::this_thread::yield();
            continue;
        }
        const auto uWriter = static_cast<UINT>(event.fValue);
        ASSERT_EQ(event.uNote, expected[uWriter]++) << "in order for each writer";
        ++uRead;
    }
    EXPECT_FALSE(queue.pop(event));
    for (UINT i = 0; i < CNoteQueue::SIZE; ++i)
        ASSERT_TRUE(queue.push({SNoteEvent::noteOn, i, 0.5f}));
    EXPECT_FALSE(queue.push({SNoteEvent::noteOn, 999, 0.5f})) << "full";
}

} // namespace velmora::test
