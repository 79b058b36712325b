#include "base/platform_emergency_file.h"
#include "base/platform_protected_memory.h"
#include "support/allocation_guard.h"
#include "support/full_disk.h"
#include "support/test_support.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>

namespace velmora {
namespace {

TEST(EmergencyFileTest, ReplacesTheTargetOnlyWhenAllIsWritten)
{
    const test::CTemporaryFolder folder;
    const std::string sTarget = folder / "target";
    const std::string sUnfinished = folder / "unfinished";
    const std::string sText(20000, 'x');
    test::writeFile(sTarget, "old");
    std::filesystem::permissions(sTarget, std::filesystem::perms(0600));
    const auto write = [&](const std::string& sWhere) {
        const test::CAllocationGuard guard;
        CEmergencyFile file(sWhere.c_str(), sTarget.c_str());
        file.write(sText);
        const int nError = file.commit(sTarget.c_str());
        EXPECT_EQ(guard.count(), 0U);
        return nError;
    };

    EXPECT_EQ(write(folder / "nowhere/unfinished"), ENOENT);
    {
        const test::CFullDisk disk(10000);
        EXPECT_EQ(write(sUnfinished), EFBIG);
    }
    EXPECT_EQ(test::readFile(sTarget), "old");
    EXPECT_EQ(test::entriesOf(folder.path()).size(), 1U);

    test::writeFile(sUnfinished, "left by an earlier crash");
    EXPECT_EQ(write(sUnfinished), 0);
    EXPECT_EQ(test::readFile(sTarget), sText);
    EXPECT_EQ(std::filesystem::status(sTarget).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(test::entriesOf(folder.path()).size(), 1U);
}

TEST(EmergencyFileTest, WritesEachValueInOneLine)
{
    const test::CTemporaryFolder folder;
    const std::string sUnfinished = folder / "unfinished";
    const std::string sTarget = folder / "target";
    CEmergencyFile file(sUnfinished.c_str());
    file.writeLine("odd", "a\nb: \r\x7F\xC3\xA4");
    file.writeLine("number", -2147483647 - 1);
    file.writeLine("long", std::string(5000, 'y'));
    EXPECT_EQ(file.commit(sTarget.c_str()), 0);
    EXPECT_EQ(test::readFile(sTarget),
              "odd: a b:   \xC3\xA4\nnumber: -2147483648\nlong: " + std::string(4096, 'y') + "\n");
}

TEST(ProtectedMemoryTest, HoldsTextsOfAnySize)
{
    CProtectedMemory memory;
    EXPECT_EQ(memory.text(0), "");
    for (const std::size_t uSize : {0U, 10U, 5000U, 3U, 1000000U, 7U}) {
        const std::string sText(uSize, 'z');
        ASSERT_TRUE(memory.assign({"name", sText, "end"}));
        EXPECT_EQ(memory.text(0), "name");
        EXPECT_EQ(memory.text(1), sText);
        EXPECT_STREQ(memory.text(1).data(), sText.c_str());
        EXPECT_EQ(memory.text(2), "end");
        EXPECT_EQ(memory.text(3), "");
    }
}

} // namespace
} // namespace velmora
