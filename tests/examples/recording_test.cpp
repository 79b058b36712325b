#include "support/test_support.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

namespace velmora::test {

namespace {

struct SRecording
{
    uint16_t uChannels = 0;
    uint32_t uRate = 0;
    uint16_t uBits = 0;
    std::vector<int16_t> samples;
};

// A canonical wave file: 44 bytes of header, then the samples.
SRecording parse(const std::string& sFile)
{
    SRecording recording;
    const auto field = [&sFile](size_t uAt, auto& value) {
        std::memcpy(&value, &sFile.at(uAt), sizeof value);
    };
    field(22, recording.uChannels);
    field(24, recording.uRate);
    field(34, recording.uBits);
    recording.samples.resize((sFile.size() - 44) / sizeof(int16_t));
    std::memcpy(recording.samples.data(), sFile.data() + 44, recording.samples.size() * sizeof(int16_t));
    return recording;
}

} // namespace

TEST(Recording, scriptReproducesTheFilesByteForByte)
{
    const CTemporaryFolder folder;
    const std::string sCommand =
        std::string("\"" PYTHON "\" -B \"" RECORDING_SCRIPT "\" \"") + folder.path().string() + "\"";
    ASSERT_EQ(std::system(sCommand.c_str()), 0);
    EXPECT_EQ(entriesOf(folder.path()), (std::vector<std::string>{"demo-kick.wav", "demo.wav"}));
    for (const char* pName : {"demo.wav", "demo-kick.wav"}) {
        const std::string sCommitted = readFile(std::string(EXAMPLES_SOURCE "/audio/") + pName);
        ASSERT_FALSE(sCommitted.empty()) << pName;
        EXPECT_TRUE(readFile(folder / pName) == sCommitted) << pName << " is not what the script makes";
    }
}

TEST(Recording, isShortCleanAndAtItsLevel)
{
    const struct
    {
        const char* pName;
        uint16_t uChannels;
    } rows[] = {{"demo.wav", 2}, {"demo-kick.wav", 1}};
    for (const auto& row : rows) {
        const std::string sFile = readFile(std::string(EXAMPLES_SOURCE "/audio/") + row.pName);
        EXPECT_LT(sFile.size(), 800000U);
        const SRecording recording = parse(sFile);
        EXPECT_EQ(recording.uChannels, row.uChannels);
        EXPECT_EQ(recording.uRate, 44100U);
        EXPECT_EQ(recording.uBits, 16U);
        ASSERT_EQ(recording.samples.size(), 4U * 44100U * row.uChannels);
        EXPECT_EQ(recording.samples.front(), 0);
        EXPECT_EQ(recording.samples.back(), 0);
        int nPeak = 0;
        for (int16_t nSample : recording.samples)
            nPeak = std::max(nPeak, std::abs(static_cast<int>(nSample)));
        EXPECT_NEAR(20.0 * std::log10(nPeak / 32767.0), -3.0, 0.01) << row.pName;
    }
}

} // namespace velmora::test
