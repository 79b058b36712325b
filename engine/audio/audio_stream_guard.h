#pragma once

#include "base/audio_system.h"

#include <atomic>
#include <chrono>

namespace velmora {

// Stands between the audio system and the callback of one stream: sees whether callbacks keep coming, holds
// the callback back until the stream is heard, and can cut it off from a system that no longer obeys.
//
// How it works: a system may call before its connections carry sound (JACK connects from its next period
// on), and what is played then is lost. Calls ahead of started() are therefore silence, and so is the one
// that sees it first, as its period may have begun earlier. To cut off, the callback raises one flag while it
// is inside and then looks at the other, detached; detach() raises that one and then waits until nobody is
// inside. Whichever comes first, the two never miss each other.
class CAudioStreamGuard
{
  public:
    // For streams of this request.
    explicit CAudioStreamGuard(const CAudioStreamRequest& request);

    CAudioStreamGuard(const CAudioStreamGuard&) = delete;
    CAudioStreamGuard& operator=(const CAudioStreamGuard&) = delete;

    // The request with the guard in the callback's place. [main]
    [[nodiscard]] CAudioStreamRequest request();

    // The stream is about to be started: the time without a callback counts from here, and callbacks are
    // held back. [main]
    void starting(std::chrono::steady_clock::time_point now);

    // The start has come back: the callback is called from now on. [main]
    void started() { m_bHeldBack = false; }

    // False when no callback has come for a second, or for four buffers if that is longer. Only the time
    // between looks counts, and at most 250 ms of each, so that a program that was held up does not
    // take its own sleep for the stream's. [main]
    [[nodiscard]] bool isBeating(std::chrono::steady_clock::time_point now);

    // Whether the callback has answered AUDIO_COMPLETE since the stream was started. [any]
    [[nodiscard]] bool hasCompleted() const { return m_bCompleted; }

    // From now on the callback is not called any more, and the stream is silence. Waits for a callback that
    // is on its way; false if it has not come back within the limit. [main]
    bool detach(std::chrono::milliseconds limit);

  private:
    [[nodiscard]] bool mayPlay();
    static EAudioCallbackResult callBack(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus,
                                         void* pGuard);

    const CAudioStreamRequest m_request;
    std::chrono::nanoseconds m_silenceAllowed;
    std::chrono::nanoseconds m_silence{0};
    std::chrono::steady_clock::time_point m_lastLook;
    unsigned m_uBeatsSeen = 0;
    std::atomic<unsigned> m_uBeats{0};
    std::atomic<bool> m_bInside{false};
    std::atomic<bool> m_bHeldBack{false};
    std::atomic<bool> m_bCalledEarly{false}; // a callback was held back
    std::atomic<bool> m_bDetached{false};
    std::atomic<bool> m_bCompleted{false};
};

} // namespace velmora
