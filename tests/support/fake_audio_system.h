#pragma once

#include "base/audio_system.h"

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmora::test {

// An audio system without sound, for tests: its devices and its faults are set by the test, and buffers run
// when the test says so, or on a thread of their own. [main] but for what a comment says.
class CFakeAudioSystem : public IAudioSystem
{
  public:
    // Has one device "card" of 2 inputs and 2 outputs at 44100 Hz, which is the default of both.
    CFakeAudioSystem();

    // Ends the threads of streams that were left open.
    ~CFakeAudioSystem() override;

    // -- What it is made to be

    std::vector<CAudioDeviceInfo> m_devices;
    int m_nDefaultInput = 0;
    int m_nDefaultOutput = 0;
    std::set<double> m_refusedRates; // Hz

    // What the next rescan() finds instead of m_devices.
    std::optional<std::vector<CAudioDeviceInfo>> m_afterRescan;

    // The error that an operation answers: "initialize", "rescan", "open", "start", "stop", "close". One that
    // fails does nothing, but "close", after which the stream is gone. To open without initialize() fails.
    std::map<std::string, int> m_errors;

    // What the input side of each stream hears, interleaved; silence once it is used up.
    std::vector<float> m_input;

    // The status bits of the next callbacks. [any]
    std::atomic<unsigned> m_uStatus{0};

    // From now on a stream that is started calls back on a thread of its own, this often; zero for as fast as
    // it can. Input is then silence, and output is not kept.
    void runOnThreads(std::chrono::microseconds period) { m_threadPeriod = period; }

    // The device or the server goes away: no callback comes any more and no stream is active. With bHangs,
    // stop and close then answer AUDIO_NO_ANSWER.
    void kill(bool bHangs = false);

    // A killed system comes back; streams opened from now on work.
    void revive();

    // -- What was done to it

    // The calls in their order: "initialize", "rescan", "open in 2ch out 2ch 44100 64", "open out 1ch 48000
    // 64", "start", "stop", "close", "terminate". Questions are not among them.
    std::vector<std::string> m_calls;

    [[nodiscard]] int uses() const { return m_nUses; } // successful initialize() less terminate()
    [[nodiscard]] std::size_t openStreams() const { return m_streams.size(); }
    [[nodiscard]] const CAudioStreamRequest& lastRequest() const { return m_lastRequest; }

    // Calls the callback of the stream that was opened last, if it is active, up to so often; answers how
    // often. Its output, interleaved, is added to m_output. In the callback, allocations are counted.
    unsigned run(unsigned uBuffers);

    std::vector<float> m_output;
    [[nodiscard]] unsigned long allocationsInCallbacks() const { return m_uAllocations; }

    // Callbacks since the beginning, of all streams. [any]
    [[nodiscard]] unsigned long callbacks() const { return m_uCallbacks; }

    // -- The port

    int initialize() override;
    void terminate() override;
    std::vector<CAudioDeviceInfo> devices() const override { return m_devices; }
    int defaultInputDevice() const override { return m_nDefaultInput; }
    int defaultOutputDevice() const override { return m_nDefaultOutput; }
    int rescan() override;
    bool isFormatSupported(const std::optional<CAudioStreamSide>& input,
                           const std::optional<CAudioStreamSide>& output, double dSampleRate) const override;
    int openStream(const CAudioStreamRequest& request, audioStream& stream) override;
    int startStream(audioStream stream) override;
    int stopStream(audioStream stream) override;
    int closeStream(audioStream stream) override;
    bool isStreamActive(audioStream stream) const override;
    std::string errorText(int nError) const override;

  private:
    struct CFakeStream;

    [[nodiscard]] CFakeStream* find(audioStream stream) const;
    [[nodiscard]] int answerOf(const std::string& sOperation) const;
    EAudioCallbackResult callBack(CFakeStream& stream);

    std::vector<std::unique_ptr<CFakeStream>> m_streams;
    CAudioStreamRequest m_lastRequest;
    std::optional<std::chrono::microseconds> m_threadPeriod;
    std::atomic<unsigned long> m_uCallbacks{0};
    unsigned long m_uAllocations = 0;
    std::size_t m_uInputRead = 0;
    int m_nUses = 0;
    bool m_bKilled = false;
    bool m_bHangs = false;
};

} // namespace velmora::test
