#pragma once

#include "dsp/modules/biquad_filter.h"

namespace velmora {

enum EVolumeSetting : UINT
{
    VOLUME_OUTPUT,    // linear
    VOLUME_SHELF_FC,  // Hz
    VOLUME_BOOST_CUT, // dB
};

// An output volume with a low shelf in front of it. Frequency and boost begin at 0.5, the frequency below its
// range, where the shelf does next to nothing. [main]
class CVolumeCtrl : public CBiquadFilter
{
  public:
    CVolumeCtrl();

    // Sets the volume only.
    bool resetToDefaults() override;

    // Does nothing; prepareForPlay() clears the past samples.
    bool reset() override { return true; }

  protected:
    [[nodiscard]] CDesign design() const override;
};

} // namespace velmora
