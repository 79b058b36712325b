#pragma once

#include "base/midi_system.h"

namespace velmora {

// The MIDI devices through RtMidi: those of ALSA's sequencer, then those of a running JACK server.
// Where one of the two is missing it adds nothing, in silence. All operations: [main].
class CRtMidiSystem : public IMidiSystem
{
  public:
    [[nodiscard]] std::vector<CMidiDeviceInfo> inputs() const override;
    [[nodiscard]] std::vector<CMidiDeviceInfo> outputs() const override;
};

} // namespace velmora
