#include "document/command_fixture.h"
#include "document/edit_history.h"
#include "document/panel_state.h"
#include "document/project_lock.h"
#include "project/control_list.h"
#include "project/menu_groups.h"
#include "project/project_file.h"
#include "project/user_variables.h"
#include "support/recording_patience.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ProjectEdits : public ProjectCommands
{
  protected:
    // All that an edit may change: sources, project file, GUI document.
    std::vector<std::string> files()
    {
        const CDSPProject& project = *commands().project();
        std::vector<std::string> texts;
        for (const fs::path& file : {project.headerPath(), project.sourcePath(),
                                     fs::path(project.m_sProjectFile), project.folder() / "Velmora.uidesc"})
            texts.push_back(fs::exists(file) ? test::readFile(file) : "none");
        return texts;
    }

    CUICtrl* control(UINT uId) { return findControl(commands().project()->m_UIControlList, uId); }

    bool change(UINT uId, const std::function<void(CControlEdit&)>& how)
    {
        CControlEdit edit = controlEditOf(*control(uId));
        how(edit);
        return commands().acceptControl(edit, false);
    }
};

TEST_F(ProjectEdits, AreTakenBackAndMadeAgainInTheFiles)
{
    ASSERT_TRUE(newProject("Other"));
    ASSERT_TRUE(addSlider(9, "m_fOther", 0.5F));
    commands().project()->m_pVectorJSProgram[5] = 0.75F;
    commands().project()->setTextLabel(3, "Label");
    ASSERT_TRUE(commands().save());
    test::writeFile(commands().project()->folder() / "Velmora.uidesc", "<other/>");
    const fs::path other = commands().project()->m_sProjectFile;

    ASSERT_TRUE(newProject("Loudness"));
    EXPECT_FALSE(commands().edits().canUndo());
    EXPECT_FALSE(commands().undo() || commands().redo());
    m_dialogs.m_bAnswer = true;
    const struct
    {
        std::string m_sLabel;
        std::function<bool()> m_edit;
    } EDITS[] = {
        {"Add \"m_fVolume\"", [&] { return addSlider(0, "m_fVolume", 0.25F); }},
        {"Add \"m_fFirst\"", [&] { return addSlider(100, "m_fFirst", 0.25F); }},
        {"Add \"m_fSecond\"", [&] { return addSlider(101, "m_fSecond", 0.25F); }},
        {"Change \"Level\"",
         [&] {
             changeSource("* FIXED_VOLUME", "* FIXED_VOLUME * m_fVolume");
             return change(0, [](CControlEdit& edit) {
                 edit.m_sName = "Level";
                 edit.m_sVariableName = "m_fLevel";
             });
         }},
        {"Move Up", [&] { return commands().moveAlphaWheelItem(101, true); }},
        {"Change \"m_fFirst\"",
         [&] { return change(100, [](CControlEdit& edit) { setMenuGroup(edit.m_record, "Filters"); }); }},
        {"Menu Group \"Filters\"", [&] { return commands().renameMenuGroup("Filters", "Klänge"); }},
        {"Assignable Buttons",
         [&] {
             return commands().setAssignableButtons({{{"Go", true}, {"Stop", false}, {"B3", true}}});
         }},
        {"Add Variable m_fState",
         [&] {
             return commands().addUserVariable({1, "m_fState", "0.5"});
         }},
        {"Remove Variable m_fState", [&] { return commands().removeUserVariable("m_fState"); }},
        {"Track Pad",
         [&] {
             return commands().editPanel("Track Pad", [](CDSPProject& project) {
                 project.m_uX_TrackPadIndex = 0;
                 project.m_JS_YCtrl.bMIDIControl = true;
                 project.m_uControlTheme[7] = 7;
                 return true;
             });
         }},
        {"Remove \"m_fFirst\"", [&] { return commands().removeControl(100); }},
        {"Import UI Controls", [&] { return commands().importControls([&] { return other; }); }},
        {"Clear Project", [&] { return commands().clearProject(); }},
    };
    std::vector<std::vector<std::string>> states;
    for (const auto& edit : EDITS) {
        // What the user typed beside the edit is not the edit's to take back.
        if (edit.m_sLabel == "Change \"Level\"")
            states.push_back({});
        else
            states.push_back(files());
        ASSERT_TRUE(edit.m_edit()) << edit.m_sLabel;
        ASSERT_TRUE(commands().edits().canUndo());
        EXPECT_EQ(commands().edits().nextUndo()->m_sLabel, edit.m_sLabel);
    }
    states.push_back(files());
    states[3] = states[2];

    for (std::size_t i = std::size(EDITS); i-- > 4;) {
        ASSERT_TRUE(commands().undo()) << EDITS[i].m_sLabel;
        ASSERT_TRUE(commands().edits().canRedo());
        EXPECT_EQ(commands().edits().nextRedo()->m_sLabel, EDITS[i].m_sLabel);
        EXPECT_EQ(files(), states[i]) << EDITS[i].m_sLabel;
    }
    // The rename in the sources is taken back with the record, as often as it is asked.
    for (const std::string sName : {"m_fVolume", "m_fLevel", "m_fVolume"}) {
        m_dialogs.m_questions.clear();
        ASSERT_TRUE(sName == "m_fVolume" ? commands().undo() : commands().redo());
        EXPECT_THAT(m_dialogs.m_questions, ElementsAre(HasSubstr("The variable name has changed.")));
        EXPECT_THAT(files()[1], HasSubstr("* FIXED_VOLUME * " + sName + ";"));
        EXPECT_EQ(control(0)->cVariableName, sName);
    }
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(commands().undo());
    EXPECT_FALSE(commands().edits().canUndo());
    EXPECT_THAT(controlsOf(commands().project()->m_UIControlList), IsEmpty());
    for (std::size_t i = 0; i < std::size(EDITS); ++i)
        ASSERT_TRUE(commands().redo()) << EDITS[i].m_sLabel;
    EXPECT_EQ(files(), states.back());
    EXPECT_FALSE(commands().edits().canRedo());
    EXPECT_THAT(m_dialogs.m_messages, IsEmpty());
}

TEST_F(ProjectEdits, TakeBackNothingElse)
{
    ASSERT_TRUE(newProject("Loudness"));
    ASSERT_TRUE(addSlider(0, "m_fVolume", 0.25F));
    ASSERT_TRUE(addSlider(1, "m_fOther", 0.25F));
    ASSERT_TRUE(commands().removeControl(1));
    control(0)->fInitUserFloatValue = 2.0F; // the slider was moved since
    ASSERT_TRUE(commands().undo());
    EXPECT_EQ(control(0)->fInitUserFloatValue, 2.0F);
    ASSERT_TRUE(control(1));

    // A refused or failed edit is none; one that changes nothing neither.
    EXPECT_FALSE(addSlider(1, "m_fThird", 0.25F));
    EXPECT_FALSE(commands().moveAlphaWheelItem(0, true));
    EXPECT_FALSE(commands().renameMenuGroup("None", "Some"));
    EXPECT_TRUE(change(1, [](CControlEdit&) {}));
    ASSERT_TRUE(commands().edits().canRedo());
    EXPECT_EQ(commands().edits().nextRedo()->m_sLabel, "Remove \"m_fOther\"");
    ASSERT_TRUE(addSlider(2, "m_fThird", 0.25F));
    EXPECT_FALSE(commands().edits().canRedo()) << "a new edit leaves no way to the old ones";

    // A rename answered with No leaves the sources to the user, in both directions.
    changeSource("* FIXED_VOLUME", "* FIXED_VOLUME * m_fVolume");
    ASSERT_TRUE(change(0, [](CControlEdit& edit) { edit.m_sVariableName = "m_fLevel"; }));
    m_dialogs.m_questions.clear();
    ASSERT_TRUE(commands().undo());
    EXPECT_THAT(m_dialogs.m_questions, IsEmpty());
    EXPECT_THAT(files()[1], HasSubstr("* FIXED_VOLUME * m_fVolume;"));

    // An edit is kept that the sources could not take.
    changeSource("**--0xEDA5--**", "gone");
    EXPECT_FALSE(addSlider(3, "m_fFourth", 0.25F));
    ASSERT_TRUE(commands().edits().canUndo());
    EXPECT_EQ(commands().edits().nextUndo()->m_sLabel, "Add \"m_fFourth\"");
    EXPECT_FALSE(commands().undo());
    EXPECT_FALSE(control(3));

    ASSERT_TRUE(commands().loadProject(commands().project()->m_sProjectFile));
    EXPECT_FALSE(commands().edits().canUndo() || commands().edits().canRedo());
}

TEST(EditHistory, KeepsTheNewestEditsAndIdsThatStandTwice)
{
    CDSPProject project;
    CEditHistory history;
    for (std::size_t i = 0; i < CEditHistory::MAXIMUM_EDITS + 5; ++i) {
        history.begin(project, std::to_string(i));
        history.begin(project, "inner");
        CUICtrl control;
        control.uControlId = 7;
        control.fInitUserFloatValue = static_cast<float>(i);
        project.m_UIControlList.append(control);
        history.commit(project);
        EXPECT_FALSE(i == 0 && history.canUndo()) << "the outer one is not done";
        history.commit(project);
    }
    ASSERT_TRUE(history.canUndo());
    EXPECT_EQ(history.nextUndo()->m_sLabel, "104");
    for (std::size_t i = 0; i < CEditHistory::MAXIMUM_EDITS; ++i)
        history.undo(project);
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(controlsOf(project.m_UIControlList).size(), 5U);
    for (std::size_t i = 0; i < CEditHistory::MAXIMUM_EDITS; ++i)
        history.redo(project);
    const auto controls = controlsOf(project.m_UIControlList);
    ASSERT_EQ(controls.size(), 105U);
    for (std::size_t i = 0; i < controls.size(); ++i)
        EXPECT_EQ(controls[i]->fInitUserFloatValue, static_cast<float>(i));
    EXPECT_EQ(CPanelState(project), CPanelState(project));
    history.begin(project, "refused");
    history.cancel();
    ASSERT_TRUE(history.canUndo());
    EXPECT_EQ(history.nextUndo()->m_sLabel, "104");
}

// Asks for other commands while a build runs, as a window's events might.
class CMeddlingProgress : public IProgress
{
  public:
    explicit CMeddlingProgress(CProjectCommands& commands) : m_commands(commands) {}
    bool report(double dDone) override
    {
        m_nReports++;
        m_bRises = m_bRises && dDone >= m_dDone;
        m_dDone = dDone;
        m_bBusy = m_bBusy && m_commands.isBusy();
        m_bDone = m_bDone || m_commands.clearProject() || m_commands.rebuild({}).m_bLoaded ||
                  m_commands.closeProject();
        return m_nReports < m_nLast;
    }

    int m_nReports = 0;
    int m_nLast = 1000000;
    double m_dDone = 0.0;
    bool m_bRises = true;
    bool m_bBusy = true;
    bool m_bDone = false;

  private:
    CProjectCommands& m_commands;
};

TEST_F(ProjectEdits, WaitForNobodyButLetOtherThingsHappen)
{
    ASSERT_TRUE(newProject("Loudness"));
    ASSERT_TRUE(addSlider(0, "m_fVolume", 0.25F));
    CMeddlingProgress progress(commands());
    CRebuildOptions options;
    options.m_pProgress = &progress;
    ASSERT_TRUE(commands().rebuild(options).m_bLoaded);
    EXPECT_GT(progress.m_nReports, 1);
    EXPECT_TRUE(progress.m_bBusy && progress.m_bRises);
    EXPECT_FALSE(progress.m_bDone);
    EXPECT_FALSE(commands().isBusy());
    EXPECT_THAT(m_dialogs.m_notes, testing::Contains("Wait until what is under way has ended."));
    EXPECT_TRUE(control(0)) << "nothing of it was done";

    progress.m_nLast = progress.m_nReports + 1;
    changeSource("FIXED_VOLUME", "OTHER_VOLUME");
    const CRebuildResult stopped = commands().rebuild(options);
    EXPECT_TRUE(stopped.m_build.m_bCancelled);
    EXPECT_FALSE(stopped.m_bLoaded);

    // A source that another program has locked: given up at the second look.
    const int nFile = ::open(commands().project()->headerPath().c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::flock(nFile, LOCK_EX), 0);
    test::CRecordingPatience patience;
    patience.m_uGivesUpAt = 2;
    bool bRefused = true;
    patience.m_during = [&] { bRefused = bRefused && !commands().writeCode() && commands().isBusy(); };
    EXPECT_FALSE(commands().removeControl(0));
    EXPECT_EQ(patience.m_waits.size(), 2U);
    EXPECT_THAT(patience.m_reasons[0], HasSubstr("Loudness.h, which another program has locked"));
    EXPECT_TRUE(bRefused);
    ::close(nFile);
    EXPECT_TRUE(commands().undo());
    EXPECT_TRUE(control(0));
}

TEST_F(ProjectEdits, AreSavedWhenTheProjectIsLeftAndKeptFromOtherPrograms)
{
    commands().setHoldsProject(true);
    m_document.autosave().start(m_folder / "user");
    ASSERT_TRUE(newProject("First"));
    const fs::path first = commands().project()->m_sProjectFile;
    ASSERT_TRUE(newProject("Second"));
    const fs::path second = commands().project()->m_sProjectFile;
    ASSERT_TRUE(addSlider(0, "m_fVolume", 0.25F));

    CProjectLock other;
    EXPECT_FALSE(other.take(second));
    ASSERT_TRUE(other.take(first)) << "it was left";
    EXPECT_FALSE(commands().openProject(first));
    EXPECT_FALSE(commands().loadProject(first));
    EXPECT_THAT(m_dialogs.m_messages, testing::Each(other.heldByWindow(first)));
    EXPECT_EQ(commands().project()->m_sProjectFile, second);
    EXPECT_FALSE(CProjectLock().take(second)) << "the open one stays held";

    control(0)->fInitUserFloatValue = 1.5F;
    m_document.projectChanged(false);
    ASSERT_TRUE(commands().openProject(second)) << "opening it again is no second program";
    EXPECT_EQ(control(0)->fInitUserFloatValue, 1.5F);
    EXPECT_FALSE(CProjectLock().take(second));
    EXPECT_TRUE(commands().closeProject());
    EXPECT_EQ(commands().project(), nullptr);
    EXPECT_TRUE(CProjectLock().take(second));
    EXPECT_FALSE(commands().undo());
    EXPECT_EQ(m_dialogs.m_messages.back(), PROJECT_NEEDED);
}

TEST_F(ProjectEdits, SynchronizeCodeResetsTheJoystick)
{
    ASSERT_TRUE(newProject("Loudness"));
    changeSource("float /*fControlA*/, float /*fControlB*/, float /*fControlC*/, float /*fControlD*/",
                 "float a, float b, float c, float d");
    changeSource(
        "/*fACMix*/, float /*fBDMix*/)\n{",
        "x, float y)\n{\n\tsendStatusWndText(a == 0.25f && b == 0.25f && c == 0.25f && d == 0.25f && "
        "x == 0.5f && y == 0.5f ? \"centre\" : \"elsewhere\");");
    ASSERT_TRUE(commands().rebuild({}).m_bLoaded);
    std::vector<std::string> strip;
    int nResets = 0;
    commands().m_onJoystickReset = [&] { ++nResets; };
    ASSERT_TRUE(commands().synchronizeCode([&](std::string_view sLabel, std::string_view sText) {
        strip.push_back(std::string(sLabel) + "|" + std::string(sText));
    }));
    EXPECT_THAT(strip, ElementsAre("Copying|Files..."));
    EXPECT_EQ(nResets, 1);
    EXPECT_FALSE(m_document.plugInLoader().current());
    EXPECT_THAT(m_view.m_texts, ElementsAre("centre"));
}

} // namespace
} // namespace velmora
