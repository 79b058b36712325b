#include "dsp/modules/hf_exciter_2.h"

#include "dsp/modules/all_pass_filter.h"
#include "dsp/modules/buffer_mix.h"
#include "dsp/modules/soft_shaper.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr float HEADROOM = 0.5F;
constexpr float HIGH_SHELF_FREQUENCY = 5000.0F; // Hz

constexpr CModuleOption TYPES[] = {
    {EXCITER_TYPE_A, "Type A"},
    {EXCITER_NO_APF, "No APF"},
    {EXCITER_TYPE_C, "Type C"},
    {EXCITER_TYPE_D, "Type D"},
};
constexpr CModuleChoice CHOICES[] = {{"Exciter Type", TYPES}};

} // namespace

CHF_Exciter_2::CHF_Exciter_2() : CHF_Exciter_2("HF Exciter 2", FILTER_ID, {}, CHOICES, PATHS)
{
    makeChildren({{{{MULTIFILTER_FC, "APF1 fc", ""}, {MULTIFILTER_Q, "APF1 BW", ""}},
                   {{MULTIFILTER_FC, "APF2 fc", ""}, {MULTIFILTER_Q, "APF2 BW", ""}},
                   {{MULTIFILTER_FC, "Lo fc", ""}, {MULTIFILTER_BOOST_CUT, "Lo Gain", ""}},
                   {{MULTIFILTER_FC, "Hi fc", ""}, {MULTIFILTER_BOOST_CUT, "Hi Gain", ""}}}});
}

CHF_Exciter_2::CHF_Exciter_2(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                             std::span<const CModuleChoice> choices, std::span<const CPath> paths)
    : CFilterChain(pName, uTag, parameters, choices), m_paths(paths)
{
}

void CHF_Exciter_2::makeChildren(const std::array<std::vector<CShownSetting>, 4>& shown)
{
    addChild<CAllPassFilter>("APF1", shown[ALL_PASS_1]);
    addChild<CAllPassFilter>("APF2", shown[ALL_PASS_2]);
    addChild<CMultiFilter>("Lo", shown[LOW_SHELF]);
    addChild<CMultiFilter>("Hi", shown[HIGH_SHELF]);
    CFilterChain::createControls();
    setWorkingBuffers(3);
    setUpChildren();
}

void CHF_Exciter_2::setUpChildren()
{
    childAt(LOW_SHELF).setChoice(0, FILTER_LOW_SHELF);
    childAt(HIGH_SHELF).setChoice(0, FILTER_HIGH_SHELF);
    childAt(HIGH_SHELF).setParameter(MULTIFILTER_FC, HIGH_SHELF_FREQUENCY);
}

bool CHF_Exciter_2::resetToDefaults()
{
    const bool bDone = CFilterChain::resetToDefaults();
    setUpChildren();
    return bDone;
}

bool CHF_Exciter_2::runPair(const CPass& pass, UINT uFirst, float* pIn, float* pOut) const
{
    return run(pass, uFirst, pIn, pOut) && run(pass, uFirst + 1, pOut, pOut);
}

bool CHF_Exciter_2::route(const CPass& pass, float* pIn, float* pOut)
{
    scaleBuffer(pIn, pass.m_uSamples, HEADROOM);
    const CPath& path = *std::ranges::find(m_paths, exciterType(), &CPath::m_uType);
    if (path.m_fAllPass == 0.0F)
        return runPair(pass, LOW_SHELF, pIn, pOut);
    float* const pTurned = workingBuffer(0);
    bool bDone = runPair(pass, ALL_PASS_1, pIn, pTurned);
    if (path.m_bShapes) {
        shapeSoftly(pTurned, pass.m_uSamples, pass.m_fFullScale);
        return runPair(pass, LOW_SHELF, pTurned, pOut) && bDone;
    }
    scaleBuffer(pTurned, pass.m_uSamples, path.m_fAllPass);
    float* const pShelved = workingBuffer(1);
    bDone = runPair(pass, LOW_SHELF, pIn, pShelved) && bDone;
    if (path.m_bDry) {
        float* const pDry = workingBuffer(2);
        std::copy_n(pIn, pass.m_uSamples, pDry);
        mixBuffers({pTurned, pShelved, pDry}, pOut, pass.m_uSamples, true);
    } else {
        mixBuffers({pTurned, pShelved}, pOut, pass.m_uSamples, false);
    }
    return bDone;
}

} // namespace velmora
