// Gain: makes a signal louder or softer without clicks, mutes it, and shows its level.
//
// The plug-in to read first. It works on single frames: the host calls processAudioFrame() once for
// each sample of all channels. C++20.

#pragma once

#include "plugin.h"

#include <atomic>

class CGain : public CPlugIn
{
  public:
    CGain();

    bool initUI() override;
    bool prepareForPlay() override;
    bool userInterfaceChange(int nControlIndex) override;
    bool processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                           UINT uNumOutputChannels) override;

  private:
    // Ids of the controls: 0 to 39 are sliders, 45 to 48 switches, 50 to 59 meters.
    enum EControl
    {
        GAIN = 0,
        MUTE = 45,
        LEFT_METER = 50,
        RIGHT_METER = 51
    };

    enum
    {
        OFF,
        ON
    };

    void appendMeter(UINT uId, const char* pName, const char* pVariableName, float* pVariable);
    void updateMeters(const float* pFrame, UINT uNumChannels);

    // What the controls are bound to. The host writes these on the main thread while audio runs, so the
    // audio thread leaves them alone.
    float m_fGain_dB = 0.0f; // -60 to +24 dB
    UINT m_uMute = OFF;

    // What the meters are bound to, 0.0 (-60 dB) to 1.0 (0 dB). Written on the audio thread.
    float m_fLeftMeter = 0.0f;
    float m_fRightMeter = 0.0f;

    // The one thing that crosses from the main thread to the audio thread: the gain to move to, linear.
    std::atomic<double> m_dTargetGain{1.0};

    // From here on only the audio thread and prepareForPlay(), which never run together.
    CParameterSmoother m_gain;
    CEnvelopeDetector m_levels[2];
    UINT m_uFramesToMeter = 0;
};
