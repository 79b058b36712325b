#include "host/plugin_probe.h"
#include "host/plugin_test_support.h"
#include "host/probe_protocol.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <span>
#include <thread>

namespace velmora {
namespace {

namespace fs = std::filesystem;
using test::CPlugInFolder;
using namespace std::chrono_literals;

// For libraries that answer: longer than any machine takes.
const CPlugInProbe& patientProbe()
{
    static const CPlugInProbe probe(60s);
    return probe;
}

TEST(PlugInProbe, SaysWhatIsWrongWithEachLibrary)
{
    struct CCase
    {
        const char* m_pName;
        EProbeStatus m_eStatus;
        int m_nVersion;
        const char* m_pReason; // a regular expression
    };
    const CCase cases[] = {
        {"good-first", EProbeStatus::good, 61, "^$"},
        {"version_60", EProbeStatus::wrongVersion, 60, "^was built for contract version 60; it takes"},
        {"version_62", EProbeStatus::wrongVersion, 62, "^was built for contract version 62; it takes"},
        {"throw_at_version", EProbeStatus::crashed, -1, "while it was being asked .*: no version$"},
        {"crash_at_load", EProbeStatus::crashed, -1, "^crashed while it was being loaded .signal 11, Seg"},
        {"throw_at_load", EProbeStatus::crashed, -1, "^crashed while it was being loaded .signal 6, Aborted"},
        {"crash_in_constructor", EProbeStatus::crashed, -1, "^crashed while it was being created .signal 11"},
        {"overflow_stack", EProbeStatus::crashed, -1, "^crashed while it was being created .signal 11"},
        {"exit_3", EProbeStatus::crashed, -1, "^called exit.3. while it was being created$"},
        {"abort", EProbeStatus::crashed, -1, "^crashed while it was being created .signal 6, Aborted.$"},
        {"throw_error", EProbeStatus::crashed, 61, "created: no constructor, 100 % sure$"},
        {"throw_42", EProbeStatus::crashed, 61, "^threw an exception .*created: not a std::exception$"},
        {"hog", EProbeStatus::crashed, -2, "^(threw an exception|called exit).* while it was being created"},
        {"null_object", EProbeStatus::nullObject, 61, "^returned null from createObject"},
        {"null_name", EProbeStatus::badObject, 61, "^has a null m_PlugInName$"},
        {"wild_name", EProbeStatus::crashed, -1, "^crashed while its name and controls were being read"},
        {"wild_variable", EProbeStatus::crashed, -1, "^crashed while its name and controls were being read"},
        {"print", EProbeStatus::good, 61, "^$"},
        {"close_descriptors", EProbeStatus::crashed, -1, "^closed descriptors that were not its own while"},
        {"crash_in_destructor", EProbeStatus::crashed, -1, "^crashed while it was being deleted .signal 11"},
        {"throw_in_destructor", EProbeStatus::crashed, -1, "^crashed while it was being deleted .signal 6"},
        {"crash_at_unload", EProbeStatus::crashed, -1, "^crashed while it was being unloaded .signal 11"},
        {"good-last", EProbeStatus::good, 61, "^$"},
    };
    const CPlugInFolder folder;
    std::vector<fs::path> files;
    for (const auto& expected : cases)
        files.push_back(folder.add(expected.m_pName));

    const auto results = patientProbe().probe(files);
    ASSERT_EQ(results.size(), files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        SCOPED_TRACE(cases[i].m_pName);
        EXPECT_EQ(results[i].m_file, files[i]);
        EXPECT_EQ(results[i].m_eStatus, cases[i].m_eStatus);
        EXPECT_THAT(results[i].m_sReason, testing::ContainsRegex(cases[i].m_pReason));
        if (cases[i].m_nVersion >= -1) {
            EXPECT_EQ(results[i].m_nVersion, cases[i].m_nVersion);
        }
        if (results[i].m_eStatus == EProbeStatus::good) {
            EXPECT_EQ(results[i].m_sPlugInName, cases[i].m_pName);
        }
    }
}

TEST(PlugInProbe, ExaminesFilesThatAreNoPlugIns)
{
    const CPlugInFolder folder;
    test::writeFile(folder / "text.so", "This is no library.\n");
    const std::vector<fs::path> files{folder / "text.so",
                                      folder / "absent.so",
                                      folder.add("no_exports", "none"),
                                      folder.add("no_version", "unversioned"),
                                      folder.add("no_object", "objectless"),
                                      folder.add("missing_function", "unlinked")};
    const EProbeStatus statuses[] = {EProbeStatus::loadFailed,     EProbeStatus::loadFailed,
                                     EProbeStatus::noVersion,      EProbeStatus::noVersion,
                                     EProbeStatus::noCreateObject, EProbeStatus::loadFailed};
    const auto results = patientProbe().probe(files);
    for (std::size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(results[i].m_eStatus, statuses[i]) << files[i];
        EXPECT_NE(results[i].m_sReason, "") << files[i];
    }
    EXPECT_TRUE(patientProbe().probe({}).empty());
}

// The thread's code goes with its library, so that it brings down the helper over one of the others.
TEST(PlugInProbe, BlamesNobodyForWhatAnotherLeftBehind)
{
    const CPlugInFolder folder;
    auto files = folder.addAll({"leave_thread"});
    for (int i = 0; i < 40; ++i)
        files.push_back(folder.add("good-" + std::to_string(i)));
    const auto results = patientProbe().probe(files);
    for (const auto& result : std::span(results).subspan(1))
        EXPECT_EQ(result.m_eStatus, EProbeStatus::good) << result.m_file << " " << result.m_sReason;
}

TEST(PlugInProbe, StopsWhatDoesNotAnswer)
{
    const CPlugInFolder folder;
    const auto results = CPlugInProbe(300ms).probe(folder.addAll({"hang", "spin"}));
    for (const auto& result : results) {
        EXPECT_EQ(result.m_eStatus, EProbeStatus::timedOut);
        EXPECT_EQ(result.m_sReason, "did not answer within 0.3 s while it was being created");
    }
}

bool isRunning(int nProcess)
{
    std::ifstream status("/proc/" + std::to_string(nProcess) + "/stat");
    std::string sNumber;
    std::string sName;
    std::string sState;
    return status >> sNumber >> sName >> sState && sState != "Z" && sState != "X";
}

TEST(PlugInProbe, DoesNotWaitForGrandchildrenAndLeavesNone)
{
    const CPlugInFolder folder;
    const auto results = patientProbe().probe(folder.addAll({"linger", "linger_and_crash", "good"}));
    EXPECT_EQ(results[0].m_eStatus, EProbeStatus::good);
    EXPECT_EQ(results[1].m_eStatus, EProbeStatus::crashed);
    EXPECT_EQ(results[2].m_eStatus, EProbeStatus::good);
    for (const char* pFile : {"linger.pid", "linger_and_crash.pid"}) {
        const int nProcess = std::atoi(test::readFile(folder / pFile).c_str());
        ASSERT_GT(nProcess, 0) << pFile;
        // Killed it is, but the system takes a moment to bury it.
        for (int i = 0; i < 1000 && isRunning(nProcess); ++i)
            std::this_thread::sleep_for(10ms);
        EXPECT_FALSE(isRunning(nProcess));
    }
}

TEST(PlugInProbe, SurvivesSpoiledLibraries)
{
    const CPlugInFolder folder;
    const std::string sWhole = test::readFile(folder.add("good"));
    std::mt19937 random(7);
    std::vector<fs::path> files;
    for (int i = 0; i < 60; ++i) {
        std::string sSpoiled = sWhole;
        // Most of what the dynamic linker reads stands in the first pages.
        for (int nBytes = 0; nBytes < 40; ++nBytes)
            sSpoiled[64 + random() % 8192] = static_cast<char>(random());
        files.push_back(folder / ("spoiled" + std::to_string(i) + ".so"));
        test::writeFile(files.back(), sSpoiled);
    }
    files.push_back(folder / "good.so");
    const auto results = CPlugInProbe().probe(files);
    ASSERT_EQ(results.size(), files.size());
    for (const auto& result : results)
        EXPECT_EQ(result.m_sReason.empty(), result.m_eStatus == EProbeStatus::good) << result.m_file;
    EXPECT_EQ(results.back().m_eStatus, EProbeStatus::good);
}

TEST(PlugInProbe, SaysSoWhenItCannotWork)
{
    const CPlugInFolder folder;
    const auto files = folder.addAll({"good-1", "good-2"});
    const auto addScript = [&](const char* pName, const char* pCommand) {
        test::writeFile(folder / pName, std::string("#!/bin/sh\n") + pCommand + "\n");
        fs::permissions(folder / pName, fs::perms::owner_all);
        return folder / pName;
    };
    const std::pair<fs::path, const char*> cases[] = {
        {folder / "absent", "cannot be started: No such file"},
        {addScript("quitter", "exit 1"), "ended at once"},
        {addScript("talker", "echo hello >&3; sleep 60"), "speaks another language"},
        {addScript("flooder", "exec yes | tr -d '\\n' >&3"), "speaks another language"},
        {addScript("sleeper", "sleep 60"), "does not answer"},
    };
    for (const auto& [helper, pReason] : cases) {
        for (const auto& result : CPlugInProbe(2s, helper).probe(files)) {
            EXPECT_EQ(result.m_eStatus, EProbeStatus::notExamined);
            EXPECT_THAT(result.m_sReason, testing::StartsWith("could not be examined: "));
            EXPECT_THAT(result.m_sReason, testing::HasSubstr(pReason));
        }
    }
}

TEST(ProbeProtocol, BringsEveryTextThrough)
{
    const CProbeResult result{
        {}, EProbeStatus::badObject, "A name, 100 % \xC3\xA4\n\t", -1, std::string("\0 end", 5)};
    std::string sLine = probeLine({EProbeMessage::result, 0, EProbeStep::loading, result});
    ASSERT_TRUE(sLine.ends_with('\n'));
    sLine.pop_back();
    EXPECT_EQ(sLine.find('\n'), std::string::npos);
    const auto message = parseProbeLine(sLine);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->m_result.m_eStatus, result.m_eStatus);
    EXPECT_EQ(message->m_result.m_nVersion, result.m_nVersion);
    EXPECT_EQ(message->m_result.m_sPlugInName, result.m_sPlugInName);
    EXPECT_EQ(message->m_result.m_sReason, result.m_sReason);

    const CProbeResult longest{{}, EProbeStatus::good, std::string(5000, '\n'), 61, std::string(5000, '\n')};
    EXPECT_LE(probeLine({EProbeMessage::result, 0, EProbeStep::loading, longest}).size(), MAX_PROBE_LINE);
}

TEST(ProbeProtocol, RefusesWhatIsNoMessage)
{
    for (const char* pLine :
         {"", " ", "begin", "begin x", "begin -1", "begin 1 2", "step 6", "step -1", "end 1", "result 0 61 a",
          "result 99 61 a b", "result 0 x a b", "result 0 61 %4 b", "result 0 61 %zz b", "result 0 61 a b c",
          "hello", "begin 99999999999999999999"})
        EXPECT_FALSE(parseProbeLine(pLine)) << pLine;
}

} // namespace
} // namespace velmora
