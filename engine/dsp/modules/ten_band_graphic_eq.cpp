#include "dsp/modules/ten_band_graphic_eq.h"

#include "dsp/modules/buffer_mix.h"
#include "dsp/modules/multi_filter.h"

#include <array>

namespace velmora {

namespace {

constexpr float HEADROOM = 0.25F;

struct CBand
{
    const char* m_pLabel;
    float m_fFrequency; // Hz
    UINT m_uType;
};

constexpr std::array<CBand, 12> CHILDREN = {{
    {"32 Hz", 32.0F, FILTER_GRAPHIC_B},
    {"64 Hz", 64.0F, FILTER_GRAPHIC_B},
    {"125 Hz", 125.0F, FILTER_GRAPHIC_B},
    {"250 Hz", 250.0F, FILTER_GRAPHIC_B},
    {"500 Hz", 500.0F, FILTER_GRAPHIC_B},
    {"1 kHz", 1000.0F, FILTER_GRAPHIC_B},
    {"2 kHz", 2000.0F, FILTER_GRAPHIC_B},
    {"4 kHz", 4000.0F, FILTER_GRAPHIC_B},
    {"8 kHz", 8000.0F, FILTER_GRAPHIC_B},
    {"16 kHz", 16000.0F, FILTER_GRAPHIC_B},
    {"Lo Shelf", 100.0F, FILTER_LOW_SHELF},
    {"Hi Shelf", 10000.0F, FILTER_HIGH_SHELF},
}};

constexpr float Q = 1.414F;
constexpr CModuleRange FREQUENCIES = {0.0F, 10.0F, 20000.0F};
constexpr CModuleRange GAINS = {0.0F, -12.0F, 12.0F};
constexpr CModuleRange QS = {Q, 0.8F, 10.0F};

} // namespace

CTenBandGraphicEQ::CTenBandGraphicEQ() : CFilterChain("Ten Band EQ + shelving", FILTER_ID)
{
    for (const CBand& band : CHILDREN)
        addChild<CMultiFilter>(band.m_pLabel, {{MULTIFILTER_BOOST_CUT, band.m_pLabel, "dB"}});
    CTenBandGraphicEQ::createControls();
    setUpChildren();
}

void CTenBandGraphicEQ::setUpChildren()
{
    for (UINT uChild = 0; uChild < childCount(); ++uChild) {
        const CBand& band = CHILDREN[uChild];
        CModuleFilter& child = childAt(uChild);
        child.setRange(MULTIFILTER_FC, {band.m_fFrequency, FREQUENCIES.m_fLow, FREQUENCIES.m_fHigh});
        child.setRange(MULTIFILTER_BOOST_CUT, GAINS);
        child.setRange(MULTIFILTER_Q, QS);
        child.setChoice(0, band.m_uType);
        child.setParameter(MULTIFILTER_FC, band.m_fFrequency);
        child.setParameter(MULTIFILTER_BOOST_CUT, GAINS.m_fDefault);
        child.setParameter(MULTIFILTER_Q, Q);
    }
}

bool CTenBandGraphicEQ::resetToDefaults()
{
    const bool bDone = CFilterChain::resetToDefaults();
    setUpChildren();
    return bDone;
}

bool CTenBandGraphicEQ::route(const CPass& pass, float* pIn, float* pOut)
{
    scaleBuffer(pIn, pass.m_uSamples, HEADROOM);
    bool bDone = run(pass, LOW_SHELF, pIn, pOut);
    for (UINT uBand = 0; uBand < BANDS; ++uBand)
        bDone = run(pass, uBand, pOut, pOut) && bDone;
    bDone = run(pass, HIGH_SHELF, pOut, pOut) && bDone;
    scaleBuffer(pOut, pass.m_uSamples, 1.0F / HEADROOM);
    return bDone;
}

} // namespace velmora
