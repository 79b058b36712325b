#pragma once

#include "audio/transport_state.h"

namespace velmora {

class CTonboxDoc;
class IUserDialogs;
class IWorkbenchCommands;

// What runs, or would run next, through the filter.
enum class EAudioSource
{
    File,
    SoundCard,
    Oscillator,
    Synth
};

[[nodiscard]] EAudioSource audioSource(ETransportState eState);

// Whether the current filter is a plug-in that makes its sound without an input.
[[nodiscard]] bool isSynthLoaded(const CTonboxDoc& document);

// Stops what runs and starts the source; the oscillator's window is shown with it. A live source that runs
// already is stopped, and the file is only made ready. [main]
void selectAudioSource(EAudioSource eSource, CTonboxDoc& document, IWorkbenchCommands& commands);

// Stops whatever runs. [main]
void stopAudio(CTonboxDoc& document);

// Lists the audio devices anew; shows the message that comes of it. True if there was none. The transport
// must be at rest. [main]
bool rescanAudioDevices(CTonboxDoc& document, IUserDialogs& dialogs);

} // namespace velmora
