// plugin.h: CPlugIn, the base class of every plug-in.
//
// A plug-in is a shared library with one class derived from CPlugIn and two exported functions:
//
//     createObject()    makes the plug-in object
//     getAPIVersion()   tells which contract the library was built against
//
// VELMORA_EXPORT_PLUGIN(CMyPlugIn) in one of the plug-in's source files writes both.
//
// The host talks to the object only through the virtual operations and the data members declared
// here. Their order is a binary agreement between host and library, fixed for contract version 61:
// add nothing, remove nothing, move nothing.
//
// Threads: the process... operations run on the audio thread. userInterfaceChange() runs on the main
// thread and the midi... operations on a MIDI thread, both possibly while a process operation is
// running; prepareForPlay() and init() never do. Nothing on the audio thread may allocate, lock or
// wait. The host writes a control's variable without a lock, then calls userInterfaceChange().
//
// Results: the host ignores the bool that an operation returns; by custom it is true.

#ifndef VELMORA_PLUGIN_H
#define VELMORA_PLUGIN_H

#include "pluginconstants.h"

class CPlugIn
{
  public:
    CPlugIn();

    // ---- Operations that a plug-in overrides, in the order of the virtual table ----

    virtual ~CPlugIn();

    // Called ahead of each start of audio, when m_nSampleRate, m_nNumWAVEChannels and m_nBitDepth are
    // set: clear delay lines and calculate coefficients here.
    virtual bool prepareForPlay();

    // Processes one frame: one sample for each channel, next to one another. [audio]
    virtual bool processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                                   UINT uNumOutputChannels);

    // The variable of the control with this uControlId has changed.
    virtual bool userInterfaceChange(int nControlIndex);

    // Called once, when m_hParentWnd is set and the send... helpers work.
    virtual bool init();

    // The vector joystick moved: the mix of the four corners and of the two axes, each 0.0 to 1.0.
    virtual bool joystickControlChange(float fControlA, float fControlB, float fControlC, float fControlD,
                                       float fACMix, float fBDMix);

    // Processes interleaved samples; used instead of processAudioFrame() when m_bWantBuffers is true.
    // uBufferSize counts the input's samples of all channels together. [audio]
    virtual bool processSocketAudioBuffer(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                                          UINT uNumOutputChannels, UINT uBufferSize);

    // Processes one plane for each channel; used when m_bWantChannelBuffers is true. uNumFrames counts
    // samples in one plane, at most 8192. While a response is measured the samples run from -32768.0
    // to +32767.0. [audio]
    virtual bool processChannelBuffers(float** ppInputs, float** ppOutputs, UINT uNumChannels,
                                       UINT uNumFrames);

    // Channels are 0 to 15, notes and velocities 0 to 127. [MIDI]
    virtual bool midiNoteOn(UINT uChannel, UINT uMIDINote, UINT uVelocity);
    virtual bool midiNoteOff(UINT uChannel, UINT uMIDINote, UINT uVelocity, bool bAllNotesOff);
    virtual bool midiModWheel(UINT uChannel, UINT uModValue);

    // The bend as a number from -8192 to 8191, and normalised to -1.0 to +1.0. [MIDI]
    virtual bool midiPitchBend(UINT uChannel, int nActualPitchBendValue, float fNormalizedPitchBendValue);
    virtual bool midiClock();

    // Every MIDI message, when m_bWantAllMIDIMessages is true. [MIDI]
    virtual bool midiMessage(unsigned char cChannel, unsigned char cStatus, unsigned char cData1,
                             unsigned char cData2);

    // Fills m_UIControlList. The plug-in's own constructor calls it; the host does not.
    virtual bool initUI();

    virtual void reservedOperation16(int);

    // Values that a preset keeps beside the controls' own: the value at an index, and how many.
    virtual float getAdditionalPresetValue(int nIndex);
    virtual int getAdditionalPresetValueCount();

    // Answers a message of the host (HOST_MESSAGE_...). A plug-in with a GUI overrides it. [main]
    virtual int processHostMessage(hostMessageData* pHostMessageData);

    virtual void reservedOperation20();

    // The sidechain; called just ahead of the process call that it belongs to. [audio]
    virtual bool processAuxInputBus(auxInputData* pAuxInputData);

    // ---- Helpers ----

    // The first control with this uControlId, else null.
    CUICtrl* getUICtrlByControlID(UINT uID);

    // Moves the control at list position nIndex to the value at fValue, 0.0 to 1.0, of its range, and
    // calls userInterfaceChange(), also if the control has no variable to move. For an int or UINT the value
    // is truncated toward zero. A position past the end does nothing.
    void setNormalizedParameter(int nIndex, float fValue);

    // Where in its range the control at list position nIndex stands; 0.0 past the end.
    float getNormalizedParameter(int nIndex);

    // (fMax - fMin) * fNorm + fMin
    double calcDisplayVariable(float fMin, float fMax, float fNorm);

    // (fValue - fMin) / (fMax - fMin); 0.0 if the limits are equal.
    float calcSliderVariable(float fMin, float fMax, float fValue);

    // Writes a line, at most 1023 characters, to the host's status window, and waits until it stands
    // there. The four senders may be called on any thread but the audio thread, and do nothing
    // without a host window.
    void sendStatusWndText(const char* pText);

    // Has the host read the control's variable again and move the control.
    void sendUpdateGUI(int nControlID);

    // Has the host turn assignable button 50, 51 or 52 back.
    void sendButtonChange(int nButton);

    // Tells the host that the plug-in closed its own GUI.
    void sendGUIClosing();

    // The folder that this plug-in's library lies in, without a closing separator, as a new array of
    // 260 characters that the caller frees with delete[]. Null if the library's file name is not
    // m_PlugInName with the platform's suffix, or if the path is too long.
    char* getMyDLLDirectory();

    // ---- Data, in the order of the agreement ----

    void* m_pReserved; // not touched by the host

    hostWindow* m_hParentWnd; // where messages go; null until the host sets it, ahead of init()

    bool m_bUserCustomGUI;       // the project has a classic custom GUI
    bool m_bOutputOnlyPlugIn;    // a synth: makes sound without input
    bool m_bWantAllMIDIMessages; // call midiMessage() for every message
    bool m_bWantIRs;             // the plug-in offers m_h_Left and m_h_Right to the analyzer
    int m_nIRLength;             // valid taps in them, 0 to 1024
    bool m_bWantBuffers;         // call processSocketAudioBuffer() instead of processAudioFrame()
    bool m_bWantChannelBuffers;  // call processChannelBuffers()
    bool m_bEnableMIDIControl;   // MIDI messages may move the controls
    bool m_bReservedFlag;

    // Written by the host ahead of prepareForPlay().
    int m_nNumWAVEChannels; // channels, 1 or 2
    int m_nSampleRate;      // Hz
    int m_nBitDepth;        // bits

    CUIControlList m_UIControlList;
    UINT m_uReservedWords[7];

    // One entry for each preset. The programs and the additional values are arrays made with new[]
    // that ~CPlugIn() deletes; the names are literals.
    float* m_PresetJSPrograms[MAX_PRESETS];
    const char* m_PresetNames[MAX_PRESETS];
    float* m_AddlPresetValues[MAX_PRESETS];

    const char* m_PlugInName; // must be the library's file name without its suffix
    UINT m_uPlugInVersion;    // contract version, 61

    bool m_bUseCustomVSTGUI; // the project has a GUI made with the designer
    int m_nGUIThemeID;       // -1: none
    int m_nGUIType;          // -1: none
    UINT m_uControlTheme[64];
    UINT m_uPlugInEx[64]; // [3] is 1 after the plug-in closed its own GUI
    float m_fPlugInEx[64];

    const char* m_TextLabels[64]; // texts of the GUI's labels, and where they stand
    UINT m_uLabelCX[64];
    UINT m_uLabelCY[64];

    UINT m_uMaxInputChannels;
    UINT m_uMaxOutputChannels;

    UINT m_uX_TrackPadIndex; // control that the track pad's x axis moves; 0xFFFFFFFF: none
    UINT m_uY_TrackPadIndex;

    const char* m_AssignButton1Name;
    const char* m_AssignButton2Name;
    const char* m_AssignButton3Name;
    bool m_bLatchingAssignButton1;
    bool m_bLatchingAssignButton2;
    bool m_bLatchingAssignButton3;

    float m_MIDIFreqTable[128]; // Hz of MIDI notes 0 to 126; entry 127 is not set

    float* m_pVectorJSProgram; // JS_PROG_INDEX(step, value) finds an element
    CUICtrl m_JS_XCtrl;        // the joystick's axes as MIDI targets
    CUICtrl m_JS_YCtrl;

    float m_h_Left[MAX_IR_LENGTH];
    float m_h_Right[MAX_IR_LENGTH];

  private:
    CPlugIn(const CPlugIn&);            // not copied
    CPlugIn& operator=(const CPlugIn&); // not assigned

    void initFlags();
    void initPresetTables();
    void initGUIData();
    void initMIDIFreqTable();
    void initJoystick();
};

// A plug-in that carries more than CPlugIn does behind the same contract.
class CPlugInEx : public CPlugIn
{
  public:
    virtual ~CPlugInEx();
};

// ------------------------------------------------------------------------------------------------
// Exports
// ------------------------------------------------------------------------------------------------

#if defined(_WIN32)
#define VELMORA_EXPORT extern "C" __declspec(dllexport)
#else
#define VELMORA_EXPORT extern "C" __attribute__((visibility("default")))
#endif

// On the declaration of initUI(), which runs once and can be very long: it is not optimised, and so a plug-in
// with many controls is compiled several times as fast. All other code is optimised as ever.
#if defined(__clang__)
#define VELMORA_RUNS_ONCE __attribute__((optnone, noinline))
#elif defined(__GNUC__)
#define VELMORA_RUNS_ONCE __attribute__((optimize("O0"), noinline))
#else
#define VELMORA_RUNS_ONCE
#endif

// What the host calls to make a plug-in, and what it asks first.
typedef CPlugIn* (*createObjectFunction)();
typedef UINT (*getAPIVersionFunction)();

// Writes a library's two exports for one plug-in class. Stands at file level, once in a library.
#define VELMORA_EXPORT_PLUGIN(PlugInClass)                                                                   \
    VELMORA_EXPORT CPlugIn* createObject()                                                                   \
    {                                                                                                        \
        return new PlugInClass;                                                                              \
    }                                                                                                        \
    VELMORA_EXPORT UINT getAPIVersion()                                                                      \
    {                                                                                                        \
        return PLUGIN_API_VERSION;                                                                           \
    }

// The host loads a library from a copy of its own and so tells it where the original lies, if the
// library has this function; plugin.cpp brings it along. pPath is the full path of the library file.
VELMORA_EXPORT void setLibraryPath(const char* pPath);
typedef void (*setLibraryPathFunction)(const char* pPath);

#endif
