#include "dsp/modules/module_registry.h"

#include "base/text.h"
#include "dsp/modules/all_pass_filter.h"
#include "dsp/modules/hf_exciter.h"
#include "dsp/modules/hf_exciter_2.h"
#include "dsp/modules/hf_exciter_xm1.h"
#include "dsp/modules/hp_lp_filter.h"
#include "dsp/modules/linkwitz_riley_filter.h"
#include "dsp/modules/lwr_bpf.h"
#include "dsp/modules/multi_filter.h"
#include "dsp/modules/smoothing_filter.h"
#include "dsp/modules/stereo_delay.h"
#include "dsp/modules/ten_band_graphic_eq.h"
#include "dsp/modules/volume_ctrl.h"

#include <array>
#include <vector>

namespace velmora {

namespace {

template <class Module>
std::unique_ptr<CDSPFilter> make()
{
    return std::make_unique<Module>();
}

// Modules that read impulse responses take their places behind the equalizer.
constexpr std::array<std::unique_ptr<CDSPFilter> (*)(), 12> MODULES = {
    make<CMultiFilter>,     make<CStereoDelay>,         make<CHP_LPFilter>,      make<CAllPassFilter>,
    make<CSmoothingFilter>, make<CLinkwitzRileyFilter>, make<CTenBandGraphicEQ>, make<CLWR_BPF>,
    make<CHF_Exciter>,      make<CHF_Exciter_2>,        make<CHF_Exciter_XM1>,   make<CVolumeCtrl>,
};

std::string quotedNames(const CModuleList& modules, const std::vector<int>& indices)
{
    std::string sNames;
    for (const int nIndex : indices)
        sNames += (sNames.empty() ? "\"" : ", \"") + modules.at(nIndex)->m_sName + "\"";
    return sNames;
}

} // namespace

void addBuiltInModules(CModuleList& modules)
{
    for (const auto pMake : MODULES) {
        auto pModule = pMake();
        pModule->createControls();
        modules.add(std::move(pModule));
    }
}

CChosenModule chooseModule(const CModuleList& modules, std::string_view sBeginning)
{
    std::vector<int> all;
    std::vector<int> matching;
    for (int nIndex = 0; nIndex < modules.count(); ++nIndex) {
        const std::string_view sName = modules.at(nIndex)->m_sName;
        if (equalsIgnoreCase(sName, sBeginning))
            return {nIndex, {}};
        all.push_back(nIndex);
        if (!sBeginning.empty() && equalsIgnoreCase(sName.substr(0, sBeginning.size()), sBeginning))
            matching.push_back(nIndex);
    }
    if (matching.size() == 1)
        return {matching.front(), {}};
    const std::string sGiven = "\"" + std::string(sBeginning) + "\"";
    if (matching.empty())
        return {-1, "There is no built-in module " + sGiven +
                        ". The modules are: " + quotedNames(modules, all) + "."};
    return {-1, sGiven + " is the beginning of more than one built-in module: " +
                    quotedNames(modules, matching) + ". Give more of the name."};
}

} // namespace velmora
