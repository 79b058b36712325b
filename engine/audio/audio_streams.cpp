#include "audio/audio_streams.h"

#include "audio/audio_devices.h"
#include "audio/audio_engine.h"
#include "audio/keep_for_good.h"
#include "audio/stream_callbacks.h"
#include "audio/wave_stream.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "host/settings.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace velmora {

namespace {

constexpr int NO_DEVICE = -1;
constexpr std::string_view NO_DEVICE_NAME = "None";
constexpr unsigned DEFAULT_FRAMES = 64;
constexpr unsigned MAX_FRAMES = CAudioEngine::MAX_SAMPLES / 2;
constexpr int STREAM_CHANNELS = 2;

// What is particular to each stream. The close message of the oscillator stream names the wave stream's.
struct CStreamRow
{
    audioCallback m_pCallback;
    std::string_view m_sName; // for people
    std::string_view m_sPauseMessage;
    std::string_view m_sResumeMessage;
    std::string_view m_sCloseMessage;
};

constexpr std::array<CStreamRow, STREAM_COUNT> ROWS = {{
    {inputCallback, "sound input", "Pa_StopStream stream failed.", "Pa_StartStream stream failed.",
     "Pa_CloseStream stream failed."},
    {dutCallback, "output to the device under test", "Pa_StopStream streamDUT failed.",
     "Pa_StartStream streamDUT failed.", "Pa_CloseStream streamDUT failed."},
    {waveCallback, "wave file", "Pa_StopStream streamWAV failed.", "Pa_StartStream streamWAV failed.",
     "Pa_CloseStream streamWAV failed."},
    {oscCallback, "oscillator", "Pa_StopStream streamOSC failed.", "Pa_StartStream streamOSC failed.",
     "Pa_CloseStream streamWAV failed."},
}};

enum EOpeningStep
{
    STEP_INITIALIZE,
    STEP_OPEN,
    STEP_START
};

struct COpeningStep
{
    const char* m_pMessage; // the error's number follows
    const char* m_pVerb;
};

constexpr std::array<COpeningStep, 3> STEPS = {{
    {"Error initializing Port Audio! Error Code: ", ""},
    {"Error in Port Audio Pa_OpenStream( ) Error Code: ", "opened"},
    {"Error in Port Audio Pa_StartStream( ) Error Code: ", "started"},
}};

// Keeps the run gate open for a scope: a callback that waits at it would hold up the end of its stream.
class COpenGate
{
  public:
    explicit COpenGate(CRunGate& gate) : m_gate(gate), m_bWasClosed(gate.isClosed()) { m_gate.open(); }
    ~COpenGate()
    {
        if (m_bWasClosed)
            static_cast<void>(m_gate.close());
    }
    COpenGate(const COpenGate&) = delete;
    COpenGate& operator=(const COpenGate&) = delete;

  private:
    CRunGate& m_gate;
    bool m_bWasClosed;
};

} // namespace

CAudioStreams::CAudioStreams(IAudioSystem& system, CAudioDevices& devices, CAudioEngine& engine,
                             CSidechain& sidechain, CWaveStream& wave, const CSettings& settings,
                             IUserDialogs& dialogs)
    : m_system(system), m_devices(devices), m_engine(engine), m_sidechain(sidechain), m_wave(wave),
      m_settings(settings), m_dialogs(dialogs)
{
}

CAudioStreams::~CAudioStreams()
{
    closeAll(true);
}

bool CAudioStreams::openWaveStream()
{
    release(STREAM_WAVE, true);
    if (!m_wave.hasFile())
        return fail("m_pSndFile = NULL; can not continue.");
    const CSoundFileInfo& info = m_wave.info();
    m_engine.m_waveInfo = info;
    if (!initialize(STREAM_WAVE))
        return false;
    const int nOutput = orDefaultOutput(m_devices.outputDevice());
    if (nOutput == NO_DEVICE)
        return failWithoutDevice("output");
    m_wave.prepare(framesPerBuffer());
    if (open(STREAM_WAVE, {NO_DEVICE, nOutput, info.m_nChannels, static_cast<double>(info.m_nSampleRate)}))
        return true;
    m_wave.finish();
    return false;
}

bool CAudioStreams::openInputStream()
{
    release(STREAM_INPUT, true);
    if (!initialize(STREAM_INPUT))
        return false;
    int nInput = m_devices.inputDevice();
    if (nInput == NO_DEVICE)
        nInput = m_system.defaultInputDevice();
    if (nInput == NO_DEVICE)
        return failWithoutDevice("input");
    const bool bToDUT = m_engine.m_nSoundMode != 0 && m_settings.DUTDeviceName() != NO_DEVICE_NAME;
    const int nOutput = orDefaultOutput(bToDUT ? m_devices.dutDevice() : m_devices.outputDevice());
    if (nOutput == NO_DEVICE)
        return failWithoutDevice("output");
    return open(STREAM_INPUT, {nInput, nOutput, STREAM_CHANNELS, sampleRate()});
}

bool CAudioStreams::openOutputStream()
{
    release(STREAM_OUTPUT, true);
    if (!initialize(STREAM_OUTPUT))
        return false;
    if (m_devices.dutDevice() == NO_DEVICE)
        return failWithoutDevice("output");
    return open(STREAM_OUTPUT, {NO_DEVICE, m_devices.dutDevice(), STREAM_CHANNELS, sampleRate()});
}

bool CAudioStreams::openOscStream()
{
    m_dialogs.note("startPortAudioOSCStream( ) called.");
    release(STREAM_OSCILLATOR, true);
    if (!initialize(STREAM_OSCILLATOR))
        return false;
    const int nOutput = orDefaultOutput(m_devices.outputDevice());
    if (nOutput == NO_DEVICE)
        return failWithoutDevice("output");
    if (!open(STREAM_OSCILLATOR, {NO_DEVICE, nOutput, STREAM_CHANNELS, sampleRate()}))
        return false;
    m_dialogs.note("startPortAudioOSCStream( ) finished.");
    return true;
}

bool CAudioStreams::initialize(EAudioStream eStream)
{
    m_sReason.clear();
    const int nError = m_system.initialize();
    return nError == 0 || failAt(eStream, STEP_INITIALIZE, nError);
}

int CAudioStreams::orDefaultOutput(int nDevice) const
{
    return nDevice == NO_DEVICE ? m_system.defaultOutputDevice() : nDevice;
}

CAudioStreamSide CAudioStreams::side(int nDevice, int nChannels, bool bInput) const
{
    CAudioStreamSide result{nDevice, nChannels, 0.0};
    if (const CAudioDeviceInfo* pDevice = m_devices.device(nDevice))
        result.m_dLatency =
            streamLatency(*pDevice, bInput, m_settings.useLowLatency(), m_settings.latencyMultiplier());
    return result;
}

std::string CAudioStreams::namesOf(const CRoute& route) const
{
    const auto name = [this](int nDevice) {
        const CAudioDeviceInfo* pDevice = m_devices.device(nDevice);
        return pDevice ? '"' + pDevice->m_sName + '"' : std::string();
    };
    const std::string sInput = name(route.m_nInput);
    const std::string sOutput = name(route.m_nOutput);
    if (sInput.empty() || sInput == sOutput)
        return sOutput;
    return sInput + " and " + sOutput;
}

// The audio system has been brought up for the stream.
bool CAudioStreams::open(EAudioStream eStream, const CRoute& route)
{
    CStream& stream = m_streams[eStream];
    const auto uFrames = static_cast<unsigned>(framesPerBuffer());
    stream.m_sDevices = namesOf(route);
    m_dOpenedRate = route.m_dSampleRate;
    stream.m_pContext.reset(new CStreamContext{m_engine, m_wave, m_sidechain, uFrames,
                                               static_cast<unsigned>(route.m_nOutputChannels),
                                               std::vector<float>(std::size_t{uFrames} * STREAM_CHANNELS)});
    CAudioStreamRequest request;
    if (route.m_nInput != NO_DEVICE)
        request.m_input = side(route.m_nInput, STREAM_CHANNELS, true);
    request.m_output = side(route.m_nOutput, route.m_nOutputChannels, false);
    request.m_dSampleRate = route.m_dSampleRate;
    request.m_uFramesPerBuffer = uFrames;
    request.m_pCallback = ROWS[eStream].m_pCallback;
    request.m_pUser = stream.m_pContext.get();
    if (eStream != STREAM_OUTPUT) { // which runs beside another
        m_engine.clearDriverError();
        m_engine.capture().rewind();
        m_engine.statistics().reset(route.m_dSampleRate);
    } else {
        m_engine.rewindMeasurement();
    }

    if (const int nError = m_system.openStream(request, stream.m_stream)) {
        stream.m_stream = nullptr;
        endContext(stream, nError);
        m_system.terminate();
        return failAt(eStream, STEP_OPEN, nError);
    }
    if (const int nError = m_system.startStream(stream.m_stream)) {
        release(eStream, true);
        return failAt(eStream, STEP_START, nError);
    }
    stream.m_bRunning = true;
    ++m_uOpenings;
    return true;
}

bool CAudioStreams::pause(EAudioStream eStream)
{
    m_sReason.clear();
    CStream& stream = m_streams[eStream];
    if (!stream.m_bRunning)
        return true;
    const COpenGate gate(m_engine.gate());
    if (const int nError = m_system.stopStream(stream.m_stream))
        return failWith(ROWS[eStream].m_sPauseMessage, nError);
    stream.m_bRunning = false;
    return true;
}

bool CAudioStreams::resume(EAudioStream eStream)
{
    m_sReason.clear();
    CStream& stream = m_streams[eStream];
    if (!stream.m_stream || stream.m_bRunning)
        return stream.m_bRunning;
    if (const int nError = m_system.startStream(stream.m_stream))
        return failWith(ROWS[eStream].m_sResumeMessage, nError);
    stream.m_bRunning = true;
    return true;
}

void CAudioStreams::close(EAudioStream eStream, bool bQuiet)
{
    release(eStream, bQuiet);
    if (eStream != STREAM_WAVE)
        return;
    m_wave.finish();
    if (hasHangingCallback())
        return; // it may still use them; the next start gives them back
    m_wave.close();
    m_sidechain.close();
}

void CAudioStreams::closeAll(bool bQuiet)
{
    for (unsigned uStream = 0; uStream < STREAM_COUNT; ++uStream)
        close(static_cast<EAudioStream>(uStream), bQuiet);
}

// The stream alone, without the wave stream's files.
void CAudioStreams::release(EAudioStream eStream, bool bQuiet)
{
    CStream& stream = m_streams[eStream];
    if (!stream.m_stream)
        return;
    int nError = 0;
    {
        const COpenGate gate(m_engine.gate());
        static_cast<void>(m_system.stopStream(stream.m_stream));
        nError = m_system.closeStream(stream.m_stream);
        stream.m_stream = nullptr;
        stream.m_bRunning = false;
        endContext(stream, nError);
    }
    if (nError != 0 && !bQuiet)
        static_cast<void>(failWith(ROWS[eStream].m_sCloseMessage, nError));
    m_system.terminate();
}

void CAudioStreams::endContext(CStream& stream, int nError)
{
    const bool bEnded = stream.m_pContext->end();
    if (!bEnded)
        m_hanging.push_back(stream.m_pContext.get());
    if (!bEnded || nError == IAudioSystem::AUDIO_NO_ANSWER)
        keepForGood(std::move(stream.m_pContext)); // it may still be called with
    stream.m_pContext.reset();
}

bool CAudioStreams::hasHangingCallback() const
{
    return std::ranges::any_of(m_hanging, [](const CStreamContext* p) { return p->m_nInside.load() > 0; });
}

bool CAudioStreams::isLost(EAudioStream eStream) const
{
    const CStream& stream = m_streams[eStream];
    if (!stream.m_bRunning || m_system.isStreamActive(stream.m_stream))
        return false;
    return eStream != STREAM_WAVE || m_wave.isOpen();
}

double CAudioStreams::sampleRate() const
{
    return m_settings.sampleRate();
}

int CAudioStreams::framesPerBuffer() const
{
    const unsigned uFrames = m_settings.framesPerBuffer();
    return static_cast<int>(uFrames == 0 ? DEFAULT_FRAMES : std::min(uFrames, MAX_FRAMES));
}

bool CAudioStreams::fail(std::string_view sMessage)
{
    m_dialogs.showMessage(sMessage);
    m_sReason = sMessage;
    return false;
}

bool CAudioStreams::failWith(std::string_view sMessage, int nError)
{
    m_dialogs.showMessage(sMessage);
    m_sReason = std::string(sMessage) + " " + m_system.errorText(nError) + ".";
    m_dialogs.note(m_sReason);
    return false;
}

bool CAudioStreams::failWithoutDevice(const char* pDirection)
{
    m_system.terminate();
    return fail(formatted("Portaudio reports: No audio %s device!", pDirection));
}

// A wave stream fails without a box.
bool CAudioStreams::failAt(EAudioStream eStream, int nStep, int nError)
{
    const COpeningStep& step = STEPS[static_cast<std::size_t>(nStep)];
    m_sReason = "The audio system did not come up for the ";
    m_sReason += ROWS[eStream].m_sName;
    if (nStep != STEP_INITIALIZE)
        m_sReason = formatted("The stream of the %s on %s at %s Hz could not be %s",
                              std::string(ROWS[eStream].m_sName).c_str(), deviceNames(eStream).c_str(),
                              shortestDecimal(m_dOpenedRate).c_str(), step.m_pVerb);
    m_sReason += formatted(": %s (error %d). You may choose another device (%s).",
                           m_system.errorText(nError).c_str(), nError, CAudioDevices::WHERE_CHOSEN);
    m_dialogs.note(m_sReason);
    if (eStream != STREAM_WAVE)
        m_dialogs.showMessage(step.m_pMessage + std::to_string(nError));
    return false;
}

} // namespace velmora
