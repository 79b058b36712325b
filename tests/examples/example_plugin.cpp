#include "examples/example_plugin.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <dlfcn.h>
#include <numbers>
#include <stdexcept>

namespace velmora::test {
namespace {

double startValue(const CUICtrl& control)
{
    switch (control.uUserDataType) {
    case intData:
        return control.fInitUserIntValue;
    case floatData:
        return control.fInitUserFloatValue;
    case doubleData:
        return control.fInitUserDoubleValue;
    default:
        return control.fInitUserUINTValue;
    }
}

// The host writes without a lock but in one piece.
void writeVariable(CUICtrl& control, double dValue)
{
    const auto order = std::memory_order_relaxed;
    if (control.m_pUserCookedIntData)
        std::atomic_ref(*control.m_pUserCookedIntData).store(static_cast<int>(dValue), order);
    if (control.m_pUserCookedFloatData)
        std::atomic_ref(*control.m_pUserCookedFloatData).store(static_cast<float>(dValue), order);
    if (control.m_pUserCookedDoubleData)
        std::atomic_ref(*control.m_pUserCookedDoubleData).store(dValue, order);
    if (control.m_pUserCookedUINTData)
        std::atomic_ref(*control.m_pUserCookedUINTData).store(static_cast<UINT>(dValue), order);
}

} // namespace

CExamplePlugIn::CExamplePlugIn(const std::string& sName)
{
    const std::string sFile = std::string(EXAMPLES_BUILT) + "/" + sName + ".so";
    m_hLibrary = ::dlopen(sFile.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_hLibrary)
        throw std::runtime_error(::dlerror());
    const auto pVersion = reinterpret_cast<getAPIVersionFunction>(::dlsym(m_hLibrary, "getAPIVersion"));
    m_pCreateObject = reinterpret_cast<createObjectFunction>(::dlsym(m_hLibrary, "createObject"));
    if (!pVersion || !m_pCreateObject || pVersion() != PLUGIN_API_VERSION)
        throw std::runtime_error(sFile + ": not a plug-in of this contract");
    m_pPlugIn = m_pCreateObject();
    for (CUICtrl* pControl : controls())
        if (pControl->uControlType != FILTER_CONTROL_LED_METER)
            writeVariable(*pControl, startValue(*pControl));
    m_pPlugIn->init();
    m_filter.attachPlugIn(m_pPlugIn);
}

CExamplePlugIn::~CExamplePlugIn()
{
    m_filter.detachPlugIn();
    delete m_pPlugIn;
    ::dlclose(m_hLibrary);
}

std::vector<CUICtrl*> CExamplePlugIn::controls() const
{
    std::vector<CUICtrl*> all;
    for (UINT i = 0; i < m_pPlugIn->m_UIControlList.count(); ++i)
        all.push_back(m_pPlugIn->m_UIControlList.getAt(i));
    return all;
}

CUICtrl& CExamplePlugIn::control(UINT uId) const
{
    CUICtrl* pControl = m_pPlugIn->getUICtrlByControlID(uId);
    if (!pControl)
        throw std::out_of_range("no control " + std::to_string(uId));
    return *pControl;
}

void CExamplePlugIn::set(UINT uId, double dValue)
{
    writeVariable(control(uId), dValue);
    m_pPlugIn->userInterfaceChange(static_cast<int>(uId));
}

double CExamplePlugIn::value(UINT uId) const
{
    const CUICtrl& record = control(uId);
    if (record.m_pUserCookedIntData)
        return *record.m_pUserCookedIntData;
    if (record.m_pUserCookedFloatData)
        return *record.m_pUserCookedFloatData;
    if (record.m_pUserCookedDoubleData)
        return *record.m_pUserCookedDoubleData;
    return *record.m_pUserCookedUINTData;
}

void CExamplePlugIn::selectPreset(int nPreset)
{
    for (CUICtrl* pControl : controls())
        if (pControl->uControlType != FILTER_CONTROL_LED_METER)
            set(pControl->uControlId, pControl->dPresetData[nPreset]);
}

void CExamplePlugIn::prepare(int nRate, UINT uInputChannels, UINT uOutputChannels)
{
    m_uInputChannels = uInputChannels;
    m_uOutputChannels = uOutputChannels;
    m_filter.m_nChannels = static_cast<int>(uOutputChannels);
    m_filter.m_nSampleRate = nRate;
    m_filter.prepareForPlay();
}

std::vector<float> CExamplePlugIn::process(const std::vector<float>& input,
                                           const std::vector<float>& sidechain, UINT uBlockFrames,
                                           bool bSidechainEnabled)
{
    std::vector<float> scratch = input;
    std::vector<float> side = sidechain;
    const size_t uFrames = input.size() / m_uInputChannels;
    std::vector<float> output(uFrames * m_uOutputChannels);
    for (size_t uDone = 0; uDone < uFrames;) {
        const auto uNow = static_cast<UINT>(std::min<size_t>(std::min(uBlockFrames, BLOCK), uFrames - uDone));
        processBlock(&scratch[uDone * m_uInputChannels], &output[uDone * m_uOutputChannels], uNow,
                     side.empty() ? nullptr : &side[uDone], bSidechainEnabled);
        uDone += uNow;
    }
    return output;
}

std::vector<float> CExamplePlugIn::processSilence(size_t uFrames)
{
    return process(std::vector<float>(uFrames * m_uInputChannels));
}

void CExamplePlugIn::processBlock(float* pInput, float* pOutput, UINT uFrames, float* pSidechain,
                                  bool bSidechainEnabled)
{
    const UINT uMode = m_uInputChannels == 2 ? 2 : m_uOutputChannels - 1;
    m_filter.processUserBuffer(pInput, pOutput, uMode, m_uOutputChannels, uFrames * m_uInputChannels,
                               uFrames * m_uOutputChannels, pSidechain, 1, bSidechainEnabled);
}

std::vector<float> channelOf(const std::vector<float>& stereo, size_t uChannel)
{
    std::vector<float> channel;
    for (size_t i = uChannel; i < stereo.size(); i += 2)
        channel.push_back(stereo[i]);
    return channel;
}

std::vector<float> bothChannels(const std::vector<float>& mono)
{
    std::vector<float> stereo;
    for (float fSample : mono)
        stereo.insert(stereo.end(), {fSample, fSample});
    return stereo;
}

std::vector<float> sine(double dHz, double dAmplitude, int nRate, size_t uFrames)
{
    std::vector<float> samples(uFrames);
    for (size_t n = 0; n < uFrames; ++n)
        samples[n] = static_cast<float>(
            dAmplitude * std::sin(2.0 * std::numbers::pi * dHz * static_cast<double>(n) / nRate));
    return samples;
}

double amplitudeAt(std::span<const float> samples, double dHz, int nRate)
{
    const auto dCount = static_cast<double>(samples.size());
    double dReal = 0.0;
    double dImaginary = 0.0;
    for (size_t n = 0; n < samples.size(); ++n) {
        const auto dN = static_cast<double>(n);
        const double dWindow = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * dN / dCount);
        const double dAngle = 2.0 * std::numbers::pi * dHz * dN / nRate;
        dReal += dWindow * samples[n] * std::cos(dAngle);
        dImaginary += dWindow * samples[n] * std::sin(dAngle);
    }
    return std::hypot(dReal, dImaginary) * 4.0 / dCount; // the window's mean is 1/2
}

double decibels(double dLinear)
{
    return 20.0 * std::log10(std::max(dLinear, 1e-12));
}

double peakOf(std::span<const float> samples)
{
    double dPeak = 0.0;
    for (float fSample : samples)
        dPeak = std::max(dPeak, std::abs(static_cast<double>(fSample)));
    return dPeak;
}

bool allFinite(std::span<const float> samples)
{
    return std::ranges::all_of(samples, [](float fSample) { return std::isfinite(fSample); });
}

} // namespace velmora::test
