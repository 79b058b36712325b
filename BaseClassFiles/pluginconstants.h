// pluginconstants.h: the records and constants that the host and a plug-in share.
//
// Host and plug-in are compiled apart, perhaps by different compilers, and meet in memory: the order
// and the types of all members below are fixed for contract version 61. Everything here is plain
// C++98 and depends on nothing but the standard headers.
//
// Sample format: unless a comment says otherwise a sample is a float from -1.0 to +1.0.

#ifndef VELMORA_PLUGINCONSTANTS_H
#define VELMORA_PLUGINCONSTANTS_H

#include <stddef.h>

typedef unsigned int UINT;

// The contract version. A library is loaded only if its getAPIVersion() answers exactly this number.
const UINT PLUGIN_API_VERSION = 61;

// ------------------------------------------------------------------------------------------------
// Control and data types
// ------------------------------------------------------------------------------------------------

// Values of CUICtrl::uControlType.
const UINT FILTER_CONTROL_CONTINUOUSLY_VARIABLE = 100; // slider
const UINT FILTER_CONTROL_DIRECT_DATA_ENTRY = 101;     // value typed in as text
const UINT FILTER_CONTROL_RADIO_SWITCH_VARIABLE = 102; // bank of radio buttons, or a two-state switch
const UINT FILTER_CONTROL_LED_METER = 103;             // level meter: no limits, no bound variable
const UINT FILTER_CONTROL_COMBO_VARIABLE = 104;        // drop-down list

// Values of CUICtrl::uUserDataType: the type of the variable that a control is bound to. A new record
// holds 4, which is none of these: the control has no variable yet.
enum { intData = 0, floatData = 1, doubleData = 2, UINTData = 3 };

// Values of CUICtrl::uDetectorMode: how a meter follows its variable.
const UINT DETECT_MODE_PEAK = 0; // absolute value
const UINT DETECT_MODE_MS = 1;   // mean square
const UINT DETECT_MODE_RMS = 2;  // root mean square
const UINT DETECT_MODE_NONE = 3; // the value is shown as it is, the plug-in smooths it itself

// CUICtrl::uControlTheme[CONTROL_THEME_BINDING]: 0 binds the control to its variable, 1 to nothing.
const UINT CONTROL_THEME_BINDING = 28;

// Indices that userInterfaceChange() receives from the three assignable buttons.
const UINT ASSIGN_BUTTON_1 = 50;
const UINT ASSIGN_BUTTON_2 = 51;
const UINT ASSIGN_BUTTON_3 = 52;

// ------------------------------------------------------------------------------------------------
// Sizes
// ------------------------------------------------------------------------------------------------

const int CONTROL_TEXT_SIZE = 1024; // characters in each text of a control, terminating zero included
const int MAX_PRESETS = 16;         // presets that a plug-in can carry
const int MAX_IR_LENGTH = 1024;     // taps of the impulse responses that a plug-in can offer

// The vector joystick's program: 16 steps of 7 values.
#define MAX_JS_PROGRAM_STEPS 16
#define MAX_JS_PROGRAM_STEP_VARS 7
#define JS_PROG_INDEX(step, value) ((value)*MAX_JS_PROGRAM_STEPS + (step))

// ------------------------------------------------------------------------------------------------
// The host's window
// ------------------------------------------------------------------------------------------------

// Where a plug-in's messages go. The host fills one in and hands its address to the plug-in; the
// plug-in reaches it only through CPlugIn's send... helpers. Both functions may be called on any
// thread. post() returns at once; send() returns when the host has dealt with the message, and hands
// back the host's answer.
struct hostWindow {
    void (*post)(hostWindow* pWindow, UINT uMessage, size_t uParam, ptrdiff_t nParam);
    ptrdiff_t (*send)(hostWindow* pWindow, UINT uMessage, size_t uParam, ptrdiff_t nParam);
};

typedef hostWindow* HWND;

// Messages that a plug-in sends to the host's window.
const UINT PLUGIN_MESSAGE_STATUS_TEXT = 4024;   // second parameter: const char*, at most 1023 characters
const UINT PLUGIN_MESSAGE_UPDATE_GUI = 4025;    // second parameter: a control's uControlId
const UINT PLUGIN_MESSAGE_BUTTON_CHANGE = 4030; // second parameter: ASSIGN_BUTTON_1 to _3
const UINT PLUGIN_MESSAGE_GUI_CLOSING = 4031;

// ------------------------------------------------------------------------------------------------
// Records handed to a plug-in's operations
// ------------------------------------------------------------------------------------------------

// The sidechain of one process call, given to CPlugIn::processAuxInputBus() just ahead of that call.
// Only the pointer that fits the kind of call is set.
struct auxInputData {
    UINT uInputBus;           // always 1
    float* pFramePtr;         // ahead of processAudioFrame(): one sample for each channel
    float* pBufferPtr;        // ahead of processSocketAudioBuffer(): interleaved samples
    float** ppChannelBuffers; // ahead of processChannelBuffers(): one plane for each of two channels
    UINT uNumChannels;        // sidechain channels, 1 or 2
    UINT uBufferSize;         // samples in pBufferPtr, all channels together
    bool bInputEnabled;       // false: the user has switched the sidechain off
};

// Codes of hostMessageData::uMessage.
const UINT HOST_MESSAGE_TIMER = 2;           // a tick of the view's timer, in oscillator and synth states
const UINT HOST_MESSAGE_QUERY_HAS_GUI = 5;   // set bHasEditor
const UINT HOST_MESSAGE_SHOW_GUI = 6;        // open your own editor
const UINT HOST_MESSAGE_CLOSE_GUI = 7;       // close it
const UINT HOST_MESSAGE_SHOW_HOST_GUI = 9;   // open the editor that pUIDescription describes
const UINT HOST_MESSAGE_HIDE_GUI = 10;       // the GUI is being hidden: release what it holds
const UINT HOST_MESSAGE_RESET_GUI = 11;      // the view has reset its GUI: as for HIDE_GUI

// One message of the host, given to CPlugIn::processHostMessage(). Fields that a code does not need
// are null or 0.
struct hostMessageData {
    UINT uMessage;                  // one of the codes above
    bool bHasEditor;                // answer to HOST_MESSAGE_QUERY_HAS_GUI
    void* pParentWindow;            // window that an editor opens in, as the platform names windows
    void* pPlugInModule;            // the plug-in library's own module handle
    void* pHostModule;              // the host's module handle
    const char* pUIDescription;     // text of the UI description, not terminated
    UINT uUIDescriptionLength;      // its length in bytes
    const UINT* pUsedControlIds;    // ids of the controls that the description uses
    UINT uUsedControlIdCount;       // how many
    const UINT* pUsedLCDControlIds; // ids of the LCD items that the description uses
    UINT uUsedLCDControlIdCount;    // how many
};

// ------------------------------------------------------------------------------------------------
// Controls
// ------------------------------------------------------------------------------------------------

// One control as a plug-in declares it: what it is, its range, and the variable it moves.
// The five text pointers aim at this record's own buffers. They may be re-aimed at literals; a copy takes
// over at most 1023 characters of each text into its own buffers and aims its pointers there.
class CUICtrl
{
  public:
    CUICtrl();
    CUICtrl(const CUICtrl& other);
    CUICtrl& operator=(const CUICtrl& other);

    UINT uControlType;             // FILTER_CONTROL_...
    UINT uControlId;               // unique in the plug-in; userInterfaceChange() receives it
    UINT uDetectorMode;            // DETECT_MODE_..., for a meter
    float fUserDisplayDataLoLimit; // low end of the range, in the control's units
    float fUserDisplayDataHiLimit; // high end
    UINT uUserDataType;            // intData to UINTData; 4 is none
    float fInitUserIntValue;       // start value for intData
    float fInitUserFloatValue;     // for floatData
    float fInitUserDoubleValue;    // for doubleData
    float fInitUserUINTValue;      // for UINTData
    float fReserved[4];

    // The plug-in's own variable: only the pointer that fits uUserDataType is set.
    int* m_pUserCookedIntData;
    float* m_pUserCookedFloatData;
    double* m_pUserCookedDoubleData;
    UINT* m_pUserCookedUINTData;

    float* m_pCurrentMeterValue; // the plug-in's meter variable, 0.0 to 1.0

    const char* cControlName;       // display name
    const char* cControlUnits;      // units, such as "dB" or "Hz"
    const char* cVariableName;      // name of the bound variable
    const char* cEnumeratedList;    // items of a radio bank or combo box, separated by commas
    const char* cMeterVariableName; // name of the meter variable

    char m_cControlNameText[CONTROL_TEXT_SIZE];
    char m_cControlUnitsText[CONTROL_TEXT_SIZE];
    char m_cVariableNameText[CONTROL_TEXT_SIZE];
    char m_cEnumeratedListText[CONTROL_TEXT_SIZE];
    char m_cMeterVariableNameText[CONTROL_TEXT_SIZE];

    bool bOwnerControl;
    bool bUseMeter;        // the control shows a meter
    bool bUpsideDownMeter; // the meter fills from the top
    bool bLogMeter;        // the meter shows dB
    bool bLogSlider;       // logarithmic slider law
    bool bExpSlider;       // exponential (volt per octave) slider law
    UINT uMeterColorScheme;
    float fMeterAttack_ms;  // milliseconds
    float fMeterRelease_ms; // milliseconds

    bool bMIDIControl;        // the control follows a MIDI message
    UINT uMIDIControlCommand; // status byte; 176 is a control change
    UINT uMIDIControlName;    // controller number, 0 to 127
    UINT uMIDIControlChannel; // 0 to 15

    int nGUIRow;    // -1: none
    int nGUIColumn; // -1: none
    UINT uControlTheme[32];
    double dPresetData[MAX_PRESETS]; // the control's value in each preset
    UINT uFluxCapControl[64];        // spare words for GUIs
    float fFluxCapData[64];          // spare values for GUIs
    UINT uReserved;

  private:
    void aimTextPointers();
    void copyTexts(const CUICtrl& other);
    void copyValues(const CUICtrl& other);
};

// A list of controls, in the order in which the panel shows them. It owns copies of what it is given.
class CUIControlList
{
  public:
    CUIControlList();
    ~CUIControlList();

    void append(const CUICtrl& control);
    void insertAtHead(const CUICtrl& control);

    // Inserts behind position uPosition, counted from 0. False, and nothing changes, past the end.
    bool insertAfter(UINT uPosition, const CUICtrl& control);

    // Replaces or removes the first control with that uControlId. False if there is none.
    bool replace(UINT uControlId, const CUICtrl& control);
    bool remove(UINT uControlId);

    void clear();
    UINT count() const;

    // The control at a position, counted from 0; null past the end.
    CUICtrl* getAt(UINT uPosition) const;

  private:
    struct CNode;

    CUIControlList(const CUIControlList&);            // not copied
    CUIControlList& operator=(const CUIControlList&); // not assigned

    CNode* findNode(UINT uPosition) const;

    CNode* m_pHead;
};

#endif
