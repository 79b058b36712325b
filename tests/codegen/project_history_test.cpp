#include "project/codegen/history_entry.h"
#include "project/codegen/project_history.h"
#include "support/test_support.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora {
namespace {

using test::CTemporaryFolder;

std::vector<std::uint32_t> numbersOf(const CProjectHistory& history)
{
    std::vector<std::uint32_t> numbers;
    for (const CHistoryEntry& entry : history.entries())
        numbers.push_back(entry.m_uNumber);
    return numbers;
}

TEST(ProjectHistory, KeepsAndRestores)
{
    const CTemporaryFolder folder;
    CProjectHistory history(folder.path());
    const std::string sName = "odd \\n\n name\xFF.h";
    EXPECT_TRUE(history.keep("absent.h", "nothing"));
    EXPECT_TRUE(test::entriesOf(folder.path()).empty());
    const std::string sFirst("velmora history 1\r\n\0binary", 26);
    test::writeFile(folder / sName, sFirst);
    ASSERT_TRUE(history.keep(sName, "code\nregions"));
    test::writeFile(folder / sName, "second");
    ASSERT_TRUE(history.keep(folder / sName, "again"));
    ASSERT_TRUE(history.keepText("Gain.cpp", "", "another file, empty"));

    const auto list = CProjectHistory(folder.path()).entries();
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0].m_sFile, sName);
    EXPECT_EQ(list[1].m_sFile, sName);
    EXPECT_EQ(list[0].m_sReason, "code\nregions");
    EXPECT_EQ(list[0].m_uSize, sFirst.size());
    EXPECT_LE(list[0].m_time, list[2].m_time);
    EXPECT_EQ(history.text(1), sFirst);
    EXPECT_EQ(history.text(3), "");
    EXPECT_EQ(history.text(4), std::nullopt);

    test::writeFile(folder / sName, "third");
    ASSERT_TRUE(history.restore(1));
    EXPECT_EQ(test::readFile(folder / sName), sFirst);
    EXPECT_EQ(history.text(4), "third");
    std::filesystem::remove(folder / sName);
    EXPECT_TRUE(history.restore(2));
    EXPECT_EQ(test::readFile(folder / sName), "second");
    EXPECT_FALSE(history.restore(99));
    EXPECT_NE(history.error(), "");
}

TEST(ProjectHistory, KeepsTheNewestWithinItsBounds)
{
    const CTemporaryFolder folder;
    CProjectHistory history(folder.path());
    for (const char* pText : {"A", "B", "A"})
        ASSERT_TRUE(history.keepText("Gain.h", pText, ""));
    EXPECT_THAT(numbersOf(history), testing::ElementsAre(2, 3));
    for (std::size_t i = 0; i < CProjectHistory::MAXIMUM_ENTRIES; ++i)
        ASSERT_TRUE(history.keepText("Gain.h", std::to_string(i), ""));
    EXPECT_EQ(history.entries().size(), CProjectHistory::MAXIMUM_ENTRIES);
    EXPECT_EQ(history.entries().front().m_uNumber, 4u);

    const std::string sLarge(CProjectHistory::MAXIMUM_BYTES / 2, 'x');
    ASSERT_TRUE(history.keepText("Gain.h", sLarge, ""));
    ASSERT_TRUE(history.keepText("Gain.cpp", sLarge + "y", ""));
    EXPECT_THAT(numbersOf(history), testing::ElementsAre(105));
    ASSERT_TRUE(history.keepText("Gain.cpp", sLarge + sLarge + "z", ""));
    EXPECT_THAT(numbersOf(history), testing::ElementsAre(106));
}

TEST(ProjectHistory, IsNotHarmedByForeignFiles)
{
    const CTemporaryFolder folder;
    CProjectHistory history(folder.path());
    const std::string sOutside = historyEntryHeader({1, {}, "../outside.h", "r", 1}, hashOfText("x")) + "x";
    std::filesystem::create_directories(history.folder() / "8.earlier");
    const std::pair<const char*, std::string> files[] = {
        {"1.earlier", "velmora history 1\ntime 5\nfile a\nreason r\nsize 9\nhash 1\n\ncut"},
        {"2.earlier", ""},
        {"3.earlier", "velmora history 1\ntime x\nfile a\nreason r\nsize 0\nhash 0\n\n"},
        {"4.earlier", sOutside},
        {"05.earlier", sOutside},
        {"-6.earlier", sOutside},
        {"99999999999999999999.earlier", sOutside},
        {"9.earlier", "velmora history 1\ntime 5\nfile a\nreason r\nsize 1\nhash 1\n\nx"}, // damaged
        {"notes.txt", "mine"},
    };
    for (const auto& [pName, sContents] : files)
        test::writeFile(history.folder() / pName, sContents);
    EXPECT_THAT(numbersOf(history), testing::ElementsAre(4, 9));
    EXPECT_EQ(history.text(9), std::nullopt);
    EXPECT_FALSE(history.restore(1));
    EXPECT_EQ(history.text(4), "x");
    EXPECT_FALSE(history.restore(4));
    EXPECT_FALSE(std::filesystem::exists(folder.path().parent_path() / "outside.h"));
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(history.keepText("Gain.h", std::to_string(i), ""));
    EXPECT_THAT(numbersOf(history), testing::ElementsAre(4, 9, 10, 11, 12, 13));
    for (const auto& [pName, sContents] : files)
        EXPECT_EQ(test::readFile(history.folder() / pName), sContents) << pName;

    // The highest number of all: everything is numbered anew, in its order.
    test::writeFile(history.folder() / "999999999.earlier", sOutside);
    ASSERT_TRUE(history.keepText("Gain.h", "new", ""));
    EXPECT_EQ(history.entries().size(), 8u);
    EXPECT_EQ(history.text(history.entries().back().m_uNumber), "new");
    EXPECT_EQ(history.text(history.entries()[2].m_uNumber), "0");
}

// A process that keeps text after text is killed at some moment, again and again.
TEST(ProjectHistory, SurvivesBeingKilled)
{
    const CTemporaryFolder folder;
    const std::string sText(50000, 't');
    for (int nRound = 0; nRound < 20; ++nRound) {
        const pid_t nChild = ::fork();
        if (nChild == 0) {
            CProjectHistory history(folder.path());
            for (int i = 0;; ++i)
                if (!history.keepText("Gain.h", sText + std::to_string(nRound * 100000 + i), ""))
                    ::_exit(1);
        }
        ::usleep(static_cast<useconds_t>(500 + 1400 * nRound));
        ::kill(nChild, SIGKILL);
        int nStatus = 0;
        ASSERT_EQ(::waitpid(nChild, &nStatus, 0), nChild);
        ASSERT_TRUE(WIFSIGNALED(nStatus));
        CProjectHistory history(folder.path());
        for (const CHistoryEntry& entry : history.entries())
            ASSERT_TRUE(
                history.text(entry.m_uNumber).value().starts_with(entry.m_uSize > 50000 ? sText : "after "));
        ASSERT_TRUE(history.keepText("Gain.h", "after " + std::to_string(nRound), ""));
        ASSERT_EQ(history.text(history.entries().back().m_uNumber), "after " + std::to_string(nRound));
        ASSERT_LE(history.entries().size(), CProjectHistory::MAXIMUM_ENTRIES);
    }
}

} // namespace
} // namespace velmora
