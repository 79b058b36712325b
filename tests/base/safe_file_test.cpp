#include "base/safe_file.h"
#include "support/test_support.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora {
namespace {

namespace fs = std::filesystem;

class SafeFile : public testing::Test
{
  protected:
    void SetUp() override { test::writeFile(target(), "old"); }

    [[nodiscard]] fs::path target() const { return m_folder / "notes.txt"; }
    [[nodiscard]] std::vector<std::string> entries() const { return test::entriesOf(m_folder.path()); }

    test::CTemporaryFolder m_folder;
};

TEST_F(SafeFile, TakesItsPlaceOnlyWhenCommitted)
{
    {
        CSafeFile file(target());
        EXPECT_EQ(file.path().extension(), ".txt");
        test::writeFile(file.path(), "half");
        EXPECT_EQ(test::readFile(target()), "old");
    }
    EXPECT_EQ(test::readFile(target()), "old") << "an abandoned write";
    EXPECT_EQ(entries(), std::vector<std::string>{"notes.txt"});

    CSafeFile file(target());
    test::writeFile(file.path(), "new");
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(test::readFile(target()), "new");
    EXPECT_EQ(entries(), std::vector<std::string>{"notes.txt"});
}

TEST_F(SafeFile, TellsWhyItFailed)
{
    CSafeFile empty(target()); // nothing was written
    EXPECT_FALSE(empty.commit());
    EXPECT_NE(empty.error(), "");

    std::string sError;
    EXPECT_FALSE(writeFileSafely(m_folder / "missing" / "notes.txt", "text", &sError));
    EXPECT_EQ(sError, "No such file or directory");
    EXPECT_EQ(entries(), std::vector<std::string>{"notes.txt"});
}

// The limit stands for a disk that fills up in the middle of the write.
TEST_F(SafeFile, AFullDiskLeavesTheOldFileWhole)
{
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::string sError;
        const bool bWritten = writeFileSafely(target(), std::string(100000, 'x'), &sError);
        ::_exit(!bWritten && !sError.empty() ? 42 : 1);
    }
    int nStatus = 0;
    ASSERT_EQ(::waitpid(child, &nStatus, 0), child);
    EXPECT_TRUE(WIFEXITED(nStatus));
    EXPECT_EQ(WEXITSTATUS(nStatus), 42);
    EXPECT_EQ(test::readFile(target()), "old");
    EXPECT_EQ(entries(), std::vector<std::string>{"notes.txt"});
}

TEST_F(SafeFile, FollowsALink)
{
    fs::create_directory(m_folder / "elsewhere");
    const fs::path real = m_folder / "elsewhere" / "real.txt";
    test::writeFile(real, "old");
    fs::create_symlink(real, m_folder / "link.txt");
    EXPECT_TRUE(writeFileSafely(m_folder / "link.txt", "new"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link.txt"));
    EXPECT_EQ(test::readFile(real), "new");
}

TEST_F(SafeFile, KeepsThePermissions)
{
    for (const mode_t uMode : {0600u, 0640u, 0755u}) {
        ASSERT_EQ(::chmod(target().c_str(), uMode), 0);
        ASSERT_TRUE(writeFileSafely(target(), "new"));
        struct stat status = {};
        ASSERT_EQ(::stat(target().c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777u, uMode);
    }
}

TEST_F(SafeFile, UnfinishedFilesCanBeRemovedBeforeTheEnd)
{
    const pid_t child = ::fork();
    if (child == 0) {
        CSafeFile file(target());
        test::writeFile(file.path(), "half");
        CSafeFile finished(m_folder / "finished.txt");
        test::writeFile(finished.path(), "whole");
        const bool bCommitted = finished.commit();
        removeUnfinishedFiles();
        ::_exit(bCommitted ? 42 : 1); // no destructor runs, as in a crash
    }
    int nStatus = 0;
    ASSERT_EQ(::waitpid(child, &nStatus, 0), child);
    EXPECT_EQ(WEXITSTATUS(nStatus), 42);
    EXPECT_EQ(entries(), (std::vector<std::string>{"finished.txt", "notes.txt"}));
}

} // namespace
} // namespace velmora
