#include "audio/audio_engine.h"

#include "dsp/numeric.h"
#include "host/dsp_filter.h"
#include "host/user_dsp_filter.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr float METER_ATTACK_MS = 0.0F;
constexpr float METER_RELEASE_MS = 100.0F;

void scale(std::span<float> samples, float fGain)
{
    if (fGain == 1.0F)
        return;
    for (float& fSample : samples)
        fSample *= fGain;
}

} // namespace

CAudioEngine::CAudioEngine(CTransport& transport, CSidechain& sidechain)
    : m_transport(transport), m_sidechain(sidechain), m_mono(MAX_SAMPLES / 2)
{
    m_waveInfo.m_nChannels = 2;
    m_waveInfo.m_nSampleRate = 44100;
    prepare(m_waveInfo.m_nSampleRate);
}

void CAudioEngine::prepare(double dSampleRate)
{
    for (CLevelDetector& detector : m_detectors)
        detector.init(static_cast<float>(dSampleRate), METER_ATTACK_MS, METER_RELEASE_MS, true,
                      DETECT_MODE_PEAK, true);
    for (auto& meter : m_meters)
        meter.store(0.0F, std::memory_order_relaxed);
}

bool CAudioEngine::processPortAudioFile(float* pIn, float* pOut, int nSamples, bool bOffline,
                                        const CSoundFileInfo* pInfo)
{
    if (!pOut) {
        m_bDriverError.store(true, std::memory_order_relaxed);
        return false;
    }
    m_runGate.wait();
    m_runGate.set();
    m_bufferDone.reset();

    const int nChannels = (pInfo ? *pInfo : m_waveInfo).m_nChannels;
    const int nProcessed = std::clamp(nSamples, 0, MAX_SAMPLES);
    const CBuffer buffer = describeBuffer(pIn, pOut, nProcessed, nChannels);
    applyInput(buffer);
    applySidechain(buffer);
    runFilter(buffer);
    applyOutput(buffer);
    std::fill(pOut + nProcessed, pOut + std::max(nSamples, nProcessed), 0.0F);

    if (!bOffline)
        m_bufferDone.set();
    return true;
}

float CAudioEngine::CGain::linear(float fGain_dB)
{
    if (fGain_dB != m_fGain_dB) {
        m_fGain_dB = fGain_dB;
        m_fLinear = dB2Lin(fGain_dB);
    }
    return m_fLinear;
}

CAudioEngine::CBuffer CAudioEngine::describeBuffer(float* pIn, float* pOut, int nSamples, int nChannels)
{
    float* pSidechain = m_sidechain.buffer();
    return {
        .m_in = {pIn, static_cast<std::size_t>(nSamples)},
        .m_pOut = pOut,
        .m_nChannels = nChannels,
        .m_uMode = m_uChannelMode.load(std::memory_order_relaxed),
        .m_fInputGain = m_inputGain.linear(m_fInputGain_dB.load(std::memory_order_relaxed)),
        .m_fOutputGain = m_outputGain.linear(m_fOutputGain_dB.load(std::memory_order_relaxed)),
        .m_pSidechain = pSidechain,
        .m_nSidechainChannels = m_sidechain.channels(),
        .m_bSidechainEnabled = pSidechain && m_sidechain.m_bEnabled.load(std::memory_order_relaxed),
        .m_bListen = pSidechain && m_sidechain.m_bListen.load(std::memory_order_relaxed),
    };
}

void CAudioEngine::applyInput(const CBuffer& buffer)
{
    scale(buffer.m_in, buffer.m_fInputGain);
    const std::size_t uFrames = buffer.m_in.size() / 2;
    if (!buffer.usesMonoMix()) {
        detect(METER_INPUT_LEFT, buffer.m_in.data(), uFrames);
        return;
    }
    const float* pIn = buffer.m_in.data();
    for (std::size_t i = 0; i < uFrames; ++i)
        m_mono[i] = 0.5F * pIn[2 * i] + 0.5F * pIn[2 * i + 1];
    for (const EMeter eMeter : {METER_INPUT_LEFT, METER_INPUT_RIGHT}) {
        const float fLevel = m_detectors[eMeter].detectBlock(m_mono.data(), 1, static_cast<int>(uFrames));
        m_meters[eMeter].store(fLevel, std::memory_order_relaxed);
    }
}

void CAudioEngine::applySidechain(const CBuffer& buffer)
{
    if (!buffer.m_pSidechain || buffer.m_nChannels < 1)
        return;
    const std::size_t uFrames = buffer.m_in.size() / static_cast<std::size_t>(buffer.m_nChannels);
    const std::size_t uItems = uFrames * static_cast<std::size_t>(buffer.m_nSidechainChannels);
    scale({buffer.m_pSidechain, uItems},
          m_sidechainGain.linear(m_sidechain.m_fGain_dB.load(std::memory_order_relaxed)));
    detect(METER_SIDECHAIN_LEFT, buffer.m_pSidechain, uItems / 2);
}

void CAudioEngine::detect(EMeter eLeft, const float* pInterleaved, std::size_t uFrames)
{
    const auto uRight = static_cast<std::size_t>(eLeft) + 1;
    float fLeft = 0.0F;
    float fRight = 0.0F;
    CLevelDetector::detectStereoBlock(m_detectors[eLeft], m_detectors[uRight], pInterleaved,
                                      static_cast<int>(uFrames), fLeft, fRight);
    m_meters[eLeft].store(fLeft, std::memory_order_relaxed);
    m_meters[uRight].store(fRight, std::memory_order_relaxed);
}

void CAudioEngine::runFilter(const CBuffer& buffer)
{
    if (m_transport.state() != TRANSPORT_PLAY || !m_pFilter) {
        copyThrough(buffer);
        return;
    }
    if (buffer.m_bListen || m_bBypass.load(std::memory_order_relaxed)) {
        copyThrough(buffer);
        return;
    }
    const auto uSamples = static_cast<UINT>(buffer.m_in.size());
    const auto uChannels = static_cast<UINT>(buffer.m_nChannels);
    if (!m_pFilter->m_pPlugIn) {
        m_pFilter->processInterleaved(buffer.m_in.data(), buffer.m_pOut, uChannels, uSamples, 0);
        return;
    }
    // A mono file has no stereo to offer: modes 1 and 2 become 0, modes 4 and 5 become 3.
    const UINT uMode = buffer.m_nChannels == 1 ? buffer.m_uMode / 3 * 3 : buffer.m_uMode;
    float* pIn = buffer.usesMonoMix() ? m_mono.data() : buffer.m_in.data();
    const UINT uCount = buffer.usesMonoMix() ? uSamples / 2 : uSamples;
    static_cast<CUserDSPFilter*>(m_pFilter)->processUserBuffer(
        pIn, buffer.m_pOut, uMode, uChannels, uCount, uSamples, buffer.m_pSidechain,
        static_cast<UINT>(buffer.m_nSidechainChannels), buffer.m_bSidechainEnabled);
}

void CAudioEngine::copyThrough(const CBuffer& buffer)
{
    if (!buffer.m_bListen) {
        std::ranges::copy(buffer.m_in, buffer.m_pOut);
        return;
    }
    // The sidechain takes the input's place, spread or mixed to as many channels.
    const float* pSidechain = buffer.m_pSidechain;
    if (buffer.m_nSidechainChannels == buffer.m_nChannels) {
        std::copy_n(pSidechain, buffer.m_in.size(), buffer.m_pOut);
        return;
    }
    const std::size_t uFrames = buffer.m_in.size() / static_cast<std::size_t>(buffer.m_nChannels);
    for (std::size_t i = 0; i < uFrames; ++i) {
        if (buffer.m_nChannels == 2)
            buffer.m_pOut[2 * i] = buffer.m_pOut[2 * i + 1] = pSidechain[i];
        else
            buffer.m_pOut[i] = 0.5F * pSidechain[2 * i] + 0.5F * pSidechain[2 * i + 1];
    }
}

void CAudioEngine::applyOutput(const CBuffer& buffer)
{
    const float fGain = buffer.m_fOutputGain;
    const float* pDry = buffer.m_in.data();
    float* pOut = buffer.m_pOut;
    const std::size_t uSamples = buffer.m_in.size();
    const std::size_t uFrames = uSamples / 2;

    if (buffer.m_uMode < CHANNEL_MODE_AUX_MONO_MONO) {
        if (buffer.m_uMode == CHANNEL_MODE_MONO_MONO && buffer.m_nChannels == 2)
            for (std::size_t i = 0; i < uFrames; ++i)
                pOut[2 * i + 1] = pOut[2 * i];
        scale({pOut, uSamples}, fGain);
    } else if (!buffer.usesMonoMix()) {
        for (std::size_t i = 0; i < uSamples; ++i)
            pOut[i] = fGain * pOut[i] + pDry[i];
    } else {
        const bool bOneChannel = buffer.m_uMode == CHANNEL_MODE_AUX_MONO_MONO;
        for (std::size_t i = 0; i < uFrames; ++i) {
            const float fRight = bOneChannel ? pOut[2 * i] : pOut[2 * i + 1];
            pOut[2 * i] = fGain * pOut[2 * i] + m_mono[i];
            pOut[2 * i + 1] = fGain * fRight + m_mono[i];
        }
    }
    detect(METER_OUTPUT_LEFT, pOut, uFrames);
}

} // namespace velmora
