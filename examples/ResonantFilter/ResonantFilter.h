// ResonantFilter: low-pass, band-pass, high-pass or notch with a resonance that sings.
//
// Works on planes: the host calls processChannelBuffers() with one array of samples for each channel.
// While a response is measured those samples run up to 32767.0 instead of 1.0. A linear filter does not
// mind, which is why this example can take them; the compressor could not. C++20.

#pragma once

#include "plugin.h"

#include <atomic>

class CResonantFilter : public CPlugIn
{
  public:
    CResonantFilter();

    bool initUI() override;
    bool prepareForPlay() override;
    bool userInterfaceChange(int nControlIndex) override;
    bool processChannelBuffers(float** ppInputs, float** ppOutputs, UINT uNumChannels,
                               UINT uNumFrames) override;

  private:
    // Ids of the controls: 0 to 39 are sliders, 41 to 44 radio banks.
    enum EControl
    {
        CUTOFF = 0,
        RESONANCE = 1,
        LEVEL = 2,
        MODE = 41
    };

    // The items of the mode's radio bank, in its order.
    enum EMode
    {
        LP,
        BP,
        HP,
        Notch
    };

    void takeTargets();
    void setFilters();

    // What the controls are bound to. The host writes these on the main thread while audio runs, so the
    // audio thread leaves them alone.
    float m_fCutoff_Hz = 1000.0f; // 20 to 20480 Hz, ten octaves
    float m_fResonance = 4.0f;    // Q, 0.5 to 20
    float m_fLevel_dB = 0.0f;     // -24 to +12 dB
    UINT m_uMode = LP;

    // What crosses from the main thread to the audio thread. Any mixture of old and new among them is a
    // valid setting, so they need no lock between them.
    std::atomic<double> m_dTargetOctave{0.0}; // cutoff in octaves above 1 Hz
    std::atomic<double> m_dTargetResonance{4.0};
    std::atomic<double> m_dTargetLevel{1.0}; // linear
    std::atomic<CStateVariableFilter::EKind> m_eTargetKind{CStateVariableFilter::lowPass};

    // From here on only the audio thread and prepareForPlay(), which never run together.
    CParameterSmoother m_octave;
    CParameterSmoother m_resonance;
    CParameterSmoother m_level;
    CStateVariableFilter::EKind m_eKind = CStateVariableFilter::lowPass;
    CStateVariableFilter m_filters[2]; // one for each channel: a filter remembers its past
};
