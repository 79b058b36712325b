// A plug-in that behaves well while it is examined and, when told to, badly while audio runs.

#include "plugin.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>

namespace {

enum EMood
{
    CALM,
    FAULT,    // writes where it must not
    ABORT,    // ends the program
    OVERFLOW, // uses up the stack
    SLOW,     // takes about a tenth of a millisecond for each frame
    CHATTY,   // prints, and tells the host
    LEAVE,    // calls exit()
    THROW,    // throws an exception of its own
    DIVIDE,   // by zero
    JUMP,     // calls a function that is not there
    TRAP      // runs into an instruction that no processor has
};

class CTooLoud : public std::exception
{
  public:
    const char* what() const noexcept override { return "too loud"; }
};

// Adds the sidechain's left channel to what it halves.
class CUnruly : public CPlugIn
{
  public:
    CUnruly()
    {
        m_PlugInName = "Unruly";
        initUI();
    }

    bool initUI() override
    {
        CUICtrl mood;
        mood.uControlType = FILTER_CONTROL_COMBO_VARIABLE;
        mood.uControlId = 7;
        mood.uUserDataType = UINTData;
        mood.fUserDisplayDataHiLimit = TRAP;
        mood.m_pUserCookedUINTData = &m_uMood;
        mood.cControlName = "Mood";
        mood.cVariableName = "m_uMood";
        mood.cEnumeratedList = "Calm,Fault,Abort,Overflow,Slow,Chatty,Leave,Throw,Divide,Jump,Trap";
        m_UIControlList.append(mood);

        CUICtrl angle;
        angle.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        angle.uControlId = 8;
        angle.uUserDataType = doubleData;
        angle.fUserDisplayDataLoLimit = -180.0F;
        angle.fUserDisplayDataHiLimit = 180.0F;
        angle.fInitUserDoubleValue = 0.1F;
        angle.m_pUserCookedDoubleData = &m_dAngle;
        angle.cControlName = "Angle";
        angle.cControlUnits = "\xB0"; // a degree sign in Latin-1
        angle.cVariableName = "m_dAngle";
        m_UIControlList.append(angle);
        return true;
    }

    bool prepareForPlay() override
    {
        if (m_uMood == CHATTY) {
            std::puts("printed by the plug-in");
            std::fflush(stdout);
            char text[] = "told by the plug-in";
            sendStatusWndText(text);
        }
        return true;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override
    {
        if (m_uMood == FAULT)
            *m_pNowhere = 1;
        if (m_uMood == ABORT)
            std::abort();
        if (m_uMood == OVERFLOW)
            m_uDepth = useUpStack(1);
        if (m_uMood == LEAVE)
            std::exit(0);
        if (m_uMood == THROW)
            throw CTooLoud();
        if (m_uMood == DIVIDE)
            m_uDepth = m_uMood / m_uNothing;
        if (m_uMood == JUMP)
            m_pNoFunction();
        if (m_uMood == TRAP)
            __builtin_trap();
        if (m_uMood == SLOW) {
            const timespec pause = {0, 50000};
            nanosleep(&pause, nullptr);
        }
        for (UINT u = 0; u < uOut; ++u)
            pOut[u] = 0.5F * pIn[u < uIn ? u : 0] + m_fSidechain;
        return true;
    }

    bool processAuxInputBus(auxInputData* pAux) override
    {
        m_fSidechain = pAux->bInputEnabled ? pAux->pFramePtr[0] : 0.0F;
        return true;
    }

  private:
    UINT useUpStack(UINT uDepth)
    {
        volatile char page[4096];
        page[uDepth % sizeof page] = static_cast<char>(uDepth);
        return uDepth > 100000000 ? uDepth : useUpStack(uDepth + 1) + static_cast<UINT>(page[0]);
    }

    UINT m_uMood = CALM;
    UINT m_uDepth = 0;
    float m_fSidechain = 0.0F;
    double m_dAngle = 0.0;
    int* volatile m_pNowhere = nullptr;
    volatile UINT m_uNothing = 0;
    void (*volatile m_pNoFunction)() = nullptr;
};

} // namespace

VELMORA_EXPORT_PLUGIN(CUnruly)
