#include "dsp/modules/hp_lp_filter.h"

namespace velmora {

namespace {

constexpr CModuleParameter PARAMETERS[] = {
    {"fc", "Hz", {1000.0F, 10.0F, 18000.0F}, {1000.0F, 10.0F, 18000.0F}, false, EModuleText::whole},
    {"Boost/Cut", "dB", {0.0F, -12.0F, 12.0F}, {0.0F, -12.0F, 12.0F}, false, EModuleText::number, false},
    {"Q", "", {0.707F, 0.1F, 20.0F}, {0.707F, 0.1F, 20.0F}},
    {"Output Volume", "dB", {1.0F, 0.0F, 1.0F}, {1.0F, 0.0F, 1.0F}, false, EModuleText::decibels},
};
static_assert(std::size(PARAMETERS) == MULTIFILTER_PARAMETER_COUNT);

constexpr CModuleOption TYPES[] = {
    {FILTER_1ST_HPF, "1st HPF"},
    {FILTER_1ST_LPF, "1st LPF"},
    {FILTER_2ND_HPF, "2nd HPF"},
    {FILTER_2ND_LPF, "2nd LPF"},
};
constexpr CModuleChoice CHOICES[] = {{"Filter Type", TYPES, 3}};

} // namespace

CHP_LPFilter::CHP_LPFilter() : CMultiFilter("HP/LP Filter", 0, PARAMETERS, CHOICES) {}

} // namespace velmora
