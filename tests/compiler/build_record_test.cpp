#include "project/compiler/build_record.h"
#include "project/compiler/parallel_steps.h"
#include "project/compiler/project_files.h"
#include "support/test_support.h"

#include <array>
#include <atomic>
#include <gtest/gtest.h>

namespace velmora {
namespace {

namespace fs = std::filesystem;

TEST(BuildRecord, ComesBackWholeOrNotAtAll)
{
    const test::CTemporaryFolder folder;
    test::writeFile(folder / "file", "x");
    const auto stamp = CFileStamp::of(folder / "file");
    ASSERT_TRUE(stamp);
    CBuildRecord record;
    record.m_objects["a b.cpp"] = {
        0x0123456789ABCDEF, *stamp, {{"/a b/x.h", 7u, {}}, {"/usr/y.h", {}, stamp}, {"/z.h", {}, {}}}};
    record.m_objects["c.cpp"] = {0, *stamp, {}};
    record.m_uLinkHash = 5;
    record.m_library = stamp;
    const std::string sText = record.text();
    test::writeFile(folder / "record", sText);
    const CBuildRecord read = CBuildRecord::load(folder / "record");
    EXPECT_EQ(read.text(), sText);
    const auto& files = read.m_objects.at("a b.cpp").m_files;
    EXPECT_EQ(files.at(0).m_contentHash, 7u);
    EXPECT_EQ(files.at(0).m_file, "/a b/x.h");
    EXPECT_EQ(files.at(1).m_stamp, stamp);
    EXPECT_FALSE(files.at(2).m_contentHash || files.at(2).m_stamp);
    for (std::size_t uLength = 0; uLength < sText.size(); ++uLength) {
        test::writeFile(folder / "record", sText.substr(0, uLength));
        EXPECT_TRUE(CBuildRecord::load(folder / "record").m_objects.empty()) << uLength;
    }
}

TEST(BuildRecord, ReadsTheMakeRulesOfACompiler)
{
    const struct
    {
        const char* m_pRule;
        std::vector<fs::path> m_files;
    } cases[] = {
        {"/a\\ b/x.o: /a\\ b/x.cpp \\\n /c/d.h /e/$$f\\#.h\n", {"/a b/x.cpp", "/c/d.h", "/e/$f#.h"}},
        {"x.o: \\\n  C:y.h", {"C:y.h"}},
        {"x.o:\n", {}},
        {"", {}},
        {"\\", {}},
    };
    for (const auto& entry : cases)
        EXPECT_EQ(filesOfMakeRule(entry.m_pRule), entry.m_files) << entry.m_pRule;
}

TEST(ProjectFiles, AFileThatMayHaveChangedWhileItWasReadCountsAsChanged)
{
    const test::CTemporaryFolder folder;
    const fs::path project = folder / "Gain";
    fs::create_directories(project / "sub");
    test::writeFile(project / "x.cpp", "1");
    test::writeFile(project / "again.txt", "1");
    test::writeFile(project / ".swap.cpp", "");
    CProjectFiles files(project);
    EXPECT_EQ(files.sources(), std::vector<fs::path>{project / "x.cpp"});
    const fs::path source = project / "x.cpp";
    EXPECT_TRUE(CProjectFiles(project).isUnchanged(files.recordOf(source)));
    // Saved while the compiler runs, be it with the text that it had: the compiler may have seen another one.
    fs::rename(project / "again.txt", source);
    EXPECT_FALSE(CProjectFiles(project).isUnchanged(files.recordOf(source)));
    test::writeFile(source, "2");
    EXPECT_FALSE(CProjectFiles(project).isUnchanged(files.recordOf(source)));
    // Files that were not looked at and have just been written: nobody knows what the compiler saw.
    for (const fs::path& file : {project / "sub" / "y.h", folder / "Gain2.h", folder / "missing.h"}) {
        if (file.filename() != "missing.h")
            test::writeFile(file, "1");
        EXPECT_FALSE(files.isUnchanged(files.recordOf(file))) << file;
    }
    // One of the system has rested for long.
    EXPECT_TRUE(files.isUnchanged(files.recordOf("/usr/include/math.h")));
}

TEST(ParallelSteps, EachRunsOnce)
{
    for (const std::size_t uSteps : {0u, 1u, 3u, 200u}) {
        std::array<std::atomic<int>, 200> runs{};
        std::vector<std::function<void()>> steps;
        for (std::size_t uStep = 0; uStep < uSteps; ++uStep)
            steps.emplace_back([&runs, uStep] { ++runs[uStep]; });
        runInParallel(steps);
        for (std::size_t uStep = 0; uStep < runs.size(); ++uStep)
            EXPECT_EQ(runs[uStep], uStep < uSteps ? 1 : 0);
    }
}

} // namespace
} // namespace velmora
