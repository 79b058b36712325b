#include "audio/sound_file.h"
#include "support/allocation_guard.h"
#include "support/full_disk.h"
#include "support/test_support.h"
#include "support/wave_bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tuple>

namespace velmora::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr int WAV_16_BIT = 0x010002;
constexpr int WAV_FLOAT = 0x010006;
constexpr int FLAC_16_BIT = 0x170002;

std::vector<float> readAll(CSoundFile& file)
{
    std::vector<float> samples(4096);
    samples.resize(static_cast<std::size_t>(file.readFloats(samples.data(), 4096)));
    return samples;
}

TEST(SoundFile, readsEverySampleFormatAsTheSameFloats)
{
    const std::vector<double> samples = {0.0, 0.5, -0.5, 0.25, -1.0, 0.984375, -0.0078125, 0.0};
    const std::tuple<const char*, std::string, int> cases[] = {
        {"8.wav", waveBytes({1, 2, 8000, 8}, samples), 0x010005},
        {"16.wav", waveBytes({1, 2, 8000, 16}, samples), WAV_16_BIT},
        {"24.wav", waveBytes({1, 2, 8000, 24}, samples), 0x010003},
        {"32.wav", waveBytes({1, 2, 8000, 32}, samples), 0x010004},
        {"float.wav", waveBytes({3, 2, 8000, 32}, samples), WAV_FLOAT},
        {"double.wav", waveBytes({3, 2, 8000, 64}, samples), 0x010007},
        {"8.aiff", aiffBytes(2, 8000, 8, samples), 0x020001},
        {"16.aif", aiffBytes(2, 8000, 16, samples), 0x020002},
        {"24.aif", aiffBytes(2, 8000, 24, samples), 0x020003},
        {"32.aif", aiffBytes(2, 8000, 32, samples), 0x020004},
    };
    const CTemporaryFolder folder;
    for (const auto& [sName, sBytes, nFormat] : cases) {
        SCOPED_TRACE(sName);
        writeFile(folder / sName, sBytes);
        CSoundFile file;
        std::string sError;
        ASSERT_TRUE(file.openForReading(folder / sName, sError)) << sError;
        EXPECT_EQ(file.info().m_nFrames, 4);
        EXPECT_EQ(file.info().m_nChannels, 2);
        EXPECT_EQ(file.info().m_nSampleRate, 8000);
        EXPECT_EQ(file.info().m_nFormat, nFormat);
        EXPECT_EQ(readAll(file), std::vector<float>(samples.begin(), samples.end()));
    }
}

TEST(SoundFile, refusesWhatIsNoSoundInAFullSentence)
{
    const std::string sData = riffChunk("data", std::string(64, '\0'));
    const std::tuple<const char*, std::string> cases[] = {
        {"empty.wav", ""},
        {"text.wav", "Dear diary, today I renamed a letter.\n"},
        {"header only.wav", riffWave("")},
        {"no format.wav", riffWave(sData)},
        {"no channels.wav", riffWave(formatChunk({1, 0, 44100, 16}) + sData)},
        {"1025 channels.wav", riffWave(formatChunk({1, 1025, 44100, 16}) + sData)},
        {"no rate.wav", riffWave(formatChunk({1, 2, 0, 16}) + sData)},
        {"negative rate.wav", riffWave(formatChunk({1, 2, 0x80000000u, 16}) + sData)},
        {"no bits.wav", riffWave(formatChunk({1, 2, 44100, 0}) + sData)},
        {"endless format.wav", riffWave("fmt " + littleEndianBytes(0xFFFFFFFF, 4) + "\1")},
        {"no form.aif", "FORM" + bigEndianBytes(4, 4) + "AIFF"},
    };
    const CTemporaryFolder folder;
    const auto refused = [](const std::filesystem::path& path) {
        SCOPED_TRACE(path);
        CSoundFile file;
        std::string sError;
        EXPECT_FALSE(file.openForReading(path, sError));
        EXPECT_FALSE(file.isOpen());
        EXPECT_EQ(file.readFloats(nullptr, 2), 0);
        EXPECT_THAT(sError, StartsWith("The sound file \"" + path.string() + "\" could not be opened: "));
        EXPECT_THAT(sError, EndsWith("."));
        EXPECT_THAT(sError, ::testing::Not(EndsWith("..")));
    };
    for (const auto& [sName, sBytes] : cases) {
        writeFile(folder / sName, sBytes);
        refused(folder / sName);
    }
    refused(folder / "missing.wav");
    refused(folder.path());
}

TEST(SoundFile, believesNoLengthThatTheFileDoesNotHave)
{
    const std::vector<double> samples(32, 0.5);
    const CTemporaryFolder folder;
    const auto path = folder / "cut";
    const std::string whole[] = {waveBytes({}, samples), aiffBytes(2, 44100, 16, samples)};
    for (const std::string& sWhole : whole) {
        for (std::size_t uLength = 0; uLength <= sWhole.size(); ++uLength) {
            SCOPED_TRACE(uLength);
            writeFile(path, sWhole.substr(0, uLength));
            CSoundFile file;
            std::string sError;
            if (!file.openForReading(path, sError)) {
                EXPECT_FALSE(sError.empty());
                continue;
            }
            const auto read = readAll(file);
            EXPECT_LE(read.size() * 2, uLength);
            EXPECT_EQ(read, std::vector<float>(read.size(), 0.5f));
        }
    }
    std::string sLying = whole[0];
    sLying.replace(40, 4, littleEndianBytes(0xFFFFFFFF, 4));
    writeFile(path, sLying);
    CSoundFile file;
    std::string sError;
    ASSERT_TRUE(file.openForReading(path, sError)) << sError;
    EXPECT_LE(file.info().m_nFrames, 16);
    EXPECT_EQ(readAll(file).size(), 32u);
}

TEST(SoundFile, countsWholeFramesAndSeeks)
{
    const CTemporaryFolder folder;
    writeFile(folder / "a.wav", waveBytes({}, {0.0, 0.1, 0.25, 0.5, -0.25, -0.5}));
    CSoundFile file;
    std::string sError;
    ASSERT_TRUE(file.openForReading(folder / "a.wav", sError)) << sError;
    float items[5] = {9, 9, 9, 9, 9};
    EXPECT_EQ(file.readFloats(items, 5), 4);
    EXPECT_EQ(items[4], 9.0f);
    EXPECT_EQ(file.readFloats(items, 4), 2);
    EXPECT_EQ(file.readFloats(items, 4), 0);
    EXPECT_TRUE(file.seekFrames(1));
    EXPECT_EQ(file.readFloats(items, 2), 2);
    EXPECT_EQ(items[0], 0.25f);
    for (const long long nFrame : {-1LL, 4LL, 1LL << 62})
        EXPECT_FALSE(file.seekFrames(nFrame)) << nFrame;
}

TEST(SoundFile, writesBackWhatItReadToTheLastBit)
{
    const CTemporaryFolder folder;
    for (const unsigned uBits : {16u, 24u}) {
        SCOPED_TRACE(uBits);
        // Every 16-bit value, both ends included; with 24 bits spread over that range.
        std::vector<double> samples;
        for (int nCode = -32768; nCode < 32768; ++nCode)
            samples.push_back(nCode / 32768.0 + (uBits == 24 ? 77 / 8388608.0 : 0.0));
        writeFile(folder / "in.wav", waveBytes({1, 1, 48000, uBits}, samples));
        std::vector<float> read(samples.size());
        const auto nItems = static_cast<long long>(read.size());
        CSoundFile in;
        CSoundFile out;
        std::string sError;
        ASSERT_TRUE(in.openForReading(folder / "in.wav", sError)) << sError;
        ASSERT_TRUE(out.openForWriting(folder / "out.wav", in.info(), sError)) << sError;
        ASSERT_EQ(in.readFloats(read.data(), nItems), nItems);
        ASSERT_EQ(out.writeFloats(read.data(), nItems), nItems);
        ASSERT_TRUE(out.close());
        EXPECT_EQ(readFile(folder / "out.wav"), readFile(folder / "in.wav"));
    }
}

TEST(SoundFile, takesNoMemoryWhileReadingSeekingAndWriting)
{
    const CTemporaryFolder folder;
    CSoundFile in;
    CSoundFile out;
    std::string sError;
    for (const unsigned uBits : {16u, 24u, 32u}) {
        SCOPED_TRACE(uBits);
        writeFile(folder / "in.wav",
                  waveBytes({uBits == 32 ? 3u : 1u, 2, 44100, uBits}, std::vector<double>(20000, 0.25)));
        ASSERT_TRUE(in.openForReading(folder / "in.wav", sError)) << sError;
        ASSERT_TRUE(out.openForWriting(folder / "out.wav", in.info(), sError)) << sError;
        std::vector<float> items(20000);
        const CAllocationGuard guard;
        const long long nRead = in.readFloats(items.data(), 20000);
        const long long nWritten = out.writeFloats(items.data(), nRead);
        const bool bRewound = in.seekFrames(0);
        const unsigned long uTaken = guard.count();
        EXPECT_EQ(nWritten, 20000);
        EXPECT_TRUE(bRewound);
        EXPECT_EQ(uTaken, 0u);
    }
}

TEST(SoundFile, clipsOversInIntegerFormatsAndKeepsThemInFloat)
{
    const std::tuple<int, std::vector<float>> cases[] = {
        {WAV_16_BIT, {32767.0f / 32768.0f, -1.0f, 32767.0f / 32768.0f, -1.0f}},
        {FLAC_16_BIT, {32767.0f / 32768.0f, -1.0f, 32767.0f / 32768.0f, -1.0f}},
        {WAV_FLOAT, {1.5f, -1.5f, 1.0f, -1.0f}},
    };
    const CTemporaryFolder folder;
    for (const auto& [nFormat, expected] : cases) {
        CSoundFile file;
        std::string sError;
        ASSERT_TRUE(file.openForWriting(folder / "a.wav", {0, 1, 8000, nFormat}, sError)) << sError;
        const float overs[] = {1.5f, -1.5f, 1.0f, -1.0f};
        EXPECT_EQ(file.writeFloats(overs, 4), 4);
        EXPECT_TRUE(file.close());
        ASSERT_TRUE(file.openForReading(folder / "a.wav", sError)) << sError;
        EXPECT_EQ(readAll(file), expected);
    }
}

TEST(SoundFile, refusesToWriteWhatTheContainerCannotHold)
{
    const CTemporaryFolder folder;
    writeFile(folder / "old.wav", "precious");
    const CSoundFileInfo cases[] = {
        {0, 0, 44100, WAV_16_BIT}, {0, -1, 44100, WAV_16_BIT}, {0, 1025, 44100, WAV_16_BIT},
        {0, 2, 0, WAV_16_BIT},     {0, 9, 44100, FLAC_16_BIT}, {0, 2, 44100, 0},
        {0, 2, -1, WAV_FLOAT},     {0, 2, 44100, 0x7FFFFFFF},
    };
    CSoundFile file;
    std::string sError;
    for (const auto& info : cases) {
        for (const char* sName : {"new.wav", "old.wav"}) {
            SCOPED_TRACE(::testing::Message() << info.m_nChannels << " " << info.m_nSampleRate << " "
                                              << info.m_nFormat << " " << sName);
            EXPECT_FALSE(file.openForWriting(folder / sName, info, sError));
            EXPECT_THAT(sError, HasSubstr("could not be created: "));
            EXPECT_THAT(sError, EndsWith("."));
        }
    }
    EXPECT_FALSE(file.openForWriting(folder / "no such folder/a.wav", {0, 2, 44100, WAV_16_BIT}, sError));
    EXPECT_THAT(sError, EndsWith(": No such file or directory."));
    EXPECT_EQ(entriesOf(folder.path()), std::vector<std::string>{"old.wav"});
    EXPECT_EQ(readFile(folder / "old.wav"), "precious");
}

TEST(SoundFile, tellsWhenTheDiskIsFull)
{
    const CTemporaryFolder folder;
    const std::vector<float> silence(20000, 0.0f);
    CSoundFile file;
    std::string sError;
    {
        const CFullDisk full(10);
        EXPECT_FALSE(file.openForWriting(folder / "header.wav", {0, 1, 8000, WAV_16_BIT}, sError));
        EXPECT_THAT(sError, HasSubstr("could not be created"));
    }
    EXPECT_TRUE(entriesOf(folder.path()).empty());
    {
        const CFullDisk full(10000);
        ASSERT_TRUE(file.openForWriting(folder / "data.wav", {0, 1, 8000, WAV_16_BIT}, sError)) << sError;
        EXPECT_LT(file.writeFloats(silence.data(), 20000), 20000);
        EXPECT_FALSE(file.close());
    }
    {
        // This format keeps a block of samples back until the file is closed.
        ASSERT_TRUE(file.openForWriting(folder / "late.flac", {0, 1, 8000, FLAC_16_BIT}, sError)) << sError;
        EXPECT_EQ(file.writeFloats(silence.data(), 100), 100);
        const CFullDisk full(std::filesystem::file_size(folder / "late.flac"));
        EXPECT_FALSE(file.close());
    }
}

} // namespace
} // namespace velmora::test
