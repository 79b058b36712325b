#include "transport_bench.h"

namespace velmora {
namespace {

// What a callback hears of a file: independent of the class, by counting frames.
struct CModel
{
    int m_nLength;
    bool m_bLoop;
    int m_nPosition = 0;

    // Frames of the file that this read hears; then how it ends.
    std::vector<int> read(int nFrames, bool& bWrapped, bool& bEnd)
    {
        std::vector<int> heard;
        while (m_nPosition < m_nLength && static_cast<int>(heard.size()) < nFrames)
            heard.push_back(m_nPosition++);
        const int nMissing = nFrames - static_cast<int>(heard.size());
        bWrapped = m_bLoop && nMissing > 0;
        bEnd = heard.empty() && (!m_bLoop || m_nLength == 0);
        if (bWrapped)
            m_nPosition = std::min(nMissing, m_nLength); // read ahead, and not heard
        return heard;
    }
};

TEST(WaveStreamTest, ReadsAsTheModelForAllLengthsAndBuffers)
{
    const test::CTemporaryFolder folder;
    const auto path = folder / "file.wav";
    std::string sError;
    for (const int nChannels : {1, 2})
        for (const int nLength : {0, 1, 7, 40, 63, 64, 65, 128, 200})
            for (const int nFrames : {1, 7, 64, 100, 256})
                for (const bool bLoop : {false, true}) {
                    SCOPED_TRACE(testing::Message() << nLength << " frames of " << nChannels << " in "
                                                    << nFrames << (bLoop ? " looping" : ""));
                    test::writeCountingWave(path, nLength, nChannels);
                    CWaveStream wave;
                    ASSERT_TRUE(wave.open(path, sError)) << sError;
                    if (bLoop)
                        wave.requestLoop();
                    wave.takeLoopRequest();
                    wave.prepare(nFrames);
                    CModel model{nLength, bLoop};
                    std::uint64_t uFrames = 0;
                    bool bEnd = false;
                    for (int nRead = 0; nRead < 600 / nFrames + 5 && !bEnd; ++nRead) {
                        bool bWrapped = false;
                        const std::vector<int> expected = model.read(nFrames, bWrapped, bEnd);
                        const CWaveStream::CRead read = wave.read(nFrames);
                        ASSERT_EQ(read.m_nItems, static_cast<int>(expected.size()) * nChannels);
                        ASSERT_EQ(read.m_bWrapped, bWrapped);
                        ASSERT_EQ(read.m_bEnd, bEnd);
                        for (int i = 0; i < read.m_nItems; ++i) {
                            const int nItem =
                                expected[static_cast<std::size_t>(i / nChannels)] * nChannels + i % nChannels;
                            ASSERT_EQ(read.m_pSamples[i], static_cast<float>(nItem + 1) / 1024.0F);
                        }
                        uFrames += expected.size();
                    }
                    EXPECT_EQ(bEnd, !bLoop || nLength == 0);
                    EXPECT_EQ(wave.framesPlayed(), uFrames);
                }
}

TEST(WaveStreamTest, AFileThatIsCutOffWhileItPlaysEnds)
{
    const test::CTemporaryFolder folder;
    for (const bool bLoop : {false, true}) {
        test::writeCountingWave(folder / "file.wav", 50000, 2);
        CWaveStream wave;
        std::string sError;
        ASSERT_TRUE(wave.open(folder / "file.wav", sError));
        if (bLoop)
            wave.requestLoop();
        wave.takeLoopRequest();
        wave.prepare(64);
        EXPECT_EQ(wave.read(64).m_nItems, 128);
        std::filesystem::resize_file(folder / "file.wav", bLoop ? 0 : 20000);
        int nReads = 0;
        while (!wave.read(64).m_bEnd && nReads < 2000)
            ++nReads;
        EXPECT_LT(nReads, 400);
        wave.close();
        wave.close();
        EXPECT_FALSE(wave.isOpen());
        EXPECT_FALSE(wave.hasFile());
    }
}

TEST(WaveStreamTest, OnlyWhatWasReadAheadOfTheWrapIsHeard)
{
    test::CTransportBench bench;
    test::writeCountingWave(bench.m_folder / "file.wav", 100, 2);
    bench.m_wave.requestLoop();
    bench.m_transport.onPlay();
    ASSERT_EQ(bench.m_system.run(3), 3U);
    const std::vector<float>& out = bench.m_system.m_output;
    for (std::size_t i = 0; i < out.size(); ++i) {
        // Frames 0 to 63; 64 to 99, and silence for the 28 that wrapped; 28 to 91.
        const std::size_t uItem = i < 256 ? i : 56 + i - 256;
        const bool bSilent = i >= 200 && i < 256;
        ASSERT_EQ(out[i], bSilent ? 0.0F : 2.0F * static_cast<float>(uItem + 1) / 1024.0F) << i;
    }
}

} // namespace
} // namespace velmora
