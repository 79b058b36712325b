#include "contract_members.h"
#include "library_check.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <new>

namespace {

TEST(ContractLayout, MembersLieWhereTheTableSays)
{
    EXPECT_EQ(sizeof(CPlugIn), CONTRACT_CPLUGIN_SIZE);
    EXPECT_EQ(sizeof(CUICtrl), CONTRACT_CUICTRL_SIZE);
    EXPECT_EQ(sizeof(auxInputData), CONTRACT_AUX_INPUT_SIZE);
    EXPECT_EQ(sizeof(hostMessageData), CONTRACT_HOST_MESSAGE_SIZE);

    CPlugIn plugIn;
    CUICtrl control;
    auxInputData auxInput;
    hostMessageData hostMessage;
    void* const records[] = {&plugIn, &control, &auxInput, &hostMessage};
    for (UINT uRow = 0; uRow < CONTRACT_ROW_COUNT; uRow++) {
        const CMemberRow& row = CONTRACT_ROWS[uRow];
        char* pRecord = static_cast<char*>(records[row.m_eRecord]);
        EXPECT_EQ(memberAddress(pRecord, uRow) - pRecord, static_cast<ptrdiff_t>(row.m_uOffset))
            << row.m_pName;
        EXPECT_EQ(memberSize(uRow), row.m_uSize) << row.m_pName;
    }
}

// A pointer to a virtual operation holds 1 + its distance in bytes from the start of the table, where the
// destructor takes the first two places.
template <typename Operation>
size_t tablePlaceOf(Operation operation)
{
    size_t uEncoded = 0;
    std::memcpy(&uEncoded, &operation, sizeof uEncoded);
    return (uEncoded - 1) / sizeof(void*);
}

TEST(ContractLayout, OperationsKeepTheirOrder)
{
    const size_t places[] = {
        tablePlaceOf(&CPlugIn::prepareForPlay),
        tablePlaceOf(&CPlugIn::processAudioFrame),
        tablePlaceOf(&CPlugIn::userInterfaceChange),
        tablePlaceOf(&CPlugIn::init),
        tablePlaceOf(&CPlugIn::joystickControlChange),
        tablePlaceOf(&CPlugIn::processSocketAudioBuffer),
        tablePlaceOf(&CPlugIn::processChannelBuffers),
        tablePlaceOf(&CPlugIn::midiNoteOn),
        tablePlaceOf(&CPlugIn::midiNoteOff),
        tablePlaceOf(&CPlugIn::midiModWheel),
        tablePlaceOf(&CPlugIn::midiPitchBend),
        tablePlaceOf(&CPlugIn::midiClock),
        tablePlaceOf(&CPlugIn::midiMessage),
        tablePlaceOf(&CPlugIn::initUI),
        tablePlaceOf(&CPlugIn::reservedOperation16),
        tablePlaceOf(&CPlugIn::getAdditionalPresetValue),
        tablePlaceOf(&CPlugIn::getAdditionalPresetValueCount),
        tablePlaceOf(&CPlugIn::processHostMessage),
        tablePlaceOf(&CPlugIn::reservedOperation20),
        tablePlaceOf(&CPlugIn::processAuxInputBus),
    };
    size_t uExpected = 2;
    for (const size_t uPlace : places)
        EXPECT_EQ(uPlace, uExpected++);
    EXPECT_EQ(sizeof(CPlugInEx), sizeof(CPlugIn));
}

TEST(ContractLayout, LibrariesOfBothCompilersAgreeWithThisHost)
{
    EXPECT_EQ(checkLibrary(GCC_RECORDER), "");
    EXPECT_EQ(checkLibrary(CLANG_RECORDER), "");
    EXPECT_NE(checkLibrary("/nowhere/none.so"), "");
}

template <typename T>
void expectAll(const T* pValues, size_t uCount, T expected, const char* pWhat)
{
    for (size_t i = 0; i < uCount; i++)
        EXPECT_EQ(pValues[i], expected) << pWhat << " " << i;
}

TEST(ContractDefaults, PlugIn)
{
    const CPlugIn plugIn;
    const bool off[] = {
        plugIn.m_bUserCustomGUI,         plugIn.m_bOutputOnlyPlugIn,
        plugIn.m_bWantAllMIDIMessages,   plugIn.m_bWantIRs,
        plugIn.m_bWantBuffers,           plugIn.m_bWantChannelBuffers,
        plugIn.m_bReservedFlag,          plugIn.m_bUseCustomVSTGUI,
        plugIn.m_bLatchingAssignButton1, plugIn.m_bLatchingAssignButton2,
        plugIn.m_bLatchingAssignButton3,
    };
    expectAll(off, std::size(off), false, "flag");
    EXPECT_TRUE(plugIn.m_bEnableMIDIControl);
    EXPECT_EQ(plugIn.m_hParentWnd, nullptr);
    EXPECT_EQ(plugIn.m_nIRLength, 0);
    EXPECT_EQ(plugIn.m_nNumWAVEChannels, 2);
    EXPECT_EQ(plugIn.m_nSampleRate, 44100);
    EXPECT_EQ(plugIn.m_nBitDepth, 16);
    EXPECT_EQ(plugIn.m_UIControlList.count(), 0u);
    EXPECT_STREQ(plugIn.m_PlugInName, "Name Not Set.");
    EXPECT_EQ(plugIn.m_uPlugInVersion, 61u);
    EXPECT_EQ(plugIn.m_nGUIThemeID, -1);
    EXPECT_EQ(plugIn.m_nGUIType, -1);
    EXPECT_EQ(plugIn.m_uMaxInputChannels, 2u);
    EXPECT_EQ(plugIn.m_uMaxOutputChannels, 2u);
    EXPECT_EQ(plugIn.m_uX_TrackPadIndex, 0xFFFFFFFFu);
    EXPECT_EQ(plugIn.m_uY_TrackPadIndex, 0xFFFFFFFFu);
    EXPECT_STREQ(plugIn.m_AssignButton1Name, "B1");
    EXPECT_STREQ(plugIn.m_AssignButton2Name, "B2");
    EXPECT_STREQ(plugIn.m_AssignButton3Name, "B3");

    EXPECT_EQ(plugIn.m_uControlTheme[0], 0xFFFFFFFFu);
    expectAll(plugIn.m_uControlTheme + 1, 63, 0u, "m_uControlTheme from 1");
    expectAll(plugIn.m_uPlugInEx, 64, 0u, "m_uPlugInEx");
    expectAll(plugIn.m_fPlugInEx, 64, 0.0f, "m_fPlugInEx");
    expectAll<const char*>(plugIn.m_TextLabels, 64, nullptr, "m_TextLabels");
    expectAll(plugIn.m_uLabelCX, 64, 0u, "m_uLabelCX");
    expectAll(plugIn.m_uLabelCY, 64, 0u, "m_uLabelCY");
    expectAll<float*>(plugIn.m_PresetJSPrograms, 16, nullptr, "m_PresetJSPrograms");
    expectAll<const char*>(plugIn.m_PresetNames, 16, nullptr, "m_PresetNames");
    expectAll<float*>(plugIn.m_AddlPresetValues, 16, nullptr, "m_AddlPresetValues");
    expectAll(plugIn.m_pVectorJSProgram, 112, 0.0f, "m_pVectorJSProgram");
    expectAll(plugIn.m_h_Left, 1024, 0.0f, "m_h_Left");
    expectAll(plugIn.m_h_Right, 1024, 0.0f, "m_h_Right");

    EXPECT_STREQ(plugIn.m_JS_XCtrl.cControlName, "MIDI JS X");
    EXPECT_STREQ(plugIn.m_JS_YCtrl.cControlName, "MIDI JS Y");
    EXPECT_EQ(plugIn.m_JS_XCtrl.uMIDIControlName, 16u);
    EXPECT_EQ(plugIn.m_JS_YCtrl.uMIDIControlName, 17u);
    for (const CUICtrl* pAxis : {&plugIn.m_JS_XCtrl, &plugIn.m_JS_YCtrl}) {
        EXPECT_EQ(pAxis->uControlId, 0u);
        EXPECT_FALSE(pAxis->bMIDIControl);
        EXPECT_EQ(pAxis->uMIDIControlCommand, 176u);
        EXPECT_EQ(pAxis->uMIDIControlChannel, 0u);
    }
}

TEST(ContractDefaults, Control)
{
    const CUICtrl control;
    EXPECT_EQ(control.uDetectorMode, 2u);
    EXPECT_EQ(control.uUserDataType, 4u);
    EXPECT_EQ(control.m_pUserCookedIntData, nullptr);
    EXPECT_EQ(control.m_pUserCookedFloatData, nullptr);
    EXPECT_EQ(control.m_pUserCookedDoubleData, nullptr);
    EXPECT_EQ(control.m_pUserCookedUINTData, nullptr);
    EXPECT_EQ(control.m_pCurrentMeterValue, nullptr);
    for (const char* pText : {control.cControlName, control.cControlUnits, control.cVariableName,
                              control.cEnumeratedList, control.cMeterVariableName})
        EXPECT_STREQ(pText, "");
    const bool off[] = {control.bOwnerControl, control.bUseMeter,  control.bUpsideDownMeter,
                        control.bLogMeter,     control.bLogSlider, control.bExpSlider,
                        control.bMIDIControl};
    expectAll(off, std::size(off), false, "flag");
    EXPECT_EQ(control.uMeterColorScheme, 0u);
    EXPECT_EQ(control.fMeterAttack_ms, 10.0f);
    EXPECT_EQ(control.fMeterRelease_ms, 500.0f);
    EXPECT_EQ(control.uMIDIControlCommand, 176u);
    EXPECT_EQ(control.uMIDIControlName, 3u);
    EXPECT_EQ(control.uMIDIControlChannel, 0u);
    EXPECT_EQ(control.nGUIRow, -1);
    EXPECT_EQ(control.nGUIColumn, -1);
    expectAll(control.uControlTheme, 32, 0u, "uControlTheme");
    expectAll(control.dPresetData, 16, 0.0, "dPresetData");
    expectAll(control.uFluxCapControl, 64, 0u, "uFluxCapControl");
    expectAll(control.fFluxCapData, 64, 0.0f, "fFluxCapData");
    EXPECT_EQ(control.uReserved, 0u);
}

TEST(ContractDefaults, OperationsAnswer)
{
    CPlugIn plugIn;
    hostMessageData message{};
    EXPECT_TRUE(plugIn.prepareForPlay());
    EXPECT_TRUE(plugIn.processAudioFrame(nullptr, nullptr, 0, 0));
    EXPECT_TRUE(plugIn.userInterfaceChange(0));
    EXPECT_TRUE(plugIn.init());
    EXPECT_TRUE(plugIn.joystickControlChange(0, 0, 0, 0, 0, 0));
    EXPECT_TRUE(plugIn.processSocketAudioBuffer(nullptr, nullptr, 0, 0, 0));
    EXPECT_TRUE(plugIn.processChannelBuffers(nullptr, nullptr, 0, 0));
    EXPECT_TRUE(plugIn.midiNoteOn(0, 0, 0));
    EXPECT_TRUE(plugIn.midiNoteOff(0, 0, 0, false));
    EXPECT_TRUE(plugIn.midiModWheel(0, 0));
    EXPECT_TRUE(plugIn.midiPitchBend(0, 0, 0.0f));
    EXPECT_TRUE(plugIn.midiClock());
    EXPECT_TRUE(plugIn.midiMessage(0, 0, 0, 0));
    EXPECT_TRUE(plugIn.initUI());
    EXPECT_EQ(plugIn.getAdditionalPresetValue(0), -1.0f);
    EXPECT_EQ(plugIn.getAdditionalPresetValueCount(), 0);
    for (const UINT uCode : {2u, 5u, 6u, 7u, 9u, 10u, 11u, 99u}) {
        message.uMessage = uCode;
        EXPECT_EQ(plugIn.processHostMessage(&message), 0) << uCode;
    }
    EXPECT_EQ(plugIn.processHostMessage(nullptr), 0);
    EXPECT_TRUE(plugIn.processAuxInputBus(nullptr));
}

TEST(ContractDefaults, NoteFrequenciesAreARunningProductAndTheLastEntryIsLeftAlone)
{
    alignas(CPlugIn) static unsigned char memory[sizeof(CPlugIn)];
    std::memset(memory, 0xA5, sizeof memory);
    CPlugIn* pPlugIn = new (memory) CPlugIn;
    EXPECT_NEAR(pPlugIn->m_MIDIFreqTable[69], 440.0, 1e-4);
    EXPECT_NEAR(pPlugIn->m_MIDIFreqTable[0], 8.17579892, 1e-6);
    for (int nNote = 1; nNote < 127; nNote++)
        EXPECT_NEAR(pPlugIn->m_MIDIFreqTable[nNote] / pPlugIn->m_MIDIFreqTable[nNote - 1],
                    std::pow(2.0, 1.0 / 12.0), 2e-7)
            << nNote;
    const size_t uLast =
        static_cast<size_t>(reinterpret_cast<unsigned char*>(&pPlugIn->m_MIDIFreqTable[127]) - memory);
    expectAll<unsigned char>(memory + uLast, sizeof(float), 0xA5, "byte of entry 127");
    pPlugIn->~CPlugIn();
}

} // namespace
