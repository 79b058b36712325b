#include "base/platform_file_read.h"
#include "project/codegen/code_markers.h"
#include "project/codegen/text_surgery.h"
#include "support/recording_patience.h"
#include "support/test_support.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

namespace velmora {
namespace {

TEST(TextSurgery, ReadsMissingAndOddFiles)
{
    const test::CTemporaryFolder folder;
    test::CRecordingPatience patience;
    patience.m_during = [] { ADD_FAILURE() << "nothing to wait for"; };
    std::string sText = "old";
    EXPECT_TRUE(readFileToString(folder / "absent", sText, true, 20, true));
    EXPECT_EQ(sText, "");
    EXPECT_FALSE(fileExists(folder / "absent"));
    EXPECT_TRUE(readFileToString(folder / "made", sText, true, 5, false));
    EXPECT_TRUE(fileExists(folder / "made"));
    EXPECT_FALSE(readFileToString(folder.path(), sText, true, 20, false));

    const std::string sOdd = std::string("\xEF\xBB\xBF a\r\nb\n\0c", 11) + std::string(100000, 'x');
    EXPECT_TRUE(writeStringToFile(folder / "odd", sOdd));
    EXPECT_TRUE(readFileToString(folder / "odd", sText, true, 20, true));
    EXPECT_EQ(sText, sOdd);
    EXPECT_FALSE(writeStringToFile(folder / "no" / "folder", sOdd));
}

// Both kinds of lock, held for so many of the waits.
TEST(TextSurgery, WaitsForALockedFile)
{
    const test::CTemporaryFolder folder;
    const auto path = folder / "locked";
    test::writeFile(path, "text");
    for (const bool bRecordLock : {false, true})
        for (const int nHeld : {0, 3, 6}) {
            int nFile = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
            struct flock lock = {};
            lock.l_type = F_WRLCK;
            ASSERT_EQ(bRecordLock ? ::fcntl(nFile, F_OFD_SETLK, &lock) : ::flock(nFile, LOCK_EX), 0);
            test::CRecordingPatience patience;
            const auto waits = [&] { return static_cast<int>(patience.m_waits.size()); };
            patience.m_during = [&] {
                EXPECT_EQ(patience.m_waits.back().count(), 2500);
                EXPECT_THAT(patience.m_reasons.back(), testing::HasSubstr(path.string()));
                if (waits() == nHeld)
                    ::close(std::exchange(nFile, -1));
            };
            std::string sText;
            EXPECT_EQ(readFileToString(path, sText, true, 5, true), nHeld == 3);
            EXPECT_EQ(sText, nHeld == 3 ? "text" : "");
            EXPECT_EQ(waits(), nHeld == 3 ? 3 : 5);
            if (nFile >= 0) {
                EXPECT_EQ(readFileUnlessLocked(path, sText), EFileRead::locked);
                EXPECT_FALSE(readFileToString(path, sText, false, 5, true));
                EXPECT_EQ(waits(), 5);
                patience.m_during = {};
                patience.m_uGivesUpAt = 7; // the second of the next waits
                EXPECT_FALSE(readFileToString(path, sText, true, 5, true));
                EXPECT_EQ(waits(), 7);
                ::close(nFile);
            }
        }
}

TEST(TextSurgery, ReplacesAndChecks)
{
    std::string sText = "aXaXX";
    EXPECT_EQ(replaceAll(sText, "X", "YX"), 3u);
    EXPECT_EQ(sText, "aYXaYXYX");
    EXPECT_EQ(replaceAll(sText, "x", "z") + replaceAll(sText, "", "z"), 0u);

    test::CRecordingDialogs dialogs;
    EXPECT_TRUE(checkCriticalString(foundAt(sText.find("a")), "a", "f", dialogs));
    EXPECT_FALSE(checkCriticalString(foundAt(sText.find("q")), "q", "f.h", dialogs));
    EXPECT_FALSE(checkCriticalString(-1, "q", "", dialogs));
    EXPECT_TRUE(checkFileString("a", "f", dialogs));
    EXPECT_FALSE(checkFileString("", "f.h", dialogs));
    const std::string sEnd = "\n\n Can not continue with operation. Please alert Orin Halvek.";
    EXPECT_THAT(dialogs.m_messages,
                testing::ElementsAre("Failed to find critical string q in the file: f.h" + sEnd,
                                     "Failed to find critical string q" + sEnd,
                                     "Empty file string found in: f.h" + sEnd));
}

TEST(CodeMarkers, ReplaceWhatStandsBetween)
{
    struct CCase
    {
        std::string m_sText;
        std::string m_sLineEnd; // that prevails outside the region
        std::string m_sResult;  // empty: refused
    };
    const std::string sBegin(HEADER_REGION.m_sBegin);
    const std::string sEnd(HEADER_REGION.m_sEnd);
    const CCase cases[] = {
        {"a" + sBegin + "\n\r\n\r\n" + sEnd + "b", "\n", "a" + sBegin + "\n\nX\n\n\t// " + sEnd + "b"},
        {"\r\n" + sBegin + "\n\n" + sEnd, "\r\n", "\r\n" + sBegin + "\r\n\r\nX\r\n\r\n\t// " + sEnd},
        {"\r\n\n" + sBegin + sEnd, "\n", "\r\n\n" + sBegin + "\n\nX\n\n\t// " + sEnd},
        {"123456789abcdefg" + sEnd, "\n", "123456789abcd\n\nX\n\n\t// " + sEnd},
        {"12" + sEnd + "b", "\n", "12" + sEnd.substr(0, 11) + "\n\nX\n\n\t// " + sEnd + "b"},
        {sEnd + sBegin, "\n", ""},
        {sBegin, "\n", ""},
        {"", "\n", ""},
    };
    for (const CCase& test : cases) {
        std::string sText = test.m_sText;
        const auto sLineEnd = prevailingLineEnd(sText, {HEADER_REGION});
        EXPECT_EQ(sLineEnd, test.m_sLineEnd);
        EXPECT_EQ(replaceCodeRegion(sText, HEADER_REGION, "X\n", sLineEnd), !test.m_sResult.empty());
        EXPECT_EQ(sText, test.m_sResult.empty() ? test.m_sText : test.m_sResult);
    }
}

} // namespace
} // namespace velmora
