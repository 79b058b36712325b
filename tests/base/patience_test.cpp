#include "base/patience.h"
#include "support/recording_patience.h"

#include <gtest/gtest.h>
#include <thread>

namespace velmora {
namespace {

TEST(Patience, IsTheInnermostHookOfItsOwnThread)
{
    using std::chrono::milliseconds;
    EXPECT_FALSE(isPatient());
    EXPECT_TRUE(waitPatiently(milliseconds::zero()));
    test::CRecordingPatience outer;
    bool bWaiting = false;
    outer.m_during = [&] {
        bWaiting = isWaiting();
        test::CRecordingPatience inner;
        inner.m_uGivesUpAt = 1;
        EXPECT_FALSE(waitPatiently(milliseconds(7)));
        EXPECT_EQ(inner.m_waits.size(), 1U);
    };
    EXPECT_TRUE(waitPatiently(milliseconds(5), "reason"));
    EXPECT_TRUE(bWaiting);
    EXPECT_FALSE(isWaiting());
    EXPECT_TRUE(isPatient());
    EXPECT_EQ(outer.m_waits, std::vector{milliseconds(5)});
    EXPECT_EQ(outer.m_reasons, std::vector<std::string>{"reason"});
    std::thread([] { EXPECT_FALSE(isPatient() || isWaiting() || !waitPatiently(milliseconds(1))); }).join();
    EXPECT_EQ(outer.m_waits.size(), 1U);
}

} // namespace
} // namespace velmora
