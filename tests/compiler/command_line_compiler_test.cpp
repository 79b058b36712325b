#include "project/compiler/command_line_compiler.h"
#include "support/test_support.h"

#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr const char* GOOD_SOURCE = R"(
#include "plugin.h"
class CTestPlugIn : public CPlugIn {};
VELMORA_EXPORT_PLUGIN(CTestPlugIn)
)";

// PATH for the time of a test.
class CPathOverride
{
  public:
    explicit CPathOverride(const std::string& sPath) : m_sOld(std::getenv("PATH"))
    {
        ::setenv("PATH", sPath.c_str(), 1);
    }
    ~CPathOverride() { ::setenv("PATH", m_sOld.c_str(), 1); }

  private:
    std::string m_sOld;
};

class CompilerTest : public testing::Test
{
  protected:
    CCompileJob jobFor(const std::string& sSource)
    {
        test::writeFile(m_folder / "my plug in.cpp", sSource);
        return {{m_folder / "my plug in.cpp"}, {}, m_folder / "It's.so"};
    }

    test::CTemporaryFolder m_folder;
    const std::vector<std::string> m_sourceOnly{"my plug in.cpp"};
};

TEST_F(CompilerTest, EachInstalledToolchainMakesALibraryThatLoads)
{
    int nInstalled = 0;
    for (const CCommandLineProgram& program : CCommandLineCompiler::programs()) {
        const CCommandLineCompiler compiler(VELMORA_CONTRACT_FOLDER, program.m_nCompilerId);
        if (!compiler.isInstalled())
            continue;
        ++nInstalled;
        EXPECT_EQ(compiler.program().m_nCompilerId, program.m_nCompilerId);
        EXPECT_FALSE(compiler.versionText().empty());

        const CCompileResult result = compiler.compile(jobFor(GOOD_SOURCE));
        ASSERT_TRUE(result.m_bSucceeded) << result.m_sError << result.m_sMessages;
        EXPECT_TRUE(result.m_sError.empty());
        EXPECT_GT(result.m_dSeconds, 0.0);
        EXPECT_EQ(test::entriesOf(m_folder.path()), (std::vector<std::string>{"It's.so", "my plug in.cpp"}));

        void* pLibrary = ::dlopen(result.m_library.c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(pLibrary, nullptr) << ::dlerror();
        EXPECT_NE(::dlsym(pLibrary, "createObject"), nullptr);
        EXPECT_NE(::dlsym(pLibrary, "getAPIVersion"), nullptr);
        ::dlclose(pLibrary);

        // The shown command does the same when typed into a shell.
        std::filesystem::remove(result.m_library);
        EXPECT_EQ(std::system(result.m_sCommandLine.c_str()), 0) << result.m_sCommandLine;
        EXPECT_TRUE(std::filesystem::exists(result.m_library));
        std::filesystem::remove(result.m_library);
    }
    EXPECT_GT(nInstalled, 0);
}

TEST_F(CompilerTest, BrokenSourcesAreToldWithTheirPlaceAndLeaveTheOldLibrary)
{
    const struct
    {
        const char* m_pSource;
        int m_nLine;
        const char* m_pText;
    } cases[] = {
        {"int good;\nint bad = nothing;\n", 2, "nothing"},
        {"#include \"no_such_header.h\"\n", 1, "no_such_header.h"},
        {"void declared();\nextern \"C\" void call() { declared(); }\n", 0, "declared()"},
    };
    for (const CCommandLineProgram& program : CCommandLineCompiler::programs()) {
        const CCommandLineCompiler compiler(VELMORA_CONTRACT_FOLDER, program.m_nCompilerId);
        if (!compiler.isInstalled())
            continue;
        for (const auto& entry : cases) {
            const CCompileJob job = jobFor(entry.m_pSource);
            test::writeFile(job.m_library, "the library before");
            const CCompileResult result = compiler.compile(job);
            EXPECT_FALSE(result.m_bSucceeded);
            EXPECT_TRUE(result.m_library.empty());
            EXPECT_FALSE(result.m_sError.empty());
            ASSERT_FALSE(result.m_list.empty()) << result.m_sMessages;
            EXPECT_EQ(result.m_list[0].m_nLine, entry.m_nLine) << result.m_sMessages;
            EXPECT_NE(result.m_list[0].m_sText.find(entry.m_pText), std::string::npos) << result.m_sMessages;
            if (entry.m_nLine) {
                EXPECT_EQ(result.m_list[0].m_sFile, job.m_sources[0].string());
                EXPECT_GT(result.m_list[0].m_nColumn, 0);
            }
            EXPECT_EQ(test::readFile(job.m_library), "the library before");
            EXPECT_EQ(test::entriesOf(m_folder.path()).size(), 2u);
        }
    }
}

TEST_F(CompilerTest, WarningsOfASuccessAreKept)
{
    const std::string sSource = std::string("#warning a word of caution\n") + GOOD_SOURCE;
    const CCompileResult result = CCommandLineCompiler(VELMORA_CONTRACT_FOLDER).compile(jobFor(sSource));
    EXPECT_TRUE(result.m_bSucceeded);
    ASSERT_EQ(result.m_list.size(), 1u) << result.m_sMessages;
    EXPECT_TRUE(result.m_list[0].m_bWarning);
    EXPECT_EQ(result.m_list[0].m_nLine, 1);
}

TEST_F(CompilerTest, WithoutACompilerItNamesThePackage)
{
    const CPathOverride path("");
    const CCommandLineCompiler compiler(VELMORA_CONTRACT_FOLDER);
    EXPECT_FALSE(compiler.isInstalled());
    EXPECT_TRUE(compiler.versionText().empty());
    const CCompileResult result = compiler.compile(jobFor(GOOD_SOURCE));
    EXPECT_FALSE(result.m_bSucceeded);
    EXPECT_NE(result.m_sError.find("apt install g++"), std::string::npos) << result.m_sError;
    EXPECT_NE(result.m_sError.find("neither g++ nor clang++ is"), std::string::npos) << result.m_sError;
    EXPECT_EQ(test::entriesOf(m_folder.path()), m_sourceOnly);
}

TEST_F(CompilerTest, ACancelledRunLeavesNothingBehind)
{
    const CCompileJob job = jobFor(GOOD_SOURCE);
    test::CStoppingProgress progress(1);
    const CCompileResult result = CCommandLineCompiler(VELMORA_CONTRACT_FOLDER).compile(job, &progress);
    EXPECT_FALSE(result.m_bSucceeded);
    EXPECT_TRUE(result.m_bCancelled);
    EXPECT_EQ(result.m_sError, "The compilation was stopped.");
    EXPECT_EQ(test::entriesOf(m_folder.path()), m_sourceOnly);
}

TEST_F(CompilerTest, AnUnwritableFolderIsTold)
{
    CCompileJob job = jobFor(GOOD_SOURCE);
    job.m_library = m_folder / "missing" / "x.so";
    const CCompileResult result = CCommandLineCompiler(VELMORA_CONTRACT_FOLDER).compile(job);
    EXPECT_FALSE(result.m_bSucceeded);
    EXPECT_FALSE(result.m_sError.empty());
    EXPECT_NE(result.m_sMessages.find("missing"), std::string::npos) << result.m_sMessages;
}

} // namespace
} // namespace velmora
