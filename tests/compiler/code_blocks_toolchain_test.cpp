#include "compiler/recording_window_system.h"
#include "project/compiler/code_blocks_boxes.h"
#include "project/compiler/code_blocks_toolchain.h"
#include "project/compiler/compiler_table.h"
#include "support/test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace velmora::test {
namespace {

using testing::Contains;
using testing::HasSubstr;

constexpr CWindowHandle IDE = 2;
constexpr CWindowHandle BOX = 3;
constexpr const char* SAVE = "keys +11 +10 +53 -53 -10 -11";
constexpr const char* REBUILD = "keys +11 +7A -7A -11";

// Code::Blocks as the driver sees it: windows that come and go, keys, a log. Its process is the test's own.
class CodeBlocksToolchain : public testing::Test
{
  protected:
    void SetUp() override
    {
        m_project.m_sProjectName = "Gain";
        m_project.m_sProjectFolder = m_folder.path();
        m_system.m_windows = {{1, "Velmora", "velmora", 1, false, false},
                              ide(" [Gain] - Code::Blocks svn build")};
        m_system.m_hForeground = 1;
        ASSERT_EQ(m_toolchain.state(m_project), ECompilerState::ready);
    }

    static CWindow ide(const std::string& sTitle)
    {
        return {IDE, sTitle, "codeblocks", static_cast<std::uint32_t>(::getpid()), false, false};
    }

    void ask(const std::string& sTitle)
    {
        CWindow box = ide(sTitle);
        box.m_hWindow = BOX;
        box.m_bDialog = box.m_bTransient = true;
        m_system.m_windows.push_back(box);
    }

    void writeLog(const std::string& sText, const char* pEnd)
    {
        writeFile(m_folder / "Gain.log", "Gain: build begins\n" + sText + pEnd);
    }

    CTemporaryFolder m_folder;
    CRecordingWindowSystem m_system;
    CRecordingDialogs m_dialogs;
    CCodeBlocksToolchain m_toolchain{m_system, m_dialogs, {}, "/PlugIns"};
    CDSPProject m_project;
};

TEST_F(CodeBlocksToolchain, SendsTheRebuildAgainAndAnswersWhatIsAsked)
{
    writeLog("", "Gain: build ends with status 0\n"); // of the build before
    int nChords = 0;
    m_system.m_onKeys = [&](const std::string& sCall) {
        if (sCall == REBUILD && ++nChords == 2)
            ask("Rebuild project");
        if (sCall == "keys +12 +59 -59 -12") { // Alt+Y
            m_system.m_windows.pop_back();
            writeLog("Gain.cpp:7:3: error: no\n", "");
        }
    };
    ASSERT_TRUE(m_toolchain.rebuild(m_project)) << m_toolchain.lastError();
    EXPECT_EQ(nChords, 2);
    EXPECT_EQ(m_system.m_hForeground, 1u);
    EXPECT_EQ(m_toolchain.waitForBuild(5.0, nullptr).m_eState, EBuildState::building);
    CStoppingProgress stop(0);
    EXPECT_TRUE(m_toolchain.waitForBuild(5.0, &stop).m_bCancelled);

    writeFile(m_folder / "Gain.unsuccessfulbuild", "");
    writeLog("Gain.cpp:7:3: error: no\n", "Gain: build ends with status 2\n");
    const CBuildReport report = m_toolchain.waitForBuild(30.0, nullptr);
    EXPECT_EQ(report.m_eState, EBuildState::failed);
    EXPECT_EQ(report.m_sError, "Gain.cpp:7: no");
    ASSERT_FALSE(report.m_messages.empty());
    EXPECT_EQ(report.m_messages[0].m_nLine, 7);
}

TEST_F(CodeBlocksToolchain, ReportsWhatIsInTheWay)
{
    // Nothing happens on the keys.
    EXPECT_FALSE(m_toolchain.rebuild(m_project));
    EXPECT_THAT(m_toolchain.lastError(), HasSubstr("CTRL+F11"));
    EXPECT_EQ(m_toolchain.waitForBuild(1.0, nullptr).m_eState, EBuildState::none);

    ask("About Code::Blocks");
    m_system.takeCalls();
    EXPECT_FALSE(m_toolchain.saveAll());
    EXPECT_THAT(m_toolchain.lastError(), HasSubstr("\"About Code::Blocks\""));
    EXPECT_TRUE(m_system.takeCalls().empty());

    // The text that the user has typed is worth more than what lies on disc.
    m_system.m_windows.back().m_sTitle = "Reload file?";
    m_system.m_windows[1].m_sTitle = "*Gain.cpp [Gain] - Code::Blocks svn build";
    EXPECT_FALSE(m_toolchain.saveAll());
    EXPECT_THAT(m_toolchain.lastError(), HasSubstr("\"Reload file?\""));
    EXPECT_TRUE(m_system.takeCalls().empty());
    m_system.m_windows.pop_back();

    // The mark stays: the keys did not arrive.
    EXPECT_FALSE(m_toolchain.saveAll());
    EXPECT_THAT(m_toolchain.lastError(), HasSubstr("CTRL+SHIFT+S"));
    EXPECT_THAT(m_system.takeCalls(), Contains(SAVE).Times(2));
    m_system.m_onKeys = [&](const std::string&) {
        m_system.m_windows[1].m_sTitle = "Gain.cpp [Gain] - Code::Blocks svn build";
    };
    EXPECT_TRUE(m_toolchain.saveAll()) << m_toolchain.lastError();

    m_system.m_bGivesFocus = false;
    EXPECT_FALSE(m_toolchain.saveAll());
    EXPECT_THAT(m_toolchain.lastError(), HasSubstr("front"));
    m_system.m_windows.clear();
    EXPECT_FALSE(m_toolchain.rebuild(m_project)); // the window has gone, the process is still there
    EXPECT_THAT(m_toolchain.lastError(), HasSubstr("has not opened Gain yet"));
}

TEST_F(CodeBlocksToolchain, ForgetsTheIdeOfTheProjectBefore)
{
    CDSPProject other;
    other.m_sProjectName = "Other";
    EXPECT_EQ(m_toolchain.state(other), ECompilerState::notFound); // though its process lives
    EXPECT_TRUE(m_system.takeCalls().empty());

    CCodeBlocksToolchain closing(m_system, m_dialogs, {{}, false, true, {}}, "/PlugIns");
    ASSERT_EQ(closing.state(m_project), ECompilerState::ready);
    EXPECT_EQ(closing.state(m_project), ECompilerState::ready);
    EXPECT_TRUE(m_system.takeCalls().empty());
    EXPECT_EQ(closing.state(other), ECompilerState::notFound);
    EXPECT_THAT(m_system.takeCalls(), testing::IsSupersetOf({SAVE, "keys +11 +51 -51 -11"}));
}

TEST_F(CodeBlocksToolchain, SaysWhyItCannotBeUsed)
{
    CCodeBlocksToolchain missing(m_system, m_dialogs, {m_folder / "none", false, false, {}}, "/PlugIns");
    EXPECT_THAT(missing.unavailableReason(), HasSubstr("View->Properties"));
    m_system.m_windows.clear();
    EXPECT_FALSE(missing.makeAvailable(m_project));
    EXPECT_FALSE(missing.saveAll());
    EXPECT_EQ(missing.compilerId(), CODE_BLOCKS_ID);
}

} // namespace
} // namespace velmora::test
