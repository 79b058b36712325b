#include "audio/channel_mix.h"
#include "audio/engine_buffer.h"
#include "audio/sound_file.h"
#include "engine_fixture.h"
#include "support/test_support.h"

#include <cmath>

namespace velmora {
namespace {

constexpr float IN_GAIN_DB = -6.0F;
constexpr float OUT_GAIN_DB = 3.0F;
constexpr float SIDECHAIN_GAIN_DB = -3.0F;
constexpr std::size_t FRAMES = 24;

float linear(float fDB)
{
    return static_cast<float>(std::pow(10.0, fDB / 20.0));
}

enum class EPath
{
    frames,
    interleaved,
    planes
};

// left = 2 in + sidechain left, right = 3 in + sidechain right, whichever way it is called.
class CSummingPlugIn : public CPlugIn
{
  public:
    explicit CSummingPlugIn(EPath ePath)
    {
        m_bWantBuffers = ePath == EPath::interleaved;
        m_bWantChannelBuffers = ePath == EPath::planes;
    }

    bool processAuxInputBus(auxInputData* pAux) override
    {
        m_aux = *pAux;
        return true;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override
    {
        const float* pAux = m_aux.bInputEnabled ? m_aux.pFramePtr : SILENCE;
        pOut[0] = 2.0F * pIn[0] + pAux[0];
        if (uOut == 2)
            pOut[1] = 3.0F * pIn[uIn - 1] + pAux[m_aux.uNumChannels == 2 ? 1 : 0];
        return true;
    }

    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT uOut, UINT uSize) override
    {
        for (UINT i = 0; i < uSize / uIn; ++i) {
            m_aux.pFramePtr = m_aux.pBufferPtr + i * m_aux.uNumChannels;
            processAudioFrame(pIn + i * uIn, pOut + i * uOut, uIn, uOut);
        }
        return true;
    }

    bool processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames) override
    {
        for (UINT i = 0; i < uFrames; ++i) {
            float aux[2] = {};
            for (UINT u = 0; u < m_aux.uNumChannels; ++u)
                aux[u] = m_aux.ppChannelBuffers[u][i];
            m_aux.pFramePtr = aux;
            float in[2] = {ppIn[0][i], ppIn[uChannels - 1][i]};
            float out[2];
            processAudioFrame(in, out, uChannels, 2);
            ppOut[0][i] = out[0];
            ppOut[1][i] = out[1];
        }
        return true;
    }

  private:
    static inline float SILENCE[2] = {};
    auxInputData m_aux{};
};

// Counts up in thousandths on both channels.
class CCountingOscillator : public CDSPFilter
{
  public:
    bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT) override
    {
        EXPECT_EQ(pIn, pOut) << "it writes in place";
        for (UINT i = 0; i < uSamples; ++i)
            pOut[i] = valueAt(i / uChannels);
        return true;
    }
    static float valueAt(std::size_t uFrame) { return static_cast<float>(uFrame) / 1000.0F; }
};

enum class EWay
{
    file,
    in,
    osc
};

struct CCase
{
    EWay m_eWay;
    ETransportState m_eState;
    unsigned m_uMode;
    int m_nChannels;
    EPath m_ePath;
    bool m_bFilter;
    bool m_bBypass;
    int m_nSidechain; // channels; 0: none
    bool m_bEnabled;
    bool m_bListen;
};

std::ostream& operator<<(std::ostream& stream, const CCase& c)
{
    return stream << "way " << static_cast<int>(c.m_eWay) << " state " << c.m_eState << " mode " << c.m_uMode
                  << " channels " << c.m_nChannels << " path " << static_cast<int>(c.m_ePath) << " filter "
                  << c.m_bFilter << " bypass " << c.m_bBypass << " sidechain " << c.m_nSidechain
                  << " enabled " << c.m_bEnabled << " listen " << c.m_bListen;
}

struct CFrame
{
    float m_fLeft;
    float m_fRight;
};

CFrame frameOf(const std::vector<float>& samples, std::size_t uFrame, int nChannels)
{
    const auto uChannels = static_cast<std::size_t>(nChannels);
    return {samples[uFrame * uChannels], samples[uFrame * uChannels + uChannels - 1]};
}

// What one frame becomes, step by step from the meaning of each switch; of a mono output left counts.
CFrame expectedFrame(const CCase& c, CFrame in, CFrame side, std::size_t uFrame)
{
    const bool bFile = c.m_eWay == EWay::file;
    if (!bFile && c.m_eState == TRANSPORT_OSC)
        in = {CCountingOscillator::valueAt(uFrame), CCountingOscillator::valueAt(uFrame)};
    if (!bFile && c.m_eState == TRANSPORT_USER_OSC)
        in = {0.0F, 0.0F};
    in = {linear(IN_GAIN_DB) * in.m_fLeft, linear(IN_GAIN_DB) * in.m_fRight};
    side = {linear(SIDECHAIN_GAIN_DB) * side.m_fLeft, linear(SIDECHAIN_GAIN_DB) * side.m_fRight};
    const bool bSidechain = bFile && c.m_nSidechain > 0;
    const bool bStereo = c.m_nChannels == 2;
    const bool bStereoMode = c.m_uMode == 2 || c.m_uMode == 5;
    const float fMono = 0.5F * in.m_fLeft + 0.5F * in.m_fRight;
    const CFrame dry = bStereo && !bStereoMode ? CFrame{fMono, fMono} : in;
    const bool bRuns = bFile ? c.m_eState == 2 : c.m_eState >= 5;

    CFrame wet = in;
    if (bSidechain && c.m_bListen) {
        const float fSideMono = 0.5F * side.m_fLeft + 0.5F * side.m_fRight;
        wet = c.m_nSidechain == 2 && !bStereo ? CFrame{fSideMono, fSideMono} : side;
    } else if (bRuns && c.m_bFilter && !c.m_bBypass) {
        const CFrame aux = bSidechain && c.m_bEnabled ? side : CFrame{0.0F, 0.0F};
        wet = {2.0F * dry.m_fLeft + aux.m_fLeft, 3.0F * dry.m_fRight + aux.m_fRight};
    }
    if (bStereo && c.m_uMode == 0)
        wet.m_fRight = wet.m_fLeft;
    if (bStereo && c.m_uMode == 3)
        wet.m_fRight = wet.m_fLeft;
    const float fGain = linear(OUT_GAIN_DB);
    const float fDry = c.m_uMode >= 3 ? 1.0F : 0.0F;
    return {fGain * wet.m_fLeft + fDry * dry.m_fLeft, fGain * wet.m_fRight + fDry * dry.m_fRight};
}

class EnginePathsTest : public test::CEngineTest
{
  protected:
    EnginePathsTest()
    {
        m_engine.m_fInputGain_dB = IN_GAIN_DB;
        m_engine.m_fOutputGain_dB = OUT_GAIN_DB;
        m_sidechain.m_fGain_dB = SIDECHAIN_GAIN_DB;
        m_engine.m_bOscillatorRuns = true;
        m_engine.setOscillator(&m_oscillator);
        for (const int nChannels : {1, 2}) {
            CSoundFile file;
            std::string sError;
            m_side[nChannels] = test::noise(FRAMES * static_cast<std::size_t>(nChannels), 11);
            EXPECT_TRUE(
                file.openForWriting(sidechainFile(nChannels), {0, nChannels, 44100, 0x010006}, sError))
                << sError;
            file.writeFloats(m_side[nChannels].data(), static_cast<long long>(m_side[nChannels].size()));
            EXPECT_TRUE(file.close());
        }
    }

    [[nodiscard]] std::filesystem::path sidechainFile(int nChannels) const
    {
        return m_folder / (std::to_string(nChannels) + ".wav");
    }

    // False at the first frame that is not as it should be.
    bool check(const CCase& c)
    {
        CSummingPlugIn plugIn(c.m_ePath);
        CUserDSPFilter filter;
        filter.attachPlugIn(&plugIn);
        m_engine.setFilter(c.m_bFilter ? &filter : nullptr);
        m_transport.setState(c.m_eState);
        m_engine.m_uChannelMode = c.m_uMode;
        m_engine.m_bBypass = c.m_bBypass;
        m_sidechain.close();
        m_sidechain.m_bEnabled = c.m_bEnabled;
        m_sidechain.m_bListen = c.m_bListen;
        if (c.m_nSidechain > 0) {
            m_sidechain.load(sidechainFile(c.m_nSidechain), m_dialogs);
            m_sidechain.openForStream(FRAMES);
            m_sidechain.readBlock(FRAMES);
        }
        const std::vector<float> in = test::noise(FRAMES * static_cast<std::size_t>(c.m_nChannels));
        std::vector<float> given = in;
        std::vector<float> out(in.size(), std::nanf(""));
        const int nSamples = static_cast<int>(in.size());
        const CSoundFileInfo info{0, c.m_nChannels, 44100, 0};
        const bool bDone =
            c.m_eWay == EWay::file
                ? m_engine.processPortAudioFile(given.data(), out.data(), nSamples, false, &info)
            : c.m_eWay == EWay::in ? m_engine.processPortAudioIn(given.data(), out.data(), nSamples)
                                   : m_engine.processPortAudioOSC(given.data(), out.data(), nSamples);
        EXPECT_TRUE(bDone);
        m_engine.setFilter(nullptr);
        for (std::size_t f = 0; f < FRAMES; ++f) {
            const CFrame side =
                c.m_nSidechain ? frameOf(m_side[c.m_nSidechain], f, c.m_nSidechain) : CFrame{};
            const CFrame expected = expectedFrame(c, frameOf(in, f, c.m_nChannels), side, f);
            const CFrame is = frameOf(out, f, c.m_nChannels);
            const bool bLeft = std::abs(is.m_fLeft - expected.m_fLeft) < 1e-5F;
            const bool bRight = c.m_nChannels == 1 || std::abs(is.m_fRight - expected.m_fRight) < 1e-5F;
            if (!bLeft || !bRight) {
                ADD_FAILURE() << c << ", frame " << f << ": " << is.m_fLeft << ", " << is.m_fRight << " for "
                              << expected.m_fLeft << ", " << expected.m_fRight;
                return false;
            }
        }
        return true;
    }

    test::CTemporaryFolder m_folder;
    test::CRecordingDialogs m_dialogs;
    CCountingOscillator m_oscillator;
    std::vector<float> m_side[3];
};

TEST_F(EnginePathsTest, EveryWayStateModeAndSwitchGivesWhatItsMeaningSays)
{
    constexpr std::pair<EWay, ETransportState> WAYS[] = {
        {EWay::file, TRANSPORT_PLAY}, {EWay::file, TRANSPORT_SOUND_IN}, {EWay::in, TRANSPORT_SOUND_IN},
        {EWay::in, TRANSPORT_STOP},   {EWay::osc, TRANSPORT_OSC},       {EWay::osc, TRANSPORT_USER_OSC},
        {EWay::in, TRANSPORT_OSC}};
    for (const auto& [eWay, eState] : WAYS)
        for (unsigned uMode = 0; uMode <= 5; ++uMode)
            for (const int nChannels : {1, 2})
                for (const auto ePath : {EPath::frames, EPath::interleaved, EPath::planes})
                    for (unsigned uSwitches = 0; uSwitches < 16; ++uSwitches)
                        for (const int nSidechain : {0, 1, 2}) {
                            // A live source is stereo and has no sidechain, though one may be open.
                            if (eWay != EWay::file && (nChannels == 1 || nSidechain == 1))
                                continue;
                            const CCase c{eWay,
                                          eState,
                                          uMode,
                                          nChannels,
                                          ePath,
                                          (uSwitches & 1U) != 0,
                                          (uSwitches & 2U) != 0,
                                          nSidechain,
                                          (uSwitches & 4U) != 0,
                                          (uSwitches & 8U) != 0};
                            ASSERT_TRUE(check(c));
                        }
}

TEST_F(EnginePathsTest, AMonoBufferOfAnOddLengthIsProcessedToItsEnd)
{
    CSummingPlugIn plugIn(EPath::frames);
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    m_engine.setFilter(&filter);
    const CSoundFileInfo mono{0, 1, 44100, 0};
    for (unsigned uMode = 0; uMode <= 5; ++uMode) {
        m_engine.m_uChannelMode = uMode;
        float in[] = {0.1F, 0.2F, 0.3F};
        float out[] = {99.0F, 99.0F, 99.0F};
        m_engine.processPortAudioFile(in, out, 3, true, &mono);
        const float fIn = linear(IN_GAIN_DB) * 0.3F;
        EXPECT_NEAR(out[2], linear(OUT_GAIN_DB) * 2.0F * fIn + (uMode >= 3 ? fIn : 0.0F), 1e-6F);
    }
}

TEST_F(EnginePathsTest, TheOscillatorStateIsSilentUntilTheOscillatorRuns)
{
    m_transport.setState(TRANSPORT_OSC);
    m_engine.m_bOscillatorRuns = false;
    float in[] = {0.5F, 0.5F, 0.5F, 0.5F};
    float out[] = {99.0F, 99.0F, 99.0F, 99.0F};
    EXPECT_TRUE(m_engine.processPortAudioOSC(in, out, 4));
    EXPECT_EQ(std::vector<float>(out, out + 4), std::vector<float>(4, 0.0F));
    EXPECT_FALSE(m_engine.gate().isInside());
    m_engine.m_bOscillatorRuns = true;
    EXPECT_TRUE(m_engine.processPortAudioOSC(in, out, 4));
    EXPECT_NEAR(out[2], linear(IN_GAIN_DB) * linear(OUT_GAIN_DB) * 0.001F, 1e-8F);
}

// The mono mix of a stereo buffer is half of each; a gain of 1 leaves every bit.
TEST(ChannelMix, ScalesTheInputAndMakesTheMonoMix)
{
    for (unsigned uMode = 0; uMode <= 5; ++uMode) {
        std::vector<float> in = {0.3F, 0.1F, -0.5F, 0.7F};
        std::vector<float> mono(2, 99.0F);
        mixInput({.m_in = in, .m_pMono = mono.data(), .m_uMode = uMode}, 2.0F);
        EXPECT_EQ(in, (std::vector<float>{0.6F, 0.2F, -1.0F, 1.4F}));
        if (uMode % 3 == 2)
            EXPECT_EQ(mono[0], 99.0F) << uMode;
        else
            EXPECT_FLOAT_EQ(mono[1], 0.2F) << uMode;
    }
}

} // namespace
} // namespace velmora
