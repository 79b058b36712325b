#pragma once

#include "audio/audio_streams.h"
#include "audio/notice_reporter.h"
#include "audio/transport_state.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

class CAudioEngine;
class CSidechain;
class CWaveStream;
class IDocumentView;
class IMessageTarget;
class IUserDialogs;
struct CAudioFormat;

// The commands that start and stop audio: each does its steps in their fixed order, opens and closes the
// streams, and leaves the state that belongs to it. [main]
class CTransport
{
  public:
    struct CParts
    {
        CTransportState& m_state;
        CAudioEngine& m_engine;
        CAudioStreams& m_streams;
        CWaveStream& m_wave;
        CSidechain& m_sidechain;
        CAudioFormat& m_format; // what the filter was last told
        IUserDialogs& m_dialogs;
        IMessageTarget& m_messages;
        IDocumentView& m_view;
    };

    explicit CTransport(const CParts& parts);

    // Closes every stream.
    ~CTransport();

    CTransport(const CTransport&) = delete;
    CTransport& operator=(const CTransport&) = delete;

    [[nodiscard]] ETransportState state() const { return m_parts.m_state.state(); }
    [[nodiscard]] bool hasAudioThread() const { return m_parts.m_state.hasAudioThread(); }

    // The file that onPlay() opens; empty for none.
    void setWaveFile(const std::filesystem::path& file) { m_waveFile = file; }
    [[nodiscard]] const std::filesystem::path& waveFile() const { return m_waveFile; }

    // The transport's buttons.
    void onPlay();
    void onLoop();
    void onPause();
    void onStop();

    // bKeepIdle leaves the analyzer running.
    void stopWaveStream(bool bKeepIdle = false);

    void startSoundIn();
    void stopSoundIn();
    void startOsc();
    void stopOsc();
    void startUserOsc();
    void stopUserOsc();

    // Start and Stop of the oscillator window: whether the oscillator of an open stream sounds.
    void startOscillator();
    void stopOscillator();

    // Reads the wave file's rate and channels into the format; false if the file cannot be read.
    bool loadWaveFormat();

    // To be called some 20 times a second while the program runs: sees to the end of a file, to a device or a
    // server that has gone away, to a plug-in that hangs, and to what the audio thread has to tell.
    void onTimer();

    // Why the last command did not start what it should, as one sentence, also where no message was shown;
    // empty if it did.
    [[nodiscard]] const std::string& reason() const { return m_sReason; }

    // Stops whatever runs and closes every stream, whatever the state.
    void close();

  private:
    bool refuse(std::string sReason);
    void startWaveFile();
    bool resumeOpenStream();
    bool isWaveFileThere();
    void stopLiveStreams();
    bool prepareForFile();
    bool prepareFilter();
    bool openFiles();
    void play();
    void closeLiveStreams();
    bool stopForLiveStream();
    bool prepareForLiveStream(bool bAlways);
    void stopAfterLossOf(EAudioStream eStream);
    [[nodiscard]] std::string causeOfLoss(const std::string& sDevices) const;
    [[nodiscard]] std::string hangingText() const;
    [[nodiscard]] bool isHeldUp();
    void note(std::string_view sText);

    CParts m_parts;
    CNoticeReporter m_reporter;
    std::filesystem::path m_waveFile;
    std::string m_sReason;
    bool m_bFileStarted = false; // the playing state is ours, not that of offline processing
};

} // namespace velmora
