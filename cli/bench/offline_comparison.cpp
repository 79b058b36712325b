#include "cli/bench/offline_comparison.h"

#include "audio/offline_processing.h"
#include "audio/sound_file.h"
#include "base/safe_file.h"
#include "cli/bench/bench_figure.h"
#include "cli/bench/silent_dialogs.h"

#include <stdexcept>
#include <vector>

namespace velmora::cli {

namespace {

constexpr int WAV_PCM16 = 0x010002; // libsndfile's word for a WAV file of 16-bit samples
constexpr unsigned FILTER_BUFFER_SIZE = 8192;

float filter(std::array<float, 2>& state, float fIn)
{
    auto& [fLow, fBand] = state;
    fLow += 0.1F * fBand;
    fBand += 0.1F * (fIn - fLow - 0.5F * fBand);
    return fLow;
}

void callFrames(CPlugIn& plugIn, float* pIn, float* pOut, UINT uItems)
{
    for (UINT u = 0; u < uItems; u += 2)
        plugIn.processAudioFrame(pIn + u, pOut + u, 2, 2);
}

void callInterleaved(CPlugIn& plugIn, float* pIn, float* pOut, UINT uItems)
{
    plugIn.processSocketAudioBuffer(pIn, pOut, 2, 2, uItems);
}

// Every caller of a plug-in that takes planes must take the samples apart and put them together again.
void callPlanes(CPlugIn& plugIn, float* pIn, float* pOut, UINT uItems)
{
    static std::array<std::array<float, BENCH_BLOCK_ITEMS / 2>, 4> planes;
    std::array<float*, 2> in = {planes[0].data(), planes[1].data()};
    std::array<float*, 2> out = {planes[2].data(), planes[3].data()};
    for (UINT u = 0; u < uItems / 2; ++u) {
        in[0][u] = pIn[2 * u];
        in[1][u] = pIn[2 * u + 1];
    }
    plugIn.processChannelBuffers(in.data(), out.data(), 2, uItems / 2);
    for (UINT u = 0; u < uItems / 2; ++u) {
        pOut[2 * u] = out[0][u];
        pOut[2 * u + 1] = out[1][u];
    }
}

constexpr std::array<CBenchPath, 3> PATHS = {{
    {"frames", false, false, callFrames},
    {"interleaved", true, false, callInterleaved},
    {"planes", false, true, callPlanes},
}};

void writeNoise(const std::filesystem::path& path, double dSeconds)
{
    CSoundFile file;
    std::string sError;
    if (!file.openForWriting(path, {0, 2, BENCH_SAMPLE_RATE, WAV_PCM16}, sError))
        throw std::runtime_error(sError);
    std::vector<float> block(BENCH_BLOCK_ITEMS);
    unsigned uState = 1;
    for (double dLeft = dSeconds * BENCH_SAMPLE_RATE * 2.0; dLeft > 0.0; dLeft -= BENCH_BLOCK_ITEMS) {
        for (float& fSample : block) {
            uState = uState * 1664525U + 1013904223U;
            fSample = 0.25F * (static_cast<float>(uState >> 8U) / 8388608.0F - 1.0F);
        }
        file.writeFloats(block.data(), BENCH_BLOCK_ITEMS);
    }
    if (!file.close())
        throw std::runtime_error("The disk is too full for the benchmark's audio files.");
}

} // namespace

bool CBenchPlugIn::prepareForPlay()
{
    m_state = {};
    return true;
}

bool CBenchPlugIn::processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT)
{
    for (UINT u = 0; u < uIn; ++u)
        pOut[u] = filter(m_state[u], pIn[u]);
    return true;
}

bool CBenchPlugIn::processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT, UINT uSize)
{
    for (UINT u = 0; u + uIn <= uSize; u += uIn)
        for (UINT uChannel = 0; uChannel < uIn; ++uChannel)
            pOut[u + uChannel] = filter(m_state[uChannel], pIn[u + uChannel]);
    return true;
}

bool CBenchPlugIn::processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames)
{
    for (UINT uChannel = 0; uChannel < uChannels; ++uChannel)
        for (UINT u = 0; u < uFrames; ++u)
            ppOut[uChannel][u] = filter(m_state[uChannel], ppIn[uChannel][u]);
    return true;
}

std::span<const CBenchPath> benchPaths()
{
    return PATHS;
}

CBenchHost::CBenchHost(const CBenchPath& path)
{
    m_plugIn.m_bWantBuffers = path.m_bBuffers;
    m_plugIn.m_bWantChannelBuffers = path.m_bPlanes;
    m_filter.attachPlugIn(&m_plugIn);
    m_filter.setBufferSize(FILTER_BUFFER_SIZE);
    m_engine.setFilter(&m_filter);
    m_transport.setState(TRANSPORT_STOP);
}

CComparison compareInTurns(int nRounds, const std::function<void()>& host, const std::function<void()>& bare,
                           const std::function<void()>& nextRound)
{
    host();
    bare();
    std::vector<double> walls, hosts, bares, ratios;
    for (int nRound = 0; nRound < nRounds; ++nRound) {
        nextRound();
        walls.push_back(secondsOf([&] { hosts.push_back(processorSecondsOf(host)); }));
        bares.push_back(processorSecondsOf(bare));
        ratios.push_back(hosts.back() / bares.back());
    }
    nextRound();
    return {medianOf(walls), medianOf(hosts), medianOf(bares), medianOf(ratios)};
}

COfflineComparison::COfflineComparison(std::filesystem::path folder, double dSeconds)
    : m_inFile(folder / "in.wav"), m_outFile(folder / "out.wav")
{
    writeNoise(m_inFile, dSeconds);
}

// The same reading and the same writing, flushed and renamed at the end, so that what differs is the host.
void COfflineComparison::processBare(const CBenchPath& path, CPlugIn& plugIn) const
{
    CSafeFile unfinished(m_outFile);
    CSoundFile in;
    CSoundFile out;
    std::string sError;
    if (!in.openForReading(m_inFile, sError) || !out.openForWriting(unfinished.path(), in.info(), sError))
        throw std::runtime_error(sError);
    std::vector<float> input(BENCH_BLOCK_ITEMS);
    std::vector<float> output(BENCH_BLOCK_ITEMS);
    plugIn.prepareForPlay();
    for (long long nItems; (nItems = in.readFloats(input.data(), BENCH_BLOCK_ITEMS)) > 0;) {
        path.m_pCall(plugIn, input.data(), output.data(), static_cast<UINT>(nItems));
        out.writeFloats(output.data(), nItems);
    }
    if (!out.close() || !unfinished.commit())
        throw std::runtime_error("The disk is too full for the benchmark's audio files.");
}

CComparison COfflineComparison::compare(const CBenchPath& path, int nRounds,
                                        const std::function<void()>& nextRound) const
{
    CBenchHost host(path);
    CBenchPlugIn bare;
    CSilentDialogs dialogs(m_outFile);
    COfflineProcessing processing(host.m_engine, host.m_transport, host.m_sidechain, dialogs);
    const auto processHosted = [&] {
        if (!processing.processIntoWaveFile(m_inFile))
            throw std::runtime_error(processing.reason());
    };
    return compareInTurns(
        nRounds, processHosted, [&] { processBare(path, bare); }, nextRound);
}

} // namespace velmora::cli
