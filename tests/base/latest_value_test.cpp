#include "base/latest_value.h"

#include <gtest/gtest.h>
#include <thread>

namespace velmora {
namespace {

TEST(LatestValue, ShowsTheNewestOnceAndNothingWhenThereIsNothingNew)
{
    CLatestValue<int> value;
    EXPECT_EQ(value.latest(), nullptr);
    for (const int n : {1, 2, 3}) {
        value.slot() = n;
        value.publish();
    }
    const int* pSeen = value.latest();
    ASSERT_NE(pSeen, nullptr);
    EXPECT_EQ(*pSeen, 3);
    EXPECT_EQ(value.latest(), nullptr);
    value.slot() = 4;
    EXPECT_EQ(*pSeen, 3) << "the reader's slot is not the writer's";
    value.publish();
    value.slot() = 5;
    EXPECT_EQ(*value.latest(), 4);
}

TEST(LatestValue, IsNeverTornAndNeverGoesBack)
{
    struct CPair
    {
        long long m_nFirst = 0;
        long long m_nSecond = 0;
    };
    constexpr long long LAST = 200000;
    CLatestValue<CPair> value;
    std::jthread writer([&] {
        for (long long n = 1; n <= LAST; ++n) {
            value.slot() = {n, -n};
            value.publish();
        }
    });
    for (long long nSeen = 0; nSeen < LAST;) {
        const CPair* pPair = value.latest();
        if (!pPair)
            continue;
        ASSERT_EQ(pPair->m_nFirst, -pPair->m_nSecond);
        ASSERT_GT(pPair->m_nFirst, nSeen);
        nSeen = pPair->m_nFirst;
    }
}

} // namespace
} // namespace velmora
