#include "support/fake_audio_system.h"

#include "base/text.h"
#include "support/allocation_guard.h"

#include <algorithm>
#include <thread>

namespace velmora::test {

namespace {

constexpr int NOT_INITIALIZED = -10000; // PortAudio's number

} // namespace

struct CFakeAudioSystem::CFakeStream
{
    CAudioStreamRequest m_request;
    std::vector<float> m_in;
    std::vector<float> m_out;
    std::atomic<bool> m_bActive{false};
    std::jthread m_thread; // ends before what it uses

    explicit CFakeStream(const CAudioStreamRequest& request) : m_request(request)
    {
        m_in.resize(samplesOf(request.m_input));
        m_out.resize(samplesOf(request.m_output));
    }

    [[nodiscard]] std::size_t samplesOf(const std::optional<CAudioStreamSide>& side) const
    {
        return side ? std::size_t{m_request.m_uFramesPerBuffer} * static_cast<unsigned>(side->m_nChannels)
                    : 0;
    }

    [[nodiscard]] audioStream handle() { return reinterpret_cast<audioStream>(this); }

    void stop()
    {
        m_bActive = false;
        if (m_thread.joinable())
            m_thread.join();
    }
};

CFakeAudioSystem::CFakeAudioSystem()
{
    CAudioDeviceInfo card;
    card.m_sName = "card";
    card.m_sHostApi = "fake";
    card.m_nMaxInputChannels = card.m_nMaxOutputChannels = 2;
    card.m_dDefaultSampleRate = 44100.0;
    card.m_dDefaultLowInputLatency = card.m_dDefaultLowOutputLatency = 0.01;
    card.m_dDefaultHighInputLatency = card.m_dDefaultHighOutputLatency = 0.04;
    m_devices = {card};
}

CFakeAudioSystem::~CFakeAudioSystem()
{
    for (const auto& pStream : m_streams)
        pStream->stop();
}

CFakeAudioSystem::CFakeStream* CFakeAudioSystem::find(audioStream stream) const
{
    const auto found = std::ranges::find(m_streams, stream, [](const auto& p) { return p->handle(); });
    return found == m_streams.end() ? nullptr : found->get();
}

int CFakeAudioSystem::answerOf(const std::string& sOperation) const
{
    const auto error = m_errors.find(sOperation);
    return error == m_errors.end() ? 0 : error->second;
}

void CFakeAudioSystem::kill(bool bHangs)
{
    m_bKilled = true;
    m_bHangs = bHangs;
    for (const auto& pStream : m_streams)
        pStream->stop();
}

void CFakeAudioSystem::revive()
{
    m_bKilled = m_bHangs = false;
}

EAudioCallbackResult CFakeAudioSystem::callBack(CFakeStream& stream)
{
    const auto& request = stream.m_request;
    const auto result =
        request.m_pCallback(stream.m_in.empty() ? nullptr : stream.m_in.data(),
                            stream.m_out.empty() ? nullptr : stream.m_out.data(), request.m_uFramesPerBuffer,
                            m_uStatus.exchange(0), request.m_pUser);
    ++m_uCallbacks;
    if (result == AUDIO_COMPLETE)
        stream.m_bActive = false;
    return result;
}

unsigned CFakeAudioSystem::run(unsigned uBuffers)
{
    unsigned uRun = 0;
    while (uRun < uBuffers && !m_streams.empty() && m_streams.back()->m_bActive) {
        CFakeStream& stream = *m_streams.back();
        const std::size_t uHeard = std::min(stream.m_in.size(), m_input.size() - m_uInputRead);
        const auto rest = std::copy_n(m_input.begin() + static_cast<std::ptrdiff_t>(m_uInputRead), uHeard,
                                      stream.m_in.begin());
        std::fill(rest, stream.m_in.end(), 0.0f);
        m_uInputRead += uHeard;
        // What the callback leaves out is heard.
        std::ranges::fill(stream.m_out, 9999.0f);

        const CAllocationGuard guard;
        callBack(stream);
        m_uAllocations += guard.count();
        m_output.insert(m_output.end(), stream.m_out.begin(), stream.m_out.end());
        ++uRun;
    }
    return uRun;
}

int CFakeAudioSystem::initialize()
{
    m_calls.emplace_back("initialize");
    const int nError = answerOf("initialize");
    m_nUses += nError == 0 ? 1 : 0;
    return nError;
}

void CFakeAudioSystem::terminate()
{
    m_calls.emplace_back("terminate");
    --m_nUses;
}

int CFakeAudioSystem::rescan()
{
    m_calls.emplace_back("rescan");
    const int nError = answerOf("rescan");
    if (nError == 0 && m_afterRescan) {
        m_devices = *m_afterRescan;
        m_afterRescan.reset();
    }
    return nError;
}

bool CFakeAudioSystem::isFormatSupported(const std::optional<CAudioStreamSide>& input,
                                         const std::optional<CAudioStreamSide>& output,
                                         double dSampleRate) const
{
    const auto fits = [this](const std::optional<CAudioStreamSide>& side, auto pChannels) {
        if (!side)
            return true;
        const auto uDevice = static_cast<std::size_t>(side->m_nDevice);
        return uDevice < m_devices.size() && side->m_nChannels > 0 &&
               side->m_nChannels <= m_devices[uDevice].*pChannels;
    };
    return (input || output) && fits(input, &CAudioDeviceInfo::m_nMaxInputChannels) &&
           fits(output, &CAudioDeviceInfo::m_nMaxOutputChannels) && !m_refusedRates.contains(dSampleRate);
}

int CFakeAudioSystem::openStream(const CAudioStreamRequest& request, audioStream& stream)
{
    const auto side = [](const char* pName, const std::optional<CAudioStreamSide>& given) {
        return given ? formatted(" %s %dch", pName, given->m_nChannels) : std::string();
    };
    m_calls.push_back("open" + side("in", request.m_input) + side("out", request.m_output) + " " +
                      shortestDecimal(request.m_dSampleRate) + " " +
                      std::to_string(request.m_uFramesPerBuffer));
    m_lastRequest = request;
    stream = nullptr;
    if (const int nError = m_nUses > 0 ? answerOf("open") : NOT_INITIALIZED)
        return nError;
    if (m_bHangs)
        return AUDIO_NO_ANSWER;
    stream = m_streams.emplace_back(std::make_unique<CFakeStream>(request))->handle();
    return 0;
}

int CFakeAudioSystem::startStream(audioStream stream)
{
    m_calls.emplace_back("start");
    CFakeStream* const pStream = find(stream);
    if (const int nError = pStream ? answerOf("start") : -1)
        return nError;
    if (m_bHangs)
        return AUDIO_NO_ANSWER;
    pStream->stop();
    pStream->m_bActive = !m_bKilled;
    if (m_threadPeriod && pStream->m_bActive) {
        pStream->m_thread = std::jthread([this, pStream, period = *m_threadPeriod] {
            for (auto next = std::chrono::steady_clock::now(); pStream->m_bActive; next += period) {
                std::this_thread::sleep_until(next);
                if (pStream->m_bActive)
                    callBack(*pStream);
            }
        });
    }
    return 0;
}

int CFakeAudioSystem::stopStream(audioStream stream)
{
    m_calls.emplace_back("stop");
    CFakeStream* const pStream = find(stream);
    if (const int nError = pStream ? answerOf("stop") : -1)
        return nError;
    pStream->stop();
    return m_bHangs ? AUDIO_NO_ANSWER : 0;
}

int CFakeAudioSystem::closeStream(audioStream stream)
{
    m_calls.emplace_back("close");
    CFakeStream* const pStream = find(stream);
    if (!pStream)
        return -1;
    pStream->stop();
    std::erase_if(m_streams, [&](const auto& p) { return p.get() == pStream; });
    const int nError = answerOf("close");
    return nError != 0 || !m_bHangs ? nError : AUDIO_NO_ANSWER;
}

bool CFakeAudioSystem::isStreamActive(audioStream stream) const
{
    const CFakeStream* const pStream = find(stream);
    return pStream && pStream->m_bActive;
}

std::string CFakeAudioSystem::errorText(int nError) const
{
    return nError == AUDIO_NO_ANSWER ? "The audio system does not answer"
                                     : formatted("Fake error %d", nError);
}

} // namespace velmora::test
