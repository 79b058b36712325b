#include "dsp/modules/multi_filter.h"

#include "dsp/modules/biquad_designs.h"

namespace velmora {

namespace {

constexpr UINT FILTER_ID = 1001;

constexpr CModuleParameter PARAMETERS[] = {
    {"fc", "Hz", {100.0F, 10.0F, 18000.0F}, {100.0F, 10.0F, 18000.0F}, false, EModuleText::whole},
    {"Boost/Cut", "dB", {0.0F, -12.0F, 12.0F}, {0.0F, -12.0F, 12.0F}},
    {"Q", "", {4.24F, 0.8F, 10.0F}, {1.414F, 0.8F, 10.0F}},
    {"Output Volume", "dB", {1.0F, 0.0F, 1.0F}, {1.0F, 0.0F, 1.0F}, false, EModuleText::decibels},
};
static_assert(std::size(PARAMETERS) == MULTIFILTER_PARAMETER_COUNT);

constexpr CModuleOption TYPES[] = {
    {FILTER_LOW_SHELF, "Low Shelf"},
    {FILTER_HIGH_SHELF, "High Shelf"},
    {FILTER_GRAPHIC_B, "Graphic B"},
    {FILTER_GRAPHIC_A, "Graphic A"},
};
constexpr CModuleChoice CHOICES[] = {{"Filter Type", TYPES}};

using CHandler = bool (CMultiFilter::*)(int);

// By setting.
constexpr CHandler HANDLERS[] = {
    &CMultiFilter::setCenterFrequency, &CMultiFilter::setBoostCut,   &CMultiFilter::setQ,
    &CMultiFilter::setOutputVolume,    &CMultiFilter::setFilterType,
};

} // namespace

CMultiFilter::CMultiFilter() : CMultiFilter("MultiFilter", FILTER_ID, PARAMETERS, CHOICES) {}

CMultiFilter::CMultiFilter(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                           std::span<const CModuleChoice> types)
    : CBiquadFilter(pName, uTag, parameters, types)
{
    CMultiFilter::createControls();
}

bool CMultiFilter::setControlPosition(UINT uControlId, int nPos)
{
    const UINT uSetting = settingOf(uControlId);
    return uSetting < std::size(HANDLERS) && (this->*HANDLERS[uSetting])(nPos);
}

bool CMultiFilter::setCenterFrequency(int nPos)
{
    return moveControl(MULTIFILTER_FC, nPos);
}

bool CMultiFilter::setBoostCut(int nPos)
{
    return moveControl(MULTIFILTER_BOOST_CUT, nPos);
}

bool CMultiFilter::setQ(int nPos)
{
    return moveControl(MULTIFILTER_Q, nPos);
}

bool CMultiFilter::setOutputVolume(int nPos)
{
    return moveControl(MULTIFILTER_VOLUME, nPos);
}

bool CMultiFilter::setFilterType(int nPos)
{
    return moveControl(MULTIFILTER_TYPE, nPos);
}

bool CMultiFilter::updateDisplay()
{
    refreshControls();
    return true;
}

CBiquadFilter::CDesign CMultiFilter::design() const
{
    const UINT uType = type();
    return {designBiquad(uType, {static_cast<double>(m_nSampleRate), parameter(MULTIFILTER_FC),
                                 parameter(MULTIFILTER_BOOST_CUT), parameter(MULTIFILTER_Q)}),
            parameter(MULTIFILTER_VOLUME), uType == FILTER_GRAPHIC_A};
}

} // namespace velmora
