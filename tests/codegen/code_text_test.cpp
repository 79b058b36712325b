#include "project/codegen/code_text.h"

#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

TEST(CodeText, EscapesLiterals)
{
    const std::pair<std::string, std::string> cases[] = {
        {"Gain (dB) 50% -6? --", "Gain (dB) 50% -6? --"},
        {"\xC2\xB0 \xE2\x82\xAC \xF0\x9F\x8E\xB5", "\xC2\xB0 \xE2\x82\xAC \xF0\x9F\x8E\xB5"},
        {"a\"; system(\"x", "a\\\"; system(\\\"x"},
        {"C:\\new\\", "C:\\\\new\\\\"},
        {"a\r\nb\rc\nd", "a b c d"},
        {"\t\x01"
         "1\x7F",
         "\\t\\0011\\177"},
        {std::string("a\0b", 3), "a\\000b"},
        {"what??\?/ ?\?! ?? ???", "what??\\?/ ?\\?! ?? ???"},
        {"**--0xEDA5--** ***--0x", "\\052*--0xEDA5--** *\\052*--0x"},
        {"-- 0xAF66 --", "\\055- 0xAF66 --"},
        {"--\n0xA983 --", "\\055- 0xA983 --"},
        {"\xB0 \xE2\x82 \xC0\xAF \xED\xA0\x80", "\\260 \\342\\202 \\300\\257 \\355\\240\\200"},
        {"\xE2\x80\xAE \xE2\x81\xA6", "\\342\\200\\256 \\342\\201\\246"},
    };
    for (const auto& [sText, sExpected] : cases) {
        std::string sCode;
        appendLiteral(sCode, sText);
        EXPECT_EQ(sCode, sExpected);
    }
}

TEST(CodeText, KeepsCommentsClosed)
{
    const std::pair<std::string, std::string> cases[] = {
        {"fGain_2", "fGain_2"},          {"*/ int x; /*", "* / int x; / *"},    {"**//**", "** // **"},
        {"a\n*\r\n/\x01\\", "a * / \\"}, {"**--0xFFDD--**", "* *--0xFFDD--**"}, {"\xE2\x80\xAE\xB0", " \xB0"},
    };
    for (const auto& [sText, sExpected] : cases)
        EXPECT_EQ(commentText(sText), sExpected);
}

TEST(CodeText, MakesIdentifiers)
{
    const std::pair<const char*, const char*> names[] = {
        {"fGain_2", "fGain_2"}, {"a-b;", "a_b_"}, {"2nd", "_2nd"}, {"float", "float_"}, {"", "unnamed_7"},
    };
    for (const auto& [pName, pExpected] : names) {
        CUICtrl control;
        control.uControlId = 7;
        control.cVariableName = pName;
        EXPECT_EQ(variableIdentifier(control), pExpected);
    }
    const std::pair<const char*, const char*> lists[] = {
        {"", ""},
        {"A,B", "A,B"},
        {" A , B", " A , B"},
        {"1,2,1", "_1,_2,_1_"},
        {"A,,B,", "A,B"},
        {"x};int y=(1),new", "x__int_y__1_,new_"},
        {"a b,a_b", "a_b,a_b_"},
    };
    for (const auto& [pList, pExpected] : lists)
        EXPECT_EQ(enumeratorList(pList), pExpected);
}

TEST(CodeText, WritesNumbersThatCompile)
{
    const std::tuple<double, int, const char*> numbers[] = {
        {0.0, 6, "0.000000"},          {-0.0, 6, "-0.000000"},  {0.0, 4, "0.0000"},
        {0.12345, 4, "0.1235"},        {-1e-7, 6, "-0.000000"}, {1e15, 6, "1000000000000000.000000"},
        {NOT_A_NUMBER, 6, "0.000000"},
    };
    for (const auto& [dValue, nDecimals, pExpected] : numbers) {
        std::string sCode;
        appendFixed(sCode, dValue, nDecimals);
        EXPECT_EQ(sCode, pExpected);
    }
    std::string sCode;
    appendFixed(sCode, -INFINITE, 6);
    EXPECT_EQ(sCode, "-340282346638528859811704183484516925440.000000");
    sCode.clear();
    appendFixed(sCode, std::numeric_limits<double>::infinity(), 6);
    EXPECT_EQ(sCode.size(), 309u + 7u);

    const std::tuple<float, int, UINT> wholes[] = {
        {2.9f, 2, 2},
        {-2.9f, -2, 0},
        {3e9f, 2147483647, 3000000000u},
        {NOT_A_NUMBER, 0, 0},
        {INFINITE, 2147483647, 4294967295u},
        {-1e30f, -2147483647 - 1, 0},
    };
    for (const auto& [fValue, nExpected, uExpected] : wholes) {
        EXPECT_EQ(truncatedToInt(fValue), nExpected);
        EXPECT_EQ(truncatedToUnsigned(fValue), uExpected);
    }
}

} // namespace
} // namespace velmora
