// StereoDelay: echoes with a time of their own on each side, which make room for a second signal.
//
// The second signal is the sidechain: the louder it is, the softer the echoes become ("ducking"). The
// plug-in works on single frames; ahead of each one the host hands over the sidechain's frame. C++20.

#pragma once

#include "plugin.h"

#include <atomic>

class CStereoDelay : public CPlugIn
{
  public:
    CStereoDelay();

    bool initUI() override;
    bool prepareForPlay() override;
    bool userInterfaceChange(int nControlIndex) override;
    bool processAuxInputBus(auxInputData* pAuxInputData) override;
    bool processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                           UINT uNumOutputChannels) override;

  private:
    // Ids of the controls: 0 to 39 are sliders, 50 to 59 meters.
    enum EControl
    {
        LEFT_TIME = 0,
        RIGHT_TIME = 1,
        FEEDBACK = 2,
        MIX = 3,
        DUCK_THRESHOLD = 4,
        DUCK_DEPTH = 5,
        DUCK_RELEASE = 6,
        DUCK_METER = 50
    };

    enum
    {
        LEFT,
        RIGHT,
        CHANNELS
    };

    void takeSettings();
    double nextDucking();

    // What the controls are bound to. The host writes these on the main thread while audio runs, so the
    // audio thread leaves them alone.
    float m_fLeftTime_ms = 375.0f;      // 1 to 2000 ms
    float m_fRightTime_ms = 250.0f;     // 1 to 2000 ms
    float m_fFeedback_pct = 45.0f;      // 0 to 95 %
    float m_fMix_pct = 35.0f;           // 0 (dry) to 100 % (echoes alone)
    float m_fDuckThreshold_dB = -30.0f; // -60 to 0 dB
    float m_fDuckDepth_dB = 18.0f;      // 0 to 40 dB
    float m_fDuckRelease_ms = 200.0f;   // 10 to 2000 ms

    // What the meter is bound to: 0.0 to 1.0 for 0 to 40 dB. Written on the audio thread.
    float m_fDuckMeter = 0.0f;

    // What crosses from the main thread to the audio thread: the settings, and the news that there are new
    // ones. Each stands for itself, so a mixture of old and new does no harm.
    struct SSettings
    {
        std::atomic<float> fTime_ms[CHANNELS];
        std::atomic<float> fFeedback;
        std::atomic<float> fMix;
        std::atomic<float> fDuckThreshold_dB;
        std::atomic<float> fDuckDepth_dB;
        std::atomic<float> fDuckRelease_ms;
    };
    SSettings m_settings;
    std::atomic<bool> m_bNewSettings{false};

    // From here on only the audio thread and prepareForPlay(), which never run together.
    CDelayLine m_lines[CHANNELS];
    CParameterSmoother m_delays[CHANNELS]; // in samples
    CParameterSmoother m_feedback;
    CParameterSmoother m_mix;

    float m_fSidechain = 0.0f; // size of the sidechain's frame that was handed over last
    CEnvelopeDetector m_sidechainLevel;
    double m_dDuckThreshold_dB = 0.0;
    double m_dDuckDepth_dB = 0.0;
};
