#include "dsp/modules/linkwitz_riley_filter.h"

namespace velmora {

namespace {

constexpr CModuleParameter PARAMETERS[] = {
    {"fc", "Hz", {1000.0F, 10.0F, 18000.0F}, {1000.0F, 10.0F, 18000.0F}, false, EModuleText::whole},
    {"Boost/Cut", "dB", {0.0F, -12.0F, 12.0F}, {0.0F, -12.0F, 12.0F}, false, EModuleText::number, false},
    {"Q", "", {1.414F, 0.8F, 10.0F}, {1.414F, 0.8F, 10.0F}, false, EModuleText::number, false},
    {"Output Volume", "dB", {1.0F, 0.0F, 1.0F}, {1.0F, 0.0F, 1.0F}, false, EModuleText::decibels},
};
static_assert(std::size(PARAMETERS) == MULTIFILTER_PARAMETER_COUNT);

constexpr CModuleOption TYPES[] = {
    {FILTER_LINKWITZ_RILEY_LPF, "2nd LPF"},
    {FILTER_LINKWITZ_RILEY_HPF, "2nd HPF"},
};
constexpr CModuleChoice CHOICES[] = {{"Filter Type", TYPES}};

} // namespace

CLinkwitzRileyFilter::CLinkwitzRileyFilter() : CMultiFilter("Linkwitz-Riley Filter", 0, PARAMETERS, CHOICES)
{
}

void CLinkwitzRileyFilter::setReversePhase(bool bReverses)
{
    m_bReversesPhase.store(bReverses, std::memory_order_relaxed);
    calculateCoefficients();
}

float CLinkwitzRileyFilter::processSample(float fInput, float* pState, int nChannel)
{
    const float fOutput = CMultiFilter::processSample(fInput, pState, nChannel);
    return reversesPhase() ? -fOutput : fOutput;
}

CBiquadFilter::CDesign CLinkwitzRileyFilter::design() const
{
    CDesign design = CMultiFilter::design();
    if (reversesPhase())
        design.m_fVolume = -design.m_fVolume;
    return design;
}

} // namespace velmora
