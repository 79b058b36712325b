#pragma once

#include <string>
#include <vector>

namespace velmora {

// One MIDI port that can be opened.
struct CMidiDeviceInfo
{
    std::string m_sName;
    std::string m_sApi; // "ALSA" or "JACK"
};

// Port: the MIDI devices of the machine. All operations: [main].
class IMidiSystem
{
  public:
    virtual ~IMidiSystem() = default;

    // What MIDI can be read from and written to, in the system's order. Empty without a MIDI system.
    [[nodiscard]] virtual std::vector<CMidiDeviceInfo> inputs() const = 0;
    [[nodiscard]] virtual std::vector<CMidiDeviceInfo> outputs() const = 0;
};

} // namespace velmora
