#pragma once

#include "audio/sidechain.h"
#include "audio/sound_file.h"
#include "audio/transport.h"
#include "base/auto_reset_event.h"
#include "dsp/level_detector.h"

#include <array>
#include <atomic>
#include <span>
#include <vector>

namespace velmora {

class CDSPFilter;

// How audio is routed through the filter: into it mono or stereo, out of it mono or stereo, and in the
// upper three modes the dry input is added to the output.
enum EChannelMode : unsigned
{
    CHANNEL_MODE_MONO_MONO = 0,
    CHANNEL_MODE_MONO_STEREO = 1,
    CHANNEL_MODE_STEREO_STEREO = 2,
    CHANNEL_MODE_AUX_MONO_MONO = 3,
    CHANNEL_MODE_AUX_MONO_STEREO = 4,
    CHANNEL_MODE_AUX_STEREO_STEREO = 5,
};

// The six level meters.
enum EMeter : unsigned
{
    METER_INPUT_LEFT,
    METER_INPUT_RIGHT,
    METER_OUTPUT_LEFT,
    METER_OUTPUT_RIGHT,
    METER_SIDECHAIN_LEFT,
    METER_SIDECHAIN_RIGHT,
    METER_COUNT
};

// Turns one buffer of input into one buffer of output: gains, meters, the filter, the dry signal.
//
// The run gate and the buffer-done event let the main thread swap the filter between two buffers: it
// waits for buffer-done, lowers the gate, swaps, and raises the gate again.
class CAudioEngine
{
  public:
    // The most samples, over all channels, that one call can take; what a longer buffer holds beyond them
    // comes out as silence.
    static constexpr int MAX_SAMPLES = 16384;

    CAudioEngine(CTransport& transport, CSidechain& sidechain);

    // Readies the meters for a rate in Hz and clears them. [main, no stream running]
    void prepare(double dSampleRate);

    // Processes nSamples floats over all channels, -1.0 to +1.0; the input is scaled by the input gain
    // in place. Channels and rate come from pInfo, else from the open wave file. bOffline leaves out
    // what only a stream needs. False if there is no output buffer. [audio]; offline: [main]
    bool processPortAudioFile(float* pIn, float* pOut, int nSamples, bool bOffline,
                              const CSoundFileInfo* pInfo);

    // The filter that audio runs through, null for none. Set only while the run gate is down, or when
    // no stream runs. [main]
    void setFilter(CDSPFilter* pFilter) { m_pFilter = pFilter; }
    [[nodiscard]] CDSPFilter* filter() const { return m_pFilter; }

    // Level of a meter after the last buffer, 0.0 (-60 dB and below) to 1.0 (0 dB). [any]
    [[nodiscard]] float meter(EMeter eMeter) const
    {
        return m_meters[eMeter].load(std::memory_order_relaxed);
    }

    [[nodiscard]] CAutoResetEvent& runGate() { return m_runGate; }
    [[nodiscard]] CAutoResetEvent& bufferDone() { return m_bufferDone; }

    // A stream's driver gave no output buffer. [any]
    [[nodiscard]] bool hasDriverError() const { return m_bDriverError.load(std::memory_order_relaxed); }

    // A change takes hold at the next buffer. [any]
    std::atomic<float> m_fInputGain_dB{0.0F};
    std::atomic<float> m_fOutputGain_dB{0.0F};
    std::atomic<unsigned> m_uChannelMode{CHANNEL_MODE_STEREO_STEREO};
    std::atomic<bool> m_bBypass{false};

    // Format of the wave file that streams play. [main, no stream running]
    CSoundFileInfo m_waveInfo;

  private:
    // What stays the same over one buffer.
    struct CBuffer
    {
        std::span<float> m_in;
        float* m_pOut;
        int m_nChannels;
        unsigned m_uMode;
        float m_fInputGain;
        float m_fOutputGain;
        float* m_pSidechain; // null: none
        int m_nSidechainChannels;
        bool m_bSidechainEnabled;
        bool m_bListen;

        [[nodiscard]] bool usesMonoMix() const { return m_nChannels == 2 && m_uMode % 3 != 2; }
    };

    // A gain whose linear value is worked out again only when its dB change.
    class CGain
    {
      public:
        [[nodiscard]] float linear(float fGain_dB);

      private:
        float m_fGain_dB = 0.0F;
        float m_fLinear = 1.0F;
    };

    CBuffer describeBuffer(float* pIn, float* pOut, int nSamples, int nChannels);
    void applyInput(const CBuffer& buffer);
    void applySidechain(const CBuffer& buffer);
    void runFilter(const CBuffer& buffer);
    void copyThrough(const CBuffer& buffer);
    void applyOutput(const CBuffer& buffer);
    void detect(EMeter eLeft, const float* pInterleaved, std::size_t uFrames);

    CTransport& m_transport;
    CSidechain& m_sidechain;
    CDSPFilter* m_pFilter = nullptr;
    CAutoResetEvent m_runGate{true};
    CAutoResetEvent m_bufferDone{false};
    std::atomic<bool> m_bDriverError{false};
    CGain m_inputGain;
    CGain m_outputGain;
    CGain m_sidechainGain;
    std::vector<float> m_mono; // 0.5 * left + 0.5 * right of the buffer in hand
    std::array<CLevelDetector, METER_COUNT> m_detectors;
    std::array<std::atomic<float>, METER_COUNT> m_meters{};
};

} // namespace velmora
