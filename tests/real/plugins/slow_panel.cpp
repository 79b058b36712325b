// A plug-in that takes its time whenever a control is moved, with a meter that never stands still while it
// plays.

#include "plugin.h"

#include <chrono>
#include <thread>

class CSlowPanel : public CPlugIn
{
  public:
    CSlowPanel()
    {
        m_PlugInName = SLOW_PANEL_NAME;
        initUI();
    }

    bool initUI() override
    {
        CUICtrl slider;
        slider.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        slider.uControlId = 0;
        slider.uUserDataType = floatData;
        slider.fUserDisplayDataHiLimit = 1.0F;
        slider.m_pUserCookedFloatData = &m_fValue;
        slider.cControlName = "Slow";
        slider.cVariableName = "m_fValue";
        m_UIControlList.append(slider);
        appendMeter(50, "Ramp", "m_fRamp", &m_fRamp);
        appendMeter(51, "Calls", "m_fCalls", &m_fCalls);
        return true;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override
    {
        m_fRamp += RAMP_STEP;
        if (m_fRamp > 1.0F)
            m_fRamp = 0.0F;
        for (UINT u = 0; u < uOut; ++u)
            pOut[u] = pIn[u < uIn ? u : 0];
        return true;
    }

    bool userInterfaceChange(int) override
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        m_fCalls += CALL_STEP;
        return true;
    }

  private:
    static constexpr float RAMP_STEP = 1.0F / 9600.0F; // five rounds a second
    static constexpr float CALL_STEP = 1.0F / 1024.0F; // exact

    void appendMeter(UINT uId, const char* pName, const char* pVariable, float* pValue)
    {
        CUICtrl meter;
        meter.uControlType = FILTER_CONTROL_LED_METER;
        meter.uControlId = uId;
        meter.bUseMeter = true;
        meter.uDetectorMode = 3; // the value as it is
        meter.m_pCurrentMeterValue = pValue;
        meter.cControlName = pName;
        meter.cMeterVariableName = pVariable;
        m_UIControlList.append(meter);
    }

    float m_fValue = 0.0F;
    float m_fRamp = 0.0F;
    float m_fCalls = 0.0F;
};

VELMORA_EXPORT_PLUGIN(CSlowPanel)
