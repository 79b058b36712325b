#include "host/dsp_filter_control.h"

#include "base/text.h"

#include <algorithm>
#include <atomic>

namespace velmora {

namespace {

constexpr std::size_t MAX_UNITS = 32;
constexpr float DEFAULT_METER_RATE = 44100.0F;

template <typename T>
void store(T* pVariable, T value)
{
    if (pVariable)
        std::atomic_ref<T>(*pVariable).store(value, std::memory_order_relaxed);
}

template <typename T>
std::optional<double> load(T* pVariable)
{
    if (!pVariable)
        return std::nullopt;
    return std::atomic_ref<T>(*pVariable).load(std::memory_order_relaxed);
}

std::string_view textOf(const char* pText)
{
    return pText ? pText : std::string_view();
}

double startValue(const CUICtrl& record)
{
    switch (record.uUserDataType) {
    case intData:
        return record.fInitUserIntValue;
    case floatData:
        return record.fInitUserFloatValue;
    case doubleData:
        return record.fInitUserDoubleValue;
    default:
        return record.fInitUserUINTValue;
    }
}

} // namespace

void CDSPFilterControl::bindTo(const CUICtrl& record)
{
    uControlType = record.uControlType;
    uControlId = record.uControlId;
    fUserDisplayDataLoLimit = record.fUserDisplayDataLoLimit;
    fUserDisplayDataHiLimit = record.fUserDisplayDataHiLimit;
    uUserDataType = record.uUserDataType;
    m_pUserCookedIntData = record.m_pUserCookedIntData;
    m_pUserCookedFloatData = record.m_pUserCookedFloatData;
    m_pUserCookedDoubleData = record.m_pUserCookedDoubleData;
    m_pUserCookedUINTData = record.m_pUserCookedUINTData;
    writeVariable(startValue(record));

    bLogSlider = record.bLogSlider;
    bExpSlider = record.bExpSlider;
    m_sName = textOf(record.cControlName);
    m_sUnits = trimmed(textOf(record.cControlUnits).substr(0, MAX_UNITS));
    setEnumeratedList(textOf(record.cEnumeratedList));
    bOwnerControl = record.bOwnerControl;

    bUseMeter = record.bUseMeter;
    bUpsideDownMeter = record.bUpsideDownMeter;
    bLogMeter = record.bLogMeter;
    uDetectorMode = record.uDetectorMode;
    uMeterColorScheme = record.uMeterColorScheme;
    fMeterAttack_ms = record.fMeterAttack_ms;
    fMeterRelease_ms = record.fMeterRelease_ms;
    m_pCurrentMeterValue = record.m_pCurrentMeterValue;
    initMeter(DEFAULT_METER_RATE);

    updateFromVariable();
}

void CDSPFilterControl::setPosition(int nPos)
{
    m_nPos = std::max(m_nPosMin, std::min(m_nPosMax, nPos));
    // The lowest position is not subtracted: the travel is measured from 0.
    const double dTravel = static_cast<double>(m_nPosMax) - m_nPosMin;
    const double dNormalized = m_nPos / dTravel;
    m_fNormalized = static_cast<float>(dNormalized);
    writeVariable(cookedFromNormalized(law(), dNormalized));
    updateText();
}

void CDSPFilterControl::setNormalized(double dNormalized)
{
    m_fNormalized = static_cast<float>(dNormalized);
    m_nPos = positionFromNormalized(m_fNormalized);
    writeVariable(cookedFromNormalized(law(), dNormalized));
    updateText();
}

void CDSPFilterControl::setCookedValue(double dCooked)
{
    writeVariable(dCooked);
    updateFromVariable();
}

bool CDSPFilterControl::setText(std::string_view sText)
{
    const auto dCooked = cookedFromText(law(), sText, m_sUnits);
    if (!dCooked || !cookedValue())
        return false;
    setCookedValue(*dCooked);
    return true;
}

void CDSPFilterControl::updateFromVariable()
{
    if (const auto dCooked = cookedValue()) {
        m_fNormalized = static_cast<float>(normalizedFromCooked(law(), *dCooked));
        m_nPos = positionFromNormalized(m_fNormalized);
    }
    updateText();
}

std::optional<double> CDSPFilterControl::cookedValue() const
{
    switch (uUserDataType) {
    case intData:
        return load(m_pUserCookedIntData);
    case floatData:
        return load(m_pUserCookedFloatData);
    case doubleData:
        return load(m_pUserCookedDoubleData);
    case UINTData:
        return load(m_pUserCookedUINTData);
    default:
        return std::nullopt;
    }
}

void CDSPFilterControl::setEnumeratedList(std::string_view sItems)
{
    cEnumeratedList = sItems;
    m_Enum = split(sItems, ',');
}

float CDSPFilterControl::meterLevel()
{
    const auto dValue = load(m_pCurrentMeterValue);
    if (!dValue)
        return 0.0F;
    const auto fValue = static_cast<float>(*dValue);
    const float fLevel = uDetectorMode == DETECT_MODE_NONE ? fValue : m_LevelDetector.detect(fValue);
    return fLevel > 0.0F ? std::min(fLevel, 1.0F) : 0.0F;
}

void CDSPFilterControl::initMeter(float fSampleRate)
{
    m_LevelDetector.init(fSampleRate, fMeterAttack_ms, fMeterRelease_ms, true, uDetectorMode, bLogMeter);
}

CControlLaw CDSPFilterControl::law() const
{
    return {fUserDisplayDataLoLimit,         fUserDisplayDataHiLimit, uUserDataType, bLogSlider, bExpSlider,
            static_cast<UINT>(m_Enum.size())};
}

void CDSPFilterControl::writeVariable(double dCooked)
{
    switch (uUserDataType) {
    case intData:
        store(m_pUserCookedIntData, truncatedToInt(dCooked));
        break;
    case floatData:
        store(m_pUserCookedFloatData, static_cast<float>(dCooked));
        break;
    case doubleData:
        store(m_pUserCookedDoubleData, dCooked);
        break;
    case UINTData:
        store(m_pUserCookedUINTData, truncatedToUINT(dCooked));
        break;
    default:
        break;
    }
}

void CDSPFilterControl::updateText()
{
    const auto dCooked = cookedValue();
    m_sValue = dCooked ? valueText(uUserDataType, *dCooked) : std::string();
}

} // namespace velmora
