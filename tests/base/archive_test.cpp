#include "base/archive.h"

#include <gtest/gtest.h>
#include <tuple>

namespace velmora {
namespace {

using namespace std::string_literals;

CArchive loading(const std::string& sBytes)
{
    return CArchive(std::as_bytes(std::span(sBytes.data(), sBytes.size())));
}

template <typename Store>
std::string stored(Store store)
{
    std::string sBytes;
    CArchive archive(sBytes);
    store(archive);
    return sBytes;
}

TEST(Archive, EachTypeIsStoredByteForByteAndComesBack)
{
    const auto transfer = [](CArchive& archive, auto& record) {
        std::apply([&archive](auto&... field) { (archive.transfer(field), ...); }, record);
    };
    using CTexts = std::vector<std::string>;
    std::tuple<std::int32_t, std::uint32_t, std::uint16_t, float, double, bool, bool, std::string, CTexts>
        written{-2, 0x89ABCDEF, 0x1234, 1.0f, -2.0, true, false, "\xE9\x00Gain"s, {"a", ""}};
    const std::string sBytes = stored([&](CArchive& archive) { transfer(archive, written); });
    EXPECT_EQ(sBytes, "\xFE\xFF\xFF\xFF"
                      "\xEF\xCD\xAB\x89"
                      "\x34\x12"
                      "\x00\x00\x80\x3F"
                      "\x00\x00\x00\x00\x00\x00\x00\xC0"
                      "\x01\x00"
                      "\x06\xE9\x00Gain"
                      "\x02\x00\x01"
                      "a\x00"s);
    auto read = decltype(written){};
    CArchive archive = loading(sBytes);
    transfer(archive, read);
    EXPECT_EQ(read, written);
    EXPECT_EQ(archive.remaining(), 0u);
    EXPECT_TRUE(loading("\xFF").readBool()); // as any byte but zero
}

TEST(Archive, TextLengthsTakeTheShortestOfThreeForms)
{
    const std::tuple<std::size_t, std::string> cases[] = {{0, "\x00"s},
                                                          {254, "\xFE"s},
                                                          {255, "\xFF\xFF\x00"s},
                                                          {0xFFFD, "\xFF\xFD\xFF"s},
                                                          {0xFFFE, "\xFF\xFF\xFF\xFE\xFF\x00\x00"s},
                                                          {0x12345, "\xFF\xFF\xFF\x45\x23\x01\x00"s}};
    for (const auto& [uLength, sPrefix] : cases) {
        const std::string sText(uLength, 'z');
        const std::string sBytes = stored([&](CArchive& archive) { archive.writeString(sText); });
        EXPECT_EQ(sBytes.substr(0, sBytes.size() - sText.size()), sPrefix) << uLength;
        EXPECT_EQ(loading(sBytes).readString(), sText) << uLength;
    }
}

TEST(Archive, ListsOfManyTextsTakeALongCount)
{
    const std::vector<std::string> texts(0xFFFF, "t");
    const std::string sBytes = stored([&](CArchive& archive) { archive.writeStringArray(texts); });
    EXPECT_EQ(sBytes.substr(0, 6), "\xFF\xFF\xFF\xFF\x00\x00"s);
    EXPECT_EQ(loading(sBytes).readStringArray(), texts);
}

TEST(Archive, WideTextsBecomeUtf8)
{
    const std::tuple<std::string, std::string> cases[] = {
        {"\xFF\xFE\xFF\x03h\x00\xE9\x00\xAC\x20"s, "h\xC3\xA9\xE2\x82\xAC"}, // h, e acute, euro
        {"\xFF\xFE\xFF\x02\x3D\xD8\x00\xDE"s, "\xF0\x9F\x98\x80"},           // a pair of surrogates
        {"\xFF\xFE\xFF\x02\x3D\xD8g\x00"s, "\xEF\xBF\xBDg"},                 // a first half alone
        {"\xFF\xFE\xFF\x01\x3D\xD8"s, "\xEF\xBF\xBD"},                       // one at the end
        {"\xFF\xFE\xFF\x01\x00\xDE"s, "\xEF\xBF\xBD"},                       // a second half alone
        {"\xFF\xFE\xFF\xFF\x02\x00o\x00k\x00"s, "ok"},                       // 16-bit length behind the tag
    };
    for (const auto& [sBytes, sText] : cases)
        EXPECT_EQ(loading(sBytes).readString(), sText);
}

TEST(Archive, RefusesEveryTruncation)
{
    const std::string sBytes = stored([](CArchive& archive) {
        archive.writeInt32(1);
        archive.writeFloat64(2.0);
        archive.writeStringArray(std::vector<std::string>{"one", std::string(256, '2')});
        archive.writeBool(true);
    });
    for (std::size_t uLength = 0; uLength < sBytes.size(); ++uLength) {
        const std::string sCut = sBytes.substr(0, uLength);
        CArchive archive = loading(sCut);
        EXPECT_THROW(
            {
                (void)archive.readInt32();
                (void)archive.readFloat64();
                (void)archive.readStringArray();
                (void)archive.readBool();
            },
            CArchiveError)
            << uLength;
    }
}

// A count of 4 billion would take gigabytes, were it believed.
TEST(Archive, RefusesImpossibleCountsBeforeTakingMemory)
{
    EXPECT_THROW((void)loading("\xFF\xFF\xFF\xFF\xFF\xFF\xFFtext"s).readString(), CArchiveError);
    EXPECT_THROW((void)loading("\xFF\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFFt"s).readString(), CArchiveError);
    EXPECT_THROW((void)loading("\xFF\xFE\xFF\x02t\x00u"s).readString(), CArchiveError);
    // A second tag behind the first is the length 0xFFFE.
    EXPECT_THROW((void)loading("\xFF\xFE\xFF\xFF\xFE\xFF\x00"s).readString(), CArchiveError);

    try {
        (void)loading("\xFF\xFF\xFF\xFF\xFF\xFF\x01t"s).readStringArray();
        ADD_FAILURE() << "a list of 4 billion texts";
    } catch (const CArchiveError& error) {
        EXPECT_STREQ(error.what(), "4294967295 texts of a list were announced at byte 6, but only 2 bytes "
                                   "follow. The file is damaged.");
    }

    const std::string sTen(10, '\0');
    const CArchive archive = loading(sTen);
    EXPECT_NO_THROW(archive.checkCount(5, 2, "records"));
    EXPECT_THROW(archive.checkCount(6, 2, "records"), CArchiveError);
    EXPECT_THROW(archive.checkCount(UINT64_MAX, 2, "records"), CArchiveError);
}

} // namespace
} // namespace velmora
