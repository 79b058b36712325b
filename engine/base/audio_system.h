#pragma once

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

// Port: the audio system, as thin as a fault-injecting double in a test needs it. Device indexes count
// from 0 in the order of devices(); -1 means none. All operations: [main].
class IAudioSystem
{
  public:
    virtual ~IAudioSystem() = default;

    // Brings the audio system up; each success is paired with one terminate().
    [[nodiscard]] virtual bool initialize() = 0;
    virtual void terminate() = 0;

    [[nodiscard]] virtual std::vector<CAudioDeviceInfo> devices() const = 0;
    [[nodiscard]] virtual int defaultInputDevice() const = 0;
    [[nodiscard]] virtual int defaultOutputDevice() const = 0;

    // Whether the device takes nChannels of 16-bit input at dSampleRate (Hz) with no latency asked for.
    [[nodiscard]] virtual bool isInputFormatSupported(int nDevice, int nChannels,
                                                      double dSampleRate) const = 0;
};

} // namespace velmora
