#include "ResonantFilter.h"

#include <algorithm>
#include <cmath>

namespace {

const double SMOOTHING_MS = 15.0; // time constant with which cutoff, resonance and level move
const UINT MAX_CHANNELS = 2;

CUICtrl makeSlider(UINT uId, const char* pName, const char* pUnits, const char* pVariableName,
                   float* pVariable, float fLow, float fHigh, float fStart)
{
    CUICtrl slider;
    slider.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
    slider.uControlId = uId;
    slider.cControlName = pName;
    slider.cControlUnits = pUnits;
    slider.cVariableName = pVariableName;
    slider.uUserDataType = floatData;
    slider.m_pUserCookedFloatData = pVariable;
    slider.fUserDisplayDataLoLimit = fLow;
    slider.fUserDisplayDataHiLimit = fHigh;
    slider.fInitUserFloatValue = fStart;
    return slider;
}

} // namespace

CResonantFilter::CResonantFilter()
{
    m_PlugInName = "ResonantFilter";
    m_bWantChannelBuffers = true;
    CResonantFilter::initUI();
}

bool CResonantFilter::initUI()
{
    CUICtrl cutoff =
        makeSlider(CUTOFF, "Cutoff", "Hz", "m_fCutoff_Hz", &m_fCutoff_Hz, 20.0f, 20480.0f, 1000.0f);
    cutoff.bExpSlider = true; // each octave takes a tenth of the way
    m_UIControlList.append(cutoff);
    m_UIControlList.append(
        makeSlider(RESONANCE, "Resonance", "Q", "m_fResonance", &m_fResonance, 0.5f, 20.0f, 4.0f));
    m_UIControlList.append(
        makeSlider(LEVEL, "Level", "dB", "m_fLevel_dB", &m_fLevel_dB, -24.0f, 12.0f, 0.0f));

    CUICtrl mode;
    mode.uControlType = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;
    mode.uControlId = MODE;
    mode.cControlName = "Mode";
    mode.cVariableName = "m_uMode";
    mode.cEnumeratedList = "LP,BP,HP,Notch";
    mode.uUserDataType = UINTData;
    mode.m_pUserCookedUINTData = &m_uMode;
    mode.fUserDisplayDataLoLimit = LP;
    mode.fUserDisplayDataHiLimit = Notch;
    mode.fInitUserUINTValue = LP;
    m_UIControlList.append(mode);
    return true;
}

bool CResonantFilter::prepareForPlay()
{
    userInterfaceChange(CUTOFF);
    takeTargets();
    for (CParameterSmoother* pSmoother : {&m_octave, &m_resonance, &m_level}) {
        pSmoother->setTime(SMOOTHING_MS);
        pSmoother->prepare(m_nSampleRate); // and jumps to the target
    }
    for (CStateVariableFilter& filter : m_filters)
        filter.prepare(m_nSampleRate);
    setFilters();
    return true;
}

// Runs on the main thread, perhaps in the middle of a process call. The filters themselves belong to
// the audio thread, so this only leaves word where to go.
bool CResonantFilter::userInterfaceChange(int)
{
    static const CStateVariableFilter::EKind KINDS[] = {
        CStateVariableFilter::lowPass, CStateVariableFilter::bandPass, CStateVariableFilter::highPass,
        CStateVariableFilter::notch};

    m_dTargetOctave = std::log2(limitValue(m_fCutoff_Hz, 20.0, 20480.0));
    m_dTargetResonance = m_fResonance;
    m_dTargetLevel = dBToLinear(m_fLevel_dB);
    m_eTargetKind = KINDS[std::min<UINT>(m_uMode, Notch)];
    return true;
}

void CResonantFilter::takeTargets()
{
    m_octave.setTarget(m_dTargetOctave.load(std::memory_order_relaxed));
    m_resonance.setTarget(m_dTargetResonance.load(std::memory_order_relaxed));
    m_level.setTarget(m_dTargetLevel.load(std::memory_order_relaxed));
    m_eKind = m_eTargetKind.load(std::memory_order_relaxed);
}

void CResonantFilter::setFilters()
{
    const double dCutoff_Hz = std::exp2(m_octave.value());
    for (CStateVariableFilter& filter : m_filters)
        filter.set(m_eKind, dCutoff_Hz, m_resonance.value());
}

bool CResonantFilter::processChannelBuffers(float** ppInputs, float** ppOutputs, UINT uNumChannels,
                                            UINT uNumFrames)
{
    const UINT uChannels = std::min(uNumChannels, MAX_CHANNELS);
    const CStateVariableFilter::EKind eOldKind = m_eKind;
    takeTargets();
    if (m_eKind != eOldKind)
        setFilters();

    for (UINT n = 0; n < uNumFrames; ++n) {
        // The coefficients cost a tangent: they are worked out only while the sound moves.
        if (m_octave.isMoving() || m_resonance.isMoving()) {
            m_octave.next();
            m_resonance.next();
            setFilters();
        }
        const float fLevel = static_cast<float>(m_level.next());
        for (UINT c = 0; c < uChannels; ++c)
            ppOutputs[c][n] = fLevel * m_filters[c].process(ppInputs[c][n]);
    }
    return true;
}

VELMORA_EXPORT_PLUGIN(CResonantFilter)
