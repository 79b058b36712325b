#pragma once

#include "host/user_dsp_filter.h"
#include "panel/panel_model.h"
#include "plugin.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace velmora::test {

// The fields of a control that the panel goes by.
struct CTestControl
{
    UINT m_uId;
    UINT m_uType;
    UINT m_uDataType;
    float m_fLo;
    float m_fHi;
    float m_fInitial;
    const char* m_pItems = "";
    const char* m_pUnits = "";
    bool m_bLog = false;
    bool m_bExp = false;
    UINT m_uWheelIndex = 0;
};

inline CUICtrl recordOf(const CTestControl& control)
{
    CUICtrl record;
    const std::string sName = "Name " + std::to_string(control.m_uId);
    record.uControlId = control.m_uId;
    record.uControlType = control.m_uType;
    record.uUserDataType = control.m_uDataType;
    record.fUserDisplayDataLoLimit = control.m_fLo;
    record.fUserDisplayDataHiLimit = control.m_fHi;
    record.fInitUserIntValue = control.m_uDataType == intData ? control.m_fInitial : 0.0F;
    record.fInitUserFloatValue = control.m_fInitial;
    record.fInitUserDoubleValue = control.m_fInitial;
    record.fInitUserUINTValue = control.m_fInitial;
    record.cControlName = sName.c_str();
    record.cControlUnits = control.m_pUnits;
    record.cEnumeratedList = control.m_pItems;
    record.bLogSlider = control.m_bLog;
    record.bExpSlider = control.m_bExp;
    record.uFluxCapControl[0] = control.m_uId >= 100 ? 1 : 0;
    record.uFluxCapControl[1] = control.m_uWheelIndex;
    return CUICtrl(record); // with texts of its own
}

// A plug-in with a variable of each type for every control, which notes what it is told.
class CPanelPlugIn : public CPlugIn
{
  public:
    explicit CPanelPlugIn(std::vector<CTestControl> controls) : m_variables(controls.size())
    {
        m_PlugInName = "Panel";
        for (std::size_t u = 0; u < controls.size(); ++u) {
            CUICtrl record = recordOf(controls[u]);
            CVariable& variable = m_variables[u];
            const UINT uType = controls[u].m_uDataType;
            record.m_pUserCookedIntData = uType == intData ? &variable.m_nValue : nullptr;
            record.m_pUserCookedFloatData = uType == floatData ? &variable.m_fValue : nullptr;
            record.m_pUserCookedDoubleData = uType == doubleData ? &variable.m_dValue : nullptr;
            record.m_pUserCookedUINTData = uType == UINTData ? &variable.m_uValue : nullptr;
            record.m_pCurrentMeterValue = &variable.m_fValue;
            record.uDetectorMode = controls[u].m_uDataType == UINTData ? DETECT_MODE_RMS : DETECT_MODE_NONE;
            record.fMeterAttack_ms = 0.0F;
            m_UIControlList.append(record);
        }
    }

    bool userInterfaceChange(int nControlIndex) override
    {
        m_told.push_back(nControlIndex);
        if (m_whenTold)
            m_whenTold();
        return true;
    }

    struct CVariable
    {
        int m_nValue = 0;
        float m_fValue = 0.0F;
        double m_dValue = 0.0;
        UINT m_uValue = 0;
    };

    std::vector<CVariable> m_variables;
    std::vector<int> m_told;
    std::function<void()> m_whenTold;
};

// Writes down what the model tells its window: "slot 3", "panel", "refresh", "button 50", "pending" and the
// text of a failure.
class CRecordingPanelView : public IPanelView
{
  public:
    void slotChanged(UINT uSlot) override { m_calls.push_back("slot " + std::to_string(uSlot)); }
    void panelChanged() override { m_calls.emplace_back("panel"); }
    void commonRefresh() override { m_calls.emplace_back("refresh"); }
    void buttonChanged(UINT uButton) override { m_calls.push_back("button " + std::to_string(uButton)); }
    void changesPending() override { m_calls.emplace_back("pending"); }
    void plugInFailed(std::string_view sText) override { m_calls.emplace_back(sText); }

    // What was written since the last call.
    std::vector<std::string> taken() { return std::exchange(m_calls, {}); }

  private:
    std::vector<std::string> m_calls;
};

} // namespace velmora::test
