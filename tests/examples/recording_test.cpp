#include "support/test_support.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace velmora::test {

TEST(Recording, scriptReproducesTheFilesByteForByte)
{
    const CTemporaryFolder folder;
    const std::string sCommand =
        std::string("\"" PYTHON "\" -B \"" RECORDING_SCRIPT "\" \"") + folder.path().string() + "\"";
    ASSERT_EQ(std::system(sCommand.c_str()), 0);
    EXPECT_EQ(entriesOf(folder.path()), (std::vector<std::string>{"demo-kick.wav", "demo.wav"}));
    for (const char* pName : {"demo.wav", "demo-kick.wav"}) {
        const std::string sCommitted = readFile(std::string(EXAMPLES_SOURCE "/audio/") + pName);
        ASSERT_FALSE(sCommitted.empty()) << pName;
        EXPECT_TRUE(readFile(folder / pName) == sCommitted) << pName << " is not what the script makes";
    }
}

} // namespace velmora::test
