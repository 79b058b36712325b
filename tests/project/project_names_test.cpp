#include "project/project_names.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(ProjectNames, OfProjects)
{
    struct CCase
    {
        std::string_view m_sName;
        bool m_bValid;
        std::string_view m_sCleaned;
    };
    const CCase cases[] = {
        {"MyPlugin", true, "MyPlugin"},
        {"My_Plugin", false, "MyPlugin"},
        {"&/\\|:*?<>_!@#$%^()+-{}[]'\";.,`0123456789 \t", false, ""},
        {"Echo2 Long", false, "EchoLong"},
        {"", false, ""},
        {"Caf\xC3\xA9=~", false, "Caf"}, // no characters of the list, and none of a class name
        {"this", true, "this"},          // the class is Cthis
        {"PlugIn", false, "MyPlugIn"},   // CPlugIn is the base class
        {"Synthfunctions", false, "MySynthfunctions"},
        {"DelayLine", false, "MyDelayLine"},
    };
    for (const CCase& test : cases) {
        EXPECT_EQ(isProjectNameValid(test.m_sName), test.m_bValid) << test.m_sName;
        EXPECT_EQ(cleanedProjectName(test.m_sName), test.m_sCleaned) << test.m_sName;
    }
}

TEST(ProjectNames, OfVariables)
{
    for (const auto* pName : {"m_fGain", "_a", "x1", "This", "final", "override", "m_u__x"})
        EXPECT_TRUE(isVariableName(pName)) << pName;
    for (const auto* pName : {"", "1x", "a b", "a-b", "\xC3\xA9", "this", "and_eq", "xor", "char8_t",
                              "co_await", "requires", "alignas", "asm", "register", "wchar_t", "double"})
        EXPECT_FALSE(isVariableName(pName)) << pName;
}

} // namespace
} // namespace velmora
