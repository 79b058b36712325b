#include "contract_members.h"
#include "library_check.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <new>
#include <string>
#include <vector>

namespace {

using testing::Each;
using testing::ElementsAre;

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
std::string bytesOf(const T& value)
{
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

// What a member begins with, by its name in the table of members. The rest of it, and every member that is
// not named, is 0; one without bytes points at something and is left to the caller.
using Defaults = std::map<std::string, std::string>;

// In memory that held something else before.
template <typename Record>
void expectDefaults(const std::string& sRecord, const Defaults& defaults)
{
    alignas(Record) static unsigned char memory[sizeof(Record)];
    std::memset(memory, 0xA5, sizeof memory);
    Record* pRecord = new (memory) Record;
    for (const CMemberRow& row : CONTRACT_ROWS) {
        const std::string sName = row.m_pName;
        const auto stated =
            sName.starts_with(sRecord) ? defaults.find(sName.substr(sRecord.size())) : defaults.end();
        if (!sName.starts_with(sRecord) || (stated != defaults.end() && stated->second.empty()))
            continue;
        std::string sExpected = stated != defaults.end() ? stated->second : "";
        sExpected.resize(row.m_uSize, '\0');
        EXPECT_EQ(std::string(reinterpret_cast<char*>(memory) + row.m_uOffset, row.m_uSize), sExpected)
            << sName;
    }
    pRecord->~Record();
}

TEST(ContractDefaults, PlugIn)
{
    Defaults defaults = {
        {"m_bEnableMIDIControl", bytesOf(true)},
        {"m_nNumWAVEChannels", bytesOf(2)},
        {"m_nSampleRate", bytesOf(44100)},
        {"m_nBitDepth", bytesOf(16)},
        {"m_uPlugInVersion", bytesOf(61)},
        {"m_nGUIThemeID", bytesOf(-1)},
        {"m_nGUIType", bytesOf(-1)},
        {"m_uControlTheme", bytesOf(0xFFFFFFFFu)},
        {"m_uMaxInputChannels", bytesOf(2)},
        {"m_uMaxOutputChannels", bytesOf(2)},
        {"m_uX_TrackPadIndex", bytesOf(-1)},
        {"m_uY_TrackPadIndex", bytesOf(-1)},
    };
    for (const char* pBelow :
         {"m_PlugInName", "m_AssignButton1Name", "m_AssignButton2Name", "m_AssignButton3Name", "m_JS_XCtrl",
          "m_JS_YCtrl", "m_MIDIFreqTable", "m_pVectorJSProgram"})
        defaults[pBelow] = "";
    expectDefaults<CPlugIn>("CPlugIn::", defaults);
    const CPlugIn plugIn;
    EXPECT_EQ(plugIn.m_UIControlList.count(), 0u);
    EXPECT_EQ(std::count(plugIn.m_pVectorJSProgram, plugIn.m_pVectorJSProgram + 112, 0.0f), 112);
    EXPECT_THAT((std::vector<std::string>{plugIn.m_PlugInName, plugIn.m_AssignButton1Name,
                                          plugIn.m_AssignButton2Name, plugIn.m_AssignButton3Name,
                                          plugIn.m_JS_XCtrl.cControlName, plugIn.m_JS_YCtrl.cControlName}),
                ElementsAre("Name Not Set.", "B1", "B2", "B3", "MIDI JS X", "MIDI JS Y"));
    EXPECT_EQ(plugIn.m_JS_XCtrl.uMIDIControlName, 16u);
    EXPECT_EQ(plugIn.m_JS_YCtrl.uMIDIControlName, 17u);
}

TEST(ContractDefaults, Control)
{
    Defaults defaults = {
        {"uDetectorMode", bytesOf(2)},
        {"uUserDataType", bytesOf(4)},
        {"fMeterAttack_ms", bytesOf(10.0f)},
        {"fMeterRelease_ms", bytesOf(500.0f)},
        {"uMIDIControlCommand", bytesOf(176)},
        {"uMIDIControlName", bytesOf(3)},
        {"nGUIRow", bytesOf(-1)},
        {"nGUIColumn", bytesOf(-1)},
    };
    for (const std::string sText :
         {"ControlName", "ControlUnits", "VariableName", "EnumeratedList", "MeterVariableName"})
        defaults["c" + sText] = defaults["m_c" + sText + "Text"] = "";
    expectDefaults<CUICtrl>("CUICtrl::", defaults);
    const CUICtrl control;
    for (const char* pText : {control.cControlName, control.cControlUnits, control.cVariableName,
                              control.cEnumeratedList, control.cMeterVariableName})
        EXPECT_STREQ(pText, "");
}

TEST(ContractDefaults, OperationsAnswer)
{
    CPlugIn plugIn;
    const bool answers[] = {plugIn.prepareForPlay(),
                            plugIn.processAudioFrame(nullptr, nullptr, 0, 0),
                            plugIn.userInterfaceChange(0),
                            plugIn.init(),
                            plugIn.joystickControlChange(0, 0, 0, 0, 0, 0),
                            plugIn.processSocketAudioBuffer(nullptr, nullptr, 0, 0, 0),
                            plugIn.processChannelBuffers(nullptr, nullptr, 0, 0),
                            plugIn.midiNoteOn(0, 0, 0),
                            plugIn.midiNoteOff(0, 0, 0, false),
                            plugIn.midiModWheel(0, 0),
                            plugIn.midiPitchBend(0, 0, 0.0f),
                            plugIn.midiClock(),
                            plugIn.midiMessage(0, 0, 0, 0),
                            plugIn.initUI(),
                            plugIn.processAuxInputBus(nullptr)};
    EXPECT_THAT(answers, Each(true));
    EXPECT_EQ(plugIn.getAdditionalPresetValue(0), -1.0f);
    EXPECT_EQ(plugIn.getAdditionalPresetValueCount(), 0);
    EXPECT_EQ(plugIn.processHostMessage(nullptr), 0);
    hostMessageData message{};
    for (const UINT uCode : {2u, 5u, 6u, 7u, 9u, 10u, 11u, 99u}) {
        message.uMessage = uCode;
        EXPECT_EQ(plugIn.processHostMessage(&message), 0) << uCode;
    }
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
    EXPECT_EQ(std::string(memory + uLast, memory + uLast + sizeof(float)), "\xA5\xA5\xA5\xA5");
    pPlugIn->~CPlugIn();
}

} // namespace
