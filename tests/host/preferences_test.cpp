#include "host/preferences.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(Preferences, KeepWhatTheyDoNotUnderstand)
{
    const test::CTemporaryFolder folder;
    const auto file = folder / "preferences.txt";
    CPreferences preferences;
    std::string sError;
    ASSERT_TRUE(preferences.load(file, sError)) << "a missing file is no fault";
    EXPECT_FALSE(preferences.isOn(START_FROM_INITIAL_VALUES));

    test::writeFile(file, "futureSwitch = perhaps\nstartFromInitialValues=TRUE\n");
    ASSERT_TRUE(preferences.load(file, sError));
    EXPECT_TRUE(preferences.isOn(START_FROM_INITIAL_VALUES));
    EXPECT_FALSE(preferences.set(START_FROM_INITIAL_VALUES, "maybe", sError));
    EXPECT_FALSE(preferences.set("futureSwitch", "true", sError));
    ASSERT_TRUE(preferences.set(START_FROM_INITIAL_VALUES, "false", sError));
    ASSERT_TRUE(preferences.save(file, sError)) << sError;
    EXPECT_EQ(test::readFile(file), "futureSwitch = perhaps\nstartFromInitialValues = false\n"
                                    "protectSpeakers = true\ncrossFadeSwaps = true\n");
}

TEST(Preferences, AreNotReplacedWhenTheyCannotBeRead)
{
    const test::CTemporaryFolder folder;
    const auto file = folder / "preferences.txt";
    const std::string sContents(70000, 'x');
    test::writeFile(file, sContents);
    CPreferences preferences;
    std::string sError;
    EXPECT_FALSE(preferences.load(file, sError));
    EXPECT_FALSE(preferences.save(file, sError));
    EXPECT_EQ(test::readFile(file), sContents);
}

} // namespace
} // namespace velmora
