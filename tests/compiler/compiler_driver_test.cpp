#include "compiler/recording_window_system.h"
#include "project/compiler/compiler_driver.h"
#include "project/compiler/compiler_operations.h"
#include "project/compiler/compiler_state.h"
#include "project/compiler/compiler_table.h"
#include "project/compiler/ide_launcher.h"
#include "project/compiler/title_rules.h"
#include "project/compiler/visual_studio_toolchain.h"
#include "project/dsp_project.h"
#include "support/test_support.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::unique_ptr<CDSPProject> gainProject(const std::filesystem::path& folder = "/p/Gain")
{
    auto pProject = std::make_unique<CDSPProject>();
    pProject->m_sProjectName = "Gain";
    pProject->m_sProjectFolder = folder;
    pProject->m_sProjectFile = folder / "Gain.prj";
    return pProject;
}

TEST(TitleRules, TellTheCompilersWindows)
{
    constexpr struct
    {
        int m_nId;
        const char* m_pTitle;
        bool m_bFits;
        ERunMode m_eMode;
    } CASES[] = {
        {4000, "Gain - Visual C++ 2008 Express Edition", true, ERunMode::none},
        {4002, "Gain (Debugging) - Visual C++ 2010 Express", true, ERunMode::debugging},
        {4000, "Output - Visual C++ 2008 Express Edition", false, ERunMode::none},
        {4002, "Gain - Microsoft Visual Studio", false, ERunMode::none},
        {4003, "Gain (Running) - Microsoft Visual Studio", true, ERunMode::running},
        {4009, "Output - Microsoft Visual Studio", true, ERunMode::none},
        {4005, "Start Page - Microsoft Visual Studio Express 2012", false, ERunMode::none},
        {4005, "Gain - Microsoft Visual Studio Express 2012", true, ERunMode::none},
        {4001, " [Gain] - Code::Blocks svn build", true, ERunMode::none},
        {4001, "Code::Blocks", false, ERunMode::none}, // no blank, no project
        {4001, "Gain - Visual C++", false, ERunMode::none},
    };
    for (const auto& test : CASES) {
        EXPECT_EQ(isCompilerTitle(test.m_nId, test.m_pTitle), test.m_bFits) << test.m_pTitle;
        EXPECT_EQ(runModeOf(test.m_pTitle), test.m_eMode) << test.m_pTitle;
    }
    EXPECT_TRUE(isRebuildTitle("Rebuild All"));
    EXPECT_FALSE(isRebuildTitle("Rebuild - Output"));

    const CWindow windows[] = {
        {1, " [Gain] - Code::Blocks svn build", "codeblocks", 10, false, false},
        {2, "*Dsp.cpp [Gain] - Code::Blocks svn build", "codeblocks", 11, false, false},
        {3, " [Gain] - Code::Blocks svn build", "codeblocks", 11, true, false},
        {4, " [Gain] - Code::Blocks svn build", "codeblocks", 11, false, true},
        {5, " [Gain] - Code::Blocks svn build", "browser", 11, false, false},
        {6, " [Gain2] - Code::Blocks svn build", "codeblocks", 11, false, false},
        {7, "Old - Microsoft Visual Studio", "", 11, false, false},
        {8, "New - Microsoft Visual Studio", "", 11, false, false},
    };
    EXPECT_EQ(findCompilerWindow(windows, 4001, "Gain")->m_hWindow, 2u); // the last match wins
    EXPECT_EQ(findCompilerWindow(windows, 4001, "Gain", 10)->m_hWindow, 1u);
    EXPECT_EQ(findCompilerWindow(windows, 4009, "Gain")->m_hWindow, 8u);
    EXPECT_FALSE(findCompilerWindow(windows, 4001, "Reverb"));
    EXPECT_TRUE(hasUnsavedMark(windows[1].m_sTitle));
    EXPECT_FALSE(hasUnsavedMark(windows[0].m_sTitle));
}

TEST(IdeLauncher, KnowsProgramAndFileOfEachCompiler)
{
    const auto registry = [](std::string_view sKey) -> std::string {
        if (sKey.ends_with("VCExpress.exe"))
            return R"(C:\Microsoft Visual Studio 10.0\Common7\IDE\VCExpress.exe)";
        if (sKey.ends_with(R"(WDExpress.exe\shell\open\command)"))
            return R"("C:\Microsoft Visual Studio 11.0\Common7\IDE\WDExpress.exe" "%1")";
        return sKey.ends_with("devenv.exe") ? R"(C:\Microsoft Visual Studio 14.0\Common7\IDE\devenv.exe)"
                                            : "";
    };
    constexpr struct
    {
        int m_nId;
        const char* m_pCommandLine;
    } CASES[] = {
        {4000, R"("C:\Microsoft Visual Studio 9.0\Common7\IDE\VCExpress.exe" "/p/Gain/Gain.sln")"},
        {4002, R"("C:\Microsoft Visual Studio 10.0\Common7\IDE\VCExpress.exe" "/p/Gain/Gain.sln")"},
        {4003, R"("C:\Microsoft Visual Studio 9.0\Common7\IDE\devenv.exe" "/p/Gain/Gain.vcproj")"},
        {4004, R"("C:\Microsoft Visual Studio 10.0\Common7\IDE\devenv.exe" "/p/Gain/Gain.vcxproj")"},
        {4005, R"("C:\Microsoft Visual Studio 11.0\Common7\IDE\WDExpress.exe" "/p/Gain/Gain.sln")"},
        {4006, R"("C:\Microsoft Visual Studio 11.0\Common7\IDE\devenv.exe" "/p/Gain/Gain.vcxproj")"},
        {4007, R"("C:\Microsoft Visual Studio 12.0\Common7\IDE\WDExpress.exe" "/p/Gain/Gain.sln")"},
        {4008, R"("C:\Microsoft Visual Studio 12.0\Common7\IDE\devenv.exe" "/p/Gain/Gain.vcxproj")"},
        {4009, R"("C:\Microsoft Visual Studio 14.0\Common7\IDE\devenv.exe" "/p/Gain/Gain.vcxproj")"},
    };
    auto pProject = gainProject();
    for (const auto& test : CASES)
        EXPECT_EQ(ideCommand(test.m_nId, *pProject, {}, registry).m_sCommandLine, test.m_pCommandLine);
    pProject->m_sSolutionFile = "/s/All.sln";
    EXPECT_EQ(ideProjectFile(4004, *pProject), "/s/All.sln");
    EXPECT_EQ(ideProjectFile(4002, *pProject), "/p/Gain/Gain.sln");

    const CIdeCommand command = ideCommand(CODE_BLOCKS_ID, *pProject, {"/opt/cb", false, false, "/u"}, {});
    EXPECT_EQ(command.m_sCommandLine, R"("/opt/cb/codeblocks" "/p/Gain/Gain.cbp")");
    EXPECT_THAT(command.m_arguments, ElementsAre("--no-splash-screen", "--no-ipc", "--multiple-instance",
                                                 "--user-data-dir=/u", "/p/Gain/Gain.cbp"));
    EXPECT_EQ(startIde(command), 0u);
}

TEST(CompilerState, FollowsAProcessToItsEnd)
{
    CIdeCommand command;
    command.m_program = "/bin/sh";
    command.m_arguments = {"-c", "sleep 60; true"};
    const std::uint32_t uProcess = startIde(command);
    ASSERT_NE(uProcess, 0u);
    CCompilerState state;
    ASSERT_TRUE(state.watch(uProcess));
    EXPECT_EQ(state.m_uProcessId, uProcess);
    for (int i = 0; i < 500 && !state.hasChildren(); ++i)
        ::usleep(10000);
    EXPECT_TRUE(state.hasChildren());

    // The group of its own is what startIde() made; the sleep in it goes as well.
    ASSERT_EQ(::kill(-static_cast<pid_t>(uProcess), SIGTERM), 0);
    for (int i = 0; i < 500 && state.isProcessAlive(); ++i)
        ::usleep(10000);
    EXPECT_FALSE(state.isProcessAlive()); // a zombie is not alive
    EXPECT_EQ(state.m_uProcessId, CCompilerState::NO_PROCESS);
    EXPECT_NE(::kill(static_cast<pid_t>(uProcess), 0), 0);
    EXPECT_FALSE(state.watch(CCompilerState::NO_PROCESS));
    EXPECT_FALSE(state.hasChildren());
}

TEST(CompilerOperations, AreTypedByCompiler)
{
    constexpr struct
    {
        int m_nId;
        const char* m_pKeys[4]; // saveAll, rebuild, startDebug, stopDebug
    } CASES[] = {
        {4000, {"<CTRL+SHIFT>S", "<F7>", "<F5>", "<SHIFT><F5>"}},
        {4006, {"<CTRL+SHIFT>S", "<F7>", "<F5>", "<SHIFT><F5>"}},
        {4007, {"<CTRL+SHIFT>S", "<F7>", "<F5>", "<SHIFT><F5>"}},
        {4008, {"<CTRL+SHIFT>S", "<CTRL+SHIFT>B", "<F5>", "<SHIFT><F5>"}},
        {4009, {"<CTRL+SHIFT>S", "<CTRL+SHIFT>B", "<F5>", "<SHIFT><F5>"}},
        {4001, {"<CTRL+SHIFT>S", "<CTRL><F11>", "<CTRL><F10>", "<SHIFT><F5>"}},
        {4010, {"", "", "", ""}},
    };
    for (const auto& test : CASES)
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(compilerKeys(test.m_nId, static_cast<ECompilerOperation>(i)), test.m_pKeys[i])
                << test.m_nId << " " << i;
    EXPECT_EQ(readableKeys("<CTRL+SHIFT>S"), "CTRL+SHIFT+S");
    EXPECT_EQ(readableKeys("<CTRL><F11>"), "CTRL+F11");
}

class CompilerDriver : public testing::Test
{
  protected:
    static constexpr CWindowHandle MAIN = 1;
    static constexpr CWindowHandle IDE = 2;

    void SetUp() override
    {
        m_system.m_windows = {{MAIN, "Velmora", "velmora", 1, false, false},
                              {IDE, "Gain - Microsoft Visual Studio", "", ownProcess(), false, false}};
        m_system.m_hForeground = MAIN;
    }

    static std::uint32_t ownProcess() { return static_cast<std::uint32_t>(::getpid()); }

    CRecordingWindowSystem m_system;
    CRecordingDialogs m_dialogs;
    CCompilerDriver m_driver{m_system, m_dialogs, 4003, {}};
    std::unique_ptr<CDSPProject> m_pProject = gainProject();
};

TEST_F(CompilerDriver, TypesAndHandsTheFocusBack)
{
    ASSERT_TRUE(m_driver.rebuild()) << m_driver.lastError();
    EXPECT_THAT(m_system.takeCalls(),
                ElementsAre("foreground 2", "keys +76 -76", ALL_MODIFIERS_UP, "foreground 1"));
    EXPECT_GE(m_system.m_dSeconds, 1000.5);
    ASSERT_TRUE(m_driver.saveAll());
    EXPECT_THAT(m_system.takeCalls(),
                ElementsAre("minimize 2", "foreground 2", "keys +11 +10 +53 -53 -10 -11", ALL_MODIFIERS_UP,
                            "restore 2", "foreground 1"));
    m_driver.setMainWindow(MAIN);
    m_system.m_hForeground = IDE;
    ASSERT_TRUE(m_driver.stopDebug());
    EXPECT_EQ(m_system.m_hForeground, MAIN);
}

TEST_F(CompilerDriver, FailsWithoutAWindowOrItsFocus)
{
    m_system.m_bGivesFocus = false;
    EXPECT_FALSE(m_driver.rebuild());
    EXPECT_THAT(m_driver.lastError(), HasSubstr("press F7"));
    m_system.m_bGivesFocus = true;

    // The window goes while it is brought forward.
    m_system.m_onSleep = [&] { m_system.m_windows.resize(1); };
    m_system.m_bGivesFocus = false;
    EXPECT_FALSE(m_driver.startDebug());
    m_system.m_bGivesFocus = true;
    EXPECT_FALSE(m_driver.saveAll());
    EXPECT_THAT(m_driver.lastError(), HasSubstr("not found"));
    m_system.m_sUnavailable = "No display.";
    EXPECT_FALSE(m_driver.rebuild());
    EXPECT_THAT(m_driver.lastError(), HasSubstr("No display. To rebuild, press F7"));
    for (const std::string& sCall : m_system.takeCalls())
        EXPECT_THAT(sCall, testing::Not(HasSubstr("keys")));
}

TEST_F(CompilerDriver, AsksForTheState)
{
    EXPECT_EQ(m_driver.getCompilerState(*m_pProject), ECompilerState::ready);
    EXPECT_TRUE(m_driver.compiler().m_bAlive);
    EXPECT_EQ(m_driver.compiler().m_uProcessId, ownProcess());
    m_system.m_windows[1].m_sTitle = "Gain (Debugging) - Microsoft Visual Studio";
    EXPECT_EQ(m_driver.getCompilerState(*m_pProject), ECompilerState::debugging);
    m_system.m_windows[1].m_sTitle = "Gain (Running) - Microsoft Visual Studio";
    EXPECT_EQ(m_driver.getCompilerState(*m_pProject), ECompilerState::running);
    m_system.m_windows.pop_back();
    EXPECT_EQ(m_driver.getCompilerState(*m_pProject), ECompilerState::starting); // the process lives

    CCompilerDriver fresh(m_system, m_dialogs, 4003, {});
    EXPECT_EQ(fresh.getCompilerState(*m_pProject), ECompilerState::notFound);
    EXPECT_FALSE(fresh.compiler().m_bAlive);
}

TEST_F(CompilerDriver, SaysWhyVisualStudioDoesNotStart)
{
    m_system.m_windows[1].m_sTitle = "Visual C++ - a page in a browser";
    CVisualStudioToolchain toolchain(m_system, m_dialogs, 4000, {}, "/PlugIns");
    EXPECT_FALSE(toolchain.makeAvailable(*m_pProject));
    EXPECT_THAT(
        m_dialogs.m_messages,
        ElementsAre("Error in CreateProcess() for the compiler path: \n and command prompt: \"\" "
                    "\"/p/Gain/Gain.sln\"\n\nCheck your compiler choice in View->Properties.\n\nIn Win7 "
                    "and Win8 you must be logged in as Administrator to spawn this process."));
    EXPECT_EQ(toolchain.state(*m_pProject), ECompilerState::notFound);
    EXPECT_THAT(toolchain.unavailableReason(), HasSubstr("2008 Express"));
    EXPECT_FALSE(toolchain.rebuild(*m_pProject) || toolchain.saveAll() || toolchain.startDebug());
    EXPECT_TRUE(m_system.takeCalls().empty());
    EXPECT_EQ(toolchain.waitForBuild(1.0, nullptr).m_eState, EBuildState::none);
}

TEST_F(CompilerDriver, ClosesTheStartPageAndReadsTheLog)
{
    const CTemporaryFolder folder;
    m_pProject = gainProject(folder.path());
    m_system.m_windows[1].m_sTitle = "Start Page - Microsoft Visual Studio Express 2012";
    const auto registry = [](std::string_view) { return "/none/WDExpress.exe"; };
    CVisualStudioToolchain toolchain(m_system, m_dialogs, 4005, {}, "/PlugIns", registry);
    EXPECT_FALSE(toolchain.makeAvailable(*m_pProject));
    EXPECT_THAT(m_system.takeCalls(), testing::Contains("keys +12 +73 -73 -12"));

    m_system.m_windows[1].m_sTitle = "Gain - Microsoft Visual Studio Express 2012";
    writeFile(folder / "Gain.log", "Gain.vcxproj -> /PlugIns\\Gain.dll\n");
    ASSERT_TRUE(toolchain.rebuild(*m_pProject));
    EXPECT_FALSE(std::filesystem::exists(folder / "Gain.log")); // of the build before
    EXPECT_EQ(toolchain.waitForBuild(1.0, nullptr).m_eState, EBuildState::building);
    writeFile(folder / "Gain.log", "Gain.cpp(3): error C2143: syntax error\n");
    EXPECT_EQ(toolchain.waitForBuild(1.0, nullptr).m_eState, EBuildState::failed);
}

} // namespace
} // namespace velmora::test
