#include "audio/portaudio_instance.h"

#include "audio/portaudio_library.h"

#include <algorithm>
#include <mutex>
#include <pa_jack.h>
#include <portaudio.h>
#include <set>
#include <utility>

namespace velmora {

namespace {

constexpr const char* JACK_CLIENT_NAME = "Velmora";

// The calls of PortAudio that are used, as they stand in one copy of it.
struct CCalls
{
    decltype(::Pa_Initialize)* initialize;
    decltype(::Pa_Terminate)* terminate;
    decltype(::Pa_GetDeviceCount)* deviceCount;
    decltype(::Pa_GetDeviceInfo)* deviceInfo;
    decltype(::Pa_GetHostApiInfo)* hostApiInfo;
    decltype(::Pa_GetDefaultInputDevice)* defaultInput;
    decltype(::Pa_GetDefaultOutputDevice)* defaultOutput;
    decltype(::Pa_IsFormatSupported)* isFormatSupported;
    decltype(::Pa_OpenStream)* openStream;
    decltype(::Pa_StartStream)* startStream;
    decltype(::Pa_StopStream)* stopStream;
    decltype(::Pa_CloseStream)* closeStream;
    decltype(::Pa_IsStreamActive)* isStreamActive;
    decltype(::Pa_GetErrorText)* errorText;
    decltype(::Pa_GetLastHostErrorInfo)* lastHostError;
    decltype(::PaJack_SetClientName)* setJackName; // null where PortAudio was built without JACK
    decltype(::PaJack_GetClientName)* jackName;

    [[nodiscard]] bool fill(const CPortAudioLibrary& library)
    {
        library.get("PaJack_SetClientName", setJackName);
        library.get("PaJack_GetClientName", jackName);
        return library.get("Pa_Initialize", initialize) && library.get("Pa_Terminate", terminate) &&
               library.get("Pa_GetDeviceCount", deviceCount) && library.get("Pa_GetDeviceInfo", deviceInfo) &&
               library.get("Pa_GetHostApiInfo", hostApiInfo) &&
               library.get("Pa_GetDefaultInputDevice", defaultInput) &&
               library.get("Pa_GetDefaultOutputDevice", defaultOutput) &&
               library.get("Pa_IsFormatSupported", isFormatSupported) &&
               library.get("Pa_OpenStream", openStream) && library.get("Pa_StartStream", startStream) &&
               library.get("Pa_StopStream", stopStream) && library.get("Pa_CloseStream", closeStream) &&
               library.get("Pa_IsStreamActive", isStreamActive) &&
               library.get("Pa_GetErrorText", errorText) &&
               library.get("Pa_GetLastHostErrorInfo", lastHostError);
    }
};

// The names that the JACK server knows this program's own instances by: none of them is a device.
class COwnJackNames
{
  public:
    void add(const std::string& sName)
    {
        const std::lock_guard lock(m_mutex);
        m_names.insert(sName);
    }

    void remove(const std::string& sName)
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_names.find(sName); found != m_names.end())
            m_names.erase(found);
    }

    [[nodiscard]] bool contains(const std::string& sName)
    {
        const std::lock_guard lock(m_mutex);
        return m_names.contains(sName);
    }

  private:
    std::mutex m_mutex;
    std::multiset<std::string> m_names;
};

COwnJackNames& ownJackNames()
{
    static COwnJackNames s_names;
    return s_names;
}

std::string textOrEmpty(const char* pText)
{
    return pText ? pText : "";
}

unsigned statusOf(PaStreamCallbackFlags uFlags)
{
    return ((uFlags & (paInputUnderflow | paInputOverflow)) != 0 ? AUDIO_INPUT_LOST : 0U) |
           ((uFlags & (paOutputUnderflow | paOutputOverflow)) != 0 ? AUDIO_OUTPUT_LOST : 0U);
}

struct CStream
{
    CAudioStreamRequest m_request;
    PaStream* m_pStream = nullptr;
    bool m_bJack = false;
};

static_assert(static_cast<int>(AUDIO_CONTINUE) == paContinue &&
              static_cast<int>(AUDIO_COMPLETE) == paComplete);

int onBuffer(const void* pIn, void* pOut, unsigned long uFrames, const PaStreamCallbackTimeInfo*,
             PaStreamCallbackFlags uFlags, void* pStream)
{
    const CAudioStreamRequest& request = static_cast<const CStream*>(pStream)->m_request;
    return request.m_pCallback(static_cast<const float*>(pIn), static_cast<float*>(pOut),
                               static_cast<unsigned>(uFrames), statusOf(uFlags), request.m_pUser);
}

} // namespace

struct CPortAudioInstance::CState
{
    CPortAudioLibrary m_library;
    CCalls m_calls = {};
    bool m_bInitialized = false;
    std::string m_sLoadError;

    std::vector<PaDeviceIndex> m_indexes; // PortAudio's, of the devices that are listed
    std::vector<CAudioDeviceInfo> m_devices;
    std::vector<std::unique_ptr<CStream>> m_streams;

    std::string m_sJackName; // what the JACK server calls this instance

    [[nodiscard]] bool load();
    void list();
    [[nodiscard]] int listedIndex(PaDeviceIndex nDevice) const;
    [[nodiscard]] PaDeviceIndex portAudioIndex(int nDevice) const;
    [[nodiscard]] bool isJack(const std::optional<CAudioStreamSide>& side) const;
    [[nodiscard]] bool isOutOfReach(const CStream& stream) const
    {
        return stream.m_bJack && m_library.isServerGone();
    }
    [[nodiscard]] std::optional<PaStreamParameters> parameters(const std::optional<CAudioStreamSide>& side,
                                                               PaSampleFormat format) const;
    [[nodiscard]] CStream* find(audioStream stream) const;
    [[nodiscard]] int onStream(audioStream stream, decltype(::Pa_StartStream)* pCall) const;
};

bool CPortAudioInstance::CState::load()
{
    if (m_calls.initialize)
        return true;
    if (m_library.load(m_sLoadError) && m_calls.fill(m_library))
        return true;
    m_calls = {};
    const std::string sReason = m_sLoadError.empty() ? "the library lacks a function" : m_sLoadError;
    m_sLoadError = "PortAudio cannot be used (" + sReason + "); install the package libportaudio2";
    return false;
}

void CPortAudioInstance::CState::list()
{
    const PaDeviceIndex nCount = m_calls.deviceCount();
    for (PaDeviceIndex nDevice = 0; nDevice < nCount; ++nDevice) {
        const PaDeviceInfo* const pDevice = m_calls.deviceInfo(nDevice);
        const PaHostApiInfo* const pHostApi = pDevice ? m_calls.hostApiInfo(pDevice->hostApi) : nullptr;
        if (!pHostApi || (pHostApi->type == paJACK && ownJackNames().contains(textOrEmpty(pDevice->name))))
            continue;
        CAudioDeviceInfo info;
        info.m_sName = textOrEmpty(pDevice->name);
        info.m_sHostApi = textOrEmpty(pHostApi->name);
        info.m_nMaxInputChannels = pDevice->maxInputChannels;
        info.m_nMaxOutputChannels = pDevice->maxOutputChannels;
        info.m_dDefaultSampleRate = pDevice->defaultSampleRate;
        info.m_dDefaultLowInputLatency = pDevice->defaultLowInputLatency;
        info.m_dDefaultLowOutputLatency = pDevice->defaultLowOutputLatency;
        info.m_dDefaultHighInputLatency = pDevice->defaultHighInputLatency;
        info.m_dDefaultHighOutputLatency = pDevice->defaultHighOutputLatency;
        m_devices.push_back(std::move(info));
        m_indexes.push_back(nDevice);
    }
}

int CPortAudioInstance::CState::listedIndex(PaDeviceIndex nDevice) const
{
    const auto found = std::ranges::find(m_indexes, nDevice);
    return found == m_indexes.end() ? -1 : static_cast<int>(found - m_indexes.begin());
}

PaDeviceIndex CPortAudioInstance::CState::portAudioIndex(int nDevice) const
{
    const auto uDevice = static_cast<std::size_t>(nDevice);
    return uDevice < m_indexes.size() ? m_indexes[uDevice] : paNoDevice;
}

bool CPortAudioInstance::CState::isJack(const std::optional<CAudioStreamSide>& side) const
{
    const PaDeviceIndex nDevice = side ? portAudioIndex(side->m_nDevice) : paNoDevice;
    const PaDeviceInfo* const pDevice = nDevice == paNoDevice ? nullptr : m_calls.deviceInfo(nDevice);
    return pDevice && m_calls.hostApiInfo(pDevice->hostApi)->type == paJACK;
}

std::optional<PaStreamParameters>
CPortAudioInstance::CState::parameters(const std::optional<CAudioStreamSide>& side,
                                       PaSampleFormat format) const
{
    if (!side)
        return {};
    return PaStreamParameters{.device = portAudioIndex(side->m_nDevice),
                              .channelCount = side->m_nChannels,
                              .sampleFormat = format,
                              .suggestedLatency = side->m_dLatency,
                              .hostApiSpecificStreamInfo = nullptr};
}

CStream* CPortAudioInstance::CState::find(audioStream stream) const
{
    const auto found =
        std::ranges::find(m_streams, reinterpret_cast<CStream*>(stream), &std::unique_ptr<CStream>::get);
    return found == m_streams.end() ? nullptr : found->get();
}

int CPortAudioInstance::CState::onStream(audioStream stream, decltype(::Pa_StartStream)* pCall) const
{
    const CStream* const pStream = find(stream);
    if (!pStream)
        return paBadStreamPtr;
    return isOutOfReach(*pStream) ? AUDIO_NO_ANSWER : pCall(pStream->m_pStream);
}

CPortAudioInstance::CPortAudioInstance() : m_pState(std::make_unique<CState>()) {}

CPortAudioInstance::~CPortAudioInstance()
{
    terminate();
}

int CPortAudioInstance::initialize()
{
    if (!m_pState->load())
        return NOT_INSTALLED;
    if (m_pState->m_calls.setJackName)
        m_pState->m_calls.setJackName(JACK_CLIENT_NAME);
    const int nError = m_pState->m_library.initialize(m_pState->m_calls.initialize);
    m_pState->m_bInitialized = nError == paNoError;
    if (nError != paNoError)
        return nError;
    const char* pName = nullptr;
    if (m_pState->m_calls.jackName && m_pState->m_calls.jackName(&pName) == paNoError) {
        m_pState->m_sJackName = textOrEmpty(pName);
        ownJackNames().add(m_pState->m_sJackName);
    }
    m_pState->list();
    return 0;
}

void CPortAudioInstance::terminate()
{
    if (!m_pState->m_bInitialized)
        return;
    m_pState->m_bInitialized = false;
    ownJackNames().remove(m_pState->m_sJackName);
    if (!m_pState->m_library.isServerGone()) {
        m_pState->m_calls.terminate();
        m_pState->m_streams.clear();
        m_pState->m_devices.clear();
        m_pState->m_indexes.clear();
        return;
    }
    // The client of a server that is gone cannot be given back: what it may still use stays, out of sight.
    static std::mutex s_mutex;
    static auto& s_kept = *new std::vector<std::unique_ptr<CState>>;
    const std::lock_guard lock(s_mutex);
    s_kept.push_back(std::exchange(m_pState, std::make_unique<CState>()));
}

std::vector<CAudioDeviceInfo> CPortAudioInstance::devices() const
{
    return m_pState->m_devices;
}

int CPortAudioInstance::defaultInputDevice() const
{
    return m_pState->m_bInitialized ? m_pState->listedIndex(m_pState->m_calls.defaultInput()) : -1;
}

int CPortAudioInstance::defaultOutputDevice() const
{
    return m_pState->m_bInitialized ? m_pState->listedIndex(m_pState->m_calls.defaultOutput()) : -1;
}

int CPortAudioInstance::rescan()
{
    if (!m_pState->m_bInitialized || !m_pState->m_streams.empty())
        return m_pState->m_bInitialized ? paDeviceUnavailable : paNotInitialized;
    terminate();
    return initialize();
}

bool CPortAudioInstance::isFormatSupported(const std::optional<CAudioStreamSide>& input,
                                           const std::optional<CAudioStreamSide>& output,
                                           double dSampleRate) const
{
    if (!m_pState->m_bInitialized || (!input && !output))
        return false;
    if (m_pState->m_library.isServerGone() && (m_pState->isJack(input) || m_pState->isJack(output)))
        return false;
    auto in = m_pState->parameters(input, paInt16);
    auto out = m_pState->parameters(output, paInt16);
    (in ? in : out)->suggestedLatency = 0.0;
    (out ? out : in)->suggestedLatency = 0.0;
    return m_pState->m_calls.isFormatSupported(in ? &*in : nullptr, out ? &*out : nullptr, dSampleRate) ==
           paFormatIsSupported;
}

int CPortAudioInstance::openStream(const CAudioStreamRequest& request, audioStream& stream)
{
    stream = nullptr;
    if (!m_pState->m_bInitialized)
        return paNotInitialized;
    auto pStream = std::make_unique<CStream>();
    pStream->m_request = request;
    pStream->m_bJack = m_pState->isJack(request.m_input) || m_pState->isJack(request.m_output);
    if (m_pState->isOutOfReach(*pStream))
        return AUDIO_NO_ANSWER;
    const auto in = m_pState->parameters(request.m_input, paFloat32);
    const auto out = m_pState->parameters(request.m_output, paFloat32);
    const int nError = m_pState->m_calls.openStream(
        &pStream->m_pStream, in ? &*in : nullptr, out ? &*out : nullptr, request.m_dSampleRate,
        request.m_uFramesPerBuffer, paNoFlag, onBuffer, pStream.get());
    if (nError == paNoError)
        stream = reinterpret_cast<audioStream>(m_pState->m_streams.emplace_back(std::move(pStream)).get());
    return nError;
}

int CPortAudioInstance::startStream(audioStream stream)
{
    return m_pState->onStream(stream, m_pState->m_calls.startStream);
}

int CPortAudioInstance::stopStream(audioStream stream)
{
    return m_pState->onStream(stream, m_pState->m_calls.stopStream);
}

int CPortAudioInstance::closeStream(audioStream stream)
{
    const CStream* const pStream = m_pState->find(stream);
    const int nError = m_pState->onStream(stream, m_pState->m_calls.closeStream);
    if (nError == paNoError)
        std::erase_if(m_pState->m_streams, [&](const auto& p) { return p.get() == pStream; });
    return nError;
}

bool CPortAudioInstance::isStreamActive(audioStream stream) const
{
    return m_pState->onStream(stream, m_pState->m_calls.isStreamActive) == 1;
}

std::string CPortAudioInstance::errorText(int nError) const
{
    if (nError == NOT_INSTALLED)
        return m_pState->m_sLoadError;
    if (!m_pState->m_calls.errorText)
        return "PortAudio is not loaded";
    const PaHostErrorInfo* const pHostError =
        nError == paUnanticipatedHostError ? m_pState->m_calls.lastHostError() : nullptr;
    const std::string sText = textOrEmpty(m_pState->m_calls.errorText(nError));
    const std::string sHost = pHostError ? textOrEmpty(pHostError->errorText) : std::string();
    return sHost.empty() ? sText : sText + ": " + sHost;
}

} // namespace velmora
