#pragma once

#include "base/audio_system.h"

#include <atomic>
#include <vector>

namespace velmora {

class CAudioEngine;
class CSidechain;
class CWaveStream;

// What the callback of one stream works with; the stream's user data.
//
// How a stream is ended for certain: a callback counts itself in and then looks whether the context is alive;
// the main thread ends its life and then looks at the count. So one of the two sees the other, and once
// the count is 0 no callback touches what the references name, even if the audio system still calls.
struct CStreamContext
{
    CAudioEngine& m_engine;
    CWaveStream& m_wave;
    CSidechain& m_sidechain;
    unsigned m_uFrames;         // worked on at once; a longer buffer is cut up
    unsigned m_uChannels;       // of the output
    std::vector<float> m_input; // m_uFrames of 2 channels
    std::atomic<bool> m_bAlive{true};
    std::atomic<int> m_nInside{0};

    // The two ends of a callback; false if the stream has been ended. [audio]
    [[nodiscard]] bool enter() noexcept;
    void leave() noexcept { m_nInside.fetch_sub(1); }

    // Ends the stream's life. False if a callback that is inside does not return. [main]
    [[nodiscard]] bool end();
};

// One for each stream. Buffers may be of any length; without an output buffer the driver error is told. All
// answer that the stream goes on, but for the wave stream's at the file's end. [audio]
EAudioCallbackResult inputCallback(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus,
                                   void* pContext);
EAudioCallbackResult dutCallback(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus,
                                 void* pContext);
EAudioCallbackResult waveCallback(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus,
                                  void* pContext);
EAudioCallbackResult oscCallback(const float* pIn, float* pOut, unsigned uFrames, unsigned uStatus,
                                 void* pContext);

} // namespace velmora
