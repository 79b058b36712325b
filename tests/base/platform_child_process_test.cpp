#include "base/platform_child_process.h"
#include "support/test_support.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <tuple>

namespace velmora {
namespace {

CChildResult runShell(const std::string& sScript, double dDeadlineSeconds = 0.0)
{
    CChildProcess child({"/bin/sh", "-c", sScript});
    child.setDeadline(dDeadlineSeconds);
    return child.run();
}

TEST(ChildProcess, TellsHowAProgramEnded)
{
    const std::tuple<const char*, EChildEnd, int, const char*> cases[] = {
        {"echo one; echo two >&2; echo three", EChildEnd::exited, 0, "one\ntwo\nthree\n"},
        {"exit 7", EChildEnd::exited, 7, ""},
        {"kill -9 $$", EChildEnd::signalled, SIGKILL, ""},
        {"cat; echo end of input", EChildEnd::exited, 0, "end of input\n"},
        // A background process that keeps the pipe open does not keep us waiting.
        {"sleep 30 & echo started", EChildEnd::exited, 0, "started\n"},
    };
    for (const auto& [pScript, eEnd, nStatus, pOutput] : cases) {
        const CChildResult result = runShell(pScript);
        EXPECT_EQ(result.m_eEnd, eEnd) << pScript;
        EXPECT_EQ(result.m_nStatus, nStatus) << pScript;
        EXPECT_EQ(result.m_sOutput, pOutput) << pScript;
    }
}

TEST(ChildProcess, PassesArgumentsAndVariablesAsTheyStand)
{
    ::setenv("VELMORA_TEST_KEPT", "kept", 1);
    ::setenv("VELMORA_TEST_CHANGED", "old", 1);
    CChildProcess child({"/bin/sh", "-c",
                         "printf '%s|' \"$@\"; printf '%s' $VELMORA_TEST_KEPT-$VELMORA_TEST_CHANGED", "sh",
                         "two words", "$HOME; 'quoted'", ""});
    child.setVariable("VELMORA_TEST_CHANGED", "new");
    EXPECT_EQ(child.run().m_sOutput, "two words|$HOME; 'quoted'||kept-new");
}

TEST(ChildProcess, KeepsABoundedAmountOfOutput)
{
    const CChildResult result = runShell("head -c 6000000 /dev/zero; exit 3");
    EXPECT_EQ(result.m_nStatus, 3);
    EXPECT_EQ(result.m_sOutput.size(), 4u * 1024 * 1024);
    EXPECT_TRUE(result.m_bOutputCut);
}

TEST(ChildProcess, StopsAProgramAndWhatItStarted)
{
    test::CTemporaryFolder folder;
    const auto mark = folder / "mark";
    // The first asks politely and lets the program clean up; the second ignores the request.
    const std::string sCleansUp =
        "trap 'rm -f " + mark.string() + "; exit' TERM; touch " + mark.string() + "; sleep 60 & wait";
    EXPECT_EQ(runShell(sCleansUp, 0.3).m_eEnd, EChildEnd::timedOut);
    EXPECT_FALSE(std::filesystem::exists(mark));

    CChildProcess stubborn({"/bin/sh", "-c", "trap '' TERM; sleep 60; sleep 60"});
    int nQuestions = 0;
    stubborn.setGoOn([&] { return ++nQuestions < 3; });
    EXPECT_EQ(stubborn.run().m_eEnd, EChildEnd::cancelled);
    EXPECT_EQ(nQuestions, 3);
}

TEST(ChildProcess, SaysWhyNothingStarted)
{
    const CChildResult result = CChildProcess({"/nowhere/at/all"}).run();
    EXPECT_EQ(result.m_eEnd, EChildEnd::notStarted);
    EXPECT_NE(result.m_sError.find("No such file"), std::string::npos) << result.m_sError;
    EXPECT_EQ(CChildProcess({}).run().m_eEnd, EChildEnd::notStarted);
}

TEST(ChildProcess, FindsProgramsOnlyInAbsoluteFoldersOfThePath)
{
    test::CTemporaryFolder folder;
    test::writeFile(folder / "tool", "#!/bin/sh\n");
    test::writeFile(folder / "text", "not executable\n");
    std::filesystem::create_directory(folder / "subfolder");
    std::filesystem::permissions(folder / "tool", std::filesystem::perms::owner_all);
    const std::string sOldPath = std::getenv("PATH");
    const auto oldFolder = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());

    ::setenv("PATH", (":.:/nowhere:" + folder.path().string()).c_str(), 1);
    EXPECT_EQ(CChildProcess::findProgram("tool"), folder / "tool");
    EXPECT_TRUE(CChildProcess::findProgram("text").empty());
    EXPECT_TRUE(CChildProcess::findProgram("subfolder").empty());
    ::setenv("PATH", ":.", 1);
    EXPECT_TRUE(CChildProcess::findProgram("tool").empty());
    ::setenv("PATH", "", 1);
    EXPECT_TRUE(CChildProcess::findProgram("tool").empty());

    std::filesystem::current_path(oldFolder);
    ::setenv("PATH", sOldPath.c_str(), 1);
}

} // namespace
} // namespace velmora
