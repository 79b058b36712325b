#include "plugin.h"

#include <limits.h>
#include <string.h>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

// ------------------------------------------------------------------------------------------------
// Where this library lies
// ------------------------------------------------------------------------------------------------

namespace {

const size_t PATH_SIZE = 260;           // of a path, terminating zero included
const size_t STATUS_TEXT_LENGTH = 1023; // most characters of a status line

#if defined(_WIN32)
const char SEPARATORS[] = "\\/";
const char LIBRARY_SUFFIX[] = ".dll";
#else
const char SEPARATORS[] = "/";
const char LIBRARY_SUFFIX[] = ".so";
#endif

// What the host told with setLibraryPath(): empty if the path was too long to keep.
char g_cToldPath[PATH_SIZE];
bool g_bPathWasTold = false;

// Copies a text with its terminating zero. False, and the copy is empty, if it has no room.
bool copyPath(char (&cCopy)[PATH_SIZE], const char* pPath)
{
    const size_t uLength = strlen(pPath);
    cCopy[0] = 0;
    if (uLength >= PATH_SIZE)
        return false;
    memcpy(cCopy, pPath, uLength + 1);
    return true;
}

#if defined(_WIN32)

bool askPlatformForPath(char (&cPath)[PATH_SIZE])
{
    const DWORD FROM_ADDRESS_WITHOUT_COUNTING =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE hModule = NULL;
    if (!GetModuleHandleExA(FROM_ADDRESS_WITHOUT_COUNTING, g_cToldPath, &hModule))
        return false;
    const DWORD uLength = GetModuleFileNameA(hModule, cPath, PATH_SIZE);
    return uLength > 0 && uLength < PATH_SIZE;
}

#else

bool askPlatformForPath(char (&cPath)[PATH_SIZE])
{
    Dl_info info;
    return dladdr(g_cToldPath, &info) && info.dli_fname && copyPath(cPath, info.dli_fname);
}

#endif

// A number as an int or UINT: truncated toward zero, held to what the type can take.
template <typename T>
T truncated(double dValue, T lowest, T highest)
{
    return static_cast<T>(limitValue(dValue, lowest, highest));
}

void post(hostWindow* pWindow, UINT uMessage, ptrdiff_t nParam)
{
    if (pWindow)
        pWindow->post(pWindow, uMessage, 0, nParam);
}

void send(hostWindow* pWindow, UINT uMessage, ptrdiff_t nParam)
{
    if (pWindow)
        pWindow->send(pWindow, uMessage, 0, nParam);
}

} // namespace

void setLibraryPath(const char* pPath)
{
    g_bPathWasTold = pPath != NULL;
    copyPath(g_cToldPath, pPath ? pPath : "");
}

char* CPlugIn::getMyDLLDirectory()
{
    char cPath[PATH_SIZE];
    if (!m_PlugInName || !(g_bPathWasTold ? copyPath(cPath, g_cToldPath) : askPlatformForPath(cPath)))
        return NULL;

    // The path has to end in a separator, the name and the suffix.
    const size_t uLength = strlen(cPath);
    const size_t uNameLength = strlen(m_PlugInName);
    const size_t uEndLength = 1 + uNameLength + strlen(LIBRARY_SUFFIX);
    if (uLength < uEndLength)
        return NULL;
    char* pEnd = cPath + (uLength - uEndLength);
    if (!strchr(SEPARATORS, *pEnd) || memcmp(pEnd + 1, m_PlugInName, uNameLength) != 0 ||
        strcmp(pEnd + 1 + uNameLength, LIBRARY_SUFFIX) != 0)
        return NULL;

    *pEnd = 0;
    char* pDirectory = new char[PATH_SIZE];
    memcpy(pDirectory, cPath, strlen(cPath) + 1);
    return pDirectory;
}

// ------------------------------------------------------------------------------------------------
// Start and end
// ------------------------------------------------------------------------------------------------

CPlugIn::CPlugIn()
    : m_pReserved(NULL), m_hParentWnd(NULL), m_PlugInName("Name Not Set."),
      m_uPlugInVersion(PLUGIN_API_VERSION), m_uMaxInputChannels(2), m_uMaxOutputChannels(2)
{
    initFlags();
    initPresetTables();
    initGUIData();
    initMIDIFreqTable();
    initJoystick();
}

CPlugIn::~CPlugIn()
{
    m_UIControlList.clear();
    delete[] m_pVectorJSProgram;
    for (int i = 0; i < MAX_PRESETS; i++) {
        delete[] m_PresetJSPrograms[i];
        delete[] m_AddlPresetValues[i];
    }
}

CPlugInEx::~CPlugInEx() {}

void CPlugIn::initFlags()
{
    m_bUserCustomGUI = false;
    m_bOutputOnlyPlugIn = false;
    m_bWantAllMIDIMessages = false;
    m_bWantIRs = false;
    m_nIRLength = 0;
    memset(m_h_Left, 0, sizeof m_h_Left);
    memset(m_h_Right, 0, sizeof m_h_Right);
    m_bWantBuffers = false;
    m_bWantChannelBuffers = false;
    m_bEnableMIDIControl = true;
    m_bReservedFlag = false;

    m_nNumWAVEChannels = 2;
    m_nSampleRate = 44100;
    m_nBitDepth = 16;
}

void CPlugIn::initPresetTables()
{
    memset(m_uReservedWords, 0, sizeof m_uReservedWords);
    for (int i = 0; i < MAX_PRESETS; i++) {
        m_PresetJSPrograms[i] = NULL;
        m_PresetNames[i] = NULL;
        m_AddlPresetValues[i] = NULL;
    }
}

void CPlugIn::initGUIData()
{
    m_bUseCustomVSTGUI = false;
    m_nGUIThemeID = -1;
    m_nGUIType = -1;
    for (int i = 0; i < 64; i++) {
        m_uControlTheme[i] = 0;
        m_uPlugInEx[i] = 0;
        m_fPlugInEx[i] = 0.0f;
        m_TextLabels[i] = NULL;
        m_uLabelCX[i] = 0;
        m_uLabelCY[i] = 0;
    }
    m_uControlTheme[0] = 0xFFFFFFFF;

    m_uX_TrackPadIndex = 0xFFFFFFFF;
    m_uY_TrackPadIndex = 0xFFFFFFFF;

    m_AssignButton1Name = "B1";
    m_AssignButton2Name = "B2";
    m_AssignButton3Name = "B3";
    m_bLatchingAssignButton1 = false;
    m_bLatchingAssignButton2 = false;
    m_bLatchingAssignButton3 = false;
}

// A running product in double precision, three semitones up from 6.875 Hz to note 0. Entry 127 stays as
// it is: plug-ins have never seen it set.
void CPlugIn::initMIDIFreqTable()
{
    const double SEMITONE = 1.059463094359;
    double dFrequency_Hz = 6.875 * SEMITONE * SEMITONE * SEMITONE;
    for (int nNote = 0; nNote < 127; nNote++) {
        m_MIDIFreqTable[nNote] = static_cast<float>(dFrequency_Hz);
        dFrequency_Hz *= SEMITONE;
    }
}

void CPlugIn::initJoystick()
{
    const int PROGRAM_SIZE = MAX_JS_PROGRAM_STEPS * MAX_JS_PROGRAM_STEP_VARS;
    m_pVectorJSProgram = new float[PROGRAM_SIZE];
    memset(m_pVectorJSProgram, 0, PROGRAM_SIZE * sizeof(float));

    m_JS_XCtrl.cControlName = "MIDI JS X";
    m_JS_XCtrl.uMIDIControlName = 16;
    m_JS_YCtrl.cControlName = "MIDI JS Y";
    m_JS_YCtrl.uMIDIControlName = 17;
}

// ------------------------------------------------------------------------------------------------
// What the operations do unless a plug-in overrides them
// ------------------------------------------------------------------------------------------------

bool CPlugIn::prepareForPlay()
{
    return true;
}

bool CPlugIn::processAudioFrame(float*, float*, UINT, UINT)
{
    return true;
}

bool CPlugIn::userInterfaceChange(int)
{
    return true;
}

bool CPlugIn::init()
{
    return true;
}

bool CPlugIn::joystickControlChange(float, float, float, float, float, float)
{
    return true;
}

bool CPlugIn::processSocketAudioBuffer(float*, float*, UINT, UINT, UINT)
{
    return true;
}

bool CPlugIn::processChannelBuffers(float**, float**, UINT, UINT)
{
    return true;
}

bool CPlugIn::midiNoteOn(UINT, UINT, UINT)
{
    return true;
}

bool CPlugIn::midiNoteOff(UINT, UINT, UINT, bool)
{
    return true;
}

bool CPlugIn::midiModWheel(UINT, UINT)
{
    return true;
}

bool CPlugIn::midiPitchBend(UINT, int, float)
{
    return true;
}

bool CPlugIn::midiClock()
{
    return true;
}

bool CPlugIn::midiMessage(unsigned char, unsigned char, unsigned char, unsigned char)
{
    return true;
}

bool CPlugIn::initUI()
{
    return true;
}

void CPlugIn::reservedOperation16(int) {}

float CPlugIn::getAdditionalPresetValue(int)
{
    return -1.0f;
}

int CPlugIn::getAdditionalPresetValueCount()
{
    return 0;
}

int CPlugIn::processHostMessage(hostMessageData*)
{
    return 0;
}

void CPlugIn::reservedOperation20() {}

bool CPlugIn::processAuxInputBus(auxInputData*)
{
    return true;
}

// ------------------------------------------------------------------------------------------------
// Helpers
// ------------------------------------------------------------------------------------------------

CUICtrl* CPlugIn::getUICtrlByControlID(UINT uID)
{
    const UINT uCount = m_UIControlList.count();
    for (UINT i = 0; i < uCount; i++) {
        CUICtrl* pControl = m_UIControlList.getAt(i);
        if (pControl->uControlId == uID)
            return pControl;
    }
    return NULL;
}

void CPlugIn::setNormalizedParameter(int nIndex, float fValue)
{
    CUICtrl* pControl = m_UIControlList.getAt(static_cast<UINT>(nIndex));
    if (!pControl)
        return;

    const double dValue =
        calcDisplayVariable(pControl->fUserDisplayDataLoLimit, pControl->fUserDisplayDataHiLimit, fValue);
    const UINT uType = pControl->uUserDataType;
    if (uType == intData && pControl->m_pUserCookedIntData)
        *pControl->m_pUserCookedIntData = truncated<int>(dValue, INT_MIN, INT_MAX);
    else if (uType == floatData && pControl->m_pUserCookedFloatData)
        *pControl->m_pUserCookedFloatData = static_cast<float>(dValue);
    else if (uType == doubleData && pControl->m_pUserCookedDoubleData)
        *pControl->m_pUserCookedDoubleData = dValue;
    else if (uType == UINTData && pControl->m_pUserCookedUINTData)
        *pControl->m_pUserCookedUINTData = truncated<UINT>(dValue, 0, UINT_MAX);

    userInterfaceChange(static_cast<int>(pControl->uControlId));
}

float CPlugIn::getNormalizedParameter(int nIndex)
{
    const CUICtrl* pControl = m_UIControlList.getAt(static_cast<UINT>(nIndex));
    if (!pControl)
        return 0.0f;

    const UINT uType = pControl->uUserDataType;
    float fValue = 0.0f;
    if (uType == intData && pControl->m_pUserCookedIntData)
        fValue = static_cast<float>(*pControl->m_pUserCookedIntData);
    else if (uType == floatData && pControl->m_pUserCookedFloatData)
        fValue = *pControl->m_pUserCookedFloatData;
    else if (uType == doubleData && pControl->m_pUserCookedDoubleData)
        fValue = static_cast<float>(*pControl->m_pUserCookedDoubleData);
    else if (uType == UINTData && pControl->m_pUserCookedUINTData)
        fValue = static_cast<float>(*pControl->m_pUserCookedUINTData);
    else
        return 0.0f;
    return calcSliderVariable(pControl->fUserDisplayDataLoLimit, pControl->fUserDisplayDataHiLimit, fValue);
}

double CPlugIn::calcDisplayVariable(float fMin, float fMax, float fNorm)
{
    return (static_cast<double>(fMax) - fMin) * fNorm + fMin;
}

float CPlugIn::calcSliderVariable(float fMin, float fMax, float fValue)
{
    const float fRange = fMax - fMin;
    return fRange == 0.0f ? 0.0f : static_cast<float>((static_cast<double>(fValue) - fMin) / fRange);
}

void CPlugIn::sendStatusWndText(const char* pText)
{
    if (!m_hParentWnd || !pText)
        return;
    char cText[STATUS_TEXT_LENGTH + 1];
    cText[0] = 0;
    strncat(cText, pText, STATUS_TEXT_LENGTH);
    send(m_hParentWnd, PLUGIN_MESSAGE_STATUS_TEXT, reinterpret_cast<ptrdiff_t>(cText));
}

void CPlugIn::sendUpdateGUI(int nControlID)
{
    post(m_hParentWnd, PLUGIN_MESSAGE_UPDATE_GUI, nControlID);
}

void CPlugIn::sendButtonChange(int nButton)
{
    post(m_hParentWnd, PLUGIN_MESSAGE_BUTTON_CHANGE, nButton);
}

void CPlugIn::sendGUIClosing()
{
    send(m_hParentWnd, PLUGIN_MESSAGE_GUI_CLOSING, 0);
    m_uPlugInEx[3] = 1;
}
