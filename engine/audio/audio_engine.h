#pragma once

#include "audio/audio_notices.h"
#include "audio/callback_statistics.h"
#include "audio/capture_exchange.h"
#include "audio/channel_mode.h"
#include "audio/decibel_gain.h"
#include "audio/filter_crossfade.h"
#include "audio/level_meters.h"
#include "audio/output_guard.h"
#include "audio/run_gate.h"
#include "audio/sidechain.h"
#include "audio/sound_file.h"
#include "audio/transport_state.h"

#include <array>
#include <atomic>
#include <span>
#include <vector>

namespace velmora {

class CDSPFilter;
struct CEngineBuffer;

// Turns one buffer of input into one buffer of output: gains, meters, the filter, the dry signal.
//
// The path of a buffer, in this order: the run gate; the source (file, input, oscillator, silence); input
// gain and mono mix; meters; the filter, or two of them while one fades into the other; the mix with the dry
// signal by the channel mode and the output gain; meters; the capture for the analyzer; the output guard.
// Offline processing leaves out the last two. Denormals are off. Samples are floats over all channels, -1.0
// to +1.0.
class CAudioEngine
{
  public:
    // The most samples, over all channels, that one call can take; what a longer buffer holds beyond them
    // comes out as silence.
    static constexpr int MAX_SAMPLES = 16384;

    CAudioEngine(CTransportState& transport, CSidechain& sidechain);

    // Readies meters, fade and load for a rate in Hz and clears the meters; what is told once of a filter
    // will be told again; an oscillator that was prepared for another rate begins anew at this one. [main, no
    // stream running]
    void prepare(double dSampleRate);

    // Processes nSamples floats over all channels; the input is scaled by the input gain in place. The
    // channels come from pInfo, else from the open wave file. bOffline leaves out what only a stream needs.
    // The filter runs in the playing state. False if there is no output buffer. [audio]; offline: [main]
    bool processPortAudioFile(float* pIn, float* pOut, int nSamples, bool bOffline,
                              const CSoundFileInfo* pInfo);

    // The same for sound input and for the oscillators: 2 channels, no sidechain. The filter runs in the
    // states of sound input and of both oscillators; in the latter two the input is overwritten. [audio]
    bool processPortAudioIn(float* pIn, float* pOut, int nSamples);
    bool processPortAudioOSC(float* pIn, float* pOut, int nSamples);

    // Plays the measurement signal, 2 channels, while m_nSoundMode is not 0; else silence. The ring starts
    // over when its end is met exactly; a buffer that does not divide it runs past it, and what follows is
    // silence until rewindMeasurement(). False if there is no output buffer. [audio], beside the others
    bool processDUT(float* pOut, int nSamples);
    static constexpr std::size_t MEASUREMENT_SAMPLES = 4096;
    [[nodiscard]] std::span<float, MEASUREMENT_SAMPLES> measurementRing() // [main, m_nSoundMode is 0]
    {
        return m_measurement;
    }
    void rewindMeasurement() { m_uMeasured.store(0, std::memory_order_relaxed); } // [main]

    // The filter that audio runs through, null for none. Set at once, without a fade, and only while the run
    // gate is closed or no stream runs. [main]
    void setFilter(CDSPFilter* pFilter);
    [[nodiscard]] CDSPFilter* filter() const { return m_pFilter; }

    // As setFilter(), but the filter before it plays on for FADE_SECONDS and is faded out while the new one
    // is faded in. It must stay alive until finishFade() has returned. Only while the run gate is closed.
    // [main]
    void fadeTo(CDSPFilter* pFilter);
    static constexpr double FADE_SECONDS = 0.010;

    // Waits until no audio thread uses the filter that is faded out any more; ends the fade at once when no
    // stream moves it on. False if a plug-in does not come back from a call. The gate is open. [main]
    [[nodiscard]] bool finishFade();

    // What fills the input in the oscillator state; not owned. [main, no stream running]
    void setOscillator(CDSPFilter* pOscillator) { m_pOscillator = pOscillator; }

    // Level of a meter after the last buffer, 0.0 (-60 dB and below) to 1.0 (0 dB). [any]
    [[nodiscard]] float meter(EMeter eMeter) const { return m_meters.level(eMeter); }
    void clearMeters() { m_meters.clear(); } // until the next buffer

    [[nodiscard]] CRunGate& gate() { return m_gate; }
    [[nodiscard]] CAudioNotices& notices() { return m_notices; }
    [[nodiscard]] CCaptureExchange& capture() { return m_capture; }
    [[nodiscard]] CCallbackStatistics& statistics() { return m_statistics; }

    // What the filter took of the last buffer's time. [audio]
    [[nodiscard]] CCallbackStatistics::clock::duration filterTime() const { return m_filterTime; }

    // A stream's driver gave no output buffer. [any]; cleared as a stream opens, for the next to be told
    // [main, no stream running]
    [[nodiscard]] bool hasDriverError() const { return m_bDriverError.load(std::memory_order_relaxed); }
    void clearDriverError();

    // A change takes hold at the next buffer. [any]
    std::atomic<float> m_fInputGain_dB{0.0F};
    std::atomic<float> m_fOutputGain_dB{0.0F};
    std::atomic<unsigned> m_uChannelMode{CHANNEL_MODE_STEREO_STEREO};
    std::atomic<bool> m_bBypass{false};
    std::atomic<bool> m_bOscillatorRuns{false}; // else the oscillator state is silent
    std::atomic<bool> m_bProtectSpeakers{true}; // streams only: no sample beyond +24 dBFS reaches a device
    std::atomic<unsigned> m_nSoundMode{0};      // not 0: a measurement runs

    // Format of the wave file that streams play. [main, no stream running]
    CSoundFileInfo m_waveInfo;

  private:
    // What differs between the ways into the engine.
    struct CSource
    {
        int m_nChannels;
        bool m_bFile; // else live: sound input or an oscillator
        bool m_bOffline;
    };

    bool reportDriverError();
    bool process(const CSource& source, float* pIn, float* pOut, int nSamples);
    bool fillInput(ETransportState eState, std::span<float> in);
    void processBuffer(const CSource& source, ETransportState eState, const CEngineBuffer& buffer);
    CEngineBuffer describe(const CSource& source, std::span<float> in, float* pOut);
    void applyInput(const CEngineBuffer& buffer);
    void runFilter(const CSource& source, ETransportState eState, const CEngineBuffer& buffer);
    void timeFilter(const CEngineBuffer& buffer);
    void capture(const CSource& source, ETransportState eState, const CEngineBuffer& buffer);
    void rearmNotices();

    CTransportState& m_transport;
    CSidechain& m_sidechain;
    CDSPFilter* m_pFilter = nullptr;
    CDSPFilter* m_pOscillator = nullptr;
    CRunGate m_gate;
    CAudioNotices m_notices;
    CCaptureExchange m_capture;
    CCallbackStatistics m_statistics;
    CLevelMeters m_meters;
    CFilterCrossfade m_fade{MAX_SAMPLES};
    COutputGuard m_guard{m_notices};
    CCallbackStatistics::clock::duration m_filterTime{};
    double m_dSampleRate = 44100.0; // Hz
    bool m_bOverloadTold = false;
    unsigned m_uOverloadScore = 0;
    std::atomic<bool> m_bDriverError{false};
    float m_fOscillatorBuffers = 0.0F; // since the driver error was cleared
    CDecibelGain m_inputGain;
    CDecibelGain m_outputGain;
    CDecibelGain m_sidechainGain;
    std::vector<float> m_mono; // of the buffer in hand
    std::array<float, MEASUREMENT_SAMPLES> m_measurement{};
    std::atomic<std::size_t> m_uMeasured{0}; // position in it
};

} // namespace velmora
