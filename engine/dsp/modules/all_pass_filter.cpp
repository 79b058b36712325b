#include "dsp/modules/all_pass_filter.h"

namespace velmora {

namespace {

constexpr UINT FILTER_ID = 1004;

constexpr CModuleParameter PARAMETERS[] = {
    {"fc", "Hz", {1000.0F, 10.0F, 18000.0F}, {1000.0F, 10.0F, 18000.0F}, false, EModuleText::whole},
    {"Boost/Cut", "dB", {0.0F, -12.0F, 12.0F}, {0.0F, -12.0F, 12.0F}, false, EModuleText::number, false},
    {"BandWidth", "Hz", {5000.0F, 0.1F, 10000.0F}, {5000.0F, 0.1F, 10000.0F}},
    {"Output Volume", "dB", {1.0F, 0.0F, 1.0F}, {1.0F, 0.0F, 1.0F}, false, EModuleText::decibels},
};
static_assert(std::size(PARAMETERS) == MULTIFILTER_PARAMETER_COUNT);

constexpr CModuleOption TYPES[] = {
    {FILTER_1ST_APF, "1st APF"},
    {FILTER_2ND_APF, "2nd APF"},
};
constexpr CModuleChoice CHOICES[] = {{"Filter Type", TYPES, 1}};

} // namespace

CAllPassFilter::CAllPassFilter() : CMultiFilter("AllpassFilter", FILTER_ID, PARAMETERS, CHOICES) {}

} // namespace velmora
