#pragma once

#include "base/audio_system.h"

#include <string>
#include <string_view>

namespace velmora {

// What the settings remember of the devices. A name that stands for no device is "None".
struct CAudioDeviceChoice
{
    std::string m_sInputName;
    std::string m_sOutputName;
    std::string m_sDUTName;         // the device under test, an output
    double m_dSampleRate = 44100.0; // Hz, of sound input
};

// The devices that sound goes through: finds those that the settings name in the audio system's list and
// holds their indexes. All operations: [main].
class CAudioDevices
{
  public:
    explicit CAudioDevices(IAudioSystem& system) : m_system(system) {}

    // Gives the audio system back.
    ~CAudioDevices();

    CAudioDevices(const CAudioDevices&) = delete;
    CAudioDevices& operator=(const CAudioDevices&) = delete;

    // Brings the audio system up and chooses. Names match exactly; of several devices with one name the
    // last counts. For output and DUT a device without inputs comes first, then one with both. Input and
    // output fall back to the system's default devices, the DUT to none; choice then receives the
    // name that came of it. A sample rate that the input device does not take, at 2 channels of 16
    // bits, becomes that device's default rate.
    //
    // The result is the one message to show, empty if all is well. When the audio system does not
    // come up, choice stays as it was and isAvailable() is false.
    [[nodiscard]] std::string choose(CAudioDeviceChoice& choice);

    [[nodiscard]] bool isAvailable() const { return m_bInitialized; }

    // Indexes into the audio system's list; -1 means none.
    [[nodiscard]] int inputDevice() const { return m_nInput; }
    [[nodiscard]] int outputDevice() const { return m_nOutput; }
    [[nodiscard]] int dutDevice() const { return m_nDUT; }

  private:
    IAudioSystem& m_system;
    bool m_bInitialized = false;
    int m_nInput = -1;
    int m_nOutput = -1;
    int m_nDUT = -1;
};

} // namespace velmora
