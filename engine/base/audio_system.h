#pragma once

#include <optional>
#include <string>
#include <vector>

namespace velmora {

// One device of the audio system.
struct CAudioDeviceInfo
{
    std::string m_sName;
    std::string m_sHostApi; // "ALSA", "JACK Audio Connection Kit" ...
    int m_nMaxInputChannels = 0;
    int m_nMaxOutputChannels = 0;
    double m_dDefaultSampleRate = 0.0;        // Hz
    double m_dDefaultLowInputLatency = 0.0;   // seconds
    double m_dDefaultLowOutputLatency = 0.0;  // seconds
    double m_dDefaultHighInputLatency = 0.0;  // seconds
    double m_dDefaultHighOutputLatency = 0.0; // seconds
};

// What a callback answers: whether the stream goes on.
enum EAudioCallbackResult : int
{
    AUDIO_CONTINUE = 0,
    AUDIO_COMPLETE = 1 // what is in the buffer is still played, and no callback follows
};

// What went wrong around the buffer in hand, as bits.
enum EAudioCallbackStatus : unsigned
{
    AUDIO_INPUT_LOST = 1,  // input came too late, or was thrown away
    AUDIO_OUTPUT_LOST = 2, // a gap was played, or output was thrown away
};

// Turns one buffer of interleaved 32-bit float input into one of output; either may be null. [audio]
using audioCallback = EAudioCallbackResult (*)(const float* pIn, float* pOut, unsigned uFrames,
                                               unsigned uStatus, void* pUser);

// One direction of a stream.
struct CAudioStreamSide
{
    int m_nDevice = -1;
    int m_nChannels = 2;
    double m_dLatency = 0.0; // suggested, seconds
};

struct CAudioStreamRequest
{
    std::optional<CAudioStreamSide> m_input;
    std::optional<CAudioStreamSide> m_output;
    double m_dSampleRate = 44100.0; // Hz
    unsigned m_uFramesPerBuffer = 64;
    audioCallback m_pCallback = nullptr;
    void* m_pUser = nullptr;
};

// A stream that is open; null for none.
using audioStream = struct CAudioStreamHandle*;

// Port: the audio system, as thin as a fault-injecting double in a test needs it. Device indexes count
// from 0 in the order of devices(); -1 means none. An operation that answers an int answers 0 when it is
// done, else the audio system's error code, for which errorText() has words; AUDIO_NO_ANSWER says that the
// system did not come back in time. None of the operations takes longer than a few seconds. [main]
class IAudioSystem
{
  public:
    static constexpr int AUDIO_NO_ANSWER = -9987;

    virtual ~IAudioSystem() = default;

    // Brings the audio system up; each success is paired with one terminate().
    [[nodiscard]] virtual int initialize() = 0;
    virtual void terminate() = 0;

    [[nodiscard]] virtual std::vector<CAudioDeviceInfo> devices() const = 0;
    [[nodiscard]] virtual int defaultInputDevice() const = 0;
    [[nodiscard]] virtual int defaultOutputDevice() const = 0;

    // Looks for devices anew; indexes from before have no meaning afterwards. A stream that is open plays on.
    [[nodiscard]] virtual int rescan() = 0;

    // Whether the devices take 16-bit samples of these channels at dSampleRate (Hz) with no latency asked
    // for.
    [[nodiscard]] virtual bool isFormatSupported(const std::optional<CAudioStreamSide>& input,
                                                 const std::optional<CAudioStreamSide>& output,
                                                 double dSampleRate) const = 0;

    // Opens a stream, which is then stopped. On failure the stream is null.
    [[nodiscard]] virtual int openStream(const CAudioStreamRequest& request, audioStream& stream) = 0;
    [[nodiscard]] virtual int startStream(audioStream stream) = 0;

    // Returns when the last callback has.
    [[nodiscard]] virtual int stopStream(audioStream stream) = 0;

    // Gives the stream back, whether or not it was stopped; it is gone even if the answer is an error. When
    // the answer is AUDIO_NO_ANSWER a callback may still come.
    [[nodiscard]] virtual int closeStream(audioStream stream) = 0;

    // False once it was stopped, has completed, or its device or server has gone away.
    [[nodiscard]] virtual bool isStreamActive(audioStream stream) const = 0;

    // What an error code means, as a short English sentence without a full stop.
    [[nodiscard]] virtual std::string errorText(int nError) const = 0;
};

} // namespace velmora
