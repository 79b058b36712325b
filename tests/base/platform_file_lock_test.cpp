#include "base/platform_file_lock.h"
#include "support/test_support.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace velmora {

namespace {

TEST(FileLock, HasOneHolderAtATime)
{
    const test::CTemporaryFolder folder;
    const std::filesystem::path file = folder / "inner/lock";
    CFileLock first(file);
    CFileLock second(file);
    ASSERT_TRUE(first.tryToTake());
    EXPECT_FALSE(second.tryToTake());

    std::atomic<bool> bLetGo{false};
    std::thread waiting([&] {
        second.take();
        EXPECT_TRUE(bLetGo);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    bLetGo = true;
    first.letGo();
    waiting.join();
    EXPECT_FALSE(first.tryToTake());
    second.letGo();
    EXPECT_TRUE(first.tryToTake());
}

TEST(FileLock, IsNoObstacleWhereThereCanBeNone)
{
    EXPECT_TRUE(CFileLock("/dev/null/lock").tryToTake());
    CFileLock("/dev/null/lock").take();
}

} // namespace

} // namespace velmora
