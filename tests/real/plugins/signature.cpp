// A plug-in that can be told from others by what it plays, whatever comes in: SIGNATURE on the left channel,
// and what its one control says, 0.0 to 1.0, on the right. SIGNATURE_NAME is its name; SIGNATURE_INTERLEAVED
// or SIGNATURE_PLANES has it called in that way, else it is called frame by frame.

#include "plugin.h"

#include <atomic>

class CSignature : public CPlugIn
{
  public:
    CSignature() : m_fLevel(0.0F)
    {
        m_PlugInName = SIGNATURE_NAME;
#if defined(SIGNATURE_INTERLEAVED)
        m_bWantBuffers = true;
#elif defined(SIGNATURE_PLANES)
        m_bWantChannelBuffers = true;
#endif
        CUICtrl control;
        control.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        control.uControlId = 0;
        control.uUserDataType = floatData;
        control.fUserDisplayDataLoLimit = 0.0F;
        control.fUserDisplayDataHiLimit = 1.0F;
        control.fInitUserFloatValue = 0.0F;
        control.m_pUserCookedFloatData = &m_fLevel;
        m_UIControlList.append(control);
    }

    bool processAudioFrame(float*, float* pOut, UINT, UINT uOut) override
    {
        pOut[0] = SIGNATURE;
        if (uOut == 2)
            pOut[1] = level();
        return true;
    }

    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT uOut, UINT uSize) override
    {
        for (UINT i = 0; i < uSize / uIn; ++i)
            processAudioFrame(pIn + i * uIn, pOut + i * uOut, uIn, uOut);
        return true;
    }

    bool processChannelBuffers(float**, float** ppOut, UINT, UINT uFrames) override
    {
        for (UINT i = 0; i < uFrames; ++i) {
            ppOut[0][i] = SIGNATURE;
            ppOut[1][i] = level();
        }
        return true;
    }

  private:
    // The host writes the variable on another thread, as one word.
    float level()
    {
        return std::atomic_ref<float>(m_fLevel).load(std::memory_order_relaxed);
    }

    float m_fLevel;
};

VELMORA_EXPORT_PLUGIN(CSignature)
