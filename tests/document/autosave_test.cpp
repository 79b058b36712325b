#include "document/autosave.h"
#include "document/project_lock.h"
#include "project/codegen/project_history.h"
#include "project/dsp_project.h"
#include "project/project_file.h"
#include "support/test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

namespace fs = std::filesystem;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class Autosave : public testing::Test
{
  protected:
    Autosave()
    {
        fs::create_directories(m_folder / "Gain");
        fs::create_directories(m_user);
        m_project.m_sProjectName = "Gain";
        m_project.m_sProjectFile = m_file.string();
        m_project.m_sProjectFolder = m_file.parent_path().string();
        EXPECT_TRUE(saveProject(m_project, m_file, m_dialogs));
        m_autosave.start(m_user);
        m_autosave.setProject(&m_project);
    }

    void change(const std::string& sCompany)
    {
        m_project.m_sCompanyName = sCompany;
        m_autosave.projectChanged(false);
    }

    // The company's name in the autosave beside the project; "none" if there is no autosave.
    std::string saved(const fs::path& file)
    {
        CDSPProject project;
        return fs::exists(file) && loadProject(project, file, m_dialogs) ? project.m_sCompanyName : "none";
    }

    test::CTemporaryFolder m_folder;
    const fs::path m_file = m_folder / "Gain" / "Gain.prj";
    const fs::path m_user = m_folder / "user";
    const fs::path m_beside = m_folder / "Gain" / "Gain.prj.autosave";
    test::CRecordingDialogs m_dialogs;
    CDSPProject m_project;
    CAutosave m_autosave{m_dialogs};
    CAutosave::CClock::time_point m_start;
};

TEST_F(Autosave, WritesEachMinuteOfChange)
{
    const struct
    {
        int m_nSecond;
        std::string m_sChange; // "": none; "saved": the project was saved
        std::string m_sAutosave;
    } STEPS[] = {
        {0, "", "none"},        {70, "", "none"},       {75, "A", "none"},  {134, "", "none"},
        {135, "", "A"},         {140, "B", "A"},        {199, "C", "A"},    {200, "", "C"},
        {500, "", "C"},         {501, "saved", "none"}, {700, "", "none"},  {701, "D", "none"},
        {702, "saved", "none"}, {800, "", "none"},      {801, "E", "none"}, {861, "", "E"},
    };
    for (const auto& step : STEPS) {
        if (step.m_sChange == "saved")
            m_autosave.projectChanged(true);
        else if (!step.m_sChange.empty())
            change(step.m_sChange);
        EXPECT_TRUE(m_autosave.onTimer(m_start + seconds(step.m_nSecond)));
        EXPECT_EQ(saved(m_beside), step.m_sAutosave) << "at " << step.m_nSecond << " s";
    }
    // What is not saved when the project is left stays; an autosave of an unchanged project goes.
    change("F");
    m_autosave.setProject(nullptr);
    EXPECT_EQ(saved(m_beside), "F");
    EXPECT_FALSE(m_autosave.isChanged());
    change("G");
    EXPECT_TRUE(m_autosave.onTimer(m_start + seconds(2000)));
    EXPECT_EQ(saved(m_beside), "F") << "no project is open";

    CAutosave ofACommand(m_dialogs);
    ofACommand.setProject(&m_project);
    ofACommand.projectChanged(false);
    ofACommand.projectChanged(true);
    ofACommand.setProject(nullptr);
    EXPECT_EQ(saved(m_beside), "F") << "a program without a window leaves it to be offered";
}

TEST_F(Autosave, TakesTheUserFolderWhereItMustAndTellsOnceWhereItCannot)
{
    fs::create_directories(m_beside / "in the way");
    change("A");
    for (const int nSecond : {0, 60})
        EXPECT_TRUE(m_autosave.onTimer(m_start + seconds(nSecond)));
    EXPECT_EQ(saved(m_user / "Gain.prj.autosave"), "A");

    fs::remove(m_user / "Gain.prj.autosave");
    fs::create_directories(m_user / "Gain.prj.autosave" / "in the way");
    change("B");
    for (const int nMinute : {2, 3, 4})
        EXPECT_EQ(m_autosave.onTimer(m_start + std::chrono::minutes(nMinute)), nMinute == 2);
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre(HasSubstr("can not be kept beside it")));
}

TEST_F(Autosave, IsOfferedWhenItIsNewerAndHoldsSomethingElse)
{
    const fs::path second = secondAutosavePath(m_file, m_user);
    EXPECT_FALSE(findRecovery(m_file, m_user));
    fs::copy_file(m_file, m_beside);
    EXPECT_FALSE(findRecovery(m_file, m_user)) << "the same";
    m_project.m_sCompanyName = "Unsaved";
    ASSERT_TRUE(saveProject(m_project, m_beside, m_dialogs));
    const auto now = fs::last_write_time(m_file);
    for (const int nSeconds : {-1, 0, 1}) {
        fs::last_write_time(m_beside, now + seconds(nSeconds));
        EXPECT_EQ(findRecovery(m_file, m_user).has_value(), nSeconds >= 0) << nSeconds;
    }
    test::writeFile(second, "no project");
    EXPECT_EQ(findRecovery(m_file, m_user)->m_autosave, m_beside);
    m_project.m_sCompanyName = "Newer";
    ASSERT_TRUE(saveProject(m_project, second, m_dialogs));
    fs::last_write_time(second, now + seconds(2));
    EXPECT_EQ(findRecovery(m_file, m_user)->m_autosave, second);
    m_project.m_sProjectFile = m_folder / "Elsewhere" / "Gain.prj";
    ASSERT_TRUE(saveProject(m_project, second, m_dialogs));
    const auto recovery = findRecovery(m_file, m_user);
    ASSERT_TRUE(recovery) << "the one of another project is passed over";
    EXPECT_THAT(recovery->m_differences, ElementsAre(HasSubstr("The company name changed from ")));
    EXPECT_THAT(recovery->question(), HasSubstr("The company name changed from "));
    EXPECT_THAT(recovery->question(0), HasSubstr("... and 1 more."));
    EXPECT_THAT(m_dialogs.m_messages, IsEmpty());

    const std::string sSaved = test::readFile(m_file);
    const CProjectHistory history(m_file.parent_path());
    for (const bool bRecover : {false, true}) {
        ASSERT_TRUE(bRecover ? recover(*recovery, m_dialogs) : discard(*recovery, m_dialogs));
        EXPECT_FALSE(fs::exists(m_beside));
        EXPECT_EQ(saved(m_file), bRecover ? "Unsaved" : saved(m_file));
        EXPECT_EQ(test::readFile(m_file) == sSaved, !bRecover);
        // Neither is lost: the history has the other one.
        ASSERT_THAT(history.entries(), SizeIs(bRecover ? 2 : 1));
        const auto sKept = history.text(history.entries().back().m_uNumber);
        EXPECT_EQ(sKept == sSaved, bRecover);
        if (!bRecover)
            test::writeFile(m_beside, *sKept);
    }
    EXPECT_FALSE(findRecovery(m_file, m_user) && findRecovery(m_file, m_user)->m_autosave == m_beside);
    EXPECT_FALSE(recover(*recovery, m_dialogs) || discard(*recovery, m_dialogs));
    EXPECT_THAT(m_dialogs.m_messages, testing::Each(HasSubstr("it can not be read. Nothing was changed.")));

    // A damaged project is one more reason.
    ASSERT_TRUE(saveProject(m_project, m_beside, m_dialogs));
    test::writeFile(m_file, "damaged");
    fs::last_write_time(m_file, fs::last_write_time(m_beside));
    EXPECT_TRUE(findRecovery(m_file, m_user));
}

TEST_F(Autosave, TheLockTellsWhoHoldsTheProject)
{
    CProjectLock window;
    ASSERT_TRUE(window.take(m_file));
    EXPECT_TRUE(window.isHeld() && window.holds(m_file));
    EXPECT_FALSE(window.holds(m_folder / "Other.prj"));
    CProjectLock second;
    EXPECT_FALSE(second.take(m_file));
    EXPECT_THAT(second.reason(), HasSubstr("is open in a window of Velmora. Close it there"));
    EXPECT_EQ(CProjectLock::heldByWindow(m_file), second.reason());
    window.letGo();
    EXPECT_EQ(CProjectLock::heldByWindow(m_file), "");

    CFileLock command(CProjectLock::lockFile(m_file));
    ASSERT_TRUE(command.tryToTake());
    EXPECT_FALSE(second.take(m_file));
    EXPECT_THAT(second.reason(), HasSubstr("A command is at work on the project"));
    EXPECT_EQ(CProjectLock::heldByWindow(m_file), "");
    command.letGo();
    EXPECT_TRUE(second.take(m_file));
    EXPECT_TRUE(window.take(m_folder / "absent.prj"));
    EXPECT_FALSE(window.isHeld());
    EXPECT_FALSE(fs::exists(m_folder / ".velmora")) << "nothing is made for a file that is not there";
}

} // namespace
} // namespace velmora
