// A plug-in that writes down each call it gets, and a library that tells how its compiler laid out the
// contract's records. Built once by each compiler; RECORDER_NAME is the library's file name.

#include "contract_members.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

static char g_cRecord[256];

static bool record(const char* pFormat, ...)
{
    va_list arguments;
    va_start(arguments, pFormat);
    vsprintf(g_cRecord, pFormat, arguments);
    va_end(arguments);
    return true;
}

class CRecorderPlugIn : public CPlugIn
{
  public:
    CRecorderPlugIn() : m_fGain(0.5f), m_nSteps(3)
    {
        m_PlugInName = RECORDER_NAME;
        initUI();
    }
    ~CRecorderPlugIn() { record("destructor"); }

    bool prepareForPlay()
    {
        return record("prepareForPlay %d %d %d", m_nSampleRate, m_nNumWAVEChannels, m_nBitDepth);
    }
    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut)
    {
        return record("processAudioFrame %g %g %u %u", *pIn, *pOut, uIn, uOut);
    }
    bool userInterfaceChange(int nIndex) { return record("userInterfaceChange %d %g", nIndex, m_fGain); }
    bool init() { return record("init"); }
    bool joystickControlChange(float fA, float fB, float fC, float fD, float fAC, float fBD)
    {
        return record("joystickControlChange %g %g %g %g %g %g", fA, fB, fC, fD, fAC, fBD);
    }
    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT uOut, UINT uSize)
    {
        return record("processSocketAudioBuffer %g %g %u %u %u", *pIn, *pOut, uIn, uOut, uSize);
    }
    bool processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames)
    {
        return record("processChannelBuffers %g %g %u %u", **ppIn, **ppOut, uChannels, uFrames);
    }
    bool midiNoteOn(UINT uChannel, UINT uNote, UINT uVelocity)
    {
        return record("midiNoteOn %u %u %u", uChannel, uNote, uVelocity);
    }
    bool midiNoteOff(UINT uChannel, UINT uNote, UINT uVelocity, bool bAll)
    {
        return record("midiNoteOff %u %u %u %d", uChannel, uNote, uVelocity, bAll);
    }
    bool midiModWheel(UINT uChannel, UINT uValue) { return record("midiModWheel %u %u", uChannel, uValue); }
    bool midiPitchBend(UINT uChannel, int nValue, float fValue)
    {
        return record("midiPitchBend %u %d %g", uChannel, nValue, fValue);
    }
    bool midiClock() { return record("midiClock"); }
    bool midiMessage(unsigned char cChannel, unsigned char cStatus, unsigned char cData1,
                     unsigned char cData2)
    {
        return record("midiMessage %u %u %u %u", cChannel, cStatus, cData1, cData2);
    }
    bool initUI()
    {
        CUICtrl gain;
        gain.uControlId = 1;
        gain.cControlName = "Gain";
        gain.uUserDataType = floatData;
        gain.fUserDisplayDataHiLimit = 4.0f;
        gain.m_pUserCookedFloatData = &m_fGain;
        m_UIControlList.append(gain);
        CUICtrl steps;
        steps.uControlId = 41;
        steps.cEnumeratedList = "one,two,three";
        steps.uUserDataType = intData;
        steps.m_pUserCookedIntData = &m_nSteps;
        m_UIControlList.append(steps);
        return record("initUI");
    }
    void reservedOperation16(int nValue) { record("reservedOperation16 %d", nValue); }
    float getAdditionalPresetValue(int nIndex)
    {
        record("getAdditionalPresetValue %d", nIndex);
        return 0.25f;
    }
    int getAdditionalPresetValueCount()
    {
        record("getAdditionalPresetValueCount");
        return 7;
    }
    int processHostMessage(hostMessageData* pData)
    {
        record("processHostMessage %u %u %u", pData->uMessage, pData->pUsedControlIds[1],
               pData->uUIDescriptionLength);
        pData->bHasEditor = true;
        return 5;
    }
    void reservedOperation20() { record("reservedOperation20"); }
    bool processAuxInputBus(auxInputData* pData)
    {
        return record("processAuxInputBus %u %g %u %u %d", pData->uInputBus, *pData->pBufferPtr,
                      pData->uNumChannels, pData->uBufferSize, pData->bInputEnabled);
    }

  private:
    float m_fGain;
    int m_nSteps;
};

VELMORA_EXPORT_PLUGIN(CRecorderPlugIn)

// getMyDLLDirectory() as the plug-in itself calls it, from the library's own code.
VELMORA_EXPORT char* directoryOf(CPlugIn* pPlugIn)
{
    return pPlugIn->getMyDLLDirectory();
}

VELMORA_EXPORT const char* lastRecord()
{
    return g_cRecord;
}

// The library's own view of a row of the contract's members.
VELMORA_EXPORT void describeMember(void* pRecord, UINT uRow, size_t* pOffset, size_t* pSize)
{
    *pOffset = static_cast<size_t>(memberAddress(pRecord, uRow) - static_cast<char*>(pRecord));
    *pSize = memberSize(uRow);
}

VELMORA_EXPORT void writeMember(void* pRecord, UINT uRow, const char* pBytes)
{
    memcpy(memberAddress(pRecord, uRow), pBytes, memberSize(uRow));
}

VELMORA_EXPORT void readMember(void* pRecord, UINT uRow, char* pBytes)
{
    memcpy(pBytes, memberAddress(pRecord, uRow), memberSize(uRow));
}

VELMORA_EXPORT void recordSizes(size_t* pSizes)
{
    pSizes[recordCPlugIn] = sizeof(CPlugIn);
    pSizes[recordCUICtrl] = sizeof(CUICtrl);
    pSizes[recordauxInputData] = sizeof(auxInputData);
    pSizes[recordhostMessageData] = sizeof(hostMessageData);
}
