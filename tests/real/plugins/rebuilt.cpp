// One build of a plug-in that is rebuilt while it plays: multiplies by a factor of the build's own and by the
// value of its one control.

#include "plugin.h"

class CRebuilt : public CPlugIn
{
  public:
    CRebuilt()
    {
        m_PlugInName = REBUILT_NAME;
        initUI();
    }

    bool initUI() override
    {
        CUICtrl level;
        level.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        level.uControlId = 0;
        level.uUserDataType = floatData;
        level.fUserDisplayDataHiLimit = 1.0F;
        level.fInitUserFloatValue = 1.0F;
        level.m_pUserCookedFloatData = &m_fLevel;
        level.cControlName = "Level";
        level.cVariableName = "m_fLevel";
        m_UIControlList.append(level);
        return true;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override
    {
        for (UINT u = 0; u < uOut; ++u)
            pOut[u] = REBUILT_FACTOR * m_fLevel * pIn[u < uIn ? u : 0];
        return true;
    }

  private:
    float m_fLevel = 1.0F;
};

VELMORA_EXPORT_PLUGIN(CRebuilt)
