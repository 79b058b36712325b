#include "document/control_values.h"

#include "plugin.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace velmora {

namespace {

std::optional<double> variableOf(const CUICtrl& control)
{
    if (control.m_pUserCookedIntData)
        return *control.m_pUserCookedIntData;
    if (control.m_pUserCookedFloatData)
        return *control.m_pUserCookedFloatData;
    if (control.m_pUserCookedDoubleData)
        return *control.m_pUserCookedDoubleData;
    if (control.m_pUserCookedUINTData)
        return *control.m_pUserCookedUINTData;
    return {};
}

template <typename Whole>
Whole rounded(double dValue)
{
    constexpr double LOWEST = std::numeric_limits<Whole>::min();
    constexpr double HIGHEST = std::numeric_limits<Whole>::max();
    return static_cast<Whole>(std::clamp(std::round(dValue), LOWEST, HIGHEST));
}

void writeVariable(const CUICtrl& control, double dValue)
{
    if (control.m_pUserCookedIntData)
        *control.m_pUserCookedIntData = rounded<int>(dValue);
    else if (control.m_pUserCookedFloatData)
        *control.m_pUserCookedFloatData = static_cast<float>(dValue);
    else if (control.m_pUserCookedDoubleData)
        *control.m_pUserCookedDoubleData = dValue;
    else if (control.m_pUserCookedUINTData)
        *control.m_pUserCookedUINTData = rounded<UINT>(dValue);
}

// A user variable has no range; its limits are equal.
double limitedToRange(const CUICtrl& control, double dValue)
{
    const double dLow = control.fUserDisplayDataLoLimit;
    const double dHigh = control.fUserDisplayDataHiLimit;
    return dLow < dHigh ? std::clamp(dValue, dLow, dHigh) : dValue;
}

} // namespace

CControlValues::CControlValues(const CPlugIn& plugIn)
{
    for (UINT i = 0; const CUICtrl* pControl = plugIn.m_UIControlList.getAt(i); i++) {
        const auto dValue = variableOf(*pControl);
        if (dValue && std::isfinite(*dValue))
            m_values[pControl->cVariableName] = *dValue;
    }
}

CControlChanges CControlValues::applyTo(CPlugIn& plugIn) const
{
    CControlChanges changes;
    auto left = m_values;
    for (UINT i = 0; const CUICtrl* pControl = plugIn.m_UIControlList.getAt(i); i++) {
        if (!variableOf(*pControl))
            continue;
        const auto found = m_values.find(pControl->cVariableName);
        if (found == m_values.end()) {
            changes.m_new.emplace_back(pControl->cVariableName);
            continue;
        }
        writeVariable(*pControl, limitedToRange(*pControl, found->second));
        plugIn.userInterfaceChange(static_cast<int>(pControl->uControlId));
        changes.m_carried.push_back(found->first);
        left.erase(found->first);
    }
    for (const auto& [sName, dValue] : left)
        changes.m_dropped.push_back(sName);
    return changes;
}

} // namespace velmora
