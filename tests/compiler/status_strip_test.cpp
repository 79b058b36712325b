#include "compiler/recording_window_system.h"
#include "project/compiler/compiler_strip.h"
#include "project/compiler/status_strip.h"
#include "project/dsp_project.h"
#include "support/test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Notes its calls in the list that all doubles of a test share.
class CToolchainDouble : public IToolchain
{
  public:
    CToolchainDouble(std::vector<std::string>& calls, int nId) : m_calls(calls), m_nId(nId) {}

    bool makeAvailable(const CDSPProject&) override { return call("start", m_bStarts); }
    bool saveAll() override { return call("saveAll", true); }
    void returnFocus() override { m_calls.emplace_back("returnFocus"); }
    int compilerId() const override { return m_nId; }
    std::string unavailableReason() const override { return {}; }
    ECompilerState state(const CDSPProject&) override { return m_eState; }
    bool waitForWindow(const CDSPProject&, double) override { return true; }
    bool rebuild(const CDSPProject&) override { return call("rebuild", m_bRebuilds); }
    CBuildReport waitForBuild(double, IProgress*) override { return m_report; }
    std::string lastError() const override { return m_sLastError; }
    bool startDebug() override { return call("startDebug", m_sLastError.empty()); }
    bool stopDebug() override { return call("stopDebug", true); }

    ECompilerState m_eState = ECompilerState::ready;
    bool m_bStarts = true;
    bool m_bRebuilds = true;
    std::string m_sLastError;
    CBuildReport m_report;

  private:
    bool call(const char* pName, bool bResult)
    {
        m_calls.emplace_back(pName);
        return bResult;
    }

    std::vector<std::string>& m_calls;
    int m_nId;
};

class CStripWindowDouble : public IStatusStripWindow
{
  public:
    explicit CStripWindowDouble(std::vector<std::string>& calls) : m_calls(calls) {}

    void showStatus(std::string_view sLabel, std::string_view sState) override
    {
        m_calls.push_back("[" + std::string(sLabel) + "|" + std::string(sState) + "]");
    }
    void setTimer(EStripTimer eTimer, unsigned uMilliseconds) override
    {
        m_calls.push_back("set " + std::to_string(static_cast<int>(eTimer)) + " " +
                          std::to_string(uMilliseconds));
    }
    void killTimer(EStripTimer eTimer) override
    {
        m_calls.push_back("kill " + std::to_string(static_cast<int>(eTimer)));
    }
    void takeFocus() override { m_calls.emplace_back("focus"); }
    void setDebugButton(std::string_view sText) override { m_calls.emplace_back(sText); }
    bool isPlugInLoaded() override { return m_bLoaded; }
    void unloadPlugIn() override { m_calls.emplace_back("unload"); }
    void loadBuiltPlugIn(const CBuildReport& report) override
    {
        m_calls.push_back("load " + report.m_library.string());
    }
    bool writeCode(CDSPProject&) override
    {
        m_calls.emplace_back("write");
        return m_bWrites;
    }
    void updateLinkerSettings(CDSPProject&) override { m_calls.emplace_back("linker"); }

    bool m_bLoaded = false;
    bool m_bWrites = true;

  private:
    std::vector<std::string>& m_calls;
};

class StatusStrip : public testing::Test
{
  protected:
    void SetUp() override { m_project.m_sProjectName = "Gain"; }

    std::vector<std::string> take() { return std::exchange(m_calls, {}); }

    std::vector<std::string> m_calls;
    CToolchainDouble m_toolchain{m_calls, 4001};
    CStripWindowDouble m_window{m_calls};
    CRecordingDialogs m_dialogs;
    CDSPProject m_project;
    CStatusStrip m_strip{m_toolchain, m_dialogs, m_window};
};

TEST_F(StatusStrip, ShowsTheStateWhileTheCompilerStarts)
{
    m_toolchain.m_eState = ECompilerState::notFound;
    ASSERT_TRUE(m_strip.startCompiler(&m_project));
    EXPECT_THAT(take(), ElementsAre("start", "[compiler|Starting Compiler...]", "set 0 1000"));
    m_toolchain.m_eState = ECompilerState::starting;
    for (int i = 0; i < 5; ++i)
        m_strip.tickState();
    EXPECT_THAT(take(),
                ElementsAre("[compiler|Starting -]", "[compiler|Starting \\]", "[compiler|Starting |]",
                            "[compiler|Starting /]", "[compiler|Starting -]"));
    m_toolchain.m_eState = ECompilerState::ready;
    m_strip.tickState();
    m_strip.tickState();
    EXPECT_THAT(take(), ElementsAre("[compiler|Ready]", "focus", "[compiler|Ready]"));
    m_toolchain.m_eState = ECompilerState::debugging;
    m_strip.tickState();
    EXPECT_THAT(take(), ElementsAre("[compiler|]"));
    m_toolchain.m_eState = ECompilerState::notFound;
    m_strip.tickState();
    m_strip.tickState();
    EXPECT_THAT(take(), ElementsAre("[compiler|not found]", "[compiler|Dead]", "[compiler|not found]"));
}

TEST_F(StatusStrip, RebuildsAndShowsTheResult)
{
    m_window.m_bLoaded = true;
    ASSERT_TRUE(m_strip.rebuild(&m_project));
    EXPECT_THAT(take(),
                ElementsAre("[compiler|..ready..]", "unload", "write", "rebuild", "kill 0", "set 5 1000"));
    m_toolchain.m_report.m_eState = EBuildState::building;
    m_strip.tickBuild();
    m_strip.tickBuild();
    EXPECT_THAT(take(), ElementsAre("[Gain|Building -]", "[Gain|Building \\]"));
    m_strip.post(EStripEvent::linking);
    EXPECT_THAT(take(), ElementsAre("[Gain|Linking]"));

    m_toolchain.m_report.m_eState = EBuildState::succeeded;
    m_toolchain.m_report.m_library = "Gain.so";
    m_strip.tickBuild();
    EXPECT_THAT(take(), ElementsAre("kill 5", "[Rebuild|Succeeded!]", "set 0 1000", "load Gain.so"));
    m_strip.tickBuild(); // late: its timer is dead
    EXPECT_THAT(take(), IsEmpty());
    m_strip.tickState(); // lets the result be read
    EXPECT_THAT(take(), ElementsAre("set 0 1200"));
    m_strip.tickState();
    EXPECT_THAT(take(), ElementsAre("set 0 1000", "[compiler|Ready]", "focus"));
    m_strip.tickState();
    EXPECT_THAT(take(), ElementsAre("[compiler|Ready]"));

    ASSERT_TRUE(m_strip.rebuild(&m_project));
    take();
    m_toolchain.m_report.m_eState = EBuildState::failed;
    m_strip.tickBuild();
    EXPECT_THAT(take(), ElementsAre("kill 5", "[Rebuild|Failed]", "set 0 1000"));

    // What ends the watch of a build: the compiler's end, its debugger with a plug-in loaded, the project's.
    for (const EStripEvent eEvent : {EStripEvent::dead, EStripEvent::notFound, EStripEvent::running}) {
        ASSERT_TRUE(m_strip.rebuild(&m_project));
        take();
        m_strip.post(eEvent);
        EXPECT_THAT(take(), testing::Contains("kill 5"));
    }
    ASSERT_TRUE(m_strip.rebuild(&m_project));
    take();
    m_strip.closeProject();
    EXPECT_THAT(take(), ElementsAre("kill 5", "kill 0"));
}

TEST(CompilerStrip, TellsWhatToDoWithEachEvent)
{
    const struct
    {
        EStripEvent m_eEvent;
        std::string m_sShown; // behind "Rebuild|Failed"
        CStripEffects m_effects;
    } CASES[] = {
        {EStripEvent::starting, "compiler|Starting -", {}},
        {EStripEvent::ready, "compiler|Ready", {.m_bTakeFocus = true}},
        {EStripEvent::running, "compiler|", {.m_bKillBuildTimerIfLoaded = true}},
        {EStripEvent::debugging, "compiler|", {.m_bKillBuildTimerIfLoaded = true}},
        {EStripEvent::notFound, "compiler|not found", {.m_bKillBuildTimer = true}},
        {EStripEvent::dead, "compiler|Dead", {.m_bKillBuildTimer = true}},
        {EStripEvent::building, "Gain|Building -", {}},
        {EStripEvent::linking, "Gain|Linking", {}},
        {EStripEvent::buildSucceeded,
         "Rebuild|Succeeded!",
         {.m_bKillBuildTimer = true, .m_bRestartStateTimer = true, .m_bLoadPlugIn = true}},
        {EStripEvent::buildFailed,
         "Rebuild|Failed",
         {.m_bKillBuildTimer = true, .m_bRestartStateTimer = true}},
    };
    for (const auto& test : CASES) {
        CCompilerStrip strip;
        strip.show("Rebuild", "Failed");
        EXPECT_EQ(strip.hold().count(), 1200);
        EXPECT_EQ(strip.post(test.m_eEvent, "Gain"), test.m_effects) << test.m_sShown;
        EXPECT_EQ(strip.label() + "|" + strip.text(), test.m_sShown);
        EXPECT_EQ(strip.hold().count(), test.m_sShown.starts_with("Rebuild") ? 1200 : 0);
    }
}

TEST_F(StatusStrip, RefusesWithTheReason)
{
    EXPECT_FALSE(m_strip.startCompiler(nullptr) || m_strip.rebuild(nullptr) || m_strip.toggleDebug(nullptr));
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Open an existing, compiled Project first!",
                                                  "Open an existing, compiled Project first!",
                                                  "Open an existing, compiled Project first!"));
    EXPECT_THAT(take(), IsEmpty());
    m_dialogs.m_messages.clear();

    m_toolchain.m_eState = ECompilerState::notFound;
    EXPECT_FALSE(m_strip.rebuild(&m_project));
    EXPECT_THAT(
        m_dialogs.m_messages,
        ElementsAre("Compiler not found - it is either loading up now or you closed it. Wait or reopen it."));
    EXPECT_THAT(take(), ElementsAre("start", "[compiler|Starting Compiler...]", "set 0 1000"));

    m_toolchain.m_eState = ECompilerState::ready;
    m_toolchain.m_bRebuilds = false;
    EXPECT_FALSE(m_strip.rebuild(&m_project));
    EXPECT_EQ(m_dialogs.m_messages.size(), 2u);
    m_window.m_bWrites = false;
    take();
    EXPECT_FALSE(m_strip.rebuild(&m_project));
    EXPECT_THAT(take(), ElementsAre("[compiler|..ready..]", "write"));
}

TEST_F(StatusStrip, TogglesTheDebugger)
{
    ASSERT_TRUE(m_strip.toggleDebug(&m_project));
    ASSERT_TRUE(m_strip.toggleDebug(&m_project));
    EXPECT_THAT(take(),
                ElementsAre("set 0 1000", "[compiler|Starting Compiler...]", "startDebug", "Stop Debug",
                            "set 0 1000", "[compiler|Starting Compiler...]", "stopDebug", "Debug"));

    // A compiler that is there says why not; one that is still starting says nothing.
    m_toolchain.m_sLastError = "no debugger";
    for (const ECompilerState eState : {ECompilerState::starting, ECompilerState::ready}) {
        m_toolchain.m_eState = eState;
        EXPECT_FALSE(m_strip.toggleDebug(&m_project));
    }
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("no debugger"));
}

TEST_F(StatusStrip, AsksBeforeTheCompilerChanges)
{
    CToolchainDouble other(m_calls, 4010);
    other.m_eState = ECompilerState::notFound;
    EXPECT_FALSE(m_strip.changeCompiler(&m_project, other.compilerId(), [&]() -> IToolchain& {
        return other;
    })); // the double answers with Cancel
    ASSERT_EQ(m_dialogs.m_questions.size(), 1u);
    EXPECT_THAT(m_dialogs.m_questions[0], HasSubstr("FIRST and THEN choose OK"));
    EXPECT_THAT(take(), IsEmpty());

    m_dialogs.m_bAnswer = true;
    other.m_bStarts = false;
    EXPECT_TRUE(
        m_strip.changeCompiler(&m_project, other.compilerId(), [&]() -> IToolchain& { return other; }));
    EXPECT_THAT(take(), ElementsAre("linker", "start"));
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre(HasSubstr("Could not launch compiler. Is it installed?")));

    // Nothing runs that would have to be shut down.
    EXPECT_TRUE(m_strip.changeCompiler(&m_project, m_toolchain.compilerId(),
                                       [&]() -> IToolchain& { return m_toolchain; }));
    EXPECT_THAT(take(), ElementsAre("linker"));
    EXPECT_TRUE(m_strip.changeCompiler(nullptr, other.compilerId(), [&]() -> IToolchain& { return other; }));
    EXPECT_EQ(m_dialogs.m_questions.size(), 2u);
}

} // namespace
} // namespace velmora::test
