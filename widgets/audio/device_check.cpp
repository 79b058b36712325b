#include "widgets/audio/device_check.h"

#include "audio/keep_for_good.h"
#include "base/text.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>

namespace velmora {

namespace {

constexpr int MOST_POLLS_TO_FADE = 15; // about half a second; a device may have stopped calling

} // namespace

// What the callback of the tone has to itself.
struct CDeviceCheck::CTone
{
    audioStream m_stream = nullptr;
    int m_nPollsLeft = MOST_POLLS_TO_FADE;
    std::atomic<bool> m_bWanted{true};
    std::atomic<bool> m_bFaded{false}; // out, to the end

    // [audio]
    int m_nChannels = 2;
    double m_dStep = 0.0;     // cycles a sample
    double m_dRampStep = 0.0; // a sample
    double m_dPhase = 0.0;    // cycles
    double m_dRamp = 0.0;     // 0.0 to 1.0

    void prepare(const CRequest& request)
    {
        m_nChannels = request.m_side.m_nChannels;
        m_dStep = TONE_HZ / request.m_dSampleRate;
        m_dRampStep = 1.0 / (RAMP_SECONDS * request.m_dSampleRate);
    }

    // [audio]
    static EAudioCallbackResult callback(const float*, float* pOut, unsigned uFrames, unsigned, void* pUser)
    {
        return static_cast<CTone*>(pUser)->fill(pOut, uFrames);
    }

    EAudioCallbackResult fill(float* pOut, unsigned uFrames)
    {
        if (!pOut)
            return AUDIO_CONTINUE;
        const bool bWanted = m_bWanted.load(std::memory_order_relaxed);
        for (unsigned uFrame = 0; uFrame < uFrames; ++uFrame) {
            const auto fSample =
                static_cast<float>(TONE_AMPLITUDE * m_dRamp * std::sin(2.0 * std::numbers::pi * m_dPhase));
            pOut = std::fill_n(pOut, m_nChannels, fSample);
            m_dPhase += m_dStep;
            m_dPhase -= std::floor(m_dPhase);
            m_dRamp = std::clamp(m_dRamp + (bWanted ? m_dRampStep : -m_dRampStep), 0.0, 1.0);
        }
        if (bWanted || m_dRamp > 0.0)
            return AUDIO_CONTINUE;
        m_bFaded.store(true, std::memory_order_relaxed);
        return AUDIO_COMPLETE;
    }
};

// What the callback of the meter has to itself.
struct CDeviceCheck::CListener
{
    audioStream m_stream = nullptr;
    int m_nChannels = 2;
    CLevelMeters m_levels;

    void prepare(const CRequest& request)
    {
        m_nChannels = request.m_side.m_nChannels;
        m_levels.prepare(request.m_dSampleRate);
    }

    // [audio]
    static EAudioCallbackResult callback(const float* pIn, float*, unsigned uFrames, unsigned, void* pUser)
    {
        auto* pListener = static_cast<CListener*>(pUser);
        if (pIn && pListener->m_nChannels == MAX_CHANNELS)
            pListener->m_levels.addFrames(METER_INPUT_LEFT, pIn, uFrames);
        else if (pIn)
            pListener->m_levels.addMono(METER_INPUT_LEFT, pIn, uFrames);
        return AUDIO_CONTINUE;
    }
};

CDeviceCheck::CDeviceCheck(IAudioSystem& system) : m_system(system) {}

CDeviceCheck::~CDeviceCheck()
{
    stopAll();
}

template <typename TContext>
std::string CDeviceCheck::open(std::unique_ptr<TContext>& pContext, CAudioStreamRequest request)
{
    request.m_pCallback = &TContext::callback;
    request.m_pUser = pContext.get();
    int nError = m_system.openStream(request, pContext->m_stream);
    if (nError != 0) {
        if (nError == IAudioSystem::AUDIO_NO_ANSWER)
            keepForGood(std::move(pContext));
        pContext.reset();
        return m_system.errorText(nError);
    }
    nError = m_system.startStream(pContext->m_stream);
    if (nError == 0)
        return {};
    close(pContext);
    return m_system.errorText(nError);
}

// A callback that hangs may still use the context.
template <typename TContext>
void CDeviceCheck::close(std::unique_ptr<TContext>& pContext)
{
    if (!pContext)
        return;
    (void)m_system.stopStream(pContext->m_stream); // plays what is in the buffers; closing does the rest
    if (m_system.closeStream(pContext->m_stream) == IAudioSystem::AUDIO_NO_ANSWER)
        keepForGood(std::move(pContext));
    pContext.reset();
}

std::string CDeviceCheck::startTone(const CRequest& request)
{
    close(m_pTone);
    m_pTone = std::make_unique<CTone>();
    m_pTone->prepare(request);
    CAudioStreamRequest stream;
    stream.m_output = request.m_side;
    stream.m_dSampleRate = request.m_dSampleRate;
    stream.m_uFramesPerBuffer = request.m_uFramesPerBuffer;
    return open(m_pTone, stream);
}

std::string CDeviceCheck::startMeter(const CRequest& request)
{
    close(m_pListener);
    m_pListener = std::make_unique<CListener>();
    m_pListener->prepare(request);
    CAudioStreamRequest stream;
    stream.m_input = request.m_side;
    stream.m_dSampleRate = request.m_dSampleRate;
    stream.m_uFramesPerBuffer = request.m_uFramesPerBuffer;
    return open(m_pListener, stream);
}

void CDeviceCheck::stopTone()
{
    if (m_pTone)
        m_pTone->m_bWanted.store(false, std::memory_order_relaxed);
}

void CDeviceCheck::stopMeter()
{
    close(m_pListener);
}

void CDeviceCheck::stopAll()
{
    close(m_pTone);
    close(m_pListener);
}

bool CDeviceCheck::poll()
{
    bool bLost = false;
    if (m_pTone && !isToneOn()) {
        if (m_pTone->m_bFaded.load(std::memory_order_relaxed) || --m_pTone->m_nPollsLeft <= 0)
            close(m_pTone);
    } else if (m_pTone && !m_system.isStreamActive(m_pTone->m_stream)) {
        close(m_pTone);
        bLost = true;
    }
    if (m_pListener && !m_system.isStreamActive(m_pListener->m_stream)) {
        close(m_pListener);
        bLost = true;
    }
    return !bLost;
}

bool CDeviceCheck::isToneOn() const
{
    return m_pTone && m_pTone->m_bWanted.load(std::memory_order_relaxed);
}

float CDeviceCheck::level(EMeter eMeter) const
{
    return m_pListener ? m_pListener->m_levels.level(eMeter) : 0.0F;
}

} // namespace velmora
