#include "dsp/modules/module_parameter.h"

#include "dsp/numeric.h"
#include "host/control_law.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr double SILENCE_dB = -96.0;

} // namespace

std::string moduleText(EModuleText eText, float fValue)
{
    if (eText == EModuleText::number)
        return valueText(floatData, fValue);
    return floatToText(static_cast<float>(shownValue(eText, fValue)), eText == EModuleText::decibels ? 1 : 0);
}

double shownValue(EModuleText eText, double dValue)
{
    switch (eText) {
    case EModuleText::percent:
        return 100.0 * dValue;
    case EModuleText::decibels:
        return dValue > 0.0 ? std::max(20.0 * std::log10(dValue), SILENCE_dB) : SILENCE_dB;
    default:
        return dValue;
    }
}

double valueOfShown(EModuleText eText, double dShown)
{
    switch (eText) {
    case EModuleText::percent:
        return dShown / 100.0;
    case EModuleText::decibels:
        return dShown > SILENCE_dB ? std::pow(10.0, dShown / 20.0) : 0.0;
    default:
        return dShown;
    }
}

} // namespace velmora
