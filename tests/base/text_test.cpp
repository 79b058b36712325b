#include "base/text.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

TEST(Text, TrimsBothEnds)
{
    EXPECT_EQ(trimmed(" \t\r\n a b \v\f\n"), "a b");
    EXPECT_EQ(trimmed(" \n"), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Text, SplitsAtEverySeparator)
{
    using CTexts = std::vector<std::string>;
    EXPECT_EQ(split("a,b", ','), (CTexts{"a", "b"}));
    EXPECT_EQ(split(",a,,", ','), (CTexts{"", "a", "", ""}));
    EXPECT_EQ(split("a", ','), CTexts{"a"});
    EXPECT_EQ(split("", ','), CTexts{});
}

TEST(Text, ComparesWithoutCase)
{
    EXPECT_TRUE(equalsIgnoreCase("Gain.SO", "gAIN.so"));
    EXPECT_FALSE(equalsIgnoreCase("gain", "gains"));
    EXPECT_FALSE(equalsIgnoreCase("\xC9", "\xE9")) << "only ASCII letters";
}

TEST(Text, FormatsAnyLength)
{
    EXPECT_EQ(formatted("%d %.3f %s", -7, 0.5, "x"), "-7 0.500 x");
    EXPECT_EQ(formatted("%s", std::string(5000, 'y').c_str()), std::string(5000, 'y'));
    EXPECT_EQ(formatted("%s", ""), "");
}

TEST(Text, ParsesOnlyWholeNumbers)
{
    const struct
    {
        const char* m_pText;
        std::optional<double> m_dValue;
    } cases[] = {{"1.5", 1.5}, {" -2e3\n", -2000.0}, {"+4", 4.0},  {"0", 0.0},  {"", {}},
                 {" ", {}},    {"1,5", {}},          {"1.5x", {}}, {"+-4", {}}, {"+", {}},
                 {"1 2", {}},  {"0x10", {}},         {"1e999", {}}};
    for (const auto& each : cases)
        EXPECT_EQ(parseNumber(each.m_pText), each.m_dValue) << each.m_pText;
}

TEST(Text, ShortestDecimalReadsBackTheSame)
{
    EXPECT_EQ(shortestDecimal(0.1), "0.1");
    EXPECT_EQ(shortestDecimal(44100.0), "44100");
    EXPECT_EQ(shortestDecimal(100000.0), "100000");
    using CLimits = std::numeric_limits<double>;
    for (const double dValue : {1.0 / 3.0, -1e-300, CLimits::max(), CLimits::denorm_min(), M_PI})
        EXPECT_EQ(parseNumber(shortestDecimal(dValue)), dValue);
}

} // namespace
} // namespace velmora
