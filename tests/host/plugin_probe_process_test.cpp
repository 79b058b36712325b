#include "host/plugin_probe_process.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;

CPlugInProbeProcess shell(const char* pScript)
{
    return {"/bin/sh", {"-c", pScript}};
}

CPlugInProbeProcess::CTime in(std::chrono::milliseconds time)
{
    return std::chrono::steady_clock::now() + time;
}

TEST(PlugInProbeProcessTest, LinesComeInOrderAndTheEndIsTold)
{
    auto process = shell("echo one >&3; echo two >&3; echo unseen; printf half >&3; exit 3");
    ASSERT_EQ(process.startError(), "");
    std::string sLine;
    for (const char* pExpected : {"one", "two"}) {
        ASSERT_EQ(process.readLine(sLine, in(10s)), CPlugInProbeProcess::ERead::line);
        EXPECT_EQ(sLine, pExpected);
    }
    while (process.readLine(sLine, in(10s)) == CPlugInProbeProcess::ERead::line)
        EXPECT_EQ(sLine, "half");
    const auto ending = process.ending();
    ASSERT_TRUE(ending);
    EXPECT_FALSE(ending->m_bSignal);
    EXPECT_EQ(ending->m_nCode, 3);
}

TEST(PlugInProbeProcessTest, ASignalAndASilenceAreToldApart)
{
    std::string sLine;
    auto killed = shell("kill -SEGV $$");
    EXPECT_EQ(killed.readLine(sLine, in(10s)), CPlugInProbeProcess::ERead::ended);
    ASSERT_TRUE(killed.ending());
    EXPECT_TRUE(killed.ending()->m_bSignal);
    EXPECT_EQ(killed.ending()->m_nCode, SIGSEGV);

    auto silent = shell("sleep 60");
    EXPECT_EQ(silent.readLine(sLine, in(20ms)), CPlugInProbeProcess::ERead::timedOut);
    EXPECT_FALSE(silent.ending());
}

} // namespace
} // namespace velmora
