// One row for each member of the contract's records: its place and its size in bytes on x86-64. Host and
// library compile this file apart, each with its own compiler, and then compare what they found.
// A number that changes here is a change of the binary agreement.

#ifndef VELMORA_CONTRACT_MEMBERS_H
#define VELMORA_CONTRACT_MEMBERS_H

#include "plugin.h"

// clang-format off
#define CONTRACT_MEMBERS(MEMBER) \
    MEMBER(CPlugIn, m_pReserved, 8, 8)                     \
    MEMBER(CPlugIn, m_hParentWnd, 16, 8)                   \
    MEMBER(CPlugIn, m_bUserCustomGUI, 24, 1)               \
    MEMBER(CPlugIn, m_bOutputOnlyPlugIn, 25, 1)            \
    MEMBER(CPlugIn, m_bWantAllMIDIMessages, 26, 1)         \
    MEMBER(CPlugIn, m_bWantIRs, 27, 1)                     \
    MEMBER(CPlugIn, m_nIRLength, 28, 4)                    \
    MEMBER(CPlugIn, m_bWantBuffers, 32, 1)                 \
    MEMBER(CPlugIn, m_bWantChannelBuffers, 33, 1)          \
    MEMBER(CPlugIn, m_bEnableMIDIControl, 34, 1)           \
    MEMBER(CPlugIn, m_bReservedFlag, 35, 1)                \
    MEMBER(CPlugIn, m_nNumWAVEChannels, 36, 4)             \
    MEMBER(CPlugIn, m_nSampleRate, 40, 4)                  \
    MEMBER(CPlugIn, m_nBitDepth, 44, 4)                    \
    MEMBER(CPlugIn, m_UIControlList, 48, 8)                \
    MEMBER(CPlugIn, m_uReservedWords, 56, 28)              \
    MEMBER(CPlugIn, m_PresetJSPrograms, 88, 128)           \
    MEMBER(CPlugIn, m_PresetNames, 216, 128)               \
    MEMBER(CPlugIn, m_AddlPresetValues, 344, 128)          \
    MEMBER(CPlugIn, m_PlugInName, 472, 8)                  \
    MEMBER(CPlugIn, m_uPlugInVersion, 480, 4)              \
    MEMBER(CPlugIn, m_bUseCustomVSTGUI, 484, 1)            \
    MEMBER(CPlugIn, m_nGUIThemeID, 488, 4)                 \
    MEMBER(CPlugIn, m_nGUIType, 492, 4)                    \
    MEMBER(CPlugIn, m_uControlTheme, 496, 256)             \
    MEMBER(CPlugIn, m_uPlugInEx, 752, 256)                 \
    MEMBER(CPlugIn, m_fPlugInEx, 1008, 256)                \
    MEMBER(CPlugIn, m_TextLabels, 1264, 512)               \
    MEMBER(CPlugIn, m_uLabelCX, 1776, 256)                 \
    MEMBER(CPlugIn, m_uLabelCY, 2032, 256)                 \
    MEMBER(CPlugIn, m_uMaxInputChannels, 2288, 4)          \
    MEMBER(CPlugIn, m_uMaxOutputChannels, 2292, 4)         \
    MEMBER(CPlugIn, m_uX_TrackPadIndex, 2296, 4)           \
    MEMBER(CPlugIn, m_uY_TrackPadIndex, 2300, 4)           \
    MEMBER(CPlugIn, m_AssignButton1Name, 2304, 8)          \
    MEMBER(CPlugIn, m_AssignButton2Name, 2312, 8)          \
    MEMBER(CPlugIn, m_AssignButton3Name, 2320, 8)          \
    MEMBER(CPlugIn, m_bLatchingAssignButton1, 2328, 1)     \
    MEMBER(CPlugIn, m_bLatchingAssignButton2, 2329, 1)     \
    MEMBER(CPlugIn, m_bLatchingAssignButton3, 2330, 1)     \
    MEMBER(CPlugIn, m_MIDIFreqTable, 2332, 512)            \
    MEMBER(CPlugIn, m_pVectorJSProgram, 2848, 8)           \
    MEMBER(CPlugIn, m_JS_XCtrl, 2856, 6080)                \
    MEMBER(CPlugIn, m_JS_YCtrl, 8936, 6080)                \
    MEMBER(CPlugIn, m_h_Left, 15016, 4096)                 \
    MEMBER(CPlugIn, m_h_Right, 19112, 4096)                \
    MEMBER(CUICtrl, uControlType, 0, 4)                    \
    MEMBER(CUICtrl, uControlId, 4, 4)                      \
    MEMBER(CUICtrl, uDetectorMode, 8, 4)                   \
    MEMBER(CUICtrl, fUserDisplayDataLoLimit, 12, 4)        \
    MEMBER(CUICtrl, fUserDisplayDataHiLimit, 16, 4)        \
    MEMBER(CUICtrl, uUserDataType, 20, 4)                  \
    MEMBER(CUICtrl, fInitUserIntValue, 24, 4)              \
    MEMBER(CUICtrl, fInitUserFloatValue, 28, 4)            \
    MEMBER(CUICtrl, fInitUserDoubleValue, 32, 4)           \
    MEMBER(CUICtrl, fInitUserUINTValue, 36, 4)             \
    MEMBER(CUICtrl, fReserved, 40, 16)                     \
    MEMBER(CUICtrl, m_pUserCookedIntData, 56, 8)           \
    MEMBER(CUICtrl, m_pUserCookedFloatData, 64, 8)         \
    MEMBER(CUICtrl, m_pUserCookedDoubleData, 72, 8)        \
    MEMBER(CUICtrl, m_pUserCookedUINTData, 80, 8)          \
    MEMBER(CUICtrl, m_pCurrentMeterValue, 88, 8)           \
    MEMBER(CUICtrl, cControlName, 96, 8)                   \
    MEMBER(CUICtrl, cControlUnits, 104, 8)                 \
    MEMBER(CUICtrl, cVariableName, 112, 8)                 \
    MEMBER(CUICtrl, cEnumeratedList, 120, 8)               \
    MEMBER(CUICtrl, cMeterVariableName, 128, 8)            \
    MEMBER(CUICtrl, m_cControlNameText, 136, 1024)         \
    MEMBER(CUICtrl, m_cControlUnitsText, 1160, 1024)       \
    MEMBER(CUICtrl, m_cVariableNameText, 2184, 1024)       \
    MEMBER(CUICtrl, m_cEnumeratedListText, 3208, 1024)     \
    MEMBER(CUICtrl, m_cMeterVariableNameText, 4232, 1024)  \
    MEMBER(CUICtrl, bOwnerControl, 5256, 1)                \
    MEMBER(CUICtrl, bUseMeter, 5257, 1)                    \
    MEMBER(CUICtrl, bUpsideDownMeter, 5258, 1)             \
    MEMBER(CUICtrl, bLogMeter, 5259, 1)                    \
    MEMBER(CUICtrl, bLogSlider, 5260, 1)                   \
    MEMBER(CUICtrl, bExpSlider, 5261, 1)                   \
    MEMBER(CUICtrl, uMeterColorScheme, 5264, 4)            \
    MEMBER(CUICtrl, fMeterAttack_ms, 5268, 4)              \
    MEMBER(CUICtrl, fMeterRelease_ms, 5272, 4)             \
    MEMBER(CUICtrl, bMIDIControl, 5276, 1)                 \
    MEMBER(CUICtrl, uMIDIControlCommand, 5280, 4)          \
    MEMBER(CUICtrl, uMIDIControlName, 5284, 4)             \
    MEMBER(CUICtrl, uMIDIControlChannel, 5288, 4)          \
    MEMBER(CUICtrl, nGUIRow, 5292, 4)                      \
    MEMBER(CUICtrl, nGUIColumn, 5296, 4)                   \
    MEMBER(CUICtrl, uControlTheme, 5300, 128)              \
    MEMBER(CUICtrl, dPresetData, 5432, 128)                \
    MEMBER(CUICtrl, uFluxCapControl, 5560, 256)            \
    MEMBER(CUICtrl, fFluxCapData, 5816, 256)               \
    MEMBER(CUICtrl, uReserved, 6072, 4)                    \
    MEMBER(auxInputData, uInputBus, 0, 4)                  \
    MEMBER(auxInputData, pFramePtr, 8, 8)                  \
    MEMBER(auxInputData, pBufferPtr, 16, 8)                \
    MEMBER(auxInputData, ppChannelBuffers, 24, 8)          \
    MEMBER(auxInputData, uNumChannels, 32, 4)              \
    MEMBER(auxInputData, uBufferSize, 36, 4)               \
    MEMBER(auxInputData, bInputEnabled, 40, 1)             \
    MEMBER(hostMessageData, uMessage, 0, 4)                \
    MEMBER(hostMessageData, bHasEditor, 4, 1)              \
    MEMBER(hostMessageData, pParentWindow, 8, 8)           \
    MEMBER(hostMessageData, pPlugInModule, 16, 8)          \
    MEMBER(hostMessageData, pHostModule, 24, 8)            \
    MEMBER(hostMessageData, pUIDescription, 32, 8)         \
    MEMBER(hostMessageData, uUIDescriptionLength, 40, 4)   \
    MEMBER(hostMessageData, pUsedControlIds, 48, 8)        \
    MEMBER(hostMessageData, uUsedControlIdCount, 56, 4)    \
    MEMBER(hostMessageData, pUsedLCDControlIds, 64, 8)     \
    MEMBER(hostMessageData, uUsedLCDControlIdCount, 72, 4)
// clang-format on

const size_t CONTRACT_CPLUGIN_SIZE = 23208;
const size_t CONTRACT_CUICTRL_SIZE = 6080;
const size_t CONTRACT_AUX_INPUT_SIZE = 48;
const size_t CONTRACT_HOST_MESSAGE_SIZE = 80;

// Which record a member belongs to.
enum ERecord
{
    recordCPlugIn,
    recordCUICtrl,
    recordauxInputData,
    recordhostMessageData
};

struct CMemberRow
{
    ERecord m_eRecord;
    const char* m_pName;
    size_t m_uOffset;
    size_t m_uSize;
};

#define CONTRACT_ROW(Record, member, offset, size) {record##Record, #Record "::" #member, offset, size},
static const CMemberRow CONTRACT_ROWS[] = {CONTRACT_MEMBERS(CONTRACT_ROW)};
#undef CONTRACT_ROW

const UINT CONTRACT_ROW_COUNT = sizeof CONTRACT_ROWS / sizeof CONTRACT_ROWS[0];

// Where the compiler of the including file finds the member of that row in a record of the row's kind.
inline char* memberAddress(void* pRecord, UINT uRow)
{
    UINT uCount = 0;
#define CONTRACT_ADDRESS(Record, member, offset, size)                                                       \
    if (uRow == uCount++)                                                                                    \
        return reinterpret_cast<char*>(&static_cast<Record*>(pRecord)->member);
    CONTRACT_MEMBERS(CONTRACT_ADDRESS)
#undef CONTRACT_ADDRESS
    return 0;
}

// The size that the compiler of the including file gives to the member.
inline size_t memberSize(UINT uRow)
{
    UINT uCount = 0;
#define CONTRACT_SIZE(Record, member, offset, size)                                                          \
    if (uRow == uCount++)                                                                                    \
        return sizeof static_cast<Record*>(0)->member;
    CONTRACT_MEMBERS(CONTRACT_SIZE)
#undef CONTRACT_SIZE
    return 0;
}

#endif
