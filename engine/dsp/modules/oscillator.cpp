#include "dsp/modules/oscillator.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

namespace velmora {

namespace {

constexpr float FULL_SCALE = 32768.0F; // of processBuffer()

template <class T>
T relaxedLoad(const T& word)
{
    return std::atomic_ref<T>(const_cast<T&>(word)).load(std::memory_order_relaxed);
}

template <class T>
void relaxedStore(T& word, T value)
{
    std::atomic_ref<T>(word).store(value, std::memory_order_relaxed);
}

// The position of a code in a table; the table's size if it is not there.
template <class Table, class Code>
UINT positionOf(const Table& table, Code tCode, UINT uCode)
{
    const auto hasCode = [&](const auto& row) { return static_cast<UINT>(row.*tCode) == uCode; };
    return static_cast<UINT>(std::ranges::find_if(table, hasCode) - table.begin());
}

template <class Table, class Label>
std::string listOf(const Table& table, Label tLabel)
{
    std::string sList;
    for (const auto& row : table)
        sList += (sList.empty() ? "" : ",") + std::string(row.*tLabel);
    return sList;
}

std::unique_ptr<CDSPFilterControl> radioControl(const char* pName, const std::string& sItems, UINT* pVariable)
{
    auto pControl = std::make_unique<CDSPFilterControl>();
    pControl->uControlType = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;
    pControl->uUserDataType = UINTData;
    pControl->m_pUserCookedUINTData = pVariable;
    pControl->m_sName = pName;
    pControl->setEnumeratedList(sItems);
    pControl->fUserDisplayDataHiLimit = static_cast<float>(pControl->m_Enum.size() - 1);
    return pControl;
}

std::unique_ptr<CDSPFilterControl> sliderControl(const COscillatorParameter& parameter, float* pVariable)
{
    auto pControl = std::make_unique<CDSPFilterControl>();
    pControl->uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
    pControl->uUserDataType = floatData;
    pControl->m_pUserCookedFloatData = pVariable;
    pControl->m_sName = parameter.m_pName;
    pControl->m_sUnits = parameter.m_pUnits;
    pControl->bExpSlider = parameter.m_bLogarithmic;
    return pControl;
}

} // namespace

COscillator::COscillator()
{
    m_sName = "Oscillator";
    m_uTag = FILTER_ID;
    m_nFirstControlID = FIRST_CONTROL_ID;
    setDefaults(&COscillatorParameter::m_atConstruction);
    COscillator::createControls();
    COscillator::prepareForPlay();
}

void COscillator::setParameter(EOscillatorParameter eParameter, float fValue)
{
    if (!std::isfinite(fValue))
        return;
    relaxedStore(m_values[eParameter], fValue);
    if (CDSPFilterControl* pControl = getControlById(FIRST_CONTROL_ID + eParameter))
        pControl->updateFromVariable();
}

float COscillator::parameter(EOscillatorParameter eParameter) const
{
    return relaxedLoad(m_values[eParameter]);
}

void COscillator::setFrequencyRange(float fLow, float fHigh)
{
    m_fFrequencyLow.store(fLow, std::memory_order_relaxed);
    m_fFrequencyHigh.store(fHigh, std::memory_order_relaxed);
    refreshControls();
}

bool COscillator::setKind(UINT uCode)
{
    const UINT uPosition = positionOf(OSCILLATOR_KINDS, &COscillatorKind::m_eKind, uCode);
    if (uPosition == OSCILLATOR_KINDS.size())
        return false;
    relaxedStore(m_uKind, uPosition);
    refreshControls();
    return true;
}

bool COscillator::setClass(UINT uCode)
{
    const UINT uPosition = positionOf(OSCILLATOR_CLASSES, &COscillatorClass::m_eClass, uCode);
    if (uPosition == OSCILLATOR_CLASSES.size())
        return false;
    relaxedStore(m_uClass, uPosition);
    refreshControls();
    return true;
}

EOscillatorKind COscillator::kind() const
{
    return kindRow().m_eKind;
}

EOscillatorClass COscillator::oscillatorClass() const
{
    const UINT uPosition = relaxedLoad(m_uClass);
    return OSCILLATOR_CLASSES[uPosition < OSCILLATOR_CLASSES.size() ? uPosition : 0].m_eClass;
}

// A control may be set to a position that the table does not have.
const COscillatorKind& COscillator::kindRow() const
{
    const UINT uPosition = relaxedLoad(m_uKind);
    return OSCILLATOR_KINDS[uPosition < OSCILLATOR_KINDS.size() ? uPosition : 0];
}

bool COscillator::reset()
{
    setDefaults(&COscillatorParameter::m_afterReset);
    return true;
}

void COscillator::setDefaults(COscillatorRange COscillatorParameter::*pRanges)
{
    m_pRanges = pRanges;
    for (UINT u = 0; u < OSCILLATOR_PARAMETER_COUNT; ++u)
        relaxedStore(m_values[u], (OSCILLATOR_PARAMETERS[u].*pRanges).m_fDefault);
    relaxedStore(m_uClass, 0U);
    relaxedStore(m_uKind, 0U);
    const COscillatorRange& frequency = OSCILLATOR_PARAMETERS[OSCILLATOR_FREQUENCY].*pRanges;
    setFrequencyRange(frequency.m_fLow, frequency.m_fHigh);
}

bool COscillator::createControls()
{
    m_ControlList.clear();
    for (UINT u = 0; u < OSCILLATOR_PARAMETER_COUNT; ++u)
        m_ControlList.push_back(sliderControl(OSCILLATOR_PARAMETERS[u], &m_values[u]));
    m_ControlList.push_back(
        radioControl("Class", listOf(OSCILLATOR_CLASSES, &COscillatorClass::m_sLabel), &m_uClass));
    m_ControlList.push_back(
        radioControl("Kind", listOf(OSCILLATOR_KINDS, &COscillatorKind::m_sLabel), &m_uKind));
    for (UINT u = 0; u < m_ControlList.size(); ++u) {
        m_ControlList[u]->m_pFilter = this;
        m_ControlList[u]->uControlId = FIRST_CONTROL_ID + u;
    }
    refreshControls();
    return true;
}

void COscillator::refreshControls()
{
    for (UINT u = 0; u < OSCILLATOR_PARAMETER_COUNT; ++u) {
        CDSPFilterControl* pControl = getControlById(FIRST_CONTROL_ID + u);
        if (!pControl)
            continue;
        const COscillatorRange& range = OSCILLATOR_PARAMETERS[u].*m_pRanges;
        pControl->fUserDisplayDataLoLimit = u == OSCILLATOR_FREQUENCY ? frequencyLow() : range.m_fLow;
        pControl->fUserDisplayDataHiLimit = u == OSCILLATOR_FREQUENCY ? frequencyHigh() : range.m_fHigh;
    }
    for (const auto& pControl : m_ControlList)
        pControl->updateFromVariable();
}

bool COscillator::setControlPosition(UINT uControlId, int nPos)
{
    CDSPFilterControl* pControl = getControlById(uControlId);
    if (!pControl)
        return false;
    pControl->setPosition(nPos);
    return true;
}

bool COscillator::prepareForPlay()
{
    const auto uClock = static_cast<unsigned>(std::chrono::system_clock::now().time_since_epoch().count());
    m_generator.start(m_nSampleRate, getFrequency(), frequencyLow(), m_uSeed.value_or(uClock));
    return true;
}

bool COscillator::processBuffer(float*, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return generate(pOut, uChannels, uSamples, FULL_SCALE);
}

bool COscillator::processInterleaved(float*, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return generate(pOut, uChannels, uSamples, 1.0F);
}

bool COscillator::generate(float* pOut, UINT uChannels, UINT uSamples, float fFullScale)
{
    if (uChannels != 1 && uChannels != 2)
        return false;
    const UINT uFrames = uSamples / uChannels;
    const COscillatorKind& kind = kindRow();
    const bool bSweeps = oscillatorClass() == OSCILLATOR_SWEEP;
    m_generator.generate({kind,
                          bSweeps,
                          getFrequency(),
                          getAmplitude(),
                          parameter(OSCILLATOR_PULSE_RATE),
                          parameter(OSCILLATOR_DUTY_CYCLE),
                          {frequencyLow(), frequencyHigh(), parameter(OSCILLATOR_SWEEP_PERIOD)},
                          takeImpulse(!bSweeps && kind.m_eKind == OSCILLATOR_SINGLE_IMPULSE && uFrames > 0)},
                         pOut, uChannels, uFrames, fFullScale);
    return true;
}

// The height of the impulse that waits to be heard; 0 for none.
float COscillator::takeImpulse(bool bIsHeard)
{
    return bIsHeard && m_bImpulsePending.exchange(false, std::memory_order_relaxed)
               ? parameter(OSCILLATOR_IMPULSE_HEIGHT)
               : 0.0F;
}

} // namespace velmora
