// Compressor: turns loud passages down, and shows by how much.
//
// Works on buffers: the host calls processSocketAudioBuffer() with interleaved samples, which are always
// from -1.0 to +1.0; a compressor must know what 0 dB is. Both channels get the same gain, so that the
// stereo picture stays where it is. C++20.

#pragma once

#include "plugin.h"

#include <atomic>

class CCompressor : public CPlugIn
{
  public:
    CCompressor();

    bool initUI() override;
    bool prepareForPlay() override;
    bool userInterfaceChange(int nControlIndex) override;
    bool processSocketAudioBuffer(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                                  UINT uNumOutputChannels, UINT uBufferSize) override;

  private:
    // Ids of the controls: 0 to 39 are sliders, 41 to 44 radio banks, 50 to 59 meters.
    enum EControl
    {
        THRESHOLD = 0,
        RATIO = 1,
        KNEE = 2,
        ATTACK = 3,
        RELEASE = 4,
        MAKEUP = 5,
        DETECTOR = 41,
        REDUCTION_METER = 50,
        LEVEL_METER = 51
    };

    // The items of the detector's radio bank, in its order.
    enum EDetector
    {
        Peak,
        RMS
    };

    void appendSliders();
    void appendMeter(UINT uId, const char* pName, const char* pVariableName, float* pVariable,
                     bool bUpsideDown);
    void takeSettings();
    double reductionAt(double dLevel_dB) const;
    void showMeters(double dReduction_dB, double dLevel_dB);

    // What the controls are bound to. The host writes these on the main thread while audio runs, so the
    // audio thread leaves them alone.
    float m_fThreshold_dB = -24.0f; // -60 to 0 dB
    float m_fRatio = 4.0f;          // 1 to 20
    float m_fKnee_dB = 6.0f;        // 0 (hard) to 24 dB
    float m_fAttack_ms = 10.0f;     // 0.1 to 200 ms
    float m_fRelease_ms = 120.0f;   // 5 to 2000 ms
    float m_fMakeup_dB = 0.0f;      // 0 to 24 dB
    UINT m_uDetector = Peak;

    // What the meters are bound to, 0.0 to 1.0. Written on the audio thread.
    float m_fReductionMeter = 0.0f; // 1.0 is a reduction of 24 dB
    float m_fLevelMeter = 0.0f;     // 0.0 is -60 dB, 1.0 is 0 dB

    // What crosses from the main thread to the audio thread, which reads it once in each call. Each number
    // stands for itself, so a mixture of old and new does no harm.
    struct SSettings
    {
        std::atomic<float> fThreshold_dB;
        std::atomic<float> fSlope;
        std::atomic<float> fKnee_dB;
        std::atomic<float> fAttack_ms;
        std::atomic<float> fRelease_ms;
        std::atomic<float> fMakeup_dB;
        std::atomic<UINT> uDetectMode;
    };
    SSettings m_settings;

    // From here on only the audio thread and prepareForPlay(), which never run together.
    CEnvelopeDetector m_detector;
    CParameterSmoother m_threshold_dB;
    CParameterSmoother m_slope; // dB of reduction for each dB above the threshold: 1 - 1 / ratio
    CParameterSmoother m_knee_dB;
    CParameterSmoother m_makeup_dB;
};
