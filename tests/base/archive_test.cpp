#include "base/archive.h"

#include <gtest/gtest.h>
#include <limits>

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

TEST(Archive, WritesEachTypeByteForByte)
{
    const std::string sBytes = stored([](CArchive& archive) {
        archive.writeInt32(-2);
        archive.writeUInt32(0x89ABCDEF);
        archive.writeUInt16(0x1234);
        archive.writeFloat32(1.0f);
        archive.writeFloat64(-2.0);
        archive.writeBool(true);
        archive.writeBool(false);
        archive.writeString("Gain");
        archive.writeStringArray(std::vector<std::string>{"a", ""});
    });
    EXPECT_EQ(sBytes, "\xFE\xFF\xFF\xFF"
                      "\xEF\xCD\xAB\x89"
                      "\x34\x12"
                      "\x00\x00\x80\x3F"
                      "\x00\x00\x00\x00\x00\x00\x00\xC0"
                      "\x01\x00"
                      "\x04Gain"
                      "\x02\x00\x01"
                      "a\x00"s);
}

TEST(Archive, OneListOfFieldsServesBothDirections)
{
    struct CRecord
    {
        std::int32_t m_nValue = 0;
        std::uint32_t m_uValue = 0;
        std::uint16_t m_uShort = 0;
        float m_fValue = 0.0f;
        double m_dValue = 0.0;
        bool m_bValue = false;
        std::string m_sText;
        std::vector<std::string> m_texts;

        void transfer(CArchive& archive)
        {
            archive.transfer(m_nValue);
            archive.transfer(m_uValue);
            archive.transfer(m_uShort);
            archive.transfer(m_fValue);
            archive.transfer(m_dValue);
            archive.transfer(m_bValue);
            archive.transfer(m_sText);
            archive.transfer(m_texts);
        }
        bool operator==(const CRecord&) const = default;
    };
    CRecord written{std::numeric_limits<std::int32_t>::min(),
                    0xFFFFFFFF,
                    0xFFFF,
                    -0.1f,
                    1e300,
                    true,
                    "bytes \xE9\x00 kept"s,
                    {"x", "", std::string(300, 'y')}};
    const std::string sBytes = stored([&](CArchive& archive) { written.transfer(archive); });
    CRecord read;
    CArchive archive = loading(sBytes);
    read.transfer(archive);
    EXPECT_EQ(read, written);
    EXPECT_EQ(archive.remaining(), 0u);
}

TEST(Archive, TextLengthsTakeTheShortestOfThreeForms)
{
    const struct
    {
        std::size_t m_uLength;
        std::string m_sPrefix;
    } cases[] = {{0, "\x00"s},
                 {254, "\xFE"s},
                 {255, "\xFF\xFF\x00"s},
                 {0xFFFD, "\xFF\xFD\xFF"s},
                 {0xFFFE, "\xFF\xFF\xFF\xFE\xFF\x00\x00"s},
                 {0x12345, "\xFF\xFF\xFF\x45\x23\x01\x00"s}};
    for (const auto& each : cases) {
        const std::string sText(each.m_uLength, 'z');
        const std::string sBytes = stored([&](CArchive& archive) { archive.writeString(sText); });
        EXPECT_EQ(sBytes.substr(0, sBytes.size() - sText.size()), each.m_sPrefix) << each.m_uLength;
        EXPECT_EQ(loading(sBytes).readString(), sText) << each.m_uLength;
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
    const struct
    {
        std::string m_sBytes;
        std::string m_sText;
    } cases[] = {
        {"\xFF\xFE\xFF\x03h\x00\xE9\x00\xAC\x20"s, "h\xC3\xA9\xE2\x82\xAC"}, // h, e acute, euro
        {"\xFF\xFE\xFF\x02\x3D\xD8\x00\xDE"s, "\xF0\x9F\x98\x80"},           // a pair of surrogates
        {"\xFF\xFE\xFF\x02\x3D\xD8g\x00"s, "\xEF\xBF\xBDg"},                 // a first half alone
        {"\xFF\xFE\xFF\x01\x3D\xD8"s, "\xEF\xBF\xBD"},                       // one at the end
        {"\xFF\xFE\xFF\x01\x00\xDE"s, "\xEF\xBF\xBD"},                       // a second half alone
        {"\xFF\xFE\xFF\xFF\x02\x00o\x00k\x00"s, "ok"},                       // 16-bit length behind the tag
    };
    for (const auto& each : cases)
        EXPECT_EQ(loading(each.m_sBytes).readString(), each.m_sText);
}

TEST(Archive, AnyByteButZeroIsTrue)
{
    const std::string sBytes = "\x02\x00\xFF"s;
    CArchive archive = loading(sBytes);
    EXPECT_TRUE(archive.readBool());
    EXPECT_FALSE(archive.readBool());
    EXPECT_TRUE(archive.readBool());
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

TEST(Archive, RefusesTheOtherDirection)
{
    std::string sBytes;
    CArchive storing(sBytes);
    EXPECT_TRUE(storing.isStoring());
    EXPECT_THROW((void)storing.readInt32(), std::logic_error);
    CArchive archive = loading(sBytes);
    EXPECT_TRUE(archive.isLoading());
    EXPECT_THROW(archive.writeString("x"), std::logic_error);
}

} // namespace
} // namespace velmora
