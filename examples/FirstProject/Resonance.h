// Resonance: a low-pass, band-pass, high-pass or notch with a resonance that sings.

#ifndef Resonance_h
#define Resonance_h

#include "plugin.h"

#include <atomic>

class CResonance : public CPlugIn
{
  public:
    CResonance();

    bool initUI() override;
    bool prepareForPlay() override;
    bool processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                           UINT uNumOutputChannels) override;
    bool userInterfaceChange(int nControlIndex) override;

  private:
    void takeControls();
    void setFilters();

    std::atomic<bool> m_bMoved{false}; // a control was moved since takeControls()

    // From here on only the audio thread and prepareForPlay(), which never run together.
    CParameterSmoother m_octave; // cutoff in octaves above 1 Hz
    CParameterSmoother m_q;
    CParameterSmoother m_gain; // linear
    CStateVariableFilter::EKind m_eKind = CStateVariableFilter::lowPass;
    CStateVariableFilter m_filters[2]; // one for each channel: a filter remembers its past

    // The variables of the controls. Velmora writes them.
    // clang-format off
	// **--0x07FD--**

	// **--0x1A7F--**
    // clang-format on
};

#endif
