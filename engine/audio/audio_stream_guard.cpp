#include "audio/audio_stream_guard.h"

#include <algorithm>
#include <thread>

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::nanoseconds SILENCE_ALLOWED = 1s;
constexpr double BUFFERS_ALLOWED = 4.0;
constexpr std::chrono::nanoseconds LONGEST_LOOK = 250ms;

std::chrono::nanoseconds silenceAllowed(const CAudioStreamRequest& request)
{
    const std::chrono::duration<double> buffers(BUFFERS_ALLOWED * request.m_uFramesPerBuffer /
                                                std::max(request.m_dSampleRate, 1.0));
    return std::max(SILENCE_ALLOWED, std::chrono::duration_cast<std::chrono::nanoseconds>(buffers));
}

} // namespace

CAudioStreamGuard::CAudioStreamGuard(const CAudioStreamRequest& request)
    : m_request(request), m_silenceAllowed(silenceAllowed(request))
{
}

CAudioStreamRequest CAudioStreamGuard::request()
{
    CAudioStreamRequest request = m_request;
    request.m_pCallback = callBack;
    request.m_pUser = this;
    return request;
}

bool CAudioStreamGuard::mayPlay()
{
    const bool bHeldBack = m_bHeldBack.load(std::memory_order_acquire);
    return !m_bCalledEarly.exchange(bHeldBack, std::memory_order_relaxed) && !bHeldBack;
}

EAudioCallbackResult CAudioStreamGuard::callBack(const float* pIn, float* pOut, unsigned uFrames,
                                                 unsigned uStatus, void* pGuard)
{
    auto& guard = *static_cast<CAudioStreamGuard*>(pGuard);
    const CAudioStreamRequest& request = guard.m_request;
    guard.m_bInside = true;
    const bool bDetached = guard.m_bDetached;
    auto result = bDetached ? AUDIO_COMPLETE : AUDIO_CONTINUE;
    if (!bDetached && guard.mayPlay())
        result = request.m_pCallback(pIn, pOut, uFrames, uStatus, request.m_pUser);
    else if (pOut && request.m_output)
        std::fill_n(pOut, std::size_t{uFrames} * static_cast<unsigned>(request.m_output->m_nChannels), 0.0f);
    if (result == AUDIO_COMPLETE)
        guard.m_bCompleted = true;
    guard.m_uBeats.fetch_add(1, std::memory_order_relaxed);
    guard.m_bInside.store(false, std::memory_order_release);
    return result;
}

void CAudioStreamGuard::starting(std::chrono::steady_clock::time_point now)
{
    m_bHeldBack = true;
    m_bCalledEarly = false;
    m_bCompleted = false;
    m_silence = 0s;
    m_lastLook = now;
}

bool CAudioStreamGuard::isBeating(std::chrono::steady_clock::time_point now)
{
    const unsigned uBeats = m_uBeats.load(std::memory_order_relaxed);
    m_silence = uBeats == m_uBeatsSeen
                    ? m_silence + std::min<std::chrono::nanoseconds>(now - m_lastLook, LONGEST_LOOK)
                    : 0ns;
    m_uBeatsSeen = uBeats;
    m_lastLook = now;
    return m_silence < m_silenceAllowed;
}

bool CAudioStreamGuard::detach(std::chrono::milliseconds limit)
{
    m_bDetached = true;
    const auto end = std::chrono::steady_clock::now() + limit;
    while (m_bInside) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

} // namespace velmora
