#include "base/text.h"
#include "base/xml_text.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <tuple>

namespace velmora {
namespace {

TEST(Text, EdgesOfTheSmallHelpers)
{
    using CTexts = std::vector<std::string>;
    EXPECT_EQ(trimmed(" \t\r\n a b \v\f\n"), "a b");
    EXPECT_EQ(trimmed(" \n"), "");
    EXPECT_EQ(split(",a,,", ','), (CTexts{"", "a", "", ""}));
    EXPECT_EQ(split("", ','), CTexts{});
    EXPECT_TRUE(equalsIgnoreCase("Gain.SO", "gAIN.so"));
    EXPECT_FALSE(equalsIgnoreCase("gain", "gains"));
    EXPECT_FALSE(equalsIgnoreCase("\xC9", "\xE9")) << "only ASCII letters";
    EXPECT_EQ(formatted("%s", std::string(5000, 'y').c_str()), std::string(5000, 'y'));
}

TEST(Text, ParsesOnlyWholeNumbers)
{
    const std::tuple<const char*, std::optional<double>> cases[] = {
        {"1.5", 1.5}, {" -2e3\n", -2000.0}, {"+4", 4.0}, {"0", 0.0},  {"", {}},     {" ", {}},    {"1,5", {}},
        {"1.5x", {}}, {"+-4", {}},          {"+", {}},   {"1 2", {}}, {"0x10", {}}, {"1e999", {}}};
    for (const auto& [pText, dValue] : cases)
        EXPECT_EQ(parseNumber(pText), dValue) << pText;
}

TEST(Text, FixedDecimalsHaveNoNegativeZero)
{
    EXPECT_EQ(fixedDecimals(-0.004, 2), "0.00");
    EXPECT_EQ(fixedDecimals(-0.005001, 2), "-0.01");
    EXPECT_EQ(fixedDecimals(-std::nan(""), 2), "nan");
    EXPECT_EQ(fixedDecimals(-HUGE_VAL, 2), "-inf");
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

TEST(XmlText, CanNeitherOpenAnElementNorEndAnAttribute)
{
    EXPECT_EQ(escapedXml("<a b=\"c\">&amp;'</a>"), "&lt;a b=&quot;c&quot;&gt;&amp;amp;'&lt;/a&gt;");
}

} // namespace
} // namespace velmora
