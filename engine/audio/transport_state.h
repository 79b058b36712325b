#pragma once

#include <atomic>

namespace velmora {

// What the audio engine is doing.
enum ETransportState : unsigned
{
    TRANSPORT_IDLE = 1,     // after start, no file played yet
    TRANSPORT_PLAY = 2,     // a wave file plays, or offline processing runs
    TRANSPORT_PAUSE = 3,    // a wave file is paused
    TRANSPORT_STOP = 4,     // stopped
    TRANSPORT_SOUND_IN = 5, // sound-card input runs through the filter
    TRANSPORT_OSC = 6,      // the test oscillator runs through the filter
    TRANSPORT_USER_OSC = 7, // an output-only plug-in runs, with silence as its input
};

// The transport's state, a plain word: it is changed on the main thread, when no callback depends on it or at
// a buffer's edge, and read on any.
class CTransportState
{
  public:
    [[nodiscard]] ETransportState state() const { return m_eState.load(std::memory_order_relaxed); }
    void setState(ETransportState eState) { m_eState.store(eState, std::memory_order_relaxed); }

    // Whether a callback may be running now. In the other states none is, and nobody may wait for one.
    [[nodiscard]] bool hasAudioThread() const
    {
        const ETransportState eState = state();
        return eState != TRANSPORT_IDLE && eState != TRANSPORT_PAUSE && eState != TRANSPORT_STOP;
    }

  private:
    std::atomic<ETransportState> m_eState{TRANSPORT_IDLE};
};

} // namespace velmora
