#include "project/compiler/contract_use.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(ContractUse, OnlyASourceWhoseFirstWordIsTheContractMayTakeItReady)
{
    const test::CTemporaryFolder folder;
    test::writeFile(folder / "plugin.h", "");
    test::writeFile(folder / "Own.h",
                    "// own\n#ifndef OWN_H\n#define OWN_H /*\n*/\n#include \"plugin.h\"\n#endif\n");
    test::writeFile(folder / "Guarded.h",
                    "// own\n#ifndef OWN_H\n#define OWN_H\n\n#include \"plugin.h\"\n#endif\n");
    test::writeFile(folder / "Once.h", "#pragma once\n#  include   \"plugin.h\" // the contract\n");
    test::writeFile(folder / "Condition.h", "#ifndef __GNUC__\n#include \"plugin.h\"\n#endif\n");
    test::writeFile(folder / "Loop.h", "#include \"Loop.h\"\n");
    const struct
    {
        const char* m_pSource;
        bool m_bBegins;
    } cases[] = {
        {"#include \"plugin.h\"\n", true},
        {"/* a\n b */ // c\r\n\n#include \"Guarded.h\"\r\n#include <vector>\n", true},
        {"#include \"Once.h\"", true},
        {"#include \"./plugin.h\"", true},
        {"#include \"Own.h\"\n", false}, // a comment that is too clever for us
        {"#include <vector>\n#include \"plugin.h\"\n", false},
        {"#define pi 3\n#include \"plugin.h\"\n", false},
        {"#include \"Condition.h\"\n", false},
        {"#include \"Loop.h\"\n", false},
        {"#include \"missing.h\"\n#include \"plugin.h\"\n", false},
        {"// a \\\n#include \"plugin.h\"\n", false},
        {"/* #include \"plugin.h\"", false},
        {"int x;\n#include \"plugin.h\"\n", false},
        {"", false},
    };
    for (const auto& entry : cases) {
        test::writeFile(folder / "x.cpp", entry.m_pSource);
        EXPECT_EQ(beginsWithContract(folder / "x.cpp", folder / "plugin.h"), entry.m_bBegins)
            << entry.m_pSource;
    }
}

} // namespace
} // namespace velmora
