#include "cli/json_writer.h"
#include "cli/text_table.h"
#include "support/json_reader.h"

#include <gtest/gtest.h>
#include <limits>

namespace velmora::cli {

namespace {

TEST(JsonWriter, WritesEveryKindOfValue)
{
    CJsonWriter json;
    json.beginObject();
    json.member("float", 0.1F);
    json.member("double", 0.1);
    json.member("large", -1.5e300);
    json.member("nan", std::numeric_limits<float>::quiet_NaN());
    json.key("ends");
    json.beginArray();
    json.value(std::numeric_limits<double>::infinity());
    json.value(-std::numeric_limits<double>::infinity());
    json.endArray();
    json.member("lowest", std::numeric_limits<std::int64_t>::min());
    json.member("highest", std::numeric_limits<std::uint64_t>::max());
    json.member("yes", true);
    json.key("nothing");
    json.null();
    json.key("empty");
    json.array(std::span<const float>());
    json.endObject();
    EXPECT_EQ(
        json.text(),
        R"({"float":0.100000001,"double":0.10000000000000001,"large":-1.5000000000000001e+300,"nan":"nan",)"
        R"("ends":["inf","-inf"],"lowest":-9223372036854775808,)"
        R"("highest":18446744073709551615,"yes":true,"nothing":null,"empty":[]})"
        "\n");
}

TEST(JsonWriter, WritesAnyBytesAsValidText)
{
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"a\"b\\c\n\r\t\x01\x7F", R"("a\"b\\c\n\r\t\u0001\u007f")"},
        {"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB5",
         "\"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB5\""}, // valid UTF-8
        {"90\xB0", "\"90\xC2\xB0\""},                   // Latin-1
        {"\xE9\xE9", "\"\xC3\xA9\xC3\xA9\""},
        {"\xC0\xAF", "\"\xC3\x80\xC2\xAF\""},                         // too long a form of a slash
        {"\xED\xA0\x80", "\"\xC3\xAD\xC2\xA0\xC2\x80\""},             // half of a surrogate pair
        {"\xF4\x90\x80\x80", "\"\xC3\xB4\xC2\x90\xC2\x80\xC2\x80\""}, // beyond the last character
        {"\xE2\x82", "\"\xC3\xA2\xC2\x82\""},                         // cut off
    };
    for (const auto& [sText, sJson] : texts) {
        CJsonWriter json;
        json.value(sText);
        EXPECT_EQ(json.text(), sJson + "\n");
        EXPECT_NO_THROW((void)test::CJsonValue::parse(json.text()));
    }
}

TEST(TextTable, AlignsColumnsByCharacters)
{
    CTextTable table({"Name", ">Value", "Units"});
    table.addRow({"Angle", "1.5", "\xC2\xB0"});
    table.addRow({"\xC3\x84ngstr\xC3\xB6m", "-12.25"});
    table.addRow({"a\x1B[2Jb", "0", "Hz"}); // nothing can clear the user's screen
    EXPECT_EQ(table.text(), "Name       Value  Units\n"
                            "Angle        1.5  \xC2\xB0\n"
                            "\xC3\x84ngstr\xC3\xB6m  -12.25\n"
                            "a?[2Jb         0  Hz\n");
}

} // namespace

} // namespace velmora::cli
