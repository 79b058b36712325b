// What the host adds to offline processing, beside a bare loop that reads the same file, calls the same
// plug-in and writes the same file; and what one call of the engine costs beside the bare call.
//
// Both sides take turns, and each figure is the median over the turns, so that a machine whose speed
// drifts does not favour either.
//
//     offline_overhead_benchmark [--minutes M] [--rounds N]

#include "audio/audio_engine.h"
#include "audio/offline_processing.h"
#include "audio/sound_file.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "host/user_dsp_filter.h"
#include "plugin.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <unistd.h>
#include <vector>

namespace velmora {
namespace {

constexpr int SAMPLE_RATE = 44100;
constexpr int BLOCK_ITEMS = 8192;
constexpr int WAV_PCM16 = 0x010002;

// A resonant low-pass for each of two channels, callable on each of the three paths: about as much work
// as the smallest plug-in that anybody would write.
class CFilterPlugIn : public CPlugIn
{
  public:
    bool prepareForPlay() override
    {
        std::fill_n(&m_fState[0][0], 4, 0.0F);
        return true;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT) override
    {
        for (UINT i = 0; i < uIn; ++i)
            pOut[i] = filter(m_fState[i], pIn[i]);
        return true;
    }

    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT, UINT uSize) override
    {
        for (UINT i = 0; i < uSize; i += uIn)
            for (UINT uChannel = 0; uChannel < uIn; ++uChannel)
                pOut[i + uChannel] = filter(m_fState[uChannel], pIn[i + uChannel]);
        return true;
    }

    bool processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames) override
    {
        for (UINT uChannel = 0; uChannel < uChannels; ++uChannel)
            for (UINT i = 0; i < uFrames; ++i)
                ppOut[uChannel][i] = filter(m_fState[uChannel], ppIn[uChannel][i]);
        return true;
    }

  private:
    // Chamberlin's state-variable filter.
    static float filter(float* pState, float fIn)
    {
        pState[0] += 0.1F * pState[1];
        pState[1] += 0.1F * (fIn - pState[0] - 0.5F * pState[1]);
        return pState[0];
    }

    float m_fState[2][2] = {};
};

class CAnsweringDialogs : public IUserDialogs
{
  public:
    explicit CAnsweringDialogs(std::filesystem::path target) : m_target(std::move(target)) {}
    void showMessage(std::string_view) override {}
    bool askYesNo(std::string_view) override { return true; }
    std::optional<std::filesystem::path> chooseSaveFile(std::string_view,
                                                        const std::filesystem::path&) override
    {
        return m_target;
    }
    void note(std::string_view) override {}

  private:
    std::filesystem::path m_target;
};

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double timed(const std::function<void()>& work)
{
    const double dStart = processorSeconds();
    work();
    return processorSeconds() - dStart;
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

struct CComparison
{
    double m_dHost;  // seconds
    double m_dBare;  // seconds
    double m_dRatio; // median of the ratios of neighbouring turns
};

CComparison compare(int nRounds, const std::function<void()>& host, const std::function<void()>& bare)
{
    host();
    bare();
    std::vector<double> hosts;
    std::vector<double> bares;
    std::vector<double> ratios;
    for (int i = 0; i < nRounds; ++i) {
        hosts.push_back(timed(host));
        bares.push_back(timed(bare));
        ratios.push_back(hosts.back() / bares.back());
    }
    return {median(hosts), median(bares), median(ratios)};
}

void writeNoise(const std::filesystem::path& path, double dMinutes)
{
    CSoundFile file;
    std::string sError;
    if (!file.openForWriting(path, {0, 2, SAMPLE_RATE, WAV_PCM16}, sError))
        throw std::runtime_error(sError);
    std::vector<float> block(BLOCK_ITEMS);
    unsigned uState = 1;
    for (double dLeft = dMinutes * 60.0 * SAMPLE_RATE * 2.0; dLeft > 0.0; dLeft -= BLOCK_ITEMS) {
        for (float& fSample : block) {
            uState = uState * 1664525U + 1013904223U;
            fSample = 0.25F * (static_cast<float>(uState >> 8) / 8388608.0F - 1.0F);
        }
        file.writeFloats(block.data(), BLOCK_ITEMS);
    }
    file.close();
}

// How the bare loop calls a plug-in, and how the host is told to.
struct CPath
{
    const char* m_pName;
    bool m_bBuffers;
    bool m_bPlanes;
    std::function<void(CPlugIn&, float*, float*, UINT)> m_call; // items
};

void callFrames(CPlugIn& plugIn, float* pIn, float* pOut, UINT uItems)
{
    for (UINT i = 0; i < uItems; i += 2)
        plugIn.processAudioFrame(pIn + i, pOut + i, 2, 2);
}

void callInterleaved(CPlugIn& plugIn, float* pIn, float* pOut, UINT uItems)
{
    plugIn.processSocketAudioBuffer(pIn, pOut, 2, 2, uItems);
}

// Any caller of a plug-in that takes planes must take the samples apart and put them together again.
void callPlanes(CPlugIn& plugIn, float* pIn, float* pOut, UINT uItems)
{
    static float planes[4][BLOCK_ITEMS / 2];
    float* in[2] = {planes[0], planes[1]};
    float* out[2] = {planes[2], planes[3]};
    for (UINT i = 0; i < uItems / 2; ++i) {
        in[0][i] = pIn[2 * i];
        in[1][i] = pIn[2 * i + 1];
    }
    plugIn.processChannelBuffers(in, out, 2, uItems / 2);
    for (UINT i = 0; i < uItems / 2; ++i) {
        pOut[2 * i] = out[0][i];
        pOut[2 * i + 1] = out[1][i];
    }
}

const CPath PATHS[] = {
    {"frames", false, false, callFrames},
    {"interleaved", true, false, callInterleaved},
    {"planes", false, true, callPlanes},
};

void processBare(const CPath& path, CPlugIn& plugIn, const std::filesystem::path& inFile,
                 const std::filesystem::path& outFile)
{
    CSoundFile in;
    CSoundFile out;
    std::string sError;
    if (!in.openForReading(inFile, sError) || !out.openForWriting(outFile, in.info(), sError))
        throw std::runtime_error(sError);
    std::vector<float> inBlock(BLOCK_ITEMS);
    std::vector<float> outBlock(BLOCK_ITEMS);
    plugIn.prepareForPlay();
    for (long long nRead; (nRead = in.readFloats(inBlock.data(), BLOCK_ITEMS)) > 0;) {
        path.m_call(plugIn, inBlock.data(), outBlock.data(), static_cast<UINT>(nRead));
        out.writeFloats(outBlock.data(), nRead);
    }
    out.close();
}

// The engine with one plug-in, as the document sets it up.
struct CHost
{
    explicit CHost(const CPath& path)
    {
        m_plugIn.m_bWantBuffers = path.m_bBuffers;
        m_plugIn.m_bWantChannelBuffers = path.m_bPlanes;
        m_filter.attachPlugIn(&m_plugIn);
        m_filter.setBufferSize(8192);
        m_engine.setFilter(&m_filter);
        m_transport.setState(TRANSPORT_STOP);
    }

    CTransport m_transport;
    CSidechain m_sidechain;
    CAudioEngine m_engine{m_transport, m_sidechain};
    CFilterPlugIn m_plugIn;
    CUserDSPFilter m_filter;
};

void compareFiles(const std::filesystem::path& folder, double dMinutes, int nRounds)
{
    const auto inFile = folder / "in.wav";
    const auto outFile = folder / "out.wav";
    writeNoise(inFile, dMinutes);
    std::printf("%g minutes of stereo at %d Hz, 16-bit, processor time, median of %d turns\n", dMinutes,
                SAMPLE_RATE, nRounds);
    std::printf("%-12s %10s %10s %10s\n", "path", "host s", "bare s", "overhead");
    for (const CPath& path : PATHS) {
        CHost host(path);
        CFilterPlugIn bare;
        CAnsweringDialogs dialogs(outFile);
        COfflineProcessing offline(host.m_engine, host.m_transport, host.m_sidechain, dialogs);
        const auto result = compare(
            nRounds, [&] { offline.processIntoWaveFile(inFile); },
            [&] { processBare(path, bare, inFile, outFile); });
        std::printf("%-12s %10.3f %10.3f %9.1f%%\n", path.m_pName, result.m_dHost, result.m_dBare,
                    100.0 * (result.m_dRatio - 1.0));
    }
}

void compareCalls(int nRounds)
{
    constexpr int TOTAL_FRAMES = 4000000;
    const CSoundFileInfo info{0, 2, SAMPLE_RATE, WAV_PCM16};
    std::printf("\nOne call of the engine, ns, median of %d turns\n", nRounds);
    std::printf("%-12s %8s %10s %10s %12s\n", "path", "frames", "engine", "bare", "added/frame");
    for (const CPath& path : PATHS) {
        for (const int nFrames : {1, 64, 4096, 8192}) {
            CHost host(path);
            host.m_transport.setState(TRANSPORT_PLAY);
            CFilterPlugIn bare;
            std::vector<float> in(static_cast<std::size_t>(2 * nFrames), 0.25F);
            std::vector<float> out(in.size());
            const int nCalls = TOTAL_FRAMES / nFrames;
            const auto result = compare(
                nRounds,
                [&] {
                    for (int i = 0; i < nCalls; ++i)
                        host.m_engine.processPortAudioFile(in.data(), out.data(), 2 * nFrames, true, &info);
                },
                [&] {
                    for (int i = 0; i < nCalls; ++i)
                        for (int nDone = 0; nDone < 2 * nFrames; nDone += BLOCK_ITEMS)
                            path.m_call(bare, in.data() + nDone, out.data() + nDone,
                                        static_cast<UINT>(std::min(2 * nFrames - nDone, BLOCK_ITEMS)));
                });
            const double dScale = 1e9 / nCalls;
            std::printf("%-12s %8d %10.1f %10.1f %12.3f\n", path.m_pName, nFrames, dScale * result.m_dHost,
                        dScale * result.m_dBare, dScale * (result.m_dHost - result.m_dBare) / nFrames);
        }
    }
}

} // namespace
} // namespace velmora

int main(int nArguments, char** pArguments)
{
    double dMinutes = 10.0;
    int nRounds = 7;
    for (int i = 1; i + 1 < nArguments; i += 2) {
        const auto value = velmora::parseNumber(pArguments[i + 1]);
        if (!value || *value <= 0.0)
            return std::fprintf(stderr, "%s needs a number above 0\n", pArguments[i]), 2;
        if (std::string_view(pArguments[i]) == "--minutes")
            dMinutes = *value;
        else
            nRounds = static_cast<int>(*value);
    }
    const auto folder =
        std::filesystem::temp_directory_path() / ("velmora-benchmark-" + std::to_string(::getpid()));
    std::filesystem::create_directory(folder);
    velmora::compareFiles(folder, dMinutes, nRounds);
    velmora::compareCalls(nRounds);
    std::filesystem::remove_all(folder);
    return 0;
}
