#include "document/command_fixture.h"
#include "document/toolchain_choice.h"
#include "host/plugin_library_image.h"
#include "project/codegen/code_synchronisation.h"
#include "project/codegen/project_editing.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_history.h"
#include "project/control_list.h"
#include "project/preset.h"
#include "project/preset_file.h"
#include "project/user_variables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST_F(ProjectCommands, LeadFromNothingToSoundAndBack)
{
    ASSERT_TRUE(newProject("Loudness"));
    ASSERT_TRUE(addSlider(0, "m_fVolume", 0.25F));
    ASSERT_TRUE(addSlider(7, "m_fOther", 1.0F));
    changeSource("* FIXED_VOLUME", "* m_fVolume");
    changeSource("const float FIXED_VOLUME", "// const float FIXED_VOLUME");

    CRebuildResult result = commands().rebuild({});
    ASSERT_EQ(result.m_build.m_eState, EBuildState::succeeded) << result.m_build.m_sError;
    ASSERT_TRUE(result.m_bLoaded);
    EXPECT_EQ(result.m_sBuildId, buildIdOfFile(commands().builtLibrary()));
    EXPECT_EQ(output(), 0.25F);

    // A changed value follows into the next build; a new control starts at its initial value.
    m_document.currentFilter()->setControlText(0, "0.75", false);
    ASSERT_TRUE(commands().removeControl(7));
    ASSERT_TRUE(addSlider(3, "m_fNew", 1.5F));
    changeSource("* m_fVolume", "* m_fVolume * m_fNew");
    const std::string sFirstId = result.m_sBuildId;
    result = commands().rebuild({});
    ASSERT_TRUE(result.m_bLoaded) << result.m_build.m_sError;
    EXPECT_NE(result.m_sBuildId, sFirstId);
    EXPECT_EQ(output(), 1.125F);
    EXPECT_THAT(result.m_changes.m_carried, ElementsAre("m_fVolume"));
    EXPECT_THAT(result.m_changes.m_new, ElementsAre("m_fNew"));
    EXPECT_THAT(result.m_changes.m_dropped, ElementsAre("m_fOther"));
    EXPECT_EQ(m_document.currentFilter()->getControlById(0)->m_sValue, "0.75");

    const CPreset factory = readPreset(commands().project()->folder() / "Presets/0.spf");
    EXPECT_EQ(factory.controlValue(0), 0.25) << "the plug-in as it was made, not as it was carried on";
    EXPECT_THAT(test::readFile(commands().project()->folder() / "compile_commands.json"),
                HasSubstr("Loudness.cpp"));

    std::string sError;
    ASSERT_TRUE(m_document.preferences().set(START_FROM_INITIAL_VALUES, "true", sError));
    ASSERT_TRUE(commands().rebuild({}).m_bLoaded);
    EXPECT_EQ(output(), 0.375F);
    EXPECT_THAT(m_dialogs.m_messages, IsEmpty());
}

TEST_F(ProjectCommands, AFailedBuildLosesNeitherTheLibraryNorTheValues)
{
    ASSERT_TRUE(newProject("Loudness"));
    ASSERT_TRUE(addSlider(0, "m_fVolume", 0.25F));
    changeSource("* FIXED_VOLUME", "* (m_fVolume + 0 * FIXED_VOLUME)");
    ASSERT_TRUE(commands().rebuild({}).m_bLoaded);
    m_document.currentFilter()->setControlText(0, "0.5", false);
    const std::string sLibrary = test::readFile(commands().builtLibrary());

    changeSource("return true;", "return certainly;");
    CRebuildOptions playOn;
    playOn.m_bUnloadFirst = false;
    CRebuildResult result = commands().rebuild(playOn);
    EXPECT_EQ(result.m_build.m_eState, EBuildState::failed);
    ASSERT_FALSE(result.m_build.m_messages.empty());
    EXPECT_THAT(result.m_build.m_messages[0].m_sText, HasSubstr("certainly"));
    EXPECT_GT(result.m_build.m_messages[0].m_nLine, 0);
    EXPECT_EQ(output(), 0.5F) << "the old plug-in plays on";
    EXPECT_EQ(test::readFile(commands().builtLibrary()), sLibrary);

    result = commands().rebuild({});
    EXPECT_EQ(result.m_build.m_eState, EBuildState::failed);
    EXPECT_FALSE(m_document.plugInLoader().current()) << "a rebuild unloads first";

    changeSource("return certainly;", "return true;");
    ASSERT_TRUE(commands().rebuild({}).m_bLoaded);
    EXPECT_EQ(output(), 0.5F) << "the value survives the failures";
}

TEST_F(ProjectCommands, EveryBuildRunsItsOwnCode)
{
    ASSERT_TRUE(newProject("Loudness"));
    std::string sBefore = "= 0.5f";
    CRebuildOptions playOn;
    playOn.m_bUnloadFirst = false;
    for (int i = 1; i <= 12; i++) {
        const std::string sNow = "= " + std::to_string(i) + ".0f";
        changeSource(sBefore, sNow);
        const CRebuildResult result = commands().rebuild(playOn);
        ASSERT_TRUE(result.m_bLoaded) << result.m_build.m_sError;
        ASSERT_EQ(output(), static_cast<float>(i));
        sBefore = sNow;
    }
    EXPECT_THAT(m_dialogs.m_notes, Not(Contains(HasSubstr("stays in memory"))));
}

TEST_F(ProjectCommands, RefuseWhatDoesNotFitTheSlot)
{
    EXPECT_FALSE(commands().writeCode());
    EXPECT_FALSE(commands().clearProject());
    EXPECT_THAT(m_dialogs.m_messages, testing::Each("Open or Create a new Project first!"));
    EXPECT_FALSE(commands().rebuild({}).m_bLoaded);
    EXPECT_FALSE(commands().synchronizeCode());
    EXPECT_EQ(m_dialogs.m_messages.back(), "Open an existing, compiled Project first!");

    ASSERT_TRUE(newProject("Loudness"));
    ASSERT_TRUE(addSlider(0, "m_fVolume", 0.25F));
    const std::string sHeader = test::readFile(commands().project()->headerPath());
    EXPECT_FALSE(addSlider(0, "m_fSecond", 0.25F));
    EXPECT_THAT(m_dialogs.m_messages.back(), HasSubstr("Slot 0 is taken by the control \"m_fVolume\""));
    EXPECT_FALSE(addSlider(1, "m_fVolume", 0.25F));
    EXPECT_FALSE(commands().removeControl(5));
    EXPECT_FALSE(commands().savePreset("None loaded"));
    EXPECT_EQ(test::readFile(commands().project()->headerPath()), sHeader);

    const CUserVariableRequest variable{1, "m_fState", "0.5"};
    ASSERT_TRUE(commands().addUserVariable(variable));
    EXPECT_FALSE(commands().addUserVariable(variable));
    EXPECT_EQ(m_dialogs.m_messages.back(), "Variable name is already in use as a user-variable.");
    ASSERT_TRUE(commands().removeUserVariable("m_fState"));
    EXPECT_EQ(test::readFile(commands().project()->headerPath()), sHeader);
    EXPECT_FALSE(commands().removeUserVariable("m_fVolume")) << "a control is no user variable";
}

TEST_F(ProjectCommands, ARenameAsksAndKeepsTheOldSource)
{
    ASSERT_TRUE(newProject("Loudness"));
    ASSERT_TRUE(addSlider(0, "m_fVolume", 0.25F));
    changeSource("* FIXED_VOLUME", "* FIXED_VOLUME * m_fVolume");
    CControlEdit edit = controlEditOf(*findControl(commands().project()->m_UIControlList, 0));
    edit.m_sVariableName = "m_fLevel";
    m_dialogs.m_bAnswer = true;
    ASSERT_TRUE(commands().acceptControl(edit, false));
    EXPECT_THAT(m_dialogs.m_questions, ElementsAre(HasSubstr("The variable name has changed.")));
    const std::string sSource = test::readFile(commands().project()->sourcePath());
    EXPECT_THAT(sSource, HasSubstr("* FIXED_VOLUME * m_fLevel;"));
    EXPECT_THAT(test::readFile(commands().project()->headerPath()), HasSubstr("\tfloat m_fLevel;\n"));

    const CProjectHistory history(commands().project()->folder());
    bool bKept = false;
    for (const auto& entry : history.entries())
        bKept =
            bKept || history.text(entry.m_uNumber)->find("FIXED_VOLUME * m_fVolume;") != std::string::npos;
    EXPECT_TRUE(bKept);
    EXPECT_TRUE(commands().rebuild({}).m_bLoaded);
}

TEST_F(ProjectCommands, EditProjectAddsWhatWasNewlyChosen)
{
    EXPECT_FALSE(commands().editProject({}));
    EXPECT_EQ(m_dialogs.m_messages.back(), "Open an existing Project first!");
    ASSERT_TRUE(newProject("Loudness"));
    CNewProjectRequest request = requestOfProject(*commands().project(), commands().environment(), m_dialogs);
    request.m_stockObjects = {"DelayAPF"};
    request.m_bOutputOnlyPlugIn = true;
    request.m_sLatency = "-1";
    EXPECT_FALSE(commands().editProject(request));
    EXPECT_EQ(m_dialogs.m_messages.back(), "Latency can not be less than zero.");
    request.m_sLatency = "32";
    std::string sStrip;
    ASSERT_TRUE(commands().editProject(request, [&](std::string_view sLabel, std::string_view sText) {
        sStrip = std::string(sLabel) + "|" + std::string(sText);
    }));
    EXPECT_EQ(sStrip, "Modifying|Project...");
    EXPECT_EQ(m_dialogs.m_messages.back(), EDIT_PROJECT_DONE);

    // Without a library, Synchronize Code leaves the rebuild to whoever can show it.
    m_dialogs.m_bAnswer = true;
    EXPECT_TRUE(commands().synchronizeCode({}, [] { return true; }));
    EXPECT_EQ(m_dialogs.m_questions.back(), SYNCHRONISE_LOAD_FAILED);
    ASSERT_TRUE(commands().rebuild({}).m_bLoaded);
    EXPECT_TRUE(plugIn().m_bOutputOnlyPlugIn);
    EXPECT_EQ(plugIn().m_fPlugInEx[0], 32.0F);
    EXPECT_THAT(test::readFile(commands().project()->headerPath()), HasSubstr("#include \"DelayAPF.h\""));
}

TEST_F(ProjectCommands, AnEditSurvivesSourcesThatCanNotBeWritten)
{
    ASSERT_TRUE(newProject("Loudness"));
    std::string sHeader = test::readFile(commands().project()->headerPath());
    ASSERT_EQ(replaceAll(sHeader, "**--0x1A7F--**", "gone"), 1U);
    test::writeFile(commands().project()->headerPath(), sHeader);
    EXPECT_FALSE(addSlider(0, "m_fVolume", 0.25F));
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("ERROR 001 while parsing .h file"));
    EXPECT_EQ(test::readFile(commands().project()->headerPath()), sHeader);

    const fs::path file = commands().project()->m_sProjectFile;
    ASSERT_TRUE(commands().loadProject(file));
    EXPECT_TRUE(findControl(commands().project()->m_UIControlList, 0))
        << "the record is in the project's file";
}

TEST_F(ProjectCommands, AMovedProjectIsEditedWhereItLies)
{
    ASSERT_TRUE(newProject("Loudness"));
    fs::rename(m_folder / "projects", m_folder / "elsewhere");
    const fs::path file = m_folder / "elsewhere" / "Loudness" / "Loudness.prj";
    ASSERT_TRUE(commands().loadProject(file));
    ASSERT_TRUE(addSlider(0, "m_fVolume", 0.25F));
    EXPECT_FALSE(fs::exists(m_folder / "projects"));
    EXPECT_THAT(test::readFile(file.parent_path() / "Loudness.h"), HasSubstr("m_fVolume"));

    ASSERT_TRUE(commands().openProject(file));
    ASSERT_TRUE(commands().openProject(file));
    EXPECT_THAT(commands().changedFiles(), IsEmpty()) << "a second opening changes nothing";
}

} // namespace
} // namespace velmora
