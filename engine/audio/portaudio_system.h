#pragma once

#include "audio/guarded_audio_system.h"

namespace velmora {

// The audio system of the machine, through PortAudio. The chatter of PortAudio and of the sound libraries
// below it stays off standard error. The program does not link PortAudio: where it is not installed,
// initialize() fails, and errorText() says so. All operations: [main].
class CPortAudioSystem : public CGuardedAudioSystem
{
  public:
    CPortAudioSystem();
};

} // namespace velmora
