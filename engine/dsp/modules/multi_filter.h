#pragma once

#include "dsp/modules/biquad_designs.h"
#include "dsp/modules/biquad_filter.h"

#include <array>

namespace velmora {

// The settings of the filters with a type, in the order of their controls; a class leaves out what it does
// not use.
enum EMultiFilterSetting : UINT
{
    MULTIFILTER_FC,        // Hz
    MULTIFILTER_BOOST_CUT, // dB
    MULTIFILTER_Q,         // a bandwidth in Hz in CAllPassFilter
    MULTIFILTER_VOLUME,    // linear
    MULTIFILTER_PARAMETER_COUNT,
    MULTIFILTER_TYPE = MULTIFILTER_PARAMETER_COUNT,
};

// The second-order filter of the house: a section whose coefficients belong to one of several types
// (biquad_designs.h). This class has the shelves and the two graphic bands; those derived from it have other
// types and tables, and nothing else of their own.
//
// "Graphic A" is a band beside the input: in processBuffer(), which measures, the input is added to the
// filtered signal; processInterleaved() gives the band alone. At 0 dB it is doubled, then, not flat.
class CMultiFilter : public CBiquadFilter
{
  public:
    CMultiFilter();

    // By code. False, and nothing changes, for a type that this class does not have. [main]
    bool setType(UINT uCode) { return setChoice(0, uCode); }
    [[nodiscard]] UINT type() const { return choice(0); } // [any]

    bool setControlPosition(UINT uControlId, int nPos) override;

    // What a control calls with its position, 0 to 256: takes over the value there, shows it, and works out
    // the coefficients. False for what this class has no control of. [main], or the MIDI thread
    virtual bool setCenterFrequency(int nPos);
    virtual bool setBoostCut(int nPos);
    virtual bool setQ(int nPos);
    virtual bool setOutputVolume(int nPos);
    virtual bool setFilterType(int nPos);

    // The texts of all controls anew. [main]
    virtual bool updateDisplay();

  protected:
    CMultiFilter(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                 std::span<const CModuleChoice> types);

    [[nodiscard]] CDesign design() const override;
};

} // namespace velmora
