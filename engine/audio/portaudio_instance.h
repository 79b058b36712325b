#pragma once

#include "base/audio_system.h"

#include <memory>

namespace velmora {

// PortAudio with a state of its own: each object works on a private copy of the library, so that several
// run side by side, and one that no longer answers harms no other. A copy that cannot be ended cleanly stays
// in memory for ever. One thread at a time; any call may never come back.
//
// PortAudio's own checks end the program where a JACK server has gone away. Here a check that fails holds
// the calling thread instead, for ever; and what is known to hang or to fail so, a call about a JACK stream
// whose server is gone, is not made at all: the answer is AUDIO_NO_ANSWER at once.
class CPortAudioInstance : public IAudioSystem
{
  public:
    // The error of initialize() where PortAudio is not installed.
    static constexpr int NOT_INSTALLED = -9986;

    CPortAudioInstance();
    ~CPortAudioInstance() override;

    [[nodiscard]] int initialize() override;
    void terminate() override;
    [[nodiscard]] std::vector<CAudioDeviceInfo> devices() const override;
    [[nodiscard]] int defaultInputDevice() const override;
    [[nodiscard]] int defaultOutputDevice() const override;

    // Only while no stream is open.
    [[nodiscard]] int rescan() override;

    [[nodiscard]] bool isFormatSupported(const std::optional<CAudioStreamSide>& input,
                                         const std::optional<CAudioStreamSide>& output,
                                         double dSampleRate) const override;
    [[nodiscard]] int openStream(const CAudioStreamRequest& request, audioStream& stream) override;
    [[nodiscard]] int startStream(audioStream stream) override;
    [[nodiscard]] int stopStream(audioStream stream) override;
    [[nodiscard]] int closeStream(audioStream stream) override;
    [[nodiscard]] bool isStreamActive(audioStream stream) const override;
    [[nodiscard]] std::string errorText(int nError) const override;

  private:
    struct CState;
    std::unique_ptr<CState> m_pState;
};

} // namespace velmora
