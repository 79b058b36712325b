#include "audio/audio_engine.h"

#include "audio/channel_mix.h"
#include "audio/engine_buffer.h"
#include "audio/filter_call.h"
#include "base/platform_denormals.h"
#include "host/dsp_filter.h"

#include <algorithm>
#include <cmath>
#include <thread>

namespace velmora {

namespace {

constexpr int LIVE_CHANNELS = 2;

// A filter is told to be too slow at its third buffer that takes too long, with fewer than 32 others in
// between.
constexpr unsigned OVERLOAD_STEP = 32;
constexpr unsigned OVERLOAD_SCORE = 2 * OVERLOAD_STEP + 1;
constexpr std::chrono::microseconds FADE_POLL_INTERVAL{200};
// Longer than a buffer lasts at the usual rates; a fade that is ended while a longer one runs is but cut
// short.
constexpr std::chrono::milliseconds FADE_PATIENCE{500};

} // namespace

CAudioEngine::CAudioEngine(CTransportState& transport, CSidechain& sidechain)
    : m_transport(transport), m_sidechain(sidechain), m_mono(MAX_SAMPLES / 2)
{
    m_waveInfo.m_nChannels = 2;
    m_waveInfo.m_nSampleRate = 44100;
    prepare(m_waveInfo.m_nSampleRate);
}

void CAudioEngine::prepare(double dSampleRate)
{
    m_dSampleRate = dSampleRate;
    m_meters.prepare(dSampleRate);
    m_fade.setLength(std::max(1U, static_cast<unsigned>(std::lround(FADE_SECONDS * dSampleRate))));
    rearmNotices();
    const int nSampleRate = static_cast<int>(std::lround(dSampleRate));
    if (!m_pOscillator || m_pOscillator->m_nSampleRate == nSampleRate)
        return;
    m_pOscillator->m_nSampleRate = nSampleRate;
    m_pOscillator->prepareForPlay();
}

bool CAudioEngine::processPortAudioFile(float* pIn, float* pOut, int nSamples, bool bOffline,
                                        const CSoundFileInfo* pInfo)
{
    const int nChannels = std::clamp((pInfo ? *pInfo : m_waveInfo).m_nChannels, 1, 2);
    return process({.m_nChannels = nChannels, .m_bFile = true, .m_bOffline = bOffline}, pIn, pOut, nSamples);
}

bool CAudioEngine::processPortAudioIn(float* pIn, float* pOut, int nSamples)
{
    return process({.m_nChannels = LIVE_CHANNELS, .m_bFile = false, .m_bOffline = false}, pIn, pOut,
                   nSamples);
}

bool CAudioEngine::processPortAudioOSC(float* pIn, float* pOut, int nSamples)
{
    // It does not raise the flag that it looks at, and so tells of every buffer until another path does.
    if (pOut && !hasDriverError())
        m_notices.post(EAudioNotice::oscillatorCalled, m_fOscillatorBuffers += 1.0F);
    return processPortAudioIn(pIn, pOut, nSamples);
}

bool CAudioEngine::processDUT(float* pOut, int nSamples)
{
    if (!pOut)
        return reportDriverError();
    const std::span<float> out{pOut, static_cast<std::size_t>(std::max(nSamples, 0))};
    std::size_t uCopied = 0;
    if (m_nSoundMode.load(std::memory_order_acquire) != 0) {
        const std::size_t uPosition = m_uMeasured.load(std::memory_order_relaxed);
        const auto rest = std::span(m_measurement).subspan(std::min(uPosition, MEASUREMENT_SAMPLES));
        uCopied = std::min(out.size(), rest.size());
        std::ranges::copy(rest.first(uCopied), out.begin());
        const std::size_t uNext = uPosition + out.size();
        m_uMeasured.store(uNext == MEASUREMENT_SAMPLES ? 0 : uNext, std::memory_order_relaxed);
    }
    std::ranges::fill(out.subspan(uCopied), 0.0F);
    return true;
}

bool CAudioEngine::reportDriverError()
{
    if (!m_bDriverError.exchange(true, std::memory_order_relaxed))
        m_notices.post(EAudioNotice::driverError);
    return false;
}

void CAudioEngine::clearDriverError()
{
    m_fOscillatorBuffers = 0.0F;
    m_bDriverError.store(false, std::memory_order_relaxed);
}

bool CAudioEngine::process(const CSource& source, float* pIn, float* pOut, int nSamples)
{
    if (!pOut)
        return reportDriverError();
    const CDenormalsOff denormals;
    const CGatePassage passage(m_gate);
    const ETransportState eState = m_transport.state();
    const std::span<float> in{pIn, static_cast<std::size_t>(std::clamp(nSamples, 0, MAX_SAMPLES))};
    std::size_t uDone = 0;
    m_filterTime = {};
    if (source.m_bFile || fillInput(eState, in)) {
        processBuffer(source, eState, describe(source, in, pOut));
        uDone = in.size();
    } else {
        m_fade.end(); // neither filter is heard
    }
    std::fill(pOut + uDone, pOut + std::max(nSamples, static_cast<int>(uDone)), 0.0F);
    return true;
}

// False if all is to be silent.
bool CAudioEngine::fillInput(ETransportState eState, std::span<float> in)
{
    if (eState == TRANSPORT_OSC) {
        if (!m_bOscillatorRuns.load(std::memory_order_relaxed))
            return false;
        if (!m_pOscillator)
            std::ranges::fill(in, 0.0F);
        else
            m_pOscillator->processInterleaved(in.data(), in.data(), LIVE_CHANNELS,
                                              static_cast<UINT>(in.size()), 0);
    } else if (eState == TRANSPORT_USER_OSC) {
        std::ranges::fill(in, 0.0F);
    }
    return true;
}

CEngineBuffer CAudioEngine::describe(const CSource& source, std::span<float> in, float* pOut)
{
    float* pSidechain = source.m_bFile ? m_sidechain.buffer() : nullptr;
    return {
        .m_in = in,
        .m_pOut = pOut,
        .m_pMono = m_mono.data(),
        .m_nChannels = source.m_nChannels,
        .m_uMode = m_uChannelMode.load(std::memory_order_relaxed),
        .m_pSidechain = pSidechain,
        .m_nSidechainChannels = pSidechain ? m_sidechain.channels() : 0,
        .m_bSidechainEnabled = pSidechain && m_sidechain.m_bEnabled.load(std::memory_order_relaxed),
    };
}

void CAudioEngine::processBuffer(const CSource& source, ETransportState eState, const CEngineBuffer& buffer)
{
    applyInput(buffer);
    runFilter(source, eState, buffer);
    mixOutput(buffer, m_outputGain.linear(m_fOutputGain_dB));
    m_meters.addFrames(METER_OUTPUT_LEFT, buffer.m_pOut, buffer.m_in.size() / 2);
    if (source.m_bOffline)
        return;
    capture(source, eState, buffer);
    m_guard.apply(buffer.out(), m_bProtectSpeakers.load(std::memory_order_relaxed));
}

// The meters take what they are given two by two, whatever the channels.
void CAudioEngine::applyInput(const CEngineBuffer& buffer)
{
    mixInput(buffer, m_inputGain.linear(m_fInputGain_dB));
    if (buffer.isMonoMixed())
        m_meters.addMono(METER_INPUT_LEFT, buffer.m_pMono, buffer.frames());
    else
        m_meters.addFrames(METER_INPUT_LEFT, buffer.m_in.data(), buffer.m_in.size() / 2);
    if (const auto sidechain = buffer.sidechain(); !sidechain.empty()) {
        scale(sidechain, m_sidechainGain.linear(m_sidechain.m_fGain_dB));
        m_meters.addFrames(METER_SIDECHAIN_LEFT, sidechain.data(), sidechain.size() / 2);
    }
}

void CAudioEngine::runFilter(const CSource& source, ETransportState eState, const CEngineBuffer& buffer)
{
    const bool bFilterRuns = source.m_bFile ? eState == TRANSPORT_PLAY
                                            : eState == TRANSPORT_SOUND_IN || eState == TRANSPORT_OSC ||
                                                  eState == TRANSPORT_USER_OSC;
    const bool bListen = buffer.m_pSidechain && m_sidechain.m_bListen.load(std::memory_order_relaxed);
    const bool bBypass = m_bBypass.load(std::memory_order_relaxed);
    if (bFilterRuns && !bListen && !bBypass && (m_pFilter || m_fade.isRunning())) {
        if (source.m_bOffline)
            callFilter(m_pFilter, buffer);
        else
            timeFilter(buffer);
        return;
    }
    m_fade.end(); // neither filter is heard
    if (bListen)
        copySidechain(buffer);
    else
        copyInput(buffer);
}

void CAudioEngine::timeFilter(const CEngineBuffer& buffer)
{
    using clock = CCallbackStatistics::clock;
    const bool bFades = m_fade.isRunning();
    const auto start = clock::now();
    if (bFades)
        m_fade.process(m_pFilter, buffer);
    else
        callFilter(m_pFilter, buffer);
    m_filterTime = clock::now() - start;
    if (bFades || m_bOverloadTold || buffer.frames() == 0)
        return;
    const double dLoad = std::chrono::duration<double>(m_filterTime).count() * m_dSampleRate /
                         static_cast<double>(buffer.frames());
    // The machine may hold up the thread in the middle of any filter: one long buffer is no overload.
    if (dLoad <= 1.0) {
        m_uOverloadScore -= m_uOverloadScore > 0 ? 1 : 0;
        return;
    }
    m_uOverloadScore += OVERLOAD_STEP;
    if (m_uOverloadScore < OVERLOAD_SCORE)
        return;
    m_bOverloadTold = true;
    m_notices.post(EAudioNotice::overload, static_cast<float>(dLoad));
}

// The display shows the input twice where the output is nothing else: of a file when no filter ran, of the
// live sources only when the oscillator goes past the filter.
void CAudioEngine::capture(const CSource& source, ETransportState eState, const CEngineBuffer& buffer)
{
    if (!m_capture.isRunning())
        return;
    const bool bBypass = m_bBypass.load(std::memory_order_relaxed);
    const bool bOutputIsInput = source.m_bFile ? bBypass || !m_pFilter : bBypass && eState == TRANSPORT_OSC;
    if (m_capture.add(buffer.m_in.data(), buffer.m_pOut, buffer.m_in.size(), buffer.m_nChannels, bBypass,
                      bOutputIsInput))
        m_notices.post(EAudioNotice::captureReady);
}

void CAudioEngine::setFilter(CDSPFilter* pFilter)
{
    m_fade.end();
    m_pFilter = pFilter;
    rearmNotices();
}

void CAudioEngine::fadeTo(CDSPFilter* pFilter)
{
    if (pFilter == m_pFilter)
        return;
    m_fade.begin(m_pFilter);
    m_pFilter = pFilter;
    rearmNotices();
}

void CAudioEngine::rearmNotices()
{
    m_bOverloadTold = false;
    m_uOverloadScore = 0;
    m_guard.rearm();
}

bool CAudioEngine::finishFade()
{
    using clock = std::chrono::steady_clock;
    unsigned uPosition = m_fade.position();
    auto lastMove = clock::now();
    while (m_fade.isRunning()) {
        if (m_fade.position() != uPosition) {
            uPosition = m_fade.position();
            lastMove = clock::now();
        } else if (!m_transport.hasAudioThread() || clock::now() - lastMove > FADE_PATIENCE) {
            const CClosedGate closed(m_gate);
            if (!closed)
                return false;
            m_fade.end();
            return true;
        }
        std::this_thread::sleep_for(FADE_POLL_INTERVAL);
    }
    return true;
}

} // namespace velmora
