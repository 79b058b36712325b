#include "project/dsp_project.h"
#include "project/project_file.h"
#include "project_stream.h"
#include "support/test_support.h"

#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace velmora;
using namespace velmora::test;

TEST(ProjectFile, SavesInTheNewestSchemaWhatItLoaded)
{
    CTemporaryFolder folder;
    CRecordingDialogs dialogs;
    for (const int nVersion : {1, 20, 31}) {
        writeFile(folder / "old.prj", numberedStream(nVersion, 3) + "trailing bytes");
        CDSPProject project;
        ASSERT_TRUE(loadProject(project, folder / "old.prj", dialogs));
        EXPECT_EQ(project.loadedSchema(), nVersion);
        ASSERT_TRUE(saveProject(project, folder / "new.prj", dialogs));
        CDSPProject again;
        ASSERT_TRUE(loadProject(again, folder / "new.prj", dialogs));
        EXPECT_EQ(again.loadedSchema(), 31);
        EXPECT_EQ(again.m_UIControlList.count(), 3u);
        EXPECT_EQ(again.m_sSourceFile, "text 8");
    }
    EXPECT_THAT(dialogs.m_messages, testing::IsEmpty());
    EXPECT_THAT(entriesOf(folder.path()), testing::ElementsAre("new.prj", "old.prj"));
}

TEST(ProjectFile, FailuresAreToldAndChangeNothing)
{
    CTemporaryFolder folder;
    const std::string sWhole = numberedStream(31, 2);
    writeFile(folder / "cut.prj", sWhole.substr(0, sWhole.size() - 1));
    ASSERT_EQ(::mkfifo((folder / "pipe.prj").c_str(), 0600), 0);
    CRecordingDialogs noDialogs;
    CDSPProject leading;
    leading.m_sHeaderFile = "../../.profile";
    ASSERT_TRUE(saveProject(leading, folder / "leading.prj", noDialogs));
    const std::tuple<std::filesystem::path, std::string> cases[] = {
        {folder / "leading.prj", "could not be read. It names \"../../.profile\", which is no file"},
        {folder / "none.prj", "has an invalid path."},
        {folder.path(), "could not be opened."},
        {folder / "pipe.prj", "could not be opened."}, // opening it would wait for ever
        {folder / "cut.prj", "could not be read. "},
    };
    for (const auto& [path, sMessage] : cases) {
        CRecordingDialogs dialogs;
        CDSPProject project;
        project.m_sProjectName = "old";
        EXPECT_FALSE(loadProject(project, path, dialogs));
        EXPECT_THAT(dialogs.m_messages, testing::ElementsAre(testing::StartsWith(
                                            "Error: The File " + path.string() + " " + sMessage)));
        EXPECT_EQ(project.m_sProjectName, "");
    }
    CRecordingDialogs dialogs;
    CDSPProject project;
    const auto path = folder / "missing" / "a.prj";
    EXPECT_FALSE(saveProject(project, path, dialogs));
    EXPECT_THAT(dialogs.m_messages,
                testing::ElementsAre("Error: The File " + path.string() + " could not be created."));
}

// A process that saves two states in turn is killed at any moment, a thousand times: the file is always one
// of the two, whole.
TEST(ProjectFile, AKillDuringASaveLosesNothing)
{
#ifdef __SANITIZE_ADDRESS__
    constexpr int KILLS = 100; // a process with its shadow memory is slow to copy
#else
    constexpr int KILLS = 1000;
#endif
    constexpr int STATES = 2;
    CTemporaryFolder folder;
    const auto path = folder / "Gain.prj";
    CRecordingDialogs dialogs;
    CDSPProject states[STATES];
    std::string bytes[STATES];
    for (int i = 0; i < STATES; ++i) {
        writeFile(path, numberedStream(31, 4 + 5 * i));
        ASSERT_TRUE(loadProject(states[i], path, dialogs));
        ASSERT_TRUE(saveProject(states[i], path, dialogs));
        bytes[i] = readFile(path);
    }
    std::mt19937 random(1357);
    int found[STATES] = {};
    for (int nKill = 0; nKill < KILLS; ++nKill) {
        const pid_t nChild = ::fork();
        ASSERT_GE(nChild, 0);
        if (nChild == 0)
            for (int i = 0;; i = !i)
                if (!saveProject(states[i], path, dialogs))
                    ::_exit(1);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000));
        ::kill(nChild, SIGKILL);
        int nStatus = 0;
        ASSERT_EQ(::waitpid(nChild, &nStatus, 0), nChild);
        ASSERT_TRUE(WIFSIGNALED(nStatus)) << "the save failed";

        CDSPProject project;
        ASSERT_TRUE(loadProject(project, path, dialogs)) << dialogs.m_messages.back();
        const std::string sBytes = readFile(path);
        const int nState = sBytes == bytes[1];
        ASSERT_EQ(sBytes, bytes[nState]);
        ++found[nState];
    }
    EXPECT_GT(found[0], 0);
    EXPECT_GT(found[1], 0);
    EXPECT_GT(entriesOf(folder.path()).size(), 1u) << "no kill came in the middle of a save";
}

} // namespace
