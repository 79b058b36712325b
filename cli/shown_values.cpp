#include "cli/shown_values.h"

#include "host/dsp_filter_control.h"
#include "plugin.h"

#include <algorithm>

namespace velmora::cli {

std::span<const std::string> itemsOf(const CDSPFilterControl& control)
{
    return control.uUserDataType == UINTData ? std::span(control.m_Enum) : std::span<const std::string>();
}

std::string chosenItem(const CDSPFilterControl& control)
{
    const auto items = itemsOf(control);
    const double dValue = control.cookedValue().value_or(-1.0);
    return dValue >= 0.0 && dValue < static_cast<double>(items.size())
               ? items[static_cast<std::size_t>(dValue)]
               : std::string();
}

std::string variableNameOf(CPlugIn& plugIn, const CDSPFilterControl& control)
{
    const CUICtrl* pRecord = plugIn.getUICtrlByControlID(control.uControlId);
    return pRecord && pRecord->cVariableName ? pRecord->cVariableName : "";
}

double secondsOfAudio(const COfflineProcessing::CResult& result)
{
    return static_cast<double>(result.m_nFrames) / std::max(result.m_nSampleRate, 1);
}

double timesRealTime(const COfflineProcessing::CResult& result)
{
    return secondsOfAudio(result) / std::max(result.m_dSeconds, 1e-9);
}

} // namespace velmora::cli
