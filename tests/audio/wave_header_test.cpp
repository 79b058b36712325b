#include "audio/little_endian.h"
#include "audio/wave_header.h"
#include "support/test_support.h"

#include <gtest/gtest.h>
#include <tuple>

namespace velmora {
namespace {

std::string waveFile(std::uint16_t uTag, std::uint32_t uDataSize, const std::string& sBefore = {})
{
    std::string sFile = "RIFF0000WAVE" + sBefore + "fmt ";
    appendLittleEndian<std::uint32_t>(sFile, 16);
    appendLittleEndian(sFile, uTag);
    appendLittleEndian<std::uint16_t>(sFile, 2);
    appendLittleEndian<std::uint32_t>(sFile, 44100);
    appendLittleEndian<std::uint32_t>(sFile, 176400);
    appendLittleEndian<std::uint16_t>(sFile, 4);
    appendLittleEndian<std::uint16_t>(sFile, 16);
    sFile += "data";
    appendLittleEndian(sFile, uDataSize);
    return sFile;
}

TEST(WaveHeaderTest, TellsWhatTheDataChunkPromises)
{
    const std::string sOddChunk("LIST\3\0\0\0abc\0", 12);
    const std::tuple<std::string, long long> cases[] = {
        {waveFile(1, 4000), 1000},
        {waveFile(3, 4000, sOddChunk), 1000},
        {waveFile(0xFFFE, 8), 2},
        {waveFile(2, 4000), 0},
        {waveFile(1, 0xFFFFFFFF), 0},
        {waveFile(1, 0x7FFFF000), 0},
        {"RIFF0000WAVE", 0},
        {"FORM0000AIFF", 0},
        {"", 0},
        {waveFile(1, 1).substr(0, 30), 0},
    };
    const test::CTemporaryFolder folder;
    for (const auto& [sFile, nFrames] : cases) {
        test::writeFile(folder / "file.wav", sFile);
        EXPECT_EQ(promisedWaveFrames(folder / "file.wav"), nFrames);
    }
    EXPECT_EQ(promisedWaveFrames(folder / "none.wav"), 0);
}

} // namespace
} // namespace velmora
