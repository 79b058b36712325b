#include "audio/transport.h"

#include "audio/audio_devices.h"
#include "audio/audio_engine.h"
#include "audio/wave_stream.h"
#include "base/message_target.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "host/audio_format.h"
#include "host/document_view.h"
#include "host/dsp_filter.h"
#include "host/guarded_call.h"
#include "host/plugin_call_marker.h"
#include "host/view_messages.h"

#include <cmath>
#include <tuple>
#include <utility>

namespace velmora {

namespace {

constexpr int BIT_DEPTH = 16;
constexpr int LIVE_CHANNELS = 2;
constexpr int OSCILLATOR_RATE = 44100; // Hz
constexpr int MAX_FILE_CHANNELS = 2;

} // namespace

CTransport::CTransport(const CParts& parts)
    : m_parts(parts), m_reporter(parts.m_engine, parts.m_streams, parts.m_dialogs, parts.m_messages)
{
}

CTransport::~CTransport()
{
    m_parts.m_streams.closeAll(true);
}

void CTransport::onPlay()
{
    m_sReason.clear();
    if (state() == TRANSPORT_PLAY)
        return;
    startWaveFile();
    m_parts.m_view.refresh();
}

void CTransport::onLoop()
{
    if (state() == TRANSPORT_PLAY)
        m_parts.m_wave.requestLoop();
    else if (state() == TRANSPORT_PAUSE)
        m_parts.m_wave.clearLoop();
    onPlay();
}

void CTransport::onPause()
{
    m_sReason.clear();
    if (state() != TRANSPORT_PLAY)
        return;
    const EAudioStream eStream =
        m_parts.m_streams.isOpen(STREAM_INPUT) && !m_parts.m_streams.isOpen(STREAM_WAVE) ? STREAM_INPUT
                                                                                         : STREAM_WAVE;
    if (eStream == STREAM_WAVE && !m_parts.m_wave.isOpen()) {
        stopWaveStream(); // the file has just ended, or never began
        return;
    }
    if (!m_parts.m_streams.pause(eStream)) {
        refuse(m_parts.m_streams.reason());
        return;
    }
    if (CDSPFilter* pFilter = m_parts.m_engine.filter())
        pFilter->stop();
    m_parts.m_state.setState(TRANSPORT_PAUSE);
    m_parts.m_view.refresh();
}

void CTransport::onStop()
{
    m_sReason.clear();
    if (state() != TRANSPORT_STOP)
        stopWaveStream();
    m_parts.m_wave.clearLoop();
    m_parts.m_engine.clearMeters();
    m_parts.m_view.refresh();
}

void CTransport::startWaveFile()
{
    m_sReason.clear();
    if (isHeldUp() || resumeOpenStream() || !isWaveFileThere())
        return;
    stopLiveStreams();
    const bool bPaused = state() == TRANSPORT_PAUSE;
    if (!bPaused)
        static_cast<void>(loadWaveFormat());
    if (!prepareForFile() || (!bPaused && !openFiles()))
        return;
    play();
}

// True when there was one, so that nothing is to be opened.
bool CTransport::resumeOpenStream()
{
    if (m_parts.m_engine.m_nSoundMode != 0)
        return false;
    for (const EAudioStream eStream : {STREAM_WAVE, STREAM_INPUT}) {
        if (!m_parts.m_streams.isOpen(eStream))
            continue;
        if (eStream == STREAM_WAVE && !m_parts.m_wave.isOpen()) {
            stopWaveStream(); // the file ended while it was paused
            continue;
        }
        // Ahead of the first callback, which runs the filter in this state alone.
        const ETransportState eBefore = state();
        m_parts.m_state.setState(TRANSPORT_PLAY);
        m_bFileStarted = m_parts.m_streams.resume(eStream);
        if (!m_bFileStarted) {
            m_parts.m_state.setState(eBefore);
            refuse(m_parts.m_streams.reason());
        }
        return true;
    }
    return false;
}

bool CTransport::isWaveFileThere()
{
    if (m_waveFile.empty())
        return refuse("No wave file is loaded.");
    std::error_code error;
    if (std::filesystem::exists(m_waveFile, error))
        return true;
    m_parts.m_dialogs.showMessage("Could not find the file: " + m_waveFile.string());
    return refuse("Could not find the file: " + m_waveFile.string());
}

// Only one source at a time may run through the engine.
void CTransport::stopLiveStreams()
{
    if (state() == TRANSPORT_SOUND_IN || state() == TRANSPORT_OSC)
        stopSoundIn();
    stopUserOsc();
}

bool CTransport::loadWaveFormat()
{
    CSoundFile file;
    std::string sError;
    if (m_waveFile.empty() || !file.openForReading(m_waveFile, sError))
        return false;
    m_parts.m_format = {file.info().m_nChannels, file.info().m_nSampleRate, BIT_DEPTH};
    return true;
}

bool CTransport::prepareForFile()
{
    const CAudioFormat& format = m_parts.m_format;
    m_parts.m_engine.prepare(format.m_nSampleRate);
    CDSPFilter* pFilter = m_parts.m_engine.filter();
    if (!pFilter)
        return true;
    format.applyTo(*pFilter);
    note("");
    note("-- Wave File Loaded --");
    note(formatted("SampleRate: %d", format.m_nSampleRate));
    note(formatted("NumChannels: %d", format.m_nChannels));
    note(formatted("BitDepth: %d", format.m_nBitDepth));
    m_parts.m_view.showFormat(format);
    if (!prepareFilter())
        return false;
    note("pPlugIn->prepareForPlay()");
    return true;
}

bool CTransport::prepareFilter()
{
    CDSPFilter* pFilter = m_parts.m_engine.filter();
    if (!pFilter)
        return true;
    const CPlugInCallMarker marker(*pFilter, EPlugInCall::preparing);
    const auto thrown = thrownBy([&] { pFilter->prepareForPlay(); });
    if (!thrown)
        return true;
    const std::string sReason = pFilter->m_sName + " threw an exception in prepareForPlay(): " + *thrown +
                                ". It cannot run until that is mended.";
    m_parts.m_dialogs.showMessage(sReason);
    return refuse(sReason);
}

bool CTransport::openFiles()
{
    std::string sReason;
    if (!m_parts.m_wave.open(m_waveFile, sReason)) {
        m_parts.m_dialogs.showMessage("Failed to open this audio File; incompatible type or corrupt file. "
                                      "Velmora currently supports .WAV and .AIF file types.");
        return refuse(sReason);
    }
    static_cast<void>(m_parts.m_sidechain.openForStream(m_parts.m_streams.framesPerBuffer()));
    const int nChannels = m_parts.m_wave.info().m_nChannels;
    if (nChannels <= MAX_FILE_CHANNELS)
        return true;
    const std::string sMessage = formatted("Velmora currently supports MONO and STEREO files only. This is a "
                                           "%d channel file. Can not continue.",
                                           nChannels);
    m_parts.m_dialogs.showMessage(sMessage);
    return refuse(sMessage);
}

void CTransport::play()
{
    m_parts.m_state.setState(TRANSPORT_PLAY);
    m_bFileStarted = true;
    m_parts.m_wave.takeLoopRequest();
    m_parts.m_view.showFormat(m_parts.m_format);
    if (!m_parts.m_streams.openWaveStream())
        refuse(m_parts.m_streams.reason());
    note("Entering Processing Loop: wave file");
}

void CTransport::stopWaveStream(bool bKeepIdle)
{
    m_parts.m_streams.close(STREAM_WAVE);
    note("Exiting Processing Loop: wave file");
    if (state() == TRANSPORT_STOP && !bKeepIdle)
        return;
    closeLiveStreams(); // no callback may run in the stopped state
    m_bFileStarted = false;
    m_parts.m_state.setState(TRANSPORT_STOP);
    m_parts.m_view.setTitle(MAIN_TITLE);
    if (CDSPFilter* pFilter = m_parts.m_engine.filter())
        pFilter->stop();
    if (!bKeepIdle)
        m_parts.m_view.streamStopped();
    m_parts.m_view.refresh();
}

void CTransport::closeLiveStreams()
{
    for (const EAudioStream eStream : {STREAM_INPUT, STREAM_OUTPUT, STREAM_OSCILLATOR})
        m_parts.m_streams.close(eStream);
    m_parts.m_engine.m_bOscillatorRuns = false;
    m_parts.m_engine.clearMeters();
}

// Readies engine and filter for a stream that plays no file; nothing runs. A filter that was prepared for the
// same format already is left in peace unless bAlways is set.
bool CTransport::prepareForLiveStream(bool bAlways)
{
    CAudioFormat& format = m_parts.m_format;
    const CAudioFormat live{LIVE_CHANNELS, static_cast<int>(std::lround(m_parts.m_streams.sampleRate())),
                            BIT_DEPTH};
    const bool bSame = std::tie(format.m_nChannels, format.m_nSampleRate, format.m_nBitDepth) ==
                       std::tie(live.m_nChannels, live.m_nSampleRate, live.m_nBitDepth);
    format = live;
    m_parts.m_engine.prepare(live.m_nSampleRate);
    CDSPFilter* pFilter = m_parts.m_engine.filter();
    if (!pFilter)
        return true;
    live.applyTo(*pFilter);
    return (bSame && !bAlways) || prepareFilter();
}

// Ends whatever plays. True if nothing had played, so that the filter may never have been prepared.
bool CTransport::stopForLiveStream()
{
    const ETransportState eBefore = state();
    if (eBefore == TRANSPORT_USER_OSC)
        stopUserOsc();
    else if (eBefore == TRANSPORT_PLAY || eBefore == TRANSPORT_PAUSE)
        stopWaveStream();
    closeLiveStreams();
    return eBefore == TRANSPORT_IDLE || eBefore == TRANSPORT_STOP;
}

void CTransport::startSoundIn()
{
    m_sReason.clear();
    const ETransportState eBefore = state();
    if (eBefore == TRANSPORT_SOUND_IN || isHeldUp())
        return;
    m_parts.m_streams.close(STREAM_OSCILLATOR);
    m_parts.m_engine.m_bOscillatorRuns = false;
    m_parts.m_view.refresh();
    if (eBefore != TRANSPORT_STOP)
        stopWaveStream();
    if (eBefore == TRANSPORT_OSC)
        m_parts.m_messages.post(MESSAGE_HIDE_OSCILLATOR, 0, 0);
    if (!prepareForLiveStream(eBefore == TRANSPORT_IDLE || eBefore == TRANSPORT_STOP))
        return;
    m_parts.m_state.setState(TRANSPORT_SOUND_IN);
    if (m_parts.m_streams.openInputStream())
        note("Entering Processing Loop: startPortAudioStream()");
    else
        refuse(m_parts.m_streams.reason());
}

void CTransport::stopSoundIn()
{
    m_sReason.clear();
    if (m_parts.m_streams.isOpen(STREAM_WAVE)) {
        refuse("A wave file is played; sound input does not run.");
        return;
    }
    closeLiveStreams();
    m_parts.m_messages.post(MESSAGE_HIDE_OSCILLATOR, 0, 0);
    m_bFileStarted = false;
    m_parts.m_state.setState(TRANSPORT_STOP);
}

void CTransport::startOsc()
{
    m_sReason.clear();
    if (state() == TRANSPORT_OSC)
        return;
    if (state() == TRANSPORT_SOUND_IN) {
        m_parts.m_messages.post(MESSAGE_SHOW_OSCILLATOR, 0, 0);
        refuse("Sound input runs; stop it first.");
        return;
    }
    if (isHeldUp() || !prepareForLiveStream(stopForLiveStream()))
        return;
    if (!m_parts.m_streams.openOscStream()) {
        refuse(m_parts.m_streams.reason());
        return;
    }
    m_parts.m_state.setState(TRANSPORT_OSC);
    note("Entering Processing Loop: oscillator()");
}

void CTransport::stopOsc()
{
    m_sReason.clear();
    if (state() != TRANSPORT_OSC)
        return;
    closeLiveStreams();
    m_parts.m_state.setState(TRANSPORT_STOP);
}

void CTransport::startUserOsc()
{
    m_sReason.clear();
    if (state() == TRANSPORT_USER_OSC)
        return;
    if (state() == TRANSPORT_SOUND_IN) {
        refuse("Sound input runs; stop it first.");
        return;
    }
    if (isHeldUp() || !prepareForLiveStream(stopForLiveStream()))
        return;
    m_parts.m_state.setState(TRANSPORT_USER_OSC);
    if (m_parts.m_streams.openOscStream())
        note("Entering Processing Loop: User oscillator");
    else
        refuse(m_parts.m_streams.reason());
}

void CTransport::stopUserOsc()
{
    m_sReason.clear();
    if (state() != TRANSPORT_USER_OSC)
        return;
    closeLiveStreams();
    m_parts.m_state.setState(TRANSPORT_STOP);
    note("Exiting Processing Loop: User oscillator");
}

void CTransport::startOscillator()
{
    CAudioFormat& format = m_parts.m_format;
    const double dRate =
        m_parts.m_streams.isOpen(STREAM_OSCILLATOR) ? m_parts.m_streams.sampleRate() : OSCILLATOR_RATE;
    format = {LIVE_CHANNELS, static_cast<int>(std::lround(dRate)), BIT_DEPTH};
    if (CDSPFilter* pFilter = m_parts.m_engine.filter()) {
        const CClosedGate closed(m_parts.m_engine.gate());
        if (closed)
            format.applyTo(*pFilter);
    }
    m_parts.m_view.showFormat(format);
    m_parts.m_engine.m_bOscillatorRuns = true;
    note("Entering Processing Loop: oscillator");
}

void CTransport::stopOscillator()
{
    m_parts.m_engine.m_bOscillatorRuns = false;
    note("Exiting Processing Loop: oscillator");
}

void CTransport::onTimer()
{
    m_reporter.report();
    for (unsigned uStream = 0; uStream < STREAM_COUNT; ++uStream) {
        const auto eStream = static_cast<EAudioStream>(uStream);
        if (m_parts.m_streams.isLost(eStream)) {
            stopAfterLossOf(eStream);
            return;
        }
    }
    if (state() == TRANSPORT_PLAY && m_bFileStarted && !m_parts.m_wave.isOpen())
        stopWaveStream();
}

void CTransport::stopAfterLossOf(EAudioStream eStream)
{
    const std::string sDevices = m_parts.m_streams.deviceNames(eStream);
    m_parts.m_streams.closeAll(true);
    const std::string sMessage = causeOfLoss(sDevices);
    switch (state()) {
    case TRANSPORT_SOUND_IN:
        stopSoundIn();
        break;
    case TRANSPORT_OSC:
        stopOsc();
        break;
    case TRANSPORT_USER_OSC:
        stopUserOsc();
        break;
    default:
        stopWaveStream();
        break;
    }
    m_parts.m_view.refresh();
    m_parts.m_dialogs.showMessage(sMessage);
    refuse(sMessage);
}

// Why a stream stopped that has been closed meanwhile.
std::string CTransport::causeOfLoss(const std::string& sDevices) const
{
    if (m_parts.m_streams.hasHangingCallback())
        return "The audio has stopped: " + hangingText();
    return formatted(
        "The audio device %s has stopped: it was unplugged, or its audio server has ended. Connect "
        "it again or choose another (%s), then start anew.",
        sDevices.c_str(), CAudioDevices::WHERE_CHOSEN);
}

// A callback is in the filter or, ahead of the gate, in the file.
std::string CTransport::hangingText() const
{
    const CDSPFilter* pFilter = m_parts.m_engine.filter();
    if (!pFilter || !m_parts.m_engine.gate().isInside())
        return "a file does not come back from being read. See to its disk, then start anew.";
    return pFilter->m_sName + " does not come back from processing one buffer. Look for a loop that does not "
                              "end; save your work and start Velmora again.";
}

// Told, if an earlier stream's callback is still at work.
bool CTransport::isHeldUp()
{
    if (!m_parts.m_streams.hasHangingCallback())
        return false;
    refuse("No audio can start: " + hangingText());
    m_parts.m_dialogs.showMessage(m_sReason);
    return true;
}

void CTransport::close()
{
    if (state() == TRANSPORT_PLAY || state() == TRANSPORT_PAUSE || state() == TRANSPORT_OSC ||
        state() == TRANSPORT_USER_OSC)
        stopWaveStream();
    m_parts.m_streams.closeAll();
    m_parts.m_engine.m_bOscillatorRuns = false;
    if (state() != TRANSPORT_IDLE)
        m_parts.m_state.setState(TRANSPORT_STOP);
}

bool CTransport::refuse(std::string sReason)
{
    m_sReason = std::move(sReason);
    return false;
}

void CTransport::note(std::string_view sText)
{
    m_parts.m_dialogs.note(sText);
}

} // namespace velmora
