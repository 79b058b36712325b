#include "audio/audio_engine.h"
#include "audio/offline_processing.h"
#include "audio/sound_file.h"
#include "base/user_dialogs.h"
#include "cli/bench/bench_parts.h"
#include "host/user_dsp_filter.h"
#include "plugin.h"

#include <array>
#include <stdexcept>

namespace velmora::cli {

namespace {

constexpr int SAMPLE_RATE = 44100;
constexpr int SECONDS = 20;
constexpr int BLOCK_ITEMS = 8192;
constexpr int WAV_PCM16 = 0x010002; // libsndfile's word for a WAV file of 16-bit samples
constexpr int ROUNDS = 5;

// A state-variable low-pass for each channel, callable on each path: as little work as a real plug-in has.
class CBenchPlugIn : public CPlugIn
{
  public:
    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT) override
    {
        for (UINT u = 0; u < uIn; ++u)
            pOut[u] = filter(u, pIn[u]);
        return true;
    }
    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT, UINT uSize) override
    {
        for (UINT u = 0; u + uIn <= uSize; u += uIn)
            processAudioFrame(pIn + u, pOut + u, uIn, uIn);
        return true;
    }
    bool processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames) override
    {
        for (UINT uChannel = 0; uChannel < uChannels; ++uChannel)
            for (UINT u = 0; u < uFrames; ++u)
                ppOut[uChannel][u] = filter(uChannel, ppIn[uChannel][u]);
        return true;
    }

  private:
    float filter(UINT uChannel, float fIn)
    {
        auto& [fLow, fBand] = m_state[uChannel & 1U];
        fLow += 0.1F * fBand;
        fBand += 0.1F * (fIn - fLow - 0.5F * fBand);
        return fLow;
    }

    std::array<std::array<float, 2>, 2> m_state{};
};

// Lets every file be overwritten and keeps quiet.
class CSilentDialogs : public IUserDialogs
{
  public:
    explicit CSilentDialogs(std::filesystem::path target) : m_target(std::move(target)) {}
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

struct CPath
{
    const char* m_pName;
    bool m_bBuffers;
    bool m_bPlanes;
    void (*m_pCall)(CPlugIn&, float* pIn, float* pOut, UINT uItems);
};

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
    static std::array<std::array<float, BLOCK_ITEMS / 2>, 4> planes;
    std::array<float*, 2> in = {planes[0].data(), planes[1].data()};
    std::array<float*, 2> out = {planes[2].data(), planes[3].data()};
    for (UINT u = 0; u < uItems; ++u)
        in[u % 2][u / 2] = pIn[u];
    plugIn.processChannelBuffers(in.data(), out.data(), 2, uItems / 2);
    for (UINT u = 0; u < uItems; ++u)
        pOut[u] = out[u % 2][u / 2];
}

constexpr std::array<CPath, 3> PATHS = {{
    {"frames", false, false, callFrames},
    {"interleaved", true, false, callInterleaved},
    {"planes", false, true, callPlanes},
}};

void writeNoise(const std::filesystem::path& path)
{
    CSoundFile file;
    std::string sError;
    if (!file.openForWriting(path, {0, 2, SAMPLE_RATE, WAV_PCM16}, sError))
        throw std::runtime_error(sError);
    std::vector<float> noise(2ULL * SAMPLE_RATE);
    unsigned uState = 1;
    for (int nSecond = 0; nSecond < SECONDS; ++nSecond) {
        for (float& fSample : noise) {
            uState = uState * 1664525U + 1013904223U;
            fSample = static_cast<float>(uState >> 8U) / 67108864.0F - 0.125F;
        }
        file.writeFloats(noise.data(), static_cast<long long>(noise.size()));
    }
    if (!file.close())
        throw std::runtime_error("The disk is too full for the benchmark's audio files.");
}

void processBare(const CPath& path, const std::filesystem::path& inFile, const std::filesystem::path& outFile)
{
    CSoundFile in;
    CSoundFile out;
    std::string sError;
    if (!in.openForReading(inFile, sError) || !out.openForWriting(outFile, in.info(), sError))
        throw std::runtime_error(sError);
    CBenchPlugIn plugIn;
    plugIn.prepareForPlay();
    std::vector<float> input(BLOCK_ITEMS);
    std::vector<float> output(BLOCK_ITEMS);
    while (const long long nItems = in.readFloats(input.data(), BLOCK_ITEMS)) {
        path.m_pCall(plugIn, input.data(), output.data(), static_cast<UINT>(nItems));
        out.writeFloats(output.data(), nItems);
    }
    out.close();
}

void processHosted(const CPath& path, const std::filesystem::path& inFile,
                   const std::filesystem::path& outFile)
{
    CTransport transport;
    transport.setState(TRANSPORT_STOP);
    CSidechain sidechain;
    CAudioEngine engine(transport, sidechain);
    CSilentDialogs dialogs(outFile);
    CBenchPlugIn plugIn;
    plugIn.m_bWantBuffers = path.m_bBuffers;
    plugIn.m_bWantChannelBuffers = path.m_bPlanes;
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    engine.setFilter(&filter);
    COfflineProcessing processing(engine, transport, sidechain, dialogs);
    if (!processing.processIntoWaveFile(inFile))
        throw std::runtime_error(processing.reason());
}

} // namespace

std::vector<CBenchFigure> benchOffline(const std::filesystem::path& folder)
{
    const auto inFile = folder / "in.wav";
    const auto outFile = folder / "out.wav";
    writeNoise(inFile);
    std::vector<CBenchFigure> figures;
    for (const CPath& path : PATHS) {
        processHosted(path, inFile, outFile);
        processBare(path, inFile, outFile);
        // Both take turns, so that a machine whose speed drifts favours neither.
        std::vector<double> seconds;
        std::vector<double> ratios;
        for (int nRound = 0; nRound < ROUNDS; ++nRound) {
            double dHosted = 0.0;
            seconds.push_back(secondsOf(
                [&] { dHosted = processorSecondsOf([&] { processHosted(path, inFile, outFile); }); }));
            ratios.push_back(dHosted / processorSecondsOf([&] { processBare(path, inFile, outFile); }));
        }
        const std::string sName = std::string("offline, ") + path.m_pName;
        figures.push_back({sName + ": speed", SECONDS / medianOf(seconds), "x real time"});
        figures.push_back(
            {sName + ": added by the host", 100.0 * (medianOf(ratios) - 1.0), "% processor time"});
    }
    return figures;
}

} // namespace velmora::cli
