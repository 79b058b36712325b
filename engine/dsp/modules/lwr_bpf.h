#pragma once

#include "dsp/modules/filter_chain.h"

namespace velmora {

enum ELWR_BPFSetting : UINT
{
    LWRBPF_FC_LOW,  // Hz
    LWRBPF_FC_HIGH, // Hz
};

// A band-pass of two Linkwitz-Riley filters: a high-pass at the low frequency, which is child 0 and works in
// the input buffer, and behind it a low-pass at the high one. The low frequency may lie above the high one;
// little is left of the sound then.
class CLWR_BPF : public CFilterChain
{
  public:
    static constexpr UINT FILTER_ID = 1008;

    CLWR_BPF();

    bool resetToDefaults() override;

    // Negates the output. [main]
    void setReversePhase(bool bReverses);
    [[nodiscard]] bool reversesPhase() const { return m_bReversesPhase; } // [main]

  protected:
    bool route(const CPass& pass, float* pIn, float* pOut) override;
    void settingsChanged() override;

  private:
    void setTypes();

    bool m_bReversesPhase = false;
};

} // namespace velmora
