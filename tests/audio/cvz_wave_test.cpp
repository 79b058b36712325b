#include "audio/cvz_wave.h"
#include "audio/file_exception.h"
#include "base/archive.h"
#include "support/full_disk.h"
#include "support/test_support.h"
#include "support/wave_bytes.h"

#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <tuple>

namespace velmora::test {
namespace {

const std::vector<double> SAMPLES = {0.5, -0.5, 0.25, -0.25};
const CWaveBytesFormat FORMAT = {1, 2, 48000, 24};

std::string bytesOf(const cvzWave& wave)
{
    return {reinterpret_cast<const char*>(wave.GetBuffer()), wave.GetBufferLength()};
}

cvzWave sampleWave()
{
    const std::string sBytes = sampleBytes(FORMAT, SAMPLES);
    std::string sCopy = sBytes;
    cvzWave wave;
    wave.BuildFormat(2, 48000, 24);
    wave.SetBuffer(reinterpret_cast<std::uint8_t*>(sCopy.data()), 2, true);
    return wave;
}

std::optional<CFileException> failureOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const CFileException& exception) {
        return exception;
    }
    return std::nullopt;
}

TEST(CvzWave, buildsTheFormatWithWholeBytes)
{
    cvzWave wave = sampleWave();
    wave.BuildFormat(1, 44100, 12);
    EXPECT_EQ(wave.format().m_uAverageBytesPerSecond, 66150u); // it keeps the half byte that the block loses
    EXPECT_EQ(wave.format().m_uBlockAlign, 1);
    EXPECT_EQ(wave.GetNumSamples(), 0u);
    wave.BuildFormat(8, 192000, 64);
    EXPECT_EQ(wave.format().m_uAverageBytesPerSecond, 12288000u);
    EXPECT_EQ(wave.format().m_uBlockAlign, 64);
}

TEST(CvzWave, savesTheDescribedBytesAndLoadsThemBack)
{
    const CTemporaryFolder folder;
    writeFile(folder / "a.wav", "old");
    sampleWave().Save(folder / "a.wav");
    EXPECT_EQ(readFile(folder / "a.wav"), waveBytes(FORMAT, SAMPLES));
    EXPECT_EQ(entriesOf(folder.path()).size(), 1u);

    cvzWave loaded;
    loaded.Load(folder / "a.wav");
    EXPECT_EQ(loaded.GetNumSamples(), 2u);
    loaded.Save(folder / "b.wav");
    EXPECT_EQ(readFile(folder / "b.wav"), waveBytes(FORMAT, SAMPLES));
}

TEST(CvzWave, losesTheTailOfTheData)
{
    std::istringstream file(riffWave(formatChunk({}) + riffChunk("data", "12345678901")));
    cvzWave wave;
    wave.Load(file);
    EXPECT_EQ(wave.GetNumSamples(), 2u);
    EXPECT_EQ(bytesOf(wave), "12345678");
}

TEST(CvzWave, refusesBadFilesAndStaysAsItWas)
{
    const std::string sData = riffChunk("data", "1234");
    std::string sNoBlock = waveBytes({}, SAMPLES);
    sNoBlock.replace(32, 2, std::string(2, '\0'));
    std::string sEndless = waveBytes({}, SAMPLES);
    sEndless.replace(40, 4, littleEndianBytes(0xFFFFFFFF, 4));
    const std::tuple<const char*, std::string> cases[] = {
        {"empty", ""},
        {"text", "Dear diary, today I renamed a letter to sample.wav.\n"},
        {"not a wave", "RIFF" + littleEndianBytes(0, 4) + "AVI fmt "},
        {"longer format", riffWave(formatChunk({}, std::string(2, '\0')) + sData)},
        {"chunk between", riffWave(formatChunk({}) + riffChunk("LIST", "1234") + sData)},
        {"no block align", sNoBlock},
        {"endless data", sEndless},
    };
    const CTemporaryFolder folder;
    const auto path = folder / "bad.wav";
    cvzWave wave = sampleWave();
    for (const auto& [sWhat, sBytes] : cases) {
        SCOPED_TRACE(sWhat);
        writeFile(path, sBytes);
        const auto failure = failureOf([&] { wave.Load(path); });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->cause(), 6);
        EXPECT_EQ(failure->path(), path);
        EXPECT_THAT(failure->what(), ::testing::StartsWith("The wave file \"" + path.string() + "\" "));
    }
    const std::string sWhole = waveBytes(FORMAT, SAMPLES);
    for (std::size_t uLength = 0; uLength < sWhole.size(); ++uLength) {
        std::istringstream cut(sWhole.substr(0, uLength));
        const auto failure = failureOf([&] { wave.Load(cut); });
        ASSERT_TRUE(failure) << uLength;
        EXPECT_EQ(failure->cause(), CFileException::badFormat) << uLength;
    }
    for (const auto& noFile : {folder / "missing.wav", folder.path()})
        EXPECT_EQ(failureOf([&] { wave.Load(noFile); })->cause(), CFileException::genericException);
    EXPECT_EQ(wave.format().m_uSamplesPerSecond, 48000u);
    EXPECT_EQ(bytesOf(wave), sampleBytes(FORMAT, SAMPLES));
}

TEST(CvzWave, leavesTheOldFileWhenItCannotSave)
{
    const CTemporaryFolder folder;
    writeFile(folder / "a.wav", "old");
    std::optional<CFileException> failure;
    {
        const CFullDisk full(50);
        failure = failureOf([&] { sampleWave().Save(folder / "a.wav"); });
    }
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->cause(), CFileException::genericException);
    EXPECT_TRUE(failureOf([&] { sampleWave().Save(folder / "no such folder/a.wav"); }));

    cvzWave tooLong = sampleWave();
    tooLong.SetBuffer(new std::uint8_t[1], 0xFFFFFFFF, false);
    EXPECT_TRUE(failureOf([&] { tooLong.Save(folder / "a.wav"); }));
    EXPECT_EQ(entriesOf(folder.path()), std::vector<std::string>{"a.wav"});
    EXPECT_EQ(readFile(folder / "a.wav"), "old");
}

TEST(CvzWave, keepsItsOwnCountWhenBytesAreCopiedIn)
{
    cvzWave wave = sampleWave();
    std::string sThree(18, 'x');
    wave.SetBuffer(reinterpret_cast<std::uint8_t*>(sThree.data()), 3, true);
    EXPECT_EQ(bytesOf(wave), std::string(12, 'x'));
    wave.SetBuffer(reinterpret_cast<std::uint8_t*>(sThree.data()), 1, true);
    EXPECT_EQ(bytesOf(wave), std::string(6, 'x') + std::string(6, '\0'));

    auto* pOwned = new std::uint8_t[6];
    std::memset(pOwned, 'y', 6);
    wave.SetBuffer(pOwned, 1, false);
    EXPECT_EQ(bytesOf(wave), std::string(6, 'y'));
}

TEST(CvzWave, goesThroughAnArchiveAsTheSameBytes)
{
    std::string sStore;
    CArchive out(sStore);
    out.writeUInt16(77);
    sampleWave().Serialize(out);
    out.writeUInt16(78);
    EXPECT_EQ(sStore.substr(2, sStore.size() - 4), waveBytes(FORMAT, SAMPLES));

    const auto archived = std::as_bytes(std::span(sStore));
    CArchive in(archived);
    cvzWave loaded;
    EXPECT_EQ(in.readUInt16(), 77);
    loaded.Serialize(in);
    EXPECT_EQ(in.readUInt16(), 78);
    EXPECT_EQ(bytesOf(loaded), sampleBytes(FORMAT, SAMPLES));

    for (std::size_t uLength = 2; uLength < sStore.size() - 2; ++uLength) {
        CArchive cut(archived.subspan(2, uLength - 2));
        EXPECT_THROW(loaded.Serialize(cut), CArchiveError) << uLength;
    }
}

} // namespace
} // namespace velmora::test
