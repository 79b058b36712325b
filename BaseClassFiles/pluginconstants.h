// pluginconstants.h: the records and constants that the host and a plug-in share.
//
// Host and plug-in are compiled apart, perhaps by different compilers, and meet in memory: the order
// and the types of all members below are fixed for contract version 61. Everything here is plain
// C++98 and depends on nothing but the standard headers.
//
// Sample format: unless a comment says otherwise a sample is a float from -1.0 to +1.0.

#ifndef VELMORA_PLUGINCONSTANTS_H
#define VELMORA_PLUGINCONSTANTS_H

#include <math.h>
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
enum
{
    intData = 0,
    floatData = 1,
    doubleData = 2,
    UINTData = 3
};

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
struct hostWindow
{
    void (*post)(hostWindow* pWindow, UINT uMessage, size_t uParam, ptrdiff_t nParam);
    ptrdiff_t (*send)(hostWindow* pWindow, UINT uMessage, size_t uParam, ptrdiff_t nParam);
};

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
struct auxInputData
{
    UINT uInputBus;           // always 1
    float* pFramePtr;         // ahead of processAudioFrame(): one sample for each channel
    float* pBufferPtr;        // ahead of processSocketAudioBuffer(): interleaved samples
    float** ppChannelBuffers; // ahead of processChannelBuffers(): one plane for each of two channels
    UINT uNumChannels;        // sidechain channels, 1 or 2
    UINT uBufferSize;         // samples in pBufferPtr, all channels together
    bool bInputEnabled;       // false: the user has switched the sidechain off
};

// Codes of hostMessageData::uMessage.
const UINT HOST_MESSAGE_TIMER = 2;         // a tick of the view's timer, in oscillator and synth states
const UINT HOST_MESSAGE_QUERY_HAS_GUI = 5; // set bHasEditor
const UINT HOST_MESSAGE_SHOW_GUI = 6;      // open your own editor
const UINT HOST_MESSAGE_CLOSE_GUI = 7;     // close it
const UINT HOST_MESSAGE_SHOW_HOST_GUI = 9; // open the editor that pUIDescription describes
const UINT HOST_MESSAGE_HIDE_GUI = 10;     // the GUI is being hidden: release what it holds
const UINT HOST_MESSAGE_RESET_GUI = 11;    // the view has reset its GUI: as for HIDE_GUI

// One message of the host, given to CPlugIn::processHostMessage(). Fields that a code does not need
// are null or 0.
struct hostMessageData
{
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

    // For a long list. pControl is one of the list's own; null stands for the place ahead of the first.
    CUICtrl* next(const CUICtrl* pControl) const;                     // the one behind it; null at the end
    CUICtrl* insertBehind(CUICtrl* pControl, const CUICtrl& control); // answers the list's copy

  private:
    struct CNode;

    CUIControlList(const CUIControlList&);            // not copied
    CUIControlList& operator=(const CUIControlList&); // not assigned

    CNode** linkAt(UINT uPosition);
    CNode** linkWithId(UINT uControlId);

    CNode* m_pHead;
};

// ------------------------------------------------------------------------------------------------
// Building blocks
// ------------------------------------------------------------------------------------------------
//
// Small parts that plug-ins are made of. What holds for all of them:
//
//   - One block serves one channel; a stereo plug-in has two.
//   - prepare() is for CPlugIn::prepareForPlay(): it takes the sample rate in Hz, fits the settings to it
//     and clears the past. reset() only clears the past.
//   - Everything but CDelayLine::prepare() is [audio]: no memory is taken and nothing waits. A block is
//     used by one thread at a time, so the process call itself hands changed settings to its blocks.
//   - A setting out of its range is taken as the nearest end of it, and one that is not a number as the
//     low end. Frequencies run from 0.01 Hz to 0.49 times the sample rate.
//   - An input that is infinite or not a number counts as 0, and a state below the smallest normal float
//     becomes 0: nothing stays stuck, and quiet tails cost no more than loud ones.

const double VELMORA_PI = 3.14159265358979323846;
const float LOWEST_DB = -120.0f; // what linearToDB() answers for silence

// The value held to dLow..dHigh; dLow for one that is not a number.
inline double limitValue(double dValue, double dLow, double dHigh)
{
    return dValue > dLow ? (dValue < dHigh ? dValue : dHigh) : dLow;
}

// The value, or 0 in place of one that is infinite, not a number or, as a float, denormal.
inline double cleanState(double dState)
{
    const double dSize = fabs(dState);
    return dSize >= 1.175494351e-38 && dSize <= 3.402823466e+38 ? dState : 0.0;
}

inline float cleanSample(float fSample)
{
    return static_cast<float>(cleanState(fSample));
}

// 10^(dB / 20)
inline double dBToLinear(double dLevel_dB)
{
    return pow(10.0, dLevel_dB / 20.0);
}

// 20 log10(|x|), not below LOWEST_DB.
double linearToDB(double dLinear);

// Samples in so many milliseconds, with a fraction.
inline double millisecondsToSamples(double dTime_ms, double dSampleRate)
{
    return dTime_ms * 0.001 * dSampleRate;
}

// The factor c of y(n) = x + c (y(n-1) - x) that covers 63.2 % (1 - 1/e) of a step in dTime_ms:
// c = e^(-1 / samples); 0, that is at once, for no time.
double timeToCoefficient(double dTime_ms, double dSampleRate);

// Follows the level of a signal.
//   d = |x| (peak) or x^2 (mean square, root mean square)
//   y(n) = d + c (y(n-1) - d), c from the attack while d is above y(n-1), else from the release
//   The answer is y; for the root mean square its square root.
// Attack and release are time constants (63.2 % of a step of d), 0 to 60000 ms.
// Source: D. Giannoulis, M. Massberg, J. D. Reiss, "Digital Dynamic Range Compressor Design - A Tutorial
// and Analysis", J. Audio Eng. Soc. 60 (6), 2012: the branching detector.
class CEnvelopeDetector
{
  public:
    CEnvelopeDetector(); // peak, 10 ms, 100 ms, 44100 Hz

    void prepare(double dSampleRate);
    void set(UINT uDetectorMode, double dAttack_ms, double dRelease_ms); // DETECT_MODE_PEAK, _MS or _RMS
    void reset() { m_dLevel = 0.0; }

    // Takes the next sample, answers the level; both linear.
    float process(float fInput)
    {
        const double dInput = cleanSample(fInput);
        const double dDetected = m_uMode == DETECT_MODE_PEAK ? fabs(dInput) : dInput * dInput;
        const double dCoefficient = dDetected > m_dLevel ? m_dAttackCoefficient : m_dReleaseCoefficient;
        m_dLevel = cleanState(dDetected + dCoefficient * (m_dLevel - dDetected));
        return static_cast<float>(m_uMode == DETECT_MODE_RMS ? sqrt(m_dLevel) : m_dLevel);
    }

  private:
    UINT m_uMode;
    double m_dSampleRate;
    double m_dAttack_ms;
    double m_dRelease_ms;
    double m_dAttackCoefficient;
    double m_dReleaseCoefficient;
    double m_dLevel;
};

// Low-pass or high-pass of 6 dB per octave, -3.01 dB at the cutoff frequency.
//   g = tan(pi fc / fs), v = (x - s) g / (1 + g), low = v + s, s = low + v, high = x - low
// Stable for every setting, also while the cutoff moves.
// Source: V. Zavalishin, "The Art of VA Filter Design", 2012, chapter 3.
class COnePoleFilter
{
  public:
    enum EKind
    {
        lowPass,
        highPass
    };

    COnePoleFilter(); // low-pass, 1000 Hz, at 44100 Hz

    void prepare(double dSampleRate);
    void set(EKind eKind, double dCutoff_Hz);
    void reset() { m_dState = 0.0; }

    float process(float fInput)
    {
        const double dInput = cleanSample(fInput);
        const double dStep = (dInput - m_dState) * m_dGain;
        const double dLow = dStep + m_dState;
        m_dState = cleanState(dLow + dStep);
        return static_cast<float>(m_eKind == lowPass ? dLow : dInput - dLow);
    }

  private:
    EKind m_eKind;
    double m_dSampleRate;
    double m_dCutoff_Hz;
    double m_dGain;
    double m_dState;
};

// Resonant filter of 12 dB per octave for cutoffs that move, even at every sample.
//   g = tan(pi fc / fs), k = 1 / Q, a = 1 / (1 + g (g + k)), with the integrators' states s1 and s2:
//   band = a (s1 + g (x - s2)), low = s2 + g band, s1 = 2 band - s1, s2 = 2 low - s2
//   high = x - k band - low, notch = x - k band
// At the cutoff low and high have a gain of Q, the band-pass output k band one of 1.
// Q runs from 0.05 to 200; 0.7071 is maximally flat. Stable for every setting.
// Sources: V. Zavalishin, "The Art of VA Filter Design", 2012, chapter 4; A. Simper, "Solving the
// continuous SVF equations using trapezoidal integration and equivalent currents", 2013.
class CStateVariableFilter
{
  public:
    enum EKind
    {
        lowPass,
        bandPass,
        highPass,
        notch
    };

    CStateVariableFilter(); // low-pass, 1000 Hz, Q 0.7071, at 44100 Hz

    void prepare(double dSampleRate);
    void set(EKind eKind, double dCutoff_Hz, double dQ);
    void reset() { m_dState1 = m_dState2 = 0.0; }

    float process(float fInput)
    {
        const double dInput = cleanSample(fInput);
        const double dBand = m_dScale * (m_dState1 + m_dGain * (dInput - m_dState2));
        const double dLow = m_dState2 + m_dGain * dBand;
        m_dState1 = cleanState(2.0 * dBand - m_dState1);
        m_dState2 = cleanState(2.0 * dLow - m_dState2);
        return static_cast<float>(m_dInputMix * dInput + m_dBandMix * dBand + m_dLowMix * dLow);
    }

  private:
    EKind m_eKind;
    double m_dSampleRate;
    double m_dCutoff_Hz;
    double m_dQ;
    double m_dGain;
    double m_dScale;
    double m_dInputMix; // the output is a sum of input, band and low
    double m_dBandMix;
    double m_dLowMix;
    double m_dState1;
    double m_dState2;
};

// Second-order filter in transposed direct form II, with calculators for the usual shapes.
//   y = b0 x + s1, s1 = b1 x - a1 y + s2, s2 = b2 x - a2 y
// Q runs from 0.05 to 200, the gain of a peak or shelf from -60 to +60 dB. For a shelf the frequency
// is where half the dB are reached, and Q 0.7071 is the steepest without a bump. For cutoffs that move
// fast take CStateVariableFilter.
// Source: R. Bristow-Johnson, "Cookbook formulae for audio equalizer biquad filter coefficients", 1998.
class CBiquadFilter
{
  public:
    enum EKind
    {
        lowPass,
        highPass,
        bandPass,
        notch,
        peak,
        lowShelf,
        highShelf
    };

    CBiquadFilter(); // passes its input on

    void prepare(double dSampleRate);
    void set(EKind eKind, double dFrequency_Hz, double dQ, double dGain_dB = 0.0);

    // Coefficients of the caller's own, divided by a0. Stable if |a2| < 1 and |a1| < 1 + a2.
    void setCoefficients(double dB0, double dB1, double dB2, double dA1, double dA2);

    void reset() { m_dState1 = m_dState2 = 0.0; }

    float process(float fInput)
    {
        const double dInput = cleanSample(fInput);
        const double dOutput = m_dB0 * dInput + m_dState1;
        m_dState1 = cleanState(m_dB1 * dInput - m_dA1 * dOutput + m_dState2);
        m_dState2 = cleanState(m_dB2 * dInput - m_dA2 * dOutput);
        return static_cast<float>(dOutput);
    }

  private:
    void setShelf(double A, double c, double alpha, double dSide);
    void setScaled(double dB0, double dB1, double dB2, double dA0, double dA1, double dA2);

    bool m_bCalculated; // false: the coefficients are the caller's own
    EKind m_eKind;
    double m_dSampleRate;
    double m_dFrequency_Hz;
    double m_dQ;
    double m_dGain_dB;
    double m_dB0, m_dB1, m_dB2, m_dA1, m_dA2;
    double m_dState1;
    double m_dState2;
};

// Remembers samples. A delay counts in write() calls, fractions allowed: 1.0 is the sample written last.
// For an echo of d samples read first, then write:
//     echo = line.read(d); line.write(in + feedback * echo);
// Between samples read() goes in a straight line, and readCubic() along the third-order polynomial
// through the four samples around. Half-way between two samples, at a quarter of the sample rate, the
// first loses 3.0 dB and the second 1.1 dB.
// Source: T. I. Laakso, V. Valimaki, M. Karjalainen, U. K. Laine, "Splitting the Unit Delay", IEEE Signal
// Processing Magazine 13 (1), 1996: Lagrange interpolation.
class CDelayLine
{
  public:
    CDelayLine(); // answers 0 until it is prepared
    ~CDelayLine();

    // Takes memory for delays of up to uMaxDelay samples, 1 to 16777216, and clears it. False, and the
    // line is as it was, for another number or without memory. [main]
    bool prepare(UINT uMaxDelay);
    void reset();

    UINT maxDelay() const { return m_uMaxDelay; }

    void write(float fInput);

    // Delays from 1.0 to maxDelay(); below 2.0 readCubic() goes in a straight line, too.
    float read(double dDelay) const;
    float readCubic(double dDelay) const;

  private:
    CDelayLine(const CDelayLine&);            // not copied
    CDelayLine& operator=(const CDelayLine&); // not assigned

    float at(UINT uDelay) const { return m_pBuffer[(m_uWrite - uDelay) & m_uMask]; }

    float* m_pBuffer; // a power of two in size
    UINT m_uMask;
    UINT m_uMaxDelay;
    UINT m_uWrite;
};

// Moves a setting to its new value without a step that would be heard.
//   y(n) = target + c (y(n-1) - target)
// The time, 0 to 60000 ms, is the time constant: 63.2 % of the way. What is left at a ten-thousandth of
// the way is jumped, after 9.2 time constants, so that the value becomes exactly the target.
class CParameterSmoother
{
  public:
    CParameterSmoother(); // 0.0, 20 ms, at 44100 Hz

    void prepare(double dSampleRate); // jumps to the target
    void setTime(double dTime_ms);
    void setTarget(double dTarget); // one that is not a finite number is ignored
    void jumpTo(double dValue);     // target and value at once
    void reset() { m_dValue = m_dTarget; }

    // The value for the next sample.
    double next()
    {
        const double dRest = m_dCoefficient * (m_dValue - m_dTarget);
        m_dValue = fabs(dRest) > m_dJump ? m_dTarget + dRest : m_dTarget;
        return m_dValue;
    }

    double value() const { return m_dValue; }
    double target() const { return m_dTarget; }
    bool isMoving() const { return m_dValue != m_dTarget; }

  private:
    double m_dSampleRate;
    double m_dTime_ms;
    double m_dCoefficient;
    double m_dTarget;
    double m_dValue;
    double m_dJump;
};

// Shapes for cutting a piece out of a signal, for spectra and for filter design.
//   w(n) = a0 - a1 cos(t) + a2 cos(2 t) - a3 cos(3 t) + a4 cos(4 t), t = 2 pi n / N
// Sources: F. J. Harris, "On the Use of Windows for Harmonic Analysis with the Discrete Fourier
// Transform", Proc. IEEE 66 (1), 1978; flat top: G. D'Antona, A. Ferrero, "Digital Signal Processing for
// Measurement Systems", 2006.
enum EWindowKind
{
    rectangularWindow,
    hannWindow,
    hammingWindow,
    blackmanWindow,
    blackmanHarrisWindow, // four terms, side lobes at -92 dB
    flatTopWindow         // reads the height of a line within 0.01 dB
};

// Fills pWindow with uLength values. A periodic one has N = uLength, as spectra want it; a symmetric one
// N = uLength - 1, as filter design does.
void makeWindow(EWindowKind eKind, float* pWindow, UINT uLength, bool bPeriodic = true);

inline void CDelayLine::write(float fInput)
{
    if (m_pBuffer)
        m_pBuffer[m_uWrite++ & m_uMask] = cleanSample(fInput);
}

inline float CDelayLine::read(double dDelay) const
{
    if (!m_pBuffer)
        return 0.0f;
    const double dLimited = limitValue(dDelay, 1.0, m_uMaxDelay);
    const UINT uWhole = static_cast<UINT>(dLimited);
    const float fNear = at(uWhole);
    return fNear + static_cast<float>(dLimited - uWhole) * (at(uWhole + 1) - fNear);
}

inline float CDelayLine::readCubic(double dDelay) const
{
    const double dLimited = limitValue(dDelay, 1.0, m_uMaxDelay);
    if (!m_pBuffer || dLimited < 2.0)
        return read(dLimited);
    const UINT uWhole = static_cast<UINT>(dLimited);
    const double t = dLimited - uWhole;
    const double dBefore = t * (t - 1.0) * (t - 2.0) / -6.0;
    const double dNear = (t + 1.0) * (t - 1.0) * (t - 2.0) / 2.0;
    const double dFar = (t + 1.0) * t * (t - 2.0) / -2.0;
    const double dBehind = (t + 1.0) * t * (t - 1.0) / 6.0;
    return static_cast<float>(dBefore * at(uWhole - 1) + dNear * at(uWhole) + dFar * at(uWhole + 1) +
                              dBehind * at(uWhole + 2));
}

#endif
