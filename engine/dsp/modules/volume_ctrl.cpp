#include "dsp/modules/volume_ctrl.h"

#include "dsp/modules/biquad_designs.h"
#include "dsp/modules/multi_filter.h"

namespace velmora {

namespace {

constexpr CModuleParameter PARAMETERS[] = {
    {"Output Volume", "dB", {1.0F, 0.0F, 1.0F}, {1.0F, 0.0F, 1.0F}, false, EModuleText::decibels},
    {"fc", "Hz", {0.5F, 10.0F, 1000.0F}, {0.5F, 10.0F, 1000.0F}, false, EModuleText::whole},
    {"Boost/Cut", "dB", {0.5F, -12.0F, 12.0F}, {0.5F, -12.0F, 12.0F}},
};

} // namespace

CVolumeCtrl::CVolumeCtrl() : CBiquadFilter("Volume", 0, PARAMETERS, {})
{
    CVolumeCtrl::createControls();
}

bool CVolumeCtrl::resetToDefaults()
{
    return setParameter(VOLUME_OUTPUT, PARAMETERS[VOLUME_OUTPUT].m_afterReset.m_fDefault);
}

CBiquadFilter::CDesign CVolumeCtrl::design() const
{
    return {designBiquad(FILTER_LOW_SHELF, {static_cast<double>(m_nSampleRate), parameter(VOLUME_SHELF_FC),
                                            parameter(VOLUME_BOOST_CUT), 1.0}),
            parameter(VOLUME_OUTPUT), false};
}

} // namespace velmora
