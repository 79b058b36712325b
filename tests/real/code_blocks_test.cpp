#include "project/codegen/new_project_request.h"
#include "project/codegen/project_creation.h"
#include "project/codegen/project_environment.h"
#include "project/compiler/code_blocks_toolchain.h"
#include "project/compiler/keystroke_engine.h"
#include "project/compiler/x11_window_system.h"
#include "project/dsp_project.h"
#include "real/virtual_screen.h"
#include "support/test_support.h"

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr double BUILD_SECONDS = 120.0; // on a machine under load
constexpr double START_SECONDS = 120.0;

// The IDE as a user has it who starts it for the first time, on a screen of its own.
class CodeBlocks : public testing::Test
{
  protected:
    void SetUp() override
    {
        ::setenv("HOME", m_folder.path().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (m_folder / "config").c_str(), 1);
        ::setenv("XDG_DATA_HOME", (m_folder / "data").c_str(), 1);
        makeProject("Gain");
        m_settings.m_codeBlocksUserData = m_folder / "user-data";
        fs::create_directories(m_settings.m_codeBlocksUserData);
    }

    void makeProject(const std::string& sName)
    {
        CNewProjectRequest request;
        request.m_parentFolder = m_folder.path();
        request.setName(sName);
        CProjectEnvironment environment;
        environment.m_programPath = m_folder / "velmora";
        environment.m_baseClassFolder = VELMORA_CONTRACT_FOLDER;
        environment.m_plugInsFolder = m_plugIns;
        ASSERT_TRUE(createProjectFiles(request, environment, m_dialogs));
        fillProject(m_project, request, environment);
    }

    CBuildReport build()
    {
        EXPECT_TRUE(m_ide.rebuild(m_project)) << m_ide.lastError();
        return m_ide.waitForBuild(BUILD_SECONDS, nullptr);
    }

    bool ownsFocus(const CTestWindow& window)
    {
        return waitUntil(m_system, 5.0, [&] { return m_system.foregroundWindow() == window.handle(); });
    }

    CTemporaryFolder m_folder;
    fs::path m_plugIns = m_folder / "PlugIns";
    CVirtualScreen m_screen;
    CX11WindowSystem m_system{m_screen.display()};
    CRecordingDialogs m_dialogs;
    CIdeSettings m_settings{{}, false, false, m_folder / "user-data"};
    CCodeBlocksToolchain m_ide{m_system, m_dialogs, m_settings, m_plugIns};
    CDSPProject m_project;
};

TEST_F(CodeBlocks, IsStartedSavesRebuildsFailsSucceedsAndCloses)
{
    CTestWindow workbench(m_screen, "Workbench");
    ASSERT_TRUE(CWindowEngine(m_system, workbench.handle()).setForeground(10.0));
    ASSERT_EQ(m_ide.unavailableReason(), "");
    ASSERT_EQ(m_ide.state(m_project), ECompilerState::notFound);
    ASSERT_TRUE(m_ide.makeAvailable(m_project)) << m_ide.lastError();
    EXPECT_EQ(m_ide.state(m_project), ECompilerState::starting);
    ASSERT_TRUE(m_ide.waitForWindow(m_project, START_SECONDS)) << m_ide.lastError();
    EXPECT_EQ(m_ide.state(m_project), ECompilerState::ready);
    m_ide.returnFocus();
    EXPECT_TRUE(ownsFocus(workbench));

    CBuildReport report = build();
    ASSERT_EQ(report.m_eState, EBuildState::succeeded) << report.m_sError;
    EXPECT_EQ(report.m_library, m_plugIns / "Gain.so");
    EXPECT_TRUE(fs::exists(report.m_library));
    EXPECT_TRUE(ownsFocus(workbench));

    // The workbench writes into the source while the editor has it open, or not yet.
    const std::string sGood = readFile(m_project.sourcePath());
    const auto nLine = static_cast<int>(std::ranges::count(sGood, '\n')) + 1;
    ASSERT_TRUE(m_ide.saveAll()) << m_ide.lastError();
    writeFile(m_project.sourcePath(), sGood + "int broken = ;\n");
    fs::remove(report.m_library);
    report = build();
    ASSERT_EQ(report.m_eState, EBuildState::failed);
    const auto error = std::ranges::find_if(
        report.m_messages, [](const CCompilerMessage& message) { return message.m_sFile == "Gain.cpp"; });
    ASSERT_NE(error, report.m_messages.end());
    EXPECT_EQ(error->m_nLine, nLine);
    EXPECT_FALSE(error->m_bWarning);
    EXPECT_THAT(error->m_sText, HasSubstr("expected primary-expression"));
    EXPECT_THAT(report.m_sError, HasSubstr("Gain.cpp:" + std::to_string(nLine)));
    EXPECT_FALSE(fs::exists(m_plugIns / "Gain.so"));

    // The IDE shows the line by itself now. What a person types there reaches the disc.
    ASSERT_TRUE(m_ide.bringForward()) << m_ide.lastError();
    CKeystrokeEngine keys(m_system, "<HOME>// ");
    keys.setWindow(m_system.foregroundWindow());
    keys.setCheckForeground(true);
    ASSERT_TRUE(keys.send()) << keys.error();
    ASSERT_TRUE(m_ide.saveAll()) << m_ide.lastError();
    EXPECT_EQ(readFile(m_project.sourcePath()), sGood + "// int broken = ;\n");
    EXPECT_TRUE(ownsFocus(workbench));
    report = build();
    EXPECT_EQ(report.m_eState, EBuildState::succeeded) << report.m_sError;

    // And what the workbench writes is taken over by the editor, which asks.
    writeFile(m_project.sourcePath(), sGood);
    report = build();
    EXPECT_EQ(report.m_eState, EBuildState::succeeded) << report.m_sError;
    ASSERT_TRUE(m_ide.saveAll()) << m_ide.lastError();
    EXPECT_EQ(readFile(m_project.sourcePath()), sGood);
    EXPECT_TRUE(fs::exists(m_plugIns / "Gain.so"));

    ASSERT_TRUE(m_ide.close()) << m_ide.lastError();
    EXPECT_EQ(m_ide.state(m_project), ECompilerState::notFound);
    EXPECT_TRUE(m_dialogs.m_messages.empty());
}

} // namespace
} // namespace velmora::test
