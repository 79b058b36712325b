#include "audio/wave_buffer.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace velmora::test {
namespace {

std::string textOf(const CWaveBuffer& buffer)
{
    return {reinterpret_cast<const char*>(buffer.bytes()), buffer.length()};
}

TEST(WaveBuffer, copiesNoMoreThanEitherSideHas)
{
    CWaveBuffer buffer(4);
    EXPECT_TRUE(buffer.isEmpty());
    buffer.CopyBuffer(nullptr, 0, 2);
    EXPECT_TRUE(buffer.isEmpty());
    buffer.CopyBuffer("aabbcc", 3, 2);
    EXPECT_EQ(textOf(buffer), "aabbcc");
    const std::tuple<const char*, std::uint32_t, std::uint32_t, std::string> cases[] = {
        {"1122", 2, 2, std::string("1122\0\0", 6)},
        {"11223344", 4, 2, "112233"},
        {"123", 3, 1, std::string("123\0\0\0", 6)},     // smaller samples: not read beyond their end
        {"11112222", 2, 4, std::string("1111\0\0", 6)}, // larger ones: two samples of the buffer's own
        {"", 0, 2, std::string(6, '\0')},
    };
    for (const auto& [sBytes, uCount, uSize, sExpected] : cases) {
        buffer.CopyBuffer(sBytes, uCount, uSize);
        EXPECT_EQ(textOf(buffer), sExpected) << sBytes;
        EXPECT_EQ(buffer.sampleSize(), 2u);
    }
}

TEST(WaveBuffer, takesOverBytes)
{
    CWaveBuffer buffer;
    buffer.CopyBuffer("old", 3, 1);
    buffer.SetBuffer(std::make_unique<std::uint8_t[]>(8), 2, 4);
    EXPECT_EQ(textOf(buffer), std::string(8, '\0'));
    buffer.SetBuffer(nullptr, 2, 4);
    EXPECT_EQ(buffer.numSamples(), 0u);
    EXPECT_TRUE(buffer.isEmpty());
}

} // namespace
} // namespace velmora::test
