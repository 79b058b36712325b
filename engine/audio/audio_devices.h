#pragma once

#include "base/audio_system.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// What the settings remember of the devices. A name that stands for no device is "None".
struct CAudioDeviceChoice
{
    std::string m_sInputName;
    std::string m_sOutputName;
    std::string m_sDUTName;         // the device under test, an output
    double m_dSampleRate = 44100.0; // Hz, of sound input
};

// The latency to suggest for one side of a stream, in seconds: the device's low or high default, times the
// multiplier.
[[nodiscard]] double streamLatency(const CAudioDeviceInfo& device, bool bInput, bool bLow,
                                   unsigned uMultiplier);

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

    // Lists the devices anew and chooses among them, as choose() does. When that cannot be, the message says
    // so, and the devices of before stay.
    [[nodiscard]] std::string rescan(CAudioDeviceChoice& choice);

    [[nodiscard]] bool isAvailable() const { return m_bInitialized; }

    // Indexes into the list; -1 means none.
    [[nodiscard]] int inputDevice() const { return m_nInput; }
    [[nodiscard]] int outputDevice() const { return m_nOutput; }
    [[nodiscard]] int dutDevice() const { return m_nDUT; }

    // What was there at the last choose() or rescan().
    [[nodiscard]] const std::vector<CAudioDeviceInfo>& devices() const { return m_devices; }

    // One of them; null for -1 and for an index outside the list.
    [[nodiscard]] const CAudioDeviceInfo* device(int nDevice) const;

    // The device and rate test: whether the devices take 16-bit samples at dRate (Hz), each with all its
    // channels of that direction. -1 leaves a side out; false if both are.
    [[nodiscard]] bool isRateSupported(int nInput, int nOutput, double dRate) const;

    // Those of the usual rates, 8000 to 192000 Hz, that pass the test.
    [[nodiscard]] std::vector<double> supportedRates(int nInput, int nOutput) const;

    [[nodiscard]] static std::span<const double> usualRates(); // Hz, ascending

    // Where people choose devices, for messages that advise them to.
    static constexpr const char* WHERE_CHOSEN =
        "Audio/MIDI->Setup Audio Devices in the window, velmora-cli devices in a shell";

    [[nodiscard]] IAudioSystem& system() const { return m_system; }

  private:
    std::string match(CAudioDeviceChoice& choice);

    IAudioSystem& m_system;
    std::vector<CAudioDeviceInfo> m_devices;
    bool m_bInitialized = false;
    int m_nInput = -1;
    int m_nOutput = -1;
    int m_nDUT = -1;
};

} // namespace velmora
