#include "audio/guarded_audio_system.h"

#include "audio/audio_stream_guard.h"
#include "audio/audio_worker.h"
#include "audio/keep_for_good.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds WAIT_FOR_CALLBACK = 1s;

// PortAudio's numbers for a request that no other system would take either.
constexpr int REQUEST_AT_FAULT[] = {-9998 /* channels */, -9997 /* rate */};

std::chrono::milliseconds latencyOf(const CAudioStreamSide& side)
{
    return std::chrono::milliseconds(
        static_cast<std::int64_t>(1000.0 * std::clamp(side.m_dLatency, 0.0, 60.0)));
}

bool isSameDevice(const CAudioDeviceInfo& left, const CAudioDeviceInfo& right)
{
    return left.m_sName == right.m_sName && left.m_sHostApi == right.m_sHostApi;
}

} // namespace

// One of the systems, with its worker and what it listed.
struct CGuardedAudioSystem::CInstance
{
    std::shared_ptr<IAudioSystem> m_pSystem;
    CListing m_listing;
    CAudioWorker m_worker;
};

// A stream that is open, and what is known of it.
struct CGuardedAudioSystem::CStream
{
    std::shared_ptr<CInstance> m_pInstance;
    std::shared_ptr<CAudioStreamGuard> m_pGuard;
    audioStream m_stream = nullptr; // the instance's own
    std::vector<CAudioDeviceInfo> m_devices;
    std::chrono::milliseconds m_latency{0};
    bool m_bStarted = false;
    bool m_bDead = false;

    [[nodiscard]] audioStream handle() { return reinterpret_cast<audioStream>(this); }
};

CGuardedAudioSystem::CGuardedAudioSystem(systemMaker maker, std::chrono::milliseconds patience)
    : m_maker(std::move(maker)), m_patience(patience)
{
}

CGuardedAudioSystem::~CGuardedAudioSystem()
{
    m_nUses = std::min(m_nUses, 1);
    CGuardedAudioSystem::terminate();
}

int CGuardedAudioSystem::ask(CInstance& instance, work work, std::chrono::milliseconds limit) const
{
    if (instance.m_worker.hangs())
        return AUDIO_NO_ANSWER;
    const auto pText = std::make_shared<std::string>();
    const auto answer = instance.m_worker.call(
        [pSystem = instance.m_pSystem, work = std::move(work), pText] {
            const int nError = work(*pSystem);
            if (nError < 0)
                *pText = pSystem->errorText(nError);
            return nError;
        },
        limit);
    if (!answer)
        giveUp(instance);
    else if (*answer < 0)
        m_texts[*answer] = *pText;
    return answer.value_or(AUDIO_NO_ANSWER);
}

void CGuardedAudioSystem::giveUp(const CInstance& instance) const
{
    keepForGood(instance.m_pSystem);
    for (const auto& pStream : m_streams) {
        if (pStream->m_pInstance.get() == &instance) {
            pStream->m_pGuard->detach(WAIT_FOR_CALLBACK);
            keepForGood(pStream->m_pGuard);
        }
    }
}

int CGuardedAudioSystem::bringUp()
{
    const auto pInstance = std::make_shared<CInstance>();
    pInstance->m_pSystem = m_maker();
    const auto pListing = std::make_shared<CListing>();
    const int nError = ask(
        *pInstance,
        [pListing](IAudioSystem& system) {
            if (const int nFailure = system.initialize())
                return nFailure;
            *pListing = {system.devices(), system.defaultInputDevice(), system.defaultOutputDevice()};
            return 0;
        },
        3 * m_patience);
    if (nError != 0)
        return nError;
    pInstance->m_listing = *pListing;
    m_pCurrent = pInstance;
    return 0;
}

bool CGuardedAudioSystem::isInUse(const CInstance& instance) const
{
    return std::ranges::any_of(m_streams, [&](const auto& p) { return p->m_pInstance.get() == &instance; });
}

void CGuardedAudioSystem::retire(CInstance& instance) const
{
    (void)ask(
        instance,
        [](IAudioSystem& system) {
            system.terminate();
            return 0;
        },
        m_patience / 3);
}

int CGuardedAudioSystem::renew()
{
    const auto pOld = std::exchange(m_pCurrent, nullptr);
    if (pOld && !isInUse(*pOld))
        retire(*pOld);
    const int nError = bringUp();
    if (nError != 0 && pOld && isInUse(*pOld))
        m_pCurrent = pOld;
    return nError;
}

int CGuardedAudioSystem::initialize()
{
    const bool bUp = m_pCurrent && !m_pCurrent->m_worker.hangs();
    if (const int nError = bUp ? 0 : renew())
        return nError;
    if (m_nUses++ == 0)
        m_listing = m_pCurrent->m_listing;
    return 0;
}

void CGuardedAudioSystem::terminate()
{
    if (m_nUses == 0 || --m_nUses > 0)
        return;
    while (!m_streams.empty())
        (void)closeStream(m_streams.back()->handle());
    if (m_pCurrent)
        retire(*m_pCurrent);
    m_pCurrent = nullptr;
    m_listing = {};
}

int CGuardedAudioSystem::rescan()
{
    if (m_nUses == 0)
        return NOT_INITIALIZED;
    if (const int nError = renew())
        return nError;
    m_listing = m_pCurrent->m_listing;
    for (const auto& pStream : m_streams) {
        if (!isStreamActive(pStream->handle()))
            continue;
        std::ranges::copy_if(
            pStream->m_devices, std::back_inserter(m_listing.m_devices), [this](const auto& device) {
                return std::ranges::none_of(m_listing.m_devices,
                                            [&](const auto& listed) { return isSameDevice(listed, device); });
            });
    }
    return 0;
}

// From an index of the listing that was shown to one of the current instance's.
bool CGuardedAudioSystem::translate(std::optional<CAudioStreamSide>& side) const
{
    if (!side)
        return true;
    const auto uDevice = static_cast<std::size_t>(side->m_nDevice);
    if (uDevice >= m_listing.m_devices.size())
        return true; // the system says what is wrong with it
    const CAudioDeviceInfo& device = m_listing.m_devices[uDevice];
    const auto& own = m_pCurrent->m_listing.m_devices;
    if (uDevice < own.size() && isSameDevice(own[uDevice], device))
        return true;
    const auto found =
        std::ranges::find_if(own, [&](const auto& info) { return isSameDevice(info, device); });
    side->m_nDevice = found == own.end() ? -1 : static_cast<int>(found - own.begin());
    return found != own.end();
}

bool CGuardedAudioSystem::isFormatSupported(const std::optional<CAudioStreamSide>& input,
                                            const std::optional<CAudioStreamSide>& output,
                                            double dSampleRate) const
{
    auto in = input;
    auto out = output;
    if (!m_pCurrent || !translate(in) || !translate(out))
        return false;
    return ask(
               *m_pCurrent,
               [in, out, dSampleRate](IAudioSystem& system) {
                   return system.isFormatSupported(in, out, dSampleRate) ? 1 : 0;
               },
               m_patience) == 1;
}

int CGuardedAudioSystem::openStream(const CAudioStreamRequest& request, audioStream& stream)
{
    stream = nullptr;
    if (m_nUses == 0)
        return NOT_INITIALIZED;
    const bool bWasUp = m_pCurrent && !m_pCurrent->m_worker.hangs();
    const int nError = openOnCurrent(request, stream);
    const bool bHangsNow = bWasUp && m_pCurrent->m_worker.hangs();
    if (nError == 0 || bHangsNow || std::ranges::find(REQUEST_AT_FAULT, nError) != std::end(REQUEST_AT_FAULT))
        return nError;
    return renew() == 0 ? openOnCurrent(request, stream) : nError;
}

int CGuardedAudioSystem::openOnCurrent(CAudioStreamRequest request, audioStream& stream)
{
    if (!m_pCurrent)
        return AUDIO_NO_ANSWER;
    auto pStream = std::make_unique<CStream>();
    for (auto* const pSide : {&request.m_input, &request.m_output}) {
        if (!*pSide)
            continue;
        const auto uDevice = static_cast<std::size_t>((*pSide)->m_nDevice);
        if (uDevice < m_listing.m_devices.size())
            pStream->m_devices.push_back(m_listing.m_devices[uDevice]);
        pStream->m_latency += latencyOf(**pSide);
        if (!translate(*pSide))
            return DEVICE_GONE;
    }
    pStream->m_pInstance = m_pCurrent;
    pStream->m_pGuard = std::make_shared<CAudioStreamGuard>(request);
    const auto pOpened = std::make_shared<audioStream>();
    const int nError = ask(
        *m_pCurrent,
        [guarded = pStream->m_pGuard->request(), pOpened, pGuard = pStream->m_pGuard](IAudioSystem& system) {
            return system.openStream(guarded, *pOpened);
        },
        m_patience);
    if (nError != 0)
        return nError;
    pStream->m_stream = *pOpened;
    stream = m_streams.emplace_back(std::move(pStream))->handle();
    return 0;
}

CGuardedAudioSystem::CStream* CGuardedAudioSystem::find(audioStream stream) const
{
    const auto found = std::ranges::find(m_streams, stream, [](const auto& p) { return p->handle(); });
    return found == m_streams.end() ? nullptr : found->get();
}

std::chrono::milliseconds CGuardedAudioSystem::limitFor(const CStream& stream) const
{
    return stream.m_bDead ? m_patience / 6 : m_patience + 2 * stream.m_latency;
}

int CGuardedAudioSystem::startStream(audioStream stream)
{
    CStream* const pStream = find(stream);
    if (!pStream)
        return NOT_INITIALIZED;
    pStream->m_pGuard->starting(std::chrono::steady_clock::now());
    const int nError = ask(
        *pStream->m_pInstance,
        [own = pStream->m_stream](IAudioSystem& system) { return system.startStream(own); },
        limitFor(*pStream));
    pStream->m_bStarted = nError == 0;
    if (pStream->m_bStarted)
        pStream->m_pGuard->started();
    pStream->m_bDead = false;
    return nError;
}

int CGuardedAudioSystem::stopStream(audioStream stream)
{
    CStream* const pStream = find(stream);
    if (!pStream)
        return NOT_INITIALIZED;
    pStream->m_bStarted = false;
    return ask(
        *pStream->m_pInstance,
        [own = pStream->m_stream](IAudioSystem& system) { return system.stopStream(own); },
        limitFor(*pStream));
}

int CGuardedAudioSystem::closeStream(audioStream stream)
{
    const auto found = std::ranges::find(m_streams, stream, [](const auto& p) { return p->handle(); });
    if (found == m_streams.end())
        return NOT_INITIALIZED;
    const auto pStream = std::move(*found);
    m_streams.erase(found);
    const int nError = ask(
        *pStream->m_pInstance,
        [own = pStream->m_stream](IAudioSystem& system) { return system.closeStream(own); },
        limitFor(*pStream));
    if (nError != 0) {
        pStream->m_pGuard->detach(WAIT_FOR_CALLBACK);
        keepForGood(pStream->m_pGuard);
    }
    if (pStream->m_pInstance != m_pCurrent && !isInUse(*pStream->m_pInstance))
        retire(*pStream->m_pInstance);
    return nError;
}

bool CGuardedAudioSystem::isStreamActive(audioStream stream) const
{
    CStream* const pStream = find(stream);
    if (!pStream || !pStream->m_bStarted)
        return false;
    const bool bActive =
        ask(
            *pStream->m_pInstance,
            [own = pStream->m_stream](IAudioSystem& system) { return system.isStreamActive(own) ? 1 : 0; },
            m_patience) == 1;
    const bool bBeats = pStream->m_pGuard->isBeating(std::chrono::steady_clock::now());
    pStream->m_bDead = !(bActive && bBeats) && !pStream->m_pGuard->hasCompleted();
    return bActive && bBeats;
}

std::string CGuardedAudioSystem::errorText(int nError) const
{
    if (nError == AUDIO_NO_ANSWER)
        return "The audio system does not answer";
    if (nError == NOT_INITIALIZED)
        return "The audio system is not up";
    if (nError == DEVICE_GONE)
        return "The device is not there";
    const auto text = m_texts.find(nError);
    return text == m_texts.end() ? "Audio error " + std::to_string(nError) : text->second;
}

} // namespace velmora
