#pragma once

#include "base/audio_system.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CAudioDevices;
class CAudioEngine;
class CSettings;
class CSidechain;
class CWaveStream;
class IUserDialogs;
struct CStreamContext;

// The four streams.
enum EAudioStream : unsigned
{
    STREAM_INPUT,      // sound card to sound card, 2 channels
    STREAM_OUTPUT,     // the measurement signal to the device under test, 2 channels
    STREAM_WAVE,       // a wave file to the output device, with the file's channels
    STREAM_OSCILLATOR, // an oscillator to the output device, 2 channels
    STREAM_COUNT
};

// Opens and closes the streams. Each stream that is open holds the audio system up once for itself. [main]
//
// A stream may be closed while the run gate is closed: the gate is opened until the last callback has
// returned, because a callback that waits there would hold up the audio system.
class CAudioStreams
{
  public:
    CAudioStreams(IAudioSystem& system, CAudioDevices& devices, CAudioEngine& engine, CSidechain& sidechain,
                  CWaveStream& wave, const CSettings& settings, IUserDialogs& dialogs);

    // Closes every stream.
    ~CAudioStreams();

    CAudioStreams(const CAudioStreams&) = delete;
    CAudioStreams& operator=(const CAudioStreams&) = delete;

    // Open a stream and start it; one of its kind that is open is closed first. On failure they answer false
    // and reason() says why; the user has been shown a message where one belongs to the failure, else a note.
    [[nodiscard]] bool openWaveStream();
    [[nodiscard]] bool openInputStream();
    [[nodiscard]] bool openOutputStream();
    [[nodiscard]] bool openOscStream();

    // Stop an open stream without closing it, and start it again; false, with a message, if that fails.
    [[nodiscard]] bool pause(EAudioStream eStream);
    [[nodiscard]] bool resume(EAudioStream eStream);

    // Stop and close a stream; nothing happens if it is not open. No callback of it runs afterwards, whatever
    // the audio system answers, but for one that hangs. The wave stream's files and buffers go with it,
    // unless a callback hangs. bQuiet shows no messages.
    void close(EAudioStream eStream, bool bQuiet = false);
    void closeOutputStream() { close(STREAM_OUTPUT); }

    // All of them, in the order input, output, wave, oscillator.
    void closeAll(bool bQuiet = false);

    [[nodiscard]] bool isOpen(EAudioStream eStream) const { return m_streams[eStream].m_stream != nullptr; }

    // Whether a stream that was started has stopped without having completed: its device or the audio server
    // is gone.
    [[nodiscard]] bool isLost(EAudioStream eStream) const;

    // Whether a callback of a stream that was closed has not come back yet, as from a plug-in's endless loop.
    // No stream is to be opened then: it would run the same filter a second time.
    [[nodiscard]] bool hasHangingCallback() const;

    // The devices that an open stream uses, as the audio system calls them.
    [[nodiscard]] const std::string& deviceNames(EAudioStream eStream) const
    {
        return m_streams[eStream].m_sDevices;
    }

    // How often a stream was opened.
    [[nodiscard]] unsigned openings() const { return m_uOpenings; }

    // Rate of the streams that do not play a file, and of the stream that was opened last, Hz.
    [[nodiscard]] double sampleRate() const;
    [[nodiscard]] double openedRate() const { return m_dOpenedRate; }

    // Frames that a callback is asked for: the settings' number, 64 where that is 0, at most 8192.
    [[nodiscard]] int framesPerBuffer() const;

    // Why the last operation failed, as one sentence; empty if it did not.
    [[nodiscard]] const std::string& reason() const { return m_sReason; }

  private:
    struct CStream
    {
        audioStream m_stream = nullptr;
        bool m_bRunning = false;
        std::string m_sDevices;
        std::unique_ptr<CStreamContext> m_pContext;
    };

    // Devices and channels of a stream that is to be opened; -1 is no device.
    struct CRoute
    {
        int m_nInput;
        int m_nOutput;
        int m_nOutputChannels;
        double m_dSampleRate; // Hz
    };

    bool initialize(EAudioStream eStream);
    bool open(EAudioStream eStream, const CRoute& route);
    void release(EAudioStream eStream, bool bQuiet);
    void endContext(CStream& stream, int nError);
    bool fail(std::string_view sMessage);
    bool failWith(std::string_view sMessage, int nError);
    bool failWithoutDevice(const char* pDirection);
    bool failAt(EAudioStream eStream, int nStep, int nError);
    [[nodiscard]] int orDefaultOutput(int nDevice) const;
    [[nodiscard]] CAudioStreamSide side(int nDevice, int nChannels, bool bInput) const;
    [[nodiscard]] std::string namesOf(const CRoute& route) const;

    IAudioSystem& m_system;
    CAudioDevices& m_devices;
    CAudioEngine& m_engine;
    CSidechain& m_sidechain;
    CWaveStream& m_wave;
    const CSettings& m_settings;
    IUserDialogs& m_dialogs;
    std::array<CStream, STREAM_COUNT> m_streams;
    std::vector<const CStreamContext*> m_hanging; // or were, when their streams were closed
    unsigned m_uOpenings = 0;
    double m_dOpenedRate = 44100.0;
    std::string m_sReason;
};

} // namespace velmora
