#include "base/platform_guid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace velmora::test {

TEST(PlatformGUID, TextAndWordsAreThoseOfTheRecord)
{
    const CGUID guid = {0x78, 0x56, 0x34, 0x12, 0xBC, 0x9A, 0xF0, 0xDE, 1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(guidString(guid), "{12345678-9ABC-DEF0-0102-030405060708}");
    EXPECT_THAT(guidWords(guid), ::testing::ElementsAre(0x12345678U, 0xDEF09ABCU, 0x04030201U, 0x08070605U));
}

TEST(PlatformGUID, FreshOnesDifferAndAreMarkedRandom)
{
    std::set<std::string> texts;
    for (int i = 0; i < 1000; ++i)
        texts.insert(makeGUIDString());
    EXPECT_EQ(texts.size(), 1000U);
    for (const std::string& sText : texts)
        ASSERT_THAT(sText, ::testing::MatchesRegex(
                               "\\{[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\\}"));
}

} // namespace velmora::test
