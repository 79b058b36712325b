#include "base/platform_descriptor.h"
#include "host/plugin_library_check.h"
#include "support/test_support.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

std::string faultOf(const std::filesystem::path& path)
{
    const CDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return faultOfLibraryFile(file.get());
}

TEST(PlugInLibraryCheckTest, HeadersTellWhetherTheFileIsWhole)
{
    const test::CTemporaryFolder folder;
    const std::string sWhole = test::readFile(std::filesystem::path(PLUGIN_TEST_FOLDER) / "changeling.so");
    ASSERT_GT(sWhole.size(), 4096U);
    test::writeFile(folder / "whole.so", sWhole);
    EXPECT_EQ(faultOf(folder / "whole.so"), "");

    for (const std::size_t uLength : {std::size_t{0}, std::size_t{3}, std::size_t{63}, std::size_t{64},
                                      std::size_t{2000}, sWhole.size() / 2, sWhole.size() - 1}) {
        test::writeFile(folder / "cut.so", sWhole.substr(0, uLength));
        EXPECT_NE(faultOf(folder / "cut.so"), "") << uLength << " bytes";
    }
    test::writeFile(folder / "text.so", std::string(5000, 'x'));
    EXPECT_NE(faultOf(folder / "text.so"), "");
    EXPECT_NE(faultOf(folder.path()), "") << "a folder";
}

} // namespace
} // namespace velmora
