#pragma once

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

// The transport's state. [main]; the audio thread may read it.
class CTransport
{
  public:
    [[nodiscard]] ETransportState state() const { return m_eState; }
    void setState(ETransportState eState) { m_eState = eState; }

    // Stops, whatever the state was.
    void onStop() { m_eState = TRANSPORT_STOP; }

    // Whether a callback may be running now. In the other states nothing would ever signal the
    // buffer-done event, so nobody may wait for it.
    [[nodiscard]] bool hasAudioThread() const
    {
        return m_eState != TRANSPORT_IDLE && m_eState != TRANSPORT_PAUSE && m_eState != TRANSPORT_STOP;
    }

  private:
    ETransportState m_eState = TRANSPORT_IDLE;
};

} // namespace velmora
