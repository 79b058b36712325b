#include "audio/wave_import.h"
#include "support/test_support.h"
#include "support/wave_bytes.h"

#include <gtest/gtest.h>
#include <sstream>
#include <tuple>

namespace velmora::test {
namespace {

bool import(CWaveImporter& importer, const std::string& sBytes)
{
    std::istringstream file(sBytes);
    return importer.read(file);
}

std::vector<float> samplesOf(const CWaveImporter& importer)
{
    return {importer.samples().begin(), importer.samples().end()};
}

const std::string STEREO = riffChunk("data", sampleBytes({}, {0.5, -0.5, 0.25, -0.25}));

TEST(WaveImporter, convertsEachSampleFormatExactly)
{
    const std::tuple<CWaveBytesFormat, std::string, std::vector<float>> cases[] = {
        {{1, 1, 44100, 16},
         std::string("\x00\x80\xFF\x7F\xFF\xFF\x01\x00", 8),
         {-1.0f, 32767.0f / 32768.0f, -1.0f / 32768.0f, 1.0f / 32768.0f}},
        {{1, 1, 44100, 24},
         std::string("\x00\x00\x80\xFF\xFF\x7F\xFF\xFF\xFF\x01\x00\x00", 12),
         {-1.0f, 8388607.0f / 8388608.0f, -1.0f / 8388608.0f, 1.0f / 8388608.0f}},
        {{1, 1, 44100, 32},
         std::string("\x00\x00\x00\x80\xFF\xFF\xFF\xFF\x00\x00\x00\x40", 12),
         {-1.0f, -1.0f / 2147483648.0f, 0.5f}},
        {{3, 1, 44100, 32}, sampleBytes({3, 1, 44100, 32}, {0.1, -7.5}), {0.1f, -7.5f}},
        {{3, 1, 44100, 64}, sampleBytes({3, 1, 44100, 64}, {0.1, -7.5}), {0.1f, -7.5f}},
    };
    for (const auto& [format, sData, expected] : cases) {
        SCOPED_TRACE(::testing::Message() << "tag " << format.m_uTag << ", " << format.m_uBits << " bits");
        CWaveImporter importer;
        ASSERT_TRUE(import(importer, riffWave(formatChunk(format) + riffChunk("data", sData))));
        EXPECT_EQ(samplesOf(importer), expected);
        EXPECT_EQ(importer.bitsPerSample(), format.m_uBits);
    }
}

TEST(WaveImporter, findsFormatDataAndLoopAmongOtherChunks)
{
    const std::string sOdd = riffChunk("LIST", "odd");
    const std::string sOddWithoutPadding = "LIST" + littleEndianBytes(3, 4) + "odd";
    const std::string sLoops = samplerChunk(2, 100, 200);
    const std::tuple<const char*, std::string, unsigned, unsigned> cases[] = {
        {"nothing else", formatChunk({}) + STEREO, 0, 0},
        {"format of 18 bytes", formatChunk({}, std::string(2, '\0')) + STEREO, 0, 0},
        {"format of 40 bytes", formatChunk({}, std::string(24, '\0')) + STEREO, 0, 0},
        {"format of 17 bytes", formatChunk({}, "x") + STEREO + sLoops, 100, 200},
        {"chunks before and between", sOdd + formatChunk({}) + sOdd + STEREO + sOdd + sLoops, 100, 200},
        {"odd sizes not padded", formatChunk({}) + sOddWithoutPadding + STEREO + sOddWithoutPadding + sLoops,
         100, 200},
        {"no loops", formatChunk({}) + STEREO + samplerChunk(0), 0, 0},
        {"loops before the data", formatChunk({}) + sLoops + STEREO, 0, 0},
        {"sampler data behind the loops",
         formatChunk({}) + STEREO + riffChunk("smpl", sLoops.substr(8) + "more") + sOdd, 100, 200},
        {"incomplete chunk at the end", formatChunk({}) + STEREO + "LIST\xFF\xFF\xFF\xFFx", 0, 0},
    };
    for (const auto& [sWhat, sChunks, uStart, uEnd] : cases) {
        SCOPED_TRACE(sWhat);
        CWaveImporter importer;
        ASSERT_TRUE(import(importer, riffWave(sChunks)));
        EXPECT_EQ(samplesOf(importer), (std::vector<float>{0.5f, -0.5f, 0.25f, -0.25f}));
        EXPECT_EQ(importer.frames(), 2u);
        EXPECT_EQ(importer.channels(), 2u);
        EXPECT_EQ(importer.sampleRate(), 44100u);
        EXPECT_EQ(importer.loop().m_uStart, uStart);
        EXPECT_EQ(importer.loop().m_uEnd, uEnd);
    }
}

TEST(WaveImporter, dropsWhatIsNoWholeFrame)
{
    const std::string sSeven("\0\x40\0\x20\0\x10\1", 7); // one frame, one value, one byte
    CWaveImporter importer;
    ASSERT_TRUE(
        import(importer, riffWave(formatChunk({}) + riffChunk("data", sSeven) + samplerChunk(1, 3, 4))));
    EXPECT_EQ(samplesOf(importer), (std::vector<float>{0.5f, 0.25f}));
    EXPECT_EQ(importer.loop().m_uEnd, 4u);
    ASSERT_TRUE(import(importer, riffWave(formatChunk({}) + riffChunk("data", ""))));
    EXPECT_EQ(importer.frames(), 0u);
    EXPECT_EQ(importer.loop().m_uEnd, 0u);
}

TEST(WaveImporter, refusesInSilenceAndKeepsWhatItHad)
{
    const std::string sBadLoop = samplerChunk(1, 1, 2);
    const auto withFormat = [](const CWaveBytesFormat& format) {
        return riffWave(formatChunk(format) + riffChunk("data", std::string(16, '\1')));
    };
    const std::tuple<const char*, std::string> cases[] = {
        {"empty", ""},
        {"text", "Dear diary, today I renamed a letter to sample.wav.\n"},
        {"big-endian RIFF", "RIFX" + waveBytes({}, {0.5, 0.5}).substr(4)},
        {"not a wave", "RIFF" + littleEndianBytes(4, 4) + "AVI " + formatChunk({}) + STEREO},
        {"8 bits", withFormat({1, 1, 44100, 8})},
        {"20 bits", withFormat({1, 1, 44100, 20})},
        {"64-bit integers", withFormat({1, 1, 44100, 64})},
        {"16-bit floats", withFormat({3, 1, 44100, 16})},
        {"compressed", withFormat({2, 1, 44100, 16})},
        {"extensible", withFormat({0xFFFE, 1, 44100, 16})},
        {"no channels", withFormat({1, 0, 44100, 16})},
        {"no bits", withFormat({1, 2, 44100, 0})},
        {"short format", riffWave(riffChunk("fmt ", formatChunk({}).substr(8, 14)) + STEREO)},
        {"endless format", riffWave("fmt " + littleEndianBytes(0xFFFFFFFF, 4) + formatChunk({}).substr(8))},
        {"endless data", riffWave(formatChunk({}) + "data" + littleEndianBytes(0xFFFFFFFF, 4) + "1234")},
        {"no data", riffWave(formatChunk({}) + riffChunk("LIST", "none"))},
        {"data before the format", riffWave(STEREO + formatChunk({}))},
        {"loop promised, not there",
         riffWave(formatChunk({}) + STEREO + riffChunk("smpl", sBadLoop.substr(8, 36)) + STEREO)},
        {"short smpl", riffWave(formatChunk({}) + STEREO + riffChunk("smpl", "tiny") + STEREO)},
    };
    CWaveImporter importer;
    ASSERT_TRUE(import(importer, waveBytes({1, 1, 8000, 24}, {0.75})));
    for (const auto& [sWhat, sBytes] : cases)
        EXPECT_FALSE(import(importer, sBytes)) << sWhat;
    const CTemporaryFolder folder;
    EXPECT_FALSE(importer.read(folder / "missing.wav"));
    EXPECT_FALSE(importer.read(folder.path()));
    EXPECT_EQ(samplesOf(importer), std::vector<float>{0.75f});

    writeFile(folder / "good.wav", waveBytes({}, {0.25, 0.5}));
    EXPECT_TRUE(importer.read(folder / "good.wav"));
    EXPECT_EQ(samplesOf(importer), (std::vector<float>{0.25f, 0.5f}));
}

TEST(WaveImporter, refusesEveryTruncationThatCutsAPromise)
{
    const std::string sUpToData = riffWave(formatChunk({}) + STEREO);
    const std::string sWhole = riffWave(formatChunk({}) + STEREO + samplerChunk(1, 5, 6));
    for (std::size_t uLength = 0; uLength <= sWhole.size(); ++uLength) {
        const bool bNoChunkBegun = uLength >= sUpToData.size() && uLength < sUpToData.size() + 8;
        CWaveImporter importer;
        EXPECT_EQ(import(importer, sWhole.substr(0, uLength)), bNoChunkBegun || uLength == sWhole.size())
            << uLength;
    }
}

} // namespace
} // namespace velmora::test
