#include "base/platform_file_watch.h"
#include "base/safe_file.h"
#include "support/test_support.h"

#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace velmora {

namespace {

using test::writeFile;
using CNames = std::vector<std::string>;

constexpr double LONG_ENOUGH = 20.0; // nothing takes that long unless it is broken
constexpr double A_MOMENT = 0.1;

class CFileWatchTest : public ::testing::Test
{
  protected:
    CFileWatchTest()
    {
        writeFile(m_folder / "a.cpp", "one");
        writeFile(m_folder / "b.cpp", "two");
    }

    static bool isSource(std::string_view sName) { return sName.ends_with(".cpp"); }

    test::CTemporaryFolder m_folder;
};

TEST_F(CFileWatchTest, TellsEveryWayOfSavingOnce)
{
    CFileWatch watch(m_folder.path(), isSource);
    ASSERT_EQ(watch.error(), "");
    const auto path = [&](const char* pName) { return m_folder / pName; };
    struct CSave
    {
        const char* m_pHow;
        std::function<void()> m_save;
        CNames m_expected;
    };
    const std::vector<CSave> saves = {
        {"in place", [&] { writeFile(path("a.cpp"), "1"); }, {"a.cpp"}},
        {"of the same length at once", [&] { writeFile(path("a.cpp"), "2"); }, {"a.cpp"}},
        {"through a second file and a rename",
         [&] {
             writeFile(path("a.cpp.new"), "three");
             std::filesystem::rename(path("a.cpp.new"), path("a.cpp"));
         },
         {"a.cpp"}},
        {"with the old one renamed away",
         [&] {
             std::filesystem::rename(path("a.cpp"), path("a.cpp~"));
             writeFile(path("a.cpp"), "four");
             std::filesystem::remove(path("a.cpp~"));
         },
         {"a.cpp"}},
        {"safely", [&] { ASSERT_TRUE(writeFileSafely(path("b.cpp"), "five")); }, {"b.cpp"}},
        {"of two and a new one",
         [&] {
             writeFile(path("c.cpp"), "six");
             writeFile(path("b.cpp"), "seven");
             writeFile(path("a.cpp"), "eight");
         },
         {"a.cpp", "b.cpp", "c.cpp"}},
        {"that removes", [&] { std::filesystem::remove(path("c.cpp")); }, {"c.cpp"}},
        {"of the same text", [&] { writeFile(path("a.cpp"), "eight"); }, {}},
        {"of another file", [&] { writeFile(path("notes.txt"), "nine"); }, {}},
    };
    for (const CSave& save : saves) {
        SCOPED_TRACE(save.m_pHow);
        save.m_save();
        EXPECT_EQ(watch.waitForChanges(save.m_expected.empty() ? A_MOMENT : LONG_ENOUGH), save.m_expected);
        EXPECT_EQ(watch.waitForChanges(A_MOMENT), CNames());
    }
}

TEST_F(CFileWatchTest, KeepsQuietAboutWhatIsKnown)
{
    CFileWatch watch(m_folder.path(), isSource);
    writeFile(m_folder / "a.cpp", "our own");
    watch.takeAsKnown();
    EXPECT_EQ(watch.waitForChanges(A_MOMENT), CNames());
    writeFile(m_folder / "a.cpp", "our own");
    writeFile(m_folder / "b.cpp", "the user's, while we were busy");
    EXPECT_EQ(watch.waitForChanges(LONG_ENOUGH), CNames{"b.cpp"});
}

TEST_F(CFileWatchTest, WakesWhenAChangeComesWhileItWaits)
{
    CFileWatch watch(m_folder.path(), isSource);
    std::thread editor([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        writeFile(m_folder / "b.cpp", "later");
    });
    EXPECT_EQ(watch.waitForChanges(LONG_ENOUGH), CNames{"b.cpp"});
    editor.join();
}

TEST_F(CFileWatchTest, SaysThatTheFolderIsGone)
{
    EXPECT_NE(CFileWatch(m_folder / "nowhere", isSource).error(), "");
    std::filesystem::create_directory(m_folder / "inner");
    CFileWatch watch(m_folder / "inner", isSource);
    std::filesystem::remove(m_folder / "inner");
    EXPECT_EQ(watch.waitForChanges(LONG_ENOUGH), CNames());
    EXPECT_NE(watch.error().find("is gone"), std::string::npos);
}

} // namespace

} // namespace velmora
