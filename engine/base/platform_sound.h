#pragma once

namespace velmora {

// Keeps what the ALSA and JACK client libraries say on their own about missing cards and servers off
// standard error, now and later. Does nothing for a library that this machine lacks. [main]
void silenceSoundLibraries();

// Whether a JACK server runs that a client can join. None is started. [main]
[[nodiscard]] bool isJackServerRunning();

} // namespace velmora
