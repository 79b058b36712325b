#include "project/compiler/build_control.h"
#include "project/compiler/build_log.h"
#include "project/compiler/build_watch.h"
#include "project/compiler/command_line_compiler.h"
#include "project/compiler/command_line_toolchain.h"
#include "project/compiler/compiler_table.h"
#include "project/compiler/contract_cache.h"
#include "project/compiler/file_stamp.h"
#include "project/compiler/project_build.h"
#include "project/dsp_project.h"
#include "support/test_support.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace velmora {
namespace {

namespace fs = std::filesystem;

constexpr double LONG = 120.0; // s, for builds on a busy machine

constexpr const char* HEADER = R"(#ifndef GAIN_H
#define GAIN_H
#include "plugin.h"
class CGain : public CPlugIn {};
#endif
)";
constexpr const char* SOURCE = R"(#include "Gain.h"
VELMORA_EXPORT_PLUGIN(CGain)
int helper();
extern "C" __attribute__((visibility("default"))) int answer() { return 1000 + helper(); }
)";
constexpr const char* HELPER = "#include \"Helper.h\"\nint helper() { return HELPER_VALUE; }\n";

// A project of two sources in a folder whose name tries the patience of every shell.
class CTestProject : public CDSPProject
{
  public:
    explicit CTestProject(const fs::path& folder)
    {
        m_sProjectFolder = folder.string();
        m_sProjectName = "Gain";
        fs::create_directories(folder);
        for (const char* pFile : {"plugin.h", "plugin.cpp", "pluginconstants.h", "pluginobjects.cpp"})
            fs::copy_file(fs::path(VELMORA_CONTRACT_FOLDER) / pFile, folder / pFile);
        write("Gain.h", HEADER);
        write("Gain.cpp", SOURCE);
        write("Helper.cpp", HELPER);
        write("Helper.h", "#define HELPER_VALUE 1\n");
    }
    void write(const char* pName, const std::string& sText) const
    {
        test::writeFile(folder() / pName, sText);
    }
    [[nodiscard]] std::string log() const { return test::readFile(buildLogPath(GCC_COMMAND_LINE_ID, *this)); }
    [[nodiscard]] bool isMarked() const { return fs::exists(buildMarkerPath(*this)); }
};

int occurrences(const std::string& sText, const std::string& sWanted)
{
    int nCount = 0;
    for (std::size_t uAt = sText.find(sWanted); uAt != std::string::npos; uAt = sText.find(sWanted, uAt + 1))
        ++nCount;
    return nCount;
}

class ToolchainTest : public testing::Test
{
  protected:
    CCommandLineToolchain toolchain(int nId = GCC_COMMAND_LINE_ID) { return {nId, m_plugIns, m_cache}; }

    static CBuildReport build(CCommandLineToolchain& toolchain, const CDSPProject& project,
                              IProgress* pProgress = nullptr)
    {
        EXPECT_TRUE(toolchain.rebuild(project));
        return toolchain.waitForBuild(LONG, pProgress);
    }

    CBuildReport build(const CTestProject& project)
    {
        CCommandLineToolchain compiler = toolchain();
        CBuildReport report = build(compiler, project);
        EXPECT_EQ(report.m_eState, EBuildState::succeeded) << report.m_sError << "\n" << project.log();
        return report;
    }

    // What the library's answer() returns; the library is opened from a copy, as the workbench does.
    int answer()
    {
        const fs::path copy = m_folder / ("copy" + std::to_string(m_nCopies++) + ".so");
        fs::copy_file(m_library, copy);
        void* pLibrary = ::dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
        fs::remove(copy);
        if (!pLibrary)
            return -1;
        const auto pAnswer = reinterpret_cast<int (*)()>(::dlsym(pLibrary, "answer"));
        const int nAnswer = pAnswer && ::dlsym(pLibrary, "createObject") ? pAnswer() : -2;
        ::dlclose(pLibrary);
        return nAnswer;
    }

    std::vector<fs::path> cacheEntries()
    {
        std::vector<fs::path> result;
        for (const std::string& sName : test::entriesOf(m_cache))
            result.push_back(m_cache / sName);
        return result;
    }

    test::CTemporaryFolder m_folder;
    const fs::path m_plugIns = m_folder / "user's folder" / "PlugIns";
    const fs::path m_cache = m_folder / "user's folder" / "Cache";
    const fs::path m_library = m_plugIns / "Gain.so";
    const CTestProject m_project{m_folder / "It's my \"Gain\" $HOME"};
    int m_nCopies = 0;
};

TEST_F(ToolchainTest, EachCompilerBuildsWhatChangedAndNothingElse)
{
    const struct
    {
        const char* m_pFile; // null: nothing is changed
        const char* m_pText;
        int m_nCompiled; // sources
        int m_nAnswer;
    } rounds[] = {
        {nullptr, nullptr, 2, 1001},
        {nullptr, nullptr, 0, 1001},
        {"Helper.h", "#define HELPER_VALUE 2\n", 1, 1002},
        {"Helper.cpp", "#include \"Helper.h\"\nint helper() { return HELPER_VALUE + 5; }\n", 1, 1007},
        {"Gain.h", HEADER, 0, 1007}, // the same text, written again
        {"New.h", "", 2, 1007},      // might have hidden a header of another folder
        {"Third.cpp", "int third() { return 3; }\n", 1, 1007},
        {".hidden.cpp", "no C++\n", 0, 1007},
        {"string.h", "#error not the system's\n", 3, 1007},
        {"Third.cpp", "#include <cstring>\nint third() { return 3; }\n", 1, 1007},
    };
    int nInstalled = 0;
    for (const CCommandLineProgram& program : CCommandLineCompiler::programs()) {
        CCommandLineToolchain compiler = toolchain(program.m_nCompilerId);
        if (!compiler.unavailableReason().empty())
            continue;
        ++nInstalled;
        const CTestProject project(m_folder / ("blank '" + std::to_string(program.m_nCompilerId)));
        EXPECT_EQ(compiler.state(project), ECompilerState::ready);
        for (const auto& round : rounds) {
            SCOPED_TRACE(std::string(program.m_pProgram) + " " + (round.m_pFile ? round.m_pFile : "-"));
            if (round.m_pFile)
                project.write(round.m_pFile, round.m_pText);
            const CBuildReport report = build(compiler, project);
            ASSERT_EQ(report.m_eState, EBuildState::succeeded) << report.m_sError << "\n" << project.log();
            EXPECT_EQ(report.m_library, m_library);
            EXPECT_TRUE(report.m_messages.empty()) << project.log();
            EXPECT_FALSE(project.isMarked());
            EXPECT_EQ(readBuildResult(compiler.compilerId(), project, m_plugIns), EBuildEvent::succeeded);
            EXPECT_EQ(occurrences(project.log(), "/Gain.cpp' -o") +
                          occurrences(project.log(), "/Helper.cpp' -o") +
                          occurrences(project.log(), "/Third.cpp' -o"),
                      round.m_nCompiled)
                << project.log();
            EXPECT_EQ(answer(), round.m_nAnswer);
        }
        // The stale object of a source that is gone is neither linked nor kept.
        fs::remove(project.folder() / "Third.cpp");
        EXPECT_EQ(build(compiler, project).m_eState, EBuildState::succeeded);
        EXPECT_EQ(occurrences(project.log(), "-shared"), 1);
        EXPECT_EQ(occurrences(project.log(), "Third"), 0);
        for (const auto& entry : fs::recursive_directory_iterator(project.folder() / ".velmora"))
            EXPECT_EQ(entry.path().string().find("Third"), std::string::npos);
        // A library that is gone, or is not ours any more, is linked again.
        test::writeFile(m_library, "something else");
        EXPECT_EQ(build(compiler, project).m_eState, EBuildState::succeeded);
        EXPECT_EQ(answer(), 1007);
    }
    EXPECT_GT(nInstalled, 0);
    EXPECT_EQ(test::entriesOf(m_plugIns), std::vector<std::string>{"Gain.so"});
}

TEST_F(ToolchainTest, AnEditIsNeverMissedAndNothingPilesUp)
{
    CCommandLineToolchain compiler = toolchain();
    ASSERT_EQ(build(compiler, m_project).m_eState, EBuildState::succeeded);
    const auto files = [&] {
        std::vector<std::string> result = test::entriesOf(m_project.folder() / ".velmora" / "build" / "4010");
        for (const fs::path& folder : {m_plugIns, m_cache, fs::path("/proc/self/fd"), m_project.folder()})
            result.push_back(std::to_string(test::entriesOf(folder).size()));
        return result;
    };
    const auto before = files();
    const auto stamp = fs::last_write_time(m_project.folder() / "Helper.h");
    for (int nRound = 2; nRound < 10; ++nRound) {
        // The same size, and the time of the first version.
        m_project.write("Helper.h", "#define HELPER_VALUE " + std::to_string(nRound) + "\n");
        fs::last_write_time(m_project.folder() / "Helper.h", stamp);
        ASSERT_EQ(build(compiler, m_project).m_eState, EBuildState::succeeded);
        EXPECT_EQ(answer(), 1000 + nRound);
    }
    EXPECT_EQ(files(), before);
}

TEST_F(ToolchainTest, AFailureIsToldWithItsPlaceAndLeavesTheOldLibrary)
{
    CCommandLineToolchain compiler = toolchain();
    build(m_project);
    const std::string sLibrary = test::readFile(m_library);
    const struct
    {
        const char* m_pFile;
        const char* m_pText;
        const char* m_pPlace;
        int m_nLine;
        const char* m_pError;
    } cases[] = {
        {"Helper.cpp", "int helper()\n{ return nothing; }\n", "Helper.cpp", 2, "nothing"},
        {"Gain.h", "#include \"plugin.h\"\nclass CGain : public CPlugIn { CPlug m; };\n", "Gain.h", 2,
         "CPlug"},
        {"Gain.h", "#include \"plugin.h\"\nstruct CGain : CPlugIn { CGain() { init(1); } };\n", "Gain.h", 2,
         "init"},
        {"Helper.cpp", "int other;\n", "", 0, "helper"},
    };
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.m_pText);
        m_project.write(entry.m_pFile, entry.m_pText);
        const CBuildReport report = build(compiler, m_project);
        EXPECT_EQ(report.m_eState, EBuildState::failed);
        EXPECT_NE(report.m_sError.find("error"), std::string::npos) << report.m_sError;
        const auto error = std::ranges::find(report.m_messages, false, &CCompilerMessage::m_bWarning);
        ASSERT_NE(error, report.m_messages.end()) << m_project.log();
        EXPECT_EQ(error->m_sFile, entry.m_pPlace);
        EXPECT_EQ(error->m_nLine, entry.m_nLine);
        EXPECT_NE(error->m_sText.find(entry.m_pError), std::string::npos) << error->m_sText;
        EXPECT_TRUE(m_project.isMarked());
        EXPECT_EQ(m_project.log().find(m_cache.string() + "/contract-X"), std::string::npos);
        EXPECT_EQ(readBuildResult(GCC_COMMAND_LINE_ID, m_project, m_plugIns), EBuildEvent::failed);
        EXPECT_EQ(test::readFile(m_library), sLibrary);
        m_project.write("Gain.h", HEADER);
        m_project.write("Helper.cpp", HELPER);
        EXPECT_EQ(build(compiler, m_project).m_eState, EBuildState::succeeded);
        EXPECT_FALSE(m_project.isMarked());
    }
    fs::remove(m_project.folder() / "plugin.cpp");
    EXPECT_NE(build(compiler, m_project).m_sError.find("plugin.cpp is missing"), std::string::npos);
}

TEST_F(ToolchainTest, ABuildCanBeStoppedAndWaitedForInPieces)
{
    m_project.write("Slow.cpp",
                    "#include <algorithm>\n#include <iostream>\n#include <random>\n#include <regex>\n");
    {
        CCommandLineToolchain compiler = toolchain();
        test::CStoppingProgress progress(1);
        ASSERT_TRUE(compiler.rebuild(m_project));
        EXPECT_FALSE(compiler.rebuild(m_project)); // one is under way
        EXPECT_NE(compiler.lastError().find("under way"), std::string::npos);
        EXPECT_EQ(compiler.waitForBuild(0.0, nullptr).m_eState, EBuildState::building);
        const CBuildReport report = compiler.waitForBuild(LONG, &progress);
        EXPECT_EQ(report.m_eState, EBuildState::failed);
        EXPECT_TRUE(report.m_bCancelled);
        EXPECT_EQ(report.m_sError, "The compilation was stopped.");
        EXPECT_FALSE(fs::exists(m_library));
        EXPECT_EQ(readBuildResult(GCC_COMMAND_LINE_ID, m_project, m_plugIns), EBuildEvent::failed);
        ASSERT_TRUE(compiler.rebuild(m_project)); // the destructor stops this one
    }
    EXPECT_FALSE(fs::exists(m_library));
    for (const auto& entry : fs::recursive_directory_iterator(m_project.folder() / ".velmora"))
        EXPECT_NE(entry.path().extension(), ".part");

    CCommandLineToolchain compiler = toolchain();
    test::CStoppingProgress progress(1 << 20);
    ASSERT_TRUE(compiler.rebuild(m_project));
    EXPECT_EQ(compiler.waitForBuild(LONG, &progress).m_eState, EBuildState::succeeded);
    EXPECT_TRUE(std::ranges::is_sorted(progress.m_reported));
    EXPECT_EQ(answer(), 1001);
}

TEST_F(ToolchainTest, ADamagedCacheRepairsItself)
{
    build(m_project);
    ASSERT_EQ(cacheEntries().size(), 1u);
    const auto inEntry = [&](const char* pName) { return cacheEntries().front() / pName; };
    const auto overwriteAndHide = [&](const char* pName) {
        const std::string sOld = CFileStamp::of(inEntry(pName))->text();
        std::string sManifest = test::readFile(inEntry("manifest"));
        test::writeFile(inEntry(pName), std::string(fs::file_size(inEntry(pName)), 'x'));
        sManifest.replace(sManifest.find(sOld), sOld.size(), CFileStamp::of(inEntry(pName))->text());
        test::writeFile(inEntry("manifest"), sManifest);
    };
    const std::function<void()> damages[] = {
        [&] { fs::resize_file(inEntry("plugin.h.gch"), 1000); },
        [&] { fs::remove(inEntry("plugin.cpp.o")); },
        [&] { std::fstream(inEntry("pluginobjects.cpp.o")).seekp(200) << "xxxx"; },
        [&] { test::writeFile(inEntry("plugin.h"), "of somebody else"); },
        [&] { test::writeFile(inEntry("manifest"), ""); },
        [&] { fs::resize_file(inEntry("manifest"), fs::file_size(inEntry("manifest")) / 2); },
        [&] { fs::remove_all(m_cache); },
        [&] { overwriteAndHide("plugin.h.gch"); },
    };
    int nRound = 0;
    for (const auto& damage : damages) {
        SCOPED_TRACE(nRound);
        damage();
        m_project.write("Gain.cpp", SOURCE + ("// " + std::to_string(++nRound)));
        build(m_project);
        EXPECT_EQ(answer(), 1001);
        if (cacheEntries().empty())
            build(m_project); // the entry was bad without a sign, and was given up
        EXPECT_EQ(cacheEntries().size(), 1u);
        build(m_project); // what was repaired is used, not made again and again
        EXPECT_EQ(occurrences(m_project.log(), "c++-header"), 0) << m_project.log();
    }
    // No folder can be made there: slower, but built.
    fs::remove_all(m_cache);
    test::writeFile(m_cache, "a file");
    m_project.write("Helper.h", "#define HELPER_VALUE 9\n");
    build(m_project);
    EXPECT_EQ(answer(), 1009);
}

TEST_F(ToolchainTest, TheCacheKeepsTheNewestEntriesOnly)
{
    for (int nEntry = 0; nEntry < 12; ++nEntry) {
        const fs::path folder = m_cache / ("contract-0-" + std::to_string(nEntry));
        fs::create_directories(folder);
        test::writeFile(folder / "manifest", "");
        fs::last_write_time(folder / "manifest",
                            fs::file_time_type::clock::now() - std::chrono::hours(nEntry + 1));
    }
    test::writeFile(m_cache / "another file", "");
    build(m_project);
    EXPECT_EQ(cacheEntries().size(), CContractCache::MAX_ENTRIES + 1);
    EXPECT_TRUE(fs::exists(m_cache / "contract-0-0"));
    EXPECT_FALSE(fs::exists(m_cache / "contract-0-7"));
    // A changed contract is another entry, and changes the objects.
    m_project.write("plugin.h", test::readFile(m_project.folder() / "plugin.h") + "// mine\n");
    build(m_project);
    EXPECT_EQ(occurrences(m_project.log(), "c++-header"), 1);
    EXPECT_EQ(occurrences(m_project.log(), "/Gain.cpp' -o"), 1);
    EXPECT_EQ(occurrences(m_project.log(), "/Helper.cpp' -o"), 0); // does not use it
}

TEST_F(ToolchainTest, BuildsAtOnceDoNotHarmOneAnother)
{
    const CTestProject other(m_folder / "Other");
    const CTestProject* const projects[] = {&m_project, &m_project, &other};
    std::vector<std::thread> threads;
    for (const CTestProject* pProject : projects)
        threads.emplace_back([this, pProject] {
            CCommandLineToolchain compiler(GCC_COMMAND_LINE_ID,
                                           pProject == &m_project ? m_plugIns : m_folder / "others", m_cache);
            const CBuildReport report = build(compiler, *pProject);
            EXPECT_EQ(report.m_eState, EBuildState::succeeded) << report.m_sError;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(answer(), 1001);
}

TEST_F(ToolchainTest, TheLibraryMayGoToAnotherFileSystem)
{
    struct stat here = {}, there = {};
    ASSERT_TRUE(::stat(m_folder.path().c_str(), &here) == 0 && ::stat("/dev/shm", &there) == 0);
    const fs::path elsewhere = here.st_dev != there.st_dev
                                   ? fs::path("/dev/shm/velmora-test" + std::to_string(::getpid()))
                                   : m_plugIns;
    CBuildControl control;
    CProjectBuild build({GCC_COMMAND_LINE_ID, m_project.folder(), elsewhere / "Gain.so", m_cache}, control);
    EXPECT_EQ(build.run().m_sError, "") << build.log();
    EXPECT_EQ(control.part(), 1.0);
    EXPECT_EQ(test::entriesOf(elsewhere), std::vector<std::string>{"Gain.so"});
    fs::create_directories(m_plugIns);
    if (elsewhere != m_plugIns)
        fs::copy_file(elsewhere / "Gain.so", m_library);
    EXPECT_EQ(answer(), 1001);
    fs::remove_all(elsewhere);
}

TEST_F(ToolchainTest, WithoutACompilerItNamesThePackage)
{
    const std::string sPath = std::getenv("PATH");
    ::setenv("PATH", "", 1);
    CCommandLineToolchain compiler = toolchain(CLANG_COMMAND_LINE_ID);
    EXPECT_NE(compiler.unavailableReason().find("apt install clang"), std::string::npos);
    EXPECT_EQ(compiler.state(m_project), ECompilerState::notFound);
    EXPECT_FALSE(compiler.makeAvailable(m_project));
    EXPECT_FALSE(compiler.rebuild(m_project));
    ::setenv("PATH", sPath.c_str(), 1);
    EXPECT_EQ(compiler.waitForBuild(0.0, nullptr).m_eState, EBuildState::none);
}

} // namespace
} // namespace velmora
