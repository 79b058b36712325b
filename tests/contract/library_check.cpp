#include "library_check.h"

#include "contract_members.h"

#include <dlfcn.h>
#include <sstream>
#include <string.h>
#include <vector>

namespace {

typedef void (*describeMemberFunction)(void*, UINT, size_t*, size_t*);
typedef void (*writeMemberFunction)(void*, UINT, const char*);
typedef void (*readMemberFunction)(void*, UINT, char*);
typedef void (*recordSizesFunction)(size_t*);
typedef const char* (*lastRecordFunction)();

class CLibraryCheck
{
  public:
    explicit CLibraryCheck(const char* pPath) : m_pLibrary(dlopen(pPath, RTLD_NOW | RTLD_LOCAL))
    {
        if (!m_pLibrary)
            m_problems << dlerror() << '\n';
    }
    ~CLibraryCheck()
    {
        if (m_pLibrary)
            dlclose(m_pLibrary);
    }

    std::string run()
    {
        if (!m_pLibrary || !findFunctions())
            return m_problems.str();
        if (getAPIVersion() != 61)
            m_problems << "version " << getAPIVersion() << '\n';
        m_pPlugIn = createObject();
        checkLayout();
        checkControls();
        callOperations();
        delete m_pPlugIn;
        expectRecord("destructor");
        return m_problems.str();
    }

  private:
    template <typename Function>
    bool find(const char* pName, Function& function)
    {
        void* pSymbol = dlsym(m_pLibrary, pName);
        memcpy(&function, &pSymbol, sizeof function);
        if (!pSymbol)
            m_problems << "no export " << pName << '\n';
        return pSymbol != NULL;
    }

    bool findFunctions()
    {
        return find("createObject", createObject) && find("getAPIVersion", getAPIVersion) &&
               find("lastRecord", lastRecord) && find("describeMember", describeMember) &&
               find("writeMember", writeMember) && find("readMember", readMember) &&
               find("recordSizes", recordSizes);
    }

    void expectRecord(const char* pExpected)
    {
        if (strcmp(lastRecord(), pExpected) != 0)
            m_problems << "called " << pExpected << ", got " << lastRecord() << '\n';
    }

    void expectCall(bool bAnswer, const char* pExpected)
    {
        expectRecord(pExpected);
        expectEqual(pExpected, true, bAnswer);
    }

    template <typename T>
    void expectEqual(const char* pWhat, T expected, T found)
    {
        if (!(expected == found))
            m_problems << pWhat << ": expected " << expected << ", found " << found << '\n';
    }

    // Every member: where the library finds it, and bytes that one side writes and the other reads.
    void checkLayout()
    {
        size_t uSizes[4];
        recordSizes(uSizes);
        expectEqual("size of CPlugIn", sizeof(CPlugIn), uSizes[recordCPlugIn]);
        expectEqual("size of CUICtrl", sizeof(CUICtrl), uSizes[recordCUICtrl]);
        expectEqual("size of auxInputData", sizeof(auxInputData), uSizes[recordauxInputData]);
        expectEqual("size of hostMessageData", sizeof(hostMessageData), uSizes[recordhostMessageData]);

        CUICtrl control;
        auxInputData auxInput;
        hostMessageData hostMessage;
        void* const RECORDS[] = {m_pPlugIn, &control, &auxInput, &hostMessage};
        for (UINT uRow = 0; uRow < CONTRACT_ROW_COUNT; uRow++) {
            const CMemberRow& row = CONTRACT_ROWS[uRow];
            void* pRecord = RECORDS[row.m_eRecord];
            size_t uOffset = 0, uSize = 0;
            describeMember(pRecord, uRow, &uOffset, &uSize);
            expectEqual(row.m_pName, row.m_uOffset, uOffset);
            expectEqual(row.m_pName, row.m_uSize, uSize);
            if (uSize == row.m_uSize && uOffset == row.m_uOffset)
                exchangeBytes(pRecord, uRow, row);
        }
    }

    void exchangeBytes(void* pRecord, UINT uRow, const CMemberRow& row)
    {
        char* pMember = memberAddress(pRecord, uRow);
        const std::vector<char> original(pMember, pMember + row.m_uSize);
        std::vector<char> sent(row.m_uSize), received(row.m_uSize);
        for (size_t i = 0; i < row.m_uSize; i++)
            sent[i] = static_cast<char>(i * 7 + uRow + 1);

        writeMember(pRecord, uRow, &sent[0]);
        if (memcmp(pMember, &sent[0], row.m_uSize) != 0)
            m_problems << row.m_pName << ": the host does not find what the library wrote\n";
        sent[0] = static_cast<char>(sent[0] + 1);
        memcpy(pMember, &sent[0], row.m_uSize);
        readMember(pRecord, uRow, &received[0]);
        if (received != sent)
            m_problems << row.m_pName << ": the library does not find what the host wrote\n";
        memcpy(pMember, &original[0], row.m_uSize);
    }

    // The host's code walks the list that the library's code built, and moves the library's variables.
    void checkControls()
    {
        expectEqual("controls", 2u, m_pPlugIn->m_UIControlList.count());
        CUICtrl* pGain = m_pPlugIn->getUICtrlByControlID(1);
        CUICtrl* pSteps = m_pPlugIn->m_UIControlList.getAt(1);
        if (!pGain || !pSteps)
            return;
        expectEqual("name", std::string("Gain"), std::string(pGain->cControlName));
        expectEqual("list", std::string("one,two,three"), std::string(pSteps->cEnumeratedList));
        expectEqual("steps", 3, *pSteps->m_pUserCookedIntData);
        expectEqual("position of gain", 0.125f, m_pPlugIn->getNormalizedParameter(0));
        m_pPlugIn->setNormalizedParameter(0, 0.75f);
        expectRecord("userInterfaceChange 1 3");
    }

    void callOperations()
    {
        float fIn = 0.5f, fOut = -0.25f, *pIn = &fIn, *pOut = &fOut;
        const UINT IDS[] = {8, 9};
        auxInputData auxInput = {1, NULL, &fIn, NULL, 2, 128, true};
        hostMessageData message = {5, false, NULL, NULL, NULL, "ui", 2, IDS, 2, NULL, 0};
        m_pPlugIn->m_nSampleRate = 96000;

        expectCall(m_pPlugIn->prepareForPlay(), "prepareForPlay 96000 2 16");
        expectCall(m_pPlugIn->processAudioFrame(&fIn, &fOut, 1, 2), "processAudioFrame 0.5 -0.25 1 2");
        expectCall(m_pPlugIn->userInterfaceChange(50), "userInterfaceChange 50 3");
        expectCall(m_pPlugIn->init(), "init");
        expectCall(m_pPlugIn->joystickControlChange(0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f),
                   "joystickControlChange 0.1 0.2 0.3 0.4 0.5 0.6");
        expectCall(m_pPlugIn->processSocketAudioBuffer(&fIn, &fOut, 1, 2, 512),
                   "processSocketAudioBuffer 0.5 -0.25 1 2 512");
        expectCall(m_pPlugIn->processChannelBuffers(&pIn, &pOut, 2, 8192),
                   "processChannelBuffers 0.5 -0.25 2 8192");
        expectCall(m_pPlugIn->midiNoteOn(1, 60, 100), "midiNoteOn 1 60 100");
        expectCall(m_pPlugIn->midiNoteOff(15, 127, 64, true), "midiNoteOff 15 127 64 1");
        expectCall(m_pPlugIn->midiModWheel(2, 99), "midiModWheel 2 99");
        expectCall(m_pPlugIn->midiPitchBend(3, -8192, -1.0f), "midiPitchBend 3 -8192 -1");
        expectCall(m_pPlugIn->midiClock(), "midiClock");
        expectCall(m_pPlugIn->midiMessage(4, 176, 7, 127), "midiMessage 4 176 7 127");
        expectCall(m_pPlugIn->initUI(), "initUI");
        m_pPlugIn->reservedOperation16(-16);
        expectRecord("reservedOperation16 -16");
        expectEqual("additional value", 0.25f, m_pPlugIn->getAdditionalPresetValue(11));
        expectRecord("getAdditionalPresetValue 11");
        expectEqual("additional values", 7, m_pPlugIn->getAdditionalPresetValueCount());
        expectRecord("getAdditionalPresetValueCount");
        expectEqual("answer to a message", 5, m_pPlugIn->processHostMessage(&message));
        expectRecord("processHostMessage 5 9 2");
        expectEqual("bHasEditor", true, message.bHasEditor);
        m_pPlugIn->reservedOperation20();
        expectRecord("reservedOperation20");
        expectCall(m_pPlugIn->processAuxInputBus(&auxInput), "processAuxInputBus 1 0.5 2 128 1");
    }

    void* m_pLibrary;
    CPlugIn* m_pPlugIn;
    std::ostringstream m_problems;

    createObjectFunction createObject;
    getAPIVersionFunction getAPIVersion;
    lastRecordFunction lastRecord;
    describeMemberFunction describeMember;
    writeMemberFunction writeMember;
    readMemberFunction readMember;
    recordSizesFunction recordSizes;
};

} // namespace

std::string checkLibrary(const char* pPath)
{
    return CLibraryCheck(pPath).run();
}
