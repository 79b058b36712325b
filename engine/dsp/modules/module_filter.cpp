#include "dsp/modules/module_filter.h"

#include "dsp/modules/relaxed_word.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

std::string listOf(std::span<const CModuleOption> options)
{
    std::string sList;
    for (const CModuleOption& option : options)
        sList += (sList.empty() ? "" : ",") + std::string(option.m_pLabel);
    return sList;
}

} // namespace

CModuleFilter::CModuleFilter(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                             std::span<const CModuleChoice> choices)
    : m_parameters(parameters), m_choices(choices)
{
    m_sName = pName;
    m_uTag = uTag;
    m_nFirstControlID = FIRST_CONTROL_ID;
    for (const CModuleParameter& parameter : parameters) {
        if (parameter.m_bHasControl)
            m_shown.push_back({static_cast<UINT>(m_ranges.size()), "", ""});
        m_ranges.push_back(parameter.m_atConstruction);
        m_values.push_back(parameter.m_atConstruction.m_fDefault);
    }
    for (const CModuleChoice& choice : choices) {
        m_shown.push_back({static_cast<UINT>(m_values.size() + m_positions.size()), "", ""});
        m_positions.push_back(choice.m_uDefault);
    }
}

bool CModuleFilter::setParameter(UINT uParameter, float fValue)
{
    if (!std::isfinite(fValue))
        return false;
    relaxedStore(m_values[uParameter], fValue);
    refreshControl(controlOf(uParameter));
    settingsChanged();
    return true;
}

float CModuleFilter::parameter(UINT uParameter) const
{
    return relaxedLoad(m_values[uParameter]);
}

void CModuleFilter::setRange(UINT uParameter, const CModuleRange& range)
{
    m_ranges[uParameter] = range;
    refreshControl(controlOf(uParameter));
}

bool CModuleFilter::setChoice(UINT uChoice, UINT uCode)
{
    const auto& options = m_choices[uChoice].m_options;
    const auto found = std::ranges::find(options, uCode, &CModuleOption::m_uCode);
    if (found == options.end())
        return false;
    relaxedStore(m_positions[uChoice], static_cast<UINT>(found - options.begin()));
    refreshControl(controlOf(static_cast<UINT>(m_values.size()) + uChoice));
    settingsChanged();
    return true;
}

// A control may be set to a position that the options do not have.
UINT CModuleFilter::choice(UINT uChoice) const
{
    const auto& options = m_choices[uChoice].m_options;
    const UINT uPosition = relaxedLoad(m_positions[uChoice]);
    return options[uPosition < options.size() ? uPosition : 0].m_uCode;
}

void CModuleFilter::showControls(UINT uFirstControlId, std::vector<CShownSetting> shown)
{
    m_nFirstControlID = uFirstControlId;
    m_shown = std::move(shown);
    createControls();
}

UINT CModuleFilter::controlOf(UINT uSetting) const
{
    return static_cast<UINT>(std::ranges::find(m_shown, uSetting, &CShownSetting::m_uSetting) -
                             m_shown.begin());
}

UINT CModuleFilter::settingOf(UINT uControlId) const
{
    const UINT uControl = uControlId - m_nFirstControlID;
    return uControl < m_shown.size() ? m_shown[uControl].m_uSetting
                                     : static_cast<UINT>(m_values.size() + m_positions.size());
}

bool CModuleFilter::resetToDefaults()
{
    for (UINT u = 0; u < m_values.size(); ++u) {
        m_ranges[u] = m_parameters[u].m_afterReset;
        relaxedStore(m_values[u], m_ranges[u].m_fDefault);
    }
    for (UINT u = 0; u < m_positions.size(); ++u)
        relaxedStore(m_positions[u], m_choices[u].m_uDefault);
    refreshControls();
    settingsChanged();
    return true;
}

bool CModuleFilter::createControls()
{
    m_ControlList.clear();
    for (const CShownSetting& shown : m_shown) {
        m_ControlList.push_back(makeControl(shown));
        m_ControlList.back()->m_pFilter = this;
        m_ControlList.back()->uControlId = m_nFirstControlID + static_cast<UINT>(m_ControlList.size()) - 1;
    }
    refreshControls();
    return true;
}

std::unique_ptr<CDSPFilterControl> CModuleFilter::makeControl(const CShownSetting& shown)
{
    auto pControl = std::make_unique<CDSPFilterControl>();
    if (shown.m_uSetting < m_values.size()) {
        const CModuleParameter& parameter = m_parameters[shown.m_uSetting];
        pControl->uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        pControl->uUserDataType = floatData;
        pControl->m_pUserCookedFloatData = &m_values[shown.m_uSetting];
        pControl->m_sName = parameter.m_pName;
        pControl->m_sUnits = parameter.m_pUnits;
        pControl->bExpSlider = parameter.m_bLogarithmic;
    } else {
        const auto uChoice = shown.m_uSetting - m_values.size();
        const CModuleChoice& choice = m_choices[uChoice];
        pControl->uControlType = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;
        pControl->uUserDataType = UINTData;
        pControl->m_pUserCookedUINTData = &m_positions[uChoice];
        pControl->m_sName = choice.m_pName;
        pControl->setEnumeratedList(listOf(choice.m_options));
        pControl->fUserDisplayDataHiLimit = static_cast<float>(choice.m_options.size() - 1);
    }
    if (!shown.m_sName.empty())
        pControl->m_sName = shown.m_sName;
    if (!shown.m_sUnits.empty())
        pControl->m_sUnits = shown.m_sUnits;
    return pControl;
}

void CModuleFilter::refreshControls()
{
    for (UINT u = 0; u < m_ControlList.size(); ++u)
        refreshControl(u);
}

void CModuleFilter::refreshControl(UINT uControl)
{
    if (uControl >= m_ControlList.size())
        return;
    CDSPFilterControl& control = *m_ControlList[uControl];
    const UINT uSetting = m_shown[uControl].m_uSetting;
    if (uSetting < m_values.size()) {
        control.fUserDisplayDataLoLimit = m_ranges[uSetting].m_fLow;
        control.fUserDisplayDataHiLimit = m_ranges[uSetting].m_fHigh;
    }
    control.updateFromVariable();
    showValue(uControl);
}

void CModuleFilter::showValue(UINT uControl)
{
    const UINT uSetting = m_shown[uControl].m_uSetting;
    if (uSetting < m_values.size())
        m_ControlList[uControl]->m_sValue = moduleText(m_parameters[uSetting].m_eText, parameter(uSetting));
}

EModuleText CModuleFilter::textOf(UINT uControl) const
{
    const UINT uSetting = uControl < m_shown.size() ? m_shown[uControl].m_uSetting : ~0U;
    return uSetting < m_values.size() ? m_parameters[uSetting].m_eText : EModuleText::number;
}

CModuleFilter::CShownRange CModuleFilter::shownRange(const CDSPFilterControl& control) const
{
    const auto found = std::ranges::find(m_ControlList, &control, &std::unique_ptr<CDSPFilterControl>::get);
    const EModuleText eText = textOf(static_cast<UINT>(found - m_ControlList.begin()));
    return {shownValue(eText, control.fUserDisplayDataLoLimit),
            shownValue(eText, control.fUserDisplayDataHiLimit)};
}

bool CModuleFilter::setControlPosition(UINT uControlId, int nPos)
{
    return moveControl(settingOf(uControlId), nPos);
}

bool CModuleFilter::moveControl(UINT uSetting, int nPos)
{
    const UINT uControl = controlOf(uSetting);
    if (uControl >= m_ControlList.size())
        return false;
    m_ControlList[uControl]->setPosition(nPos);
    showValue(uControl);
    settingsChanged();
    return true;
}

bool CModuleFilter::setControlText(UINT uControlId, std::string sText, bool)
{
    const UINT uControl = uControlId - m_nFirstControlID;
    if (uControl >= m_ControlList.size())
        return false;
    CDSPFilterControl& control = *m_ControlList[uControl];
    const EModuleText eText = textOf(uControl);
    const CShownRange range = shownRange(control);
    CControlLaw law = control.law();
    law.m_fLo = static_cast<float>(range.m_dLow);
    law.m_fHi = static_cast<float>(range.m_dHigh);
    const auto dShown = cookedFromText(law, sText, control.m_sUnits);
    if (!dShown)
        return false;
    control.setCookedValue(valueOfShown(eText, *dShown));
    showValue(uControl);
    settingsChanged();
    return true;
}

bool CModuleFilter::controlChanged(UINT uControlId)
{
    const UINT uControl = uControlId - m_nFirstControlID;
    if (uControl >= m_ControlList.size())
        return false;
    refreshControl(uControl);
    settingsChanged();
    return true;
}

} // namespace velmora
