#include "audio/portaudio_system.h"

#include "audio/portaudio_instance.h"

namespace velmora {

CPortAudioSystem::CPortAudioSystem()
    : CGuardedAudioSystem([] { return std::make_shared<CPortAudioInstance>(); })
{
}

} // namespace velmora
