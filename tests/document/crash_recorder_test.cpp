#include "document/crash_recorder.h"
#include "project/dsp_project.h"
#include "project/project_file.h"
#include "support/program_runner.h"
#include "support/test_support.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A user folder, a folder with a project, and a program that crashes (crash_program.cpp).
class CCrashRecorderTest : public testing::Test
{
  protected:
    CCrashRecorderTest()
    {
        CDSPProject project;
        project.m_sProjectName = "Saved";
        EXPECT_TRUE(saveProject(project, m_project, m_dialogs));
        m_sSaved = test::readFile(m_project);
    }

    test::CProgramEnd crash(const std::string& sMood, const std::vector<std::string>& ways = {}) const
    {
        std::vector<std::string> words = {PLUGIN, sMood, m_user.path(), m_project};
        words.insert(words.end(), ways.begin(), ways.end());
        return test::runProgram(CRASH_PROGRAM, words);
    }

    std::optional<CCrashReport> take() const { return CCrashRecorder::takeReport(m_user.path()); }

    test::CTemporaryFolder m_user;
    test::CTemporaryFolder m_folder;
    std::filesystem::path m_project = m_folder / "First.prj";
    std::string m_sSaved;
    test::CRecordingDialogs m_dialogs;
};

constexpr const char* FAULT_MOOD = "1";

TEST_F(CCrashRecorderTest, SavesTheProjectAndNamesThePlugInWhateverTheFault)
{
    struct CFaultCase
    {
        const char* m_pMood;
        const char* m_pSignal;
    };
    const std::vector<CFaultCase> cases = {{"1", "SIGSEGV"}, {"2", "SIGABRT"}, {"3", "SIGSEGV"},
                                           {"6", "exit"},    {"7", "SIGABRT"}, {"8", "SIGFPE"},
                                           {"9", "SIGSEGV"}, {"10", "SIGILL"}};
    for (const auto& [pMood, pSignal] : cases) {
        SCOPED_TRACE(std::string("mood ") + pMood);
        const auto bare = crash(pMood, {"bare"});
        EXPECT_FALSE(take().has_value());
        const auto end = crash(pMood);
        EXPECT_EQ(end.m_nSignal, bare.m_nSignal) << end.m_sErrors;
        EXPECT_EQ(end.m_nExitStatus, bare.m_nExitStatus);

        EXPECT_THAT(test::entriesOf(m_folder.path()), ElementsAre("First.prj", "First.prj.autosave"));
        EXPECT_EQ(test::readFile(m_project), m_sSaved);
        CDSPProject rescued;
        EXPECT_TRUE(loadProject(rescued, m_folder / "First.prj.autosave", m_dialogs));
        EXPECT_EQ(rescued.m_sProjectName, "Changed");

        const auto report = take();
        ASSERT_TRUE(report.has_value());
        EXPECT_EQ(report->m_sPlugIn, "Unruly");
        EXPECT_EQ(report->m_sLibrary, PLUGIN);
        EXPECT_EQ(report->m_sDoing, "processing audio");
        EXPECT_EQ(report->m_sSignal, pSignal);
        EXPECT_EQ(report->m_sThread, "audio thread");
        EXPECT_TRUE(report->m_bAudioRan);
        EXPECT_EQ(report->m_sProject, m_project);
        EXPECT_EQ(report->m_sAutosave, m_project.string() + ".autosave");
        EXPECT_THAT(test::entriesOf(m_user.path()), ElementsAre("crash-report.last.txt"));
        EXPECT_FALSE(take().has_value());
        std::filesystem::remove(m_user / "crash-report.last.txt");
        std::filesystem::remove(m_folder / "First.prj.autosave");
    }
}

TEST_F(CCrashRecorderTest, WritesNoAutosaveOfASavedProjectAndOneElsewhereWhenItsFolderIsGone)
{
    crash(FAULT_MOOD, {"saved"});
    const auto saved = take();
    ASSERT_TRUE(saved.has_value());
    EXPECT_EQ(saved->m_sProject, m_project);
    EXPECT_EQ(saved->m_sAutosave, "");
    EXPECT_THAT(saved->message(), HasSubstr("nothing of it is lost"));
    EXPECT_THAT(test::entriesOf(m_folder.path()), ElementsAre("First.prj"));

    // A folder stands where the unfinished file would.
    std::filesystem::create_directory(m_folder / ".First.prj.autosave.part");
    crash(FAULT_MOOD);
    const auto elsewhere = take();
    ASSERT_TRUE(elsewhere.has_value());
    EXPECT_EQ(elsewhere->m_sAutosave, m_user / "First.prj.autosave");

    std::filesystem::create_directory(m_user / ".First.prj.autosave.part");
    crash(FAULT_MOOD);
    const auto nowhere = take();
    ASSERT_TRUE(nowhere.has_value());
    EXPECT_EQ(nowhere->m_sAutosave, "");
    EXPECT_THAT(nowhere->message(), HasSubstr("is lost: File exists."));
}

TEST_F(CCrashRecorderTest, TellsTheProgramsOwnFaultsFromThoseOfPlugIns)
{
    const auto end = crash("0", {"host"});
    EXPECT_NE(end.m_nSignal + std::max(end.m_nExitStatus, 0), 0);
    const auto report = take();
    ASSERT_TRUE(report.has_value());
    EXPECT_EQ(report->m_sPlugIn, "");
    EXPECT_EQ(report->m_sThread, "main thread");
    EXPECT_EQ(report->m_sSignal, "SIGSEGV");
    EXPECT_THAT(report->message(), HasSubstr("by a fault in Velmora itself (segmentation fault)"));
    EXPECT_THAT(report->message(), HasSubstr("crash-report.last.txt"));
}

TEST_F(CCrashRecorderTest, HandsOnToWhoeverEndsTheProgramInHisOwnWay)
{
    const auto end = crash(FAULT_MOOD, {"guarded", "twice"});
    EXPECT_EQ(end.m_nExitStatus, 9);
    EXPECT_EQ(end.m_sErrors, "SIGSEGV");
    const auto report = take();
    ASSERT_TRUE(report.has_value());
    EXPECT_EQ(report->m_sPlugIn, "Unruly");
}

// Two threads fault while the main thread hands over state after state: what is saved is one whole state.
TEST_F(CCrashRecorderTest, SavesAWholeStateAtAnyMoment)
{
    for (int nRound = 0; nRound < 10; ++nRound) {
        crash(FAULT_MOOD, {"busy", "twice"});
        const auto report = take();
        ASSERT_TRUE(report.has_value());
        EXPECT_EQ(report->m_sThread, "audio thread");
        const std::string sSaved = test::readFile(m_project.string() + ".autosave");
        ASSERT_FALSE(sSaved.empty());
        if (sSaved.front() >= 'a' && sSaved.front() <= 'z') { // else the first state, a project
            EXPECT_EQ(sSaved.find_first_not_of(sSaved.front()), std::string::npos);
            EXPECT_EQ(sSaved.size() % 10000, 1000U);
        }
    }
}

TEST_F(CCrashRecorderTest, OnlyOneRecorderAtATimeAndOnlyRegularReports)
{
    CCrashRecorder second;
    {
        CCrashRecorder first;
        EXPECT_TRUE(first.start(m_user.path()));
        EXPECT_TRUE(first.start(m_user.path()));
        EXPECT_FALSE(second.start(m_user.path()));
    }
    EXPECT_TRUE(second.start(m_user.path()));
    EXPECT_TRUE(test::entriesOf(m_user.path()).empty());

    std::filesystem::create_symlink(m_project, m_user / "crash-report.txt");
    EXPECT_FALSE(take().has_value());
    std::filesystem::remove(m_user / "crash-report.txt");
    test::writeFile(m_user / "crash-report.txt",
                    "Velmora crash report\nautosave: /nowhere/at all.autosave\n");
    const auto report = take();
    ASSERT_TRUE(report.has_value());
    EXPECT_EQ(report->m_sAutosave, "");
}

} // namespace
} // namespace velmora
