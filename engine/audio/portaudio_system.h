#pragma once

#include "base/audio_system.h"

namespace velmora {

// The audio system of the machine, through PortAudio. The chatter of the sound libraries below it stays
// off standard error. Before initialize() there are no devices. All operations: [main].
class CPortAudioSystem : public IAudioSystem
{
  public:
    [[nodiscard]] bool initialize() override;
    void terminate() override;

    [[nodiscard]] std::vector<CAudioDeviceInfo> devices() const override;
    [[nodiscard]] int defaultInputDevice() const override;
    [[nodiscard]] int defaultOutputDevice() const override;
    [[nodiscard]] bool isInputFormatSupported(int nDevice, int nChannels, double dSampleRate) const override;
};

} // namespace velmora
