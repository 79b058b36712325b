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
    bool rebuild(const CDSPProject&) override { return false; }
    CBuildReport waitForBuild(double, IProgress*) override { return {}; }
    std::string lastError() const override { return m_sLastError; }
    bool startDebug() override { return call("startDebug", m_sLastError.empty()); }
    bool stopDebug() override { return call("stopDebug", true); }

    ECompilerState m_eState = ECompilerState::ready;
    bool m_bStarts = true;
    std::string m_sLastError;

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
    void setTimer(unsigned uMilliseconds) override
    {
        m_calls.push_back("set " + std::to_string(uMilliseconds));
    }
    void killTimer() override { m_calls.emplace_back("kill"); }
    void takeFocus() override { m_calls.emplace_back("focus"); }
    void setDebugButton(std::string_view sText) override { m_calls.emplace_back(sText); }
    void updateLinkerSettings(CDSPProject&) override { m_calls.emplace_back("linker"); }

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
    EXPECT_THAT(take(), ElementsAre("start", "[compiler|Starting Compiler...]", "set 1000"));
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

TEST_F(StatusStrip, ShowsABuildAndHoldsItsResult)
{
    m_strip.followProject(m_project);
    EXPECT_THAT(take(), ElementsAre("[compiler|Ready]", "focus", "set 1000"));
    m_strip.show("compiler", "..ready..");
    for (const EStripEvent eEvent : {EStripEvent::building, EStripEvent::building, EStripEvent::linking})
        m_strip.post(eEvent);
    EXPECT_THAT(take(), ElementsAre("[compiler|..ready..]", "[Gain|Building -]", "[Gain|Building \\]",
                                    "[Gain|Linking]"));
    m_strip.post(EStripEvent::buildSucceeded);
    EXPECT_THAT(take(), ElementsAre("[Rebuild|Succeeded!]", "set 1000"));
    m_strip.tickState(); // lets the result be read
    EXPECT_THAT(take(), ElementsAre("set 1200"));
    m_strip.tickState();
    EXPECT_THAT(take(), ElementsAre("set 1000", "[compiler|Ready]", "focus"));
    m_strip.post(EStripEvent::buildFailed);
    EXPECT_THAT(take(), ElementsAre("[Rebuild|Failed]", "set 1000"));
    m_strip.closeProject();
    m_strip.tickState();
    EXPECT_THAT(take(), ElementsAre("kill"));
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
        {EStripEvent::running, "compiler|", {}},
        {EStripEvent::debugging, "compiler|", {}},
        {EStripEvent::notFound, "compiler|not found", {}},
        {EStripEvent::dead, "compiler|Dead", {}},
        {EStripEvent::building, "Gain|Building -", {}},
        {EStripEvent::linking, "Gain|Linking", {}},
        {EStripEvent::buildSucceeded, "Rebuild|Succeeded!", {.m_bRestartTimer = true}},
        {EStripEvent::buildFailed, "Rebuild|Failed", {.m_bRestartTimer = true}},
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
    EXPECT_FALSE(m_strip.startCompiler(nullptr) || m_strip.toggleDebug(nullptr));
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Open an existing, compiled Project first!",
                                                  "Open an existing, compiled Project first!"));
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(StatusStrip, TogglesTheDebugger)
{
    ASSERT_TRUE(m_strip.toggleDebug(&m_project));
    ASSERT_TRUE(m_strip.toggleDebug(&m_project));
    EXPECT_THAT(take(), ElementsAre("set 1000", "[compiler|Starting Compiler...]", "startDebug", "Stop Debug",
                                    "set 1000", "[compiler|Starting Compiler...]", "stopDebug", "Debug"));
    m_strip.stopDebugging(); // nothing is left to be stopped
    EXPECT_THAT(take(), IsEmpty());
    ASSERT_TRUE(m_strip.toggleDebug(&m_project));
    take();
    m_strip.stopDebugging();
    EXPECT_THAT(take(), ElementsAre("stopDebug", "Debug"));

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
