#include "dsp/modules/lwr_bpf.h"

#include "dsp/modules/linkwitz_riley_filter.h"

#include <array>

namespace velmora {

namespace {

constexpr CModuleRange FC_LOW = {500.0F, 20.0F, 10000.0F};
constexpr CModuleRange FC_HIGH = {2000.0F, 20.0F, 10000.0F};

constexpr std::array<CModuleParameter, 2> PARAMETERS = {{
    {"fc lo", "Hz", FC_LOW, FC_LOW, false, EModuleText::whole},
    {"fc hi", "Hz", FC_HIGH, FC_HIGH, false, EModuleText::whole},
}};

constexpr std::array<UINT, 2> TYPES = {FILTER_LINKWITZ_RILEY_HPF, FILTER_LINKWITZ_RILEY_LPF};

} // namespace

CLWR_BPF::CLWR_BPF() : CFilterChain("Linkwitz-Riley BPF", FILTER_ID, PARAMETERS)
{
    for (const char* pName : {"HPF", "LPF"})
        addChild<CLinkwitzRileyFilter>(pName, {});
    setTypes();
    CLWR_BPF::createControls();
    CLWR_BPF::settingsChanged();
}

void CLWR_BPF::setTypes()
{
    for (UINT uChild = 0; uChild < childCount(); ++uChild)
        childAt(uChild).setChoice(0, TYPES[uChild]);
}

bool CLWR_BPF::resetToDefaults()
{
    const bool bDone = CFilterChain::resetToDefaults();
    setTypes();
    settingsChanged();
    return bDone;
}

void CLWR_BPF::settingsChanged()
{
    for (UINT uChild = 0; uChild < childCount(); ++uChild) {
        CModuleFilter& child = childAt(uChild);
        const bool bIsHighPass = child.choice(0) == FILTER_LINKWITZ_RILEY_HPF;
        child.setParameter(MULTIFILTER_FC, parameter(bIsHighPass ? LWRBPF_FC_LOW : LWRBPF_FC_HIGH));
    }
}

void CLWR_BPF::setReversePhase(bool bReverses)
{
    m_bReversesPhase = bReverses;
    static_cast<CLinkwitzRileyFilter&>(childAt(1)).setReversePhase(bReverses);
}

bool CLWR_BPF::route(const CPass& pass, float* pIn, float* pOut)
{
    return run(pass, 0, pIn, pIn) && run(pass, 1, pIn, pOut);
}

} // namespace velmora
