#pragma once

#include "support/test_support.h"

#include <string>
#include <sys/types.h>

namespace velmora::test {

// Gives this program a /dev/shm of its own, so that audio servers of tests that run side by side, and what
// dead ones left there, do not meet. Where the system does not allow it nothing changes, and the servers'
// names alone keep them apart. To be called at the start of main(), ahead of every thread.
void isolateAudioServers();

// An audio server without hardware: jackd with its dummy driver, two capture and two playback ports, in
// synchronous mode, so that a client loses no sample. While it lives the environment tells libjack, PortAudio
// and the programs that are started from here to use it and no other.
class CJackServer
{
  public:
    // nSampleRate in Hz, nPeriod in frames. Returns when clients can join; throws std::runtime_error, with
    // what the server said, if that never happens.
    explicit CJackServer(int nSampleRate = 48000, int nPeriod = 64);

    // Ends the server, as its user would.
    ~CJackServer();

    CJackServer(const CJackServer&) = delete;
    CJackServer& operator=(const CJackServer&) = delete;

    // Ends it without a word to its clients, as when it crashes. It is gone on return.
    void kill();

    [[nodiscard]] int sampleRate() const { return m_nSampleRate; }
    [[nodiscard]] int period() const { return m_nPeriod; }

  private:
    void start();
    void waitUntilUp();
    void endWith(int nSignal);

    CTemporaryFolder m_folder; // ALSA's configuration and what the server says
    int m_nSampleRate;
    int m_nPeriod;
    pid_t m_nProcess = -1;
};

} // namespace velmora::test
