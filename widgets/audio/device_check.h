#pragma once

#include "audio/level_meters.h"
#include "base/audio_system.h"

#include <memory>
#include <string>

namespace velmora {

// Makes devices audible and visible while they are being chosen: a test tone to an output, the level of an
// input. Each has a stream of its own, so that either works without the other. [main]
class CDeviceCheck
{
  public:
    static constexpr double TONE_HZ = 1000.0;
    static constexpr double TONE_AMPLITUDE = 0.1; // -20 dBFS
    static constexpr double RAMP_SECONDS = 0.02;  // at the tone's beginning and end
    static constexpr int MAX_CHANNELS = 2;

    // One side of a stream, and how it is opened.
    struct CRequest
    {
        CAudioStreamSide m_side;        // of 1 or 2 channels
        double m_dSampleRate = 44100.0; // Hz
        unsigned m_uFramesPerBuffer = 64;
    };

    // The audio system must be up for as long as anything runs.
    explicit CDeviceCheck(IAudioSystem& system);

    // Closes both.
    ~CDeviceCheck();

    CDeviceCheck(const CDeviceCheck&) = delete;
    CDeviceCheck& operator=(const CDeviceCheck&) = delete;

    // What ran before is closed. On failure the answer is why, without a full stop; else it is empty.
    [[nodiscard]] std::string startTone(const CRequest& request);
    [[nodiscard]] std::string startMeter(const CRequest& request);

    // The tone fades out, and a later poll() closes it.
    void stopTone();
    void stopMeter();
    void stopAll(); // both, at once

    // Some 30 times a second while anything runs. False if a device has gone away; its stream is closed then.
    [[nodiscard]] bool poll();

    [[nodiscard]] bool isToneOn() const;
    [[nodiscard]] bool isMeterOn() const { return m_pListener != nullptr; }

    // The level of an input channel, METER_INPUT_LEFT or METER_INPUT_RIGHT: 0.0 (-60 dB and below, or off)
    // to 1.0 (0 dB).
    [[nodiscard]] float level(EMeter eMeter) const;

  private:
    struct CTone;
    struct CListener;

    template <typename TContext>
    [[nodiscard]] std::string open(std::unique_ptr<TContext>& pContext, CAudioStreamRequest request);
    template <typename TContext>
    void close(std::unique_ptr<TContext>& pContext);

    IAudioSystem& m_system;
    std::unique_ptr<CTone> m_pTone;         // null while no stream is open
    std::unique_ptr<CListener> m_pListener; // likewise
};

} // namespace velmora
