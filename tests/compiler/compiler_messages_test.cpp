#include "project/compiler/compiler_messages.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(CompilerMessages, AreReadFromAnyOutput)
{
    const struct
    {
        const char* m_pLine;
        const char* m_pFile; // null: no message
        int m_nLine;
        int m_nColumn;
        bool m_bWarning;
        const char* m_pText;
    } cases[] = {
        {"/a b/x.cpp: In member function 'f':", nullptr, 0, 0, false, ""},
        {"/a b/x.cpp:12:34: error: 'y' is unknown", "/a b/x.cpp", 12, 34, false, "'y' is unknown"},
        {"x.cpp:12:34: fatal error: no.h: No such file", "x.cpp", 12, 34, false, "no.h: No such file"},
        {"x.h:7: warning: old: error: style\r", "x.h", 7, 0, true, "old: error: style"},
        {"mold: fatal: cannot open x.o", "", 0, 0, false, "cannot open x.o"},
        {"mold: error: undefined symbol: foo()", "", 0, 0, false, "undefined symbol: foo()"},
        {"/usr/bin/ld: /x.o: in function `g': x.cpp:(.text+0x5): undefined reference to `foo()'", "", 0, 0,
         false, "/usr/bin/ld: /x.o: in function `g': x.cpp:(.text+0x5): undefined reference to `foo()'"},
        {"x.cpp:99999999999:1: error: absurd line", "x.cpp:99999999999", 1, 0, false, "absurd line"},
        // Source lines that GCC and Clang quote.
        {"   12 |     f(); // note: error: handling", nullptr, 0, 0, false, ""},
        {"    f(); // see: warning: below", nullptr, 0, 0, false, ""},
        {": error: ", nullptr, 0, 0, false, ""},
        {"", nullptr, 0, 0, false, ""},
    };
    for (const auto& entry : cases) {
        const auto messages = parseMessages(entry.m_pLine);
        ASSERT_EQ(messages.size(), entry.m_pFile ? 1u : 0u) << entry.m_pLine;
        if (!entry.m_pFile)
            continue;
        EXPECT_EQ(messages[0].m_sFile, entry.m_pFile) << entry.m_pLine;
        EXPECT_EQ(messages[0].m_nLine, entry.m_nLine) << entry.m_pLine;
        EXPECT_EQ(messages[0].m_nColumn, entry.m_nColumn) << entry.m_pLine;
        EXPECT_EQ(messages[0].m_bWarning, entry.m_bWarning) << entry.m_pLine;
        EXPECT_EQ(messages[0].m_sText, entry.m_pText) << entry.m_pLine;
    }
    // A summary counts only where nothing stands above it.
    EXPECT_EQ(parseMessages("x.cpp:1:2: error: a\ncollect2: error: ld returned 1 exit status\n").size(), 1u);
    EXPECT_EQ(parseMessages("/usr/bin/clang: error: no such file: 'x.cpp'\n").size(), 1u);
    EXPECT_TRUE(parseMessages(std::string(1 << 20, ':')).empty());
}

} // namespace
} // namespace velmora
