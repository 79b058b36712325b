#include "dsp/modules/hf_exciter.h"

#include "dsp/modules/buffer_mix.h"
#include "dsp/modules/hp_lp_filter.h"
#include "dsp/modules/stereo_delay.h"

namespace velmora {

namespace {

enum EChild : UINT
{
    DELAY_1,
    LOW_PASS,
    HIGH_PASS,
    DELAY_2,
    SHELF,
};

constexpr float HEADROOM = 0.5F;
constexpr float CROSSOVER = 3000.0F;       // Hz
constexpr float SHELF_FREQUENCY = 5000.0F; // Hz
constexpr float SHELF_GAIN = 6.0F;         // dB
constexpr CModuleRange DELAY = {0.0F, 0.0F, 256.0F};

} // namespace

CHF_Exciter::CHF_Exciter() : CFilterChain("HF Exciter", FILTER_ID)
{
    addChild<CStereoDelay>("Delay1", {{STEREODELAY_DELAY, "Delay1", ""}});
    addChild<CHP_LPFilter>("LPF", {{MULTIFILTER_FC, "LPF fc", ""}});
    addChild<CHP_LPFilter>("HPF", {{MULTIFILTER_FC, "HPF fc", ""}, {MULTIFILTER_VOLUME, "HPF Level", ""}});
    addChild<CStereoDelay>("Delay2", {{STEREODELAY_DELAY, "Delay2", ""}});
    addChild<CMultiFilter>("Shelf",
                           {{MULTIFILTER_FC, "Shelf fc", ""}, {MULTIFILTER_BOOST_CUT, "Shelf Gain", ""}});
    CHF_Exciter::createControls();
    setWorkingBuffers(5);
    setUpChildren();
    limitDelays();
}

void CHF_Exciter::setUpChildren()
{
    for (const UINT uDelay : {DELAY_1, DELAY_2}) {
        childAt(uDelay).setParameter(STEREODELAY_DELAY, DELAY.m_fDefault);
        childAt(uDelay).setParameter(STEREODELAY_FEEDBACK, 0.0F);
        childAt(uDelay).setParameter(STEREODELAY_MIX, 1.0F);
    }
    childAt(LOW_PASS).setChoice(0, FILTER_1ST_LPF);
    childAt(HIGH_PASS).setChoice(0, FILTER_1ST_HPF);
    childAt(LOW_PASS).setParameter(MULTIFILTER_FC, CROSSOVER);
    childAt(HIGH_PASS).setParameter(MULTIFILTER_FC, CROSSOVER);
    childAt(SHELF).setChoice(0, FILTER_HIGH_SHELF);
    childAt(SHELF).setParameter(MULTIFILTER_FC, SHELF_FREQUENCY);
    childAt(SHELF).setParameter(MULTIFILTER_BOOST_CUT, SHELF_GAIN);
}

// A delay by itself goes up to a second.
void CHF_Exciter::limitDelays()
{
    childAt(DELAY_1).setRange(STEREODELAY_DELAY, DELAY);
    childAt(DELAY_2).setRange(STEREODELAY_DELAY, DELAY);
}

bool CHF_Exciter::resetToDefaults()
{
    const bool bDone = CFilterChain::resetToDefaults();
    setUpChildren();
    limitDelays();
    return bDone;
}

bool CHF_Exciter::prepareForPlay()
{
    const bool bDone = CFilterChain::prepareForPlay();
    limitDelays();
    return bDone;
}

bool CHF_Exciter::route(const CPass& pass, float* pIn, float* pOut)
{
    float* const pHigh = workingBuffer(0);
    float* const pDelayedHigh = workingBuffer(1);
    float* const pLow = workingBuffer(2);
    float* const pDelayedLow = workingBuffer(3);
    float* const pSum = workingBuffer(4);
    scaleBuffer(pIn, pass.m_uSamples, HEADROOM);
    bool bDone = run(pass, HIGH_PASS, pIn, pHigh) && run(pass, DELAY_1, pHigh, pDelayedHigh);
    bDone = run(pass, LOW_PASS, pIn, pLow) && run(pass, DELAY_2, pLow, pDelayedLow) && bDone;
    mixBuffers({pDelayedHigh, pDelayedLow}, pSum, pass.m_uSamples, false);
    return run(pass, SHELF, pSum, pOut) && bDone;
}

} // namespace velmora
