#include "pluginconstants.h"

#include <new>

// ------------------------------------------------------------------------------------------------
// CUICtrl
// ------------------------------------------------------------------------------------------------

namespace {

template <typename T, size_t uCount>
void fill(T (&values)[uCount], T value)
{
    for (size_t i = 0; i < uCount; i++)
        values[i] = value;
}

template <typename T, size_t uCount>
void copyArray(T (&copy)[uCount], const T (&original)[uCount])
{
    for (size_t i = 0; i < uCount; i++)
        copy[i] = original[i];
}

// Copies what fits of a text; none counts as an empty one.
void copyText(char (&cCopy)[CONTROL_TEXT_SIZE], const char* pText)
{
    size_t uLength = 0;
    for (; pText && pText[uLength] && uLength < CONTROL_TEXT_SIZE - 1; uLength++)
        cCopy[uLength] = pText[uLength];
    cCopy[uLength] = 0;
}

} // namespace

CUICtrl::CUICtrl()
    : uControlType(0), uControlId(0), uDetectorMode(DETECT_MODE_RMS), fUserDisplayDataLoLimit(0.0f),
      fUserDisplayDataHiLimit(0.0f), uUserDataType(4), fInitUserIntValue(0.0f), fInitUserFloatValue(0.0f),
      fInitUserDoubleValue(0.0f), fInitUserUINTValue(0.0f), m_pUserCookedIntData(NULL),
      m_pUserCookedFloatData(NULL), m_pUserCookedDoubleData(NULL), m_pUserCookedUINTData(NULL),
      m_pCurrentMeterValue(NULL), bOwnerControl(false), bUseMeter(false), bUpsideDownMeter(false),
      bLogMeter(false), bLogSlider(false), bExpSlider(false), uMeterColorScheme(0), fMeterAttack_ms(10.0f),
      fMeterRelease_ms(500.0f), bMIDIControl(false), uMIDIControlCommand(176), uMIDIControlName(3),
      uMIDIControlChannel(0), nGUIRow(-1), nGUIColumn(-1), uReserved(0)
{
    fill(fReserved, 0.0f);
    fill(uControlTheme, 0u);
    fill(dPresetData, 0.0);
    fill(uFluxCapControl, 0u);
    fill(fFluxCapData, 0.0f);

    m_cControlNameText[0] = 0;
    m_cControlUnitsText[0] = 0;
    m_cVariableNameText[0] = 0;
    m_cEnumeratedListText[0] = 0;
    m_cMeterVariableNameText[0] = 0;
    aimTextPointers();
}

CUICtrl::CUICtrl(const CUICtrl& other)
{
    copyTexts(other);
    copyValues(other);
}

CUICtrl& CUICtrl::operator=(const CUICtrl& other)
{
    if (this != &other) {
        copyTexts(other);
        copyValues(other);
    }
    return *this;
}

void CUICtrl::aimTextPointers()
{
    cControlName = m_cControlNameText;
    cControlUnits = m_cControlUnitsText;
    cVariableName = m_cVariableNameText;
    cEnumeratedList = m_cEnumeratedListText;
    cMeterVariableName = m_cMeterVariableNameText;
}

void CUICtrl::copyTexts(const CUICtrl& other)
{
    copyText(m_cControlNameText, other.cControlName);
    copyText(m_cControlUnitsText, other.cControlUnits);
    copyText(m_cVariableNameText, other.cVariableName);
    copyText(m_cEnumeratedListText, other.cEnumeratedList);
    copyText(m_cMeterVariableNameText, other.cMeterVariableName);
    aimTextPointers();
}

void CUICtrl::copyValues(const CUICtrl& other)
{
    uControlType = other.uControlType;
    uControlId = other.uControlId;
    uDetectorMode = other.uDetectorMode;
    fUserDisplayDataLoLimit = other.fUserDisplayDataLoLimit;
    fUserDisplayDataHiLimit = other.fUserDisplayDataHiLimit;
    uUserDataType = other.uUserDataType;
    fInitUserIntValue = other.fInitUserIntValue;
    fInitUserFloatValue = other.fInitUserFloatValue;
    fInitUserDoubleValue = other.fInitUserDoubleValue;
    fInitUserUINTValue = other.fInitUserUINTValue;
    copyArray(fReserved, other.fReserved);

    m_pUserCookedIntData = other.m_pUserCookedIntData;
    m_pUserCookedFloatData = other.m_pUserCookedFloatData;
    m_pUserCookedDoubleData = other.m_pUserCookedDoubleData;
    m_pUserCookedUINTData = other.m_pUserCookedUINTData;
    m_pCurrentMeterValue = other.m_pCurrentMeterValue;

    bOwnerControl = other.bOwnerControl;
    bUseMeter = other.bUseMeter;
    bUpsideDownMeter = other.bUpsideDownMeter;
    bLogMeter = other.bLogMeter;
    bLogSlider = other.bLogSlider;
    bExpSlider = other.bExpSlider;
    uMeterColorScheme = other.uMeterColorScheme;
    fMeterAttack_ms = other.fMeterAttack_ms;
    fMeterRelease_ms = other.fMeterRelease_ms;

    bMIDIControl = other.bMIDIControl;
    uMIDIControlCommand = other.uMIDIControlCommand;
    uMIDIControlName = other.uMIDIControlName;
    uMIDIControlChannel = other.uMIDIControlChannel;

    nGUIRow = other.nGUIRow;
    nGUIColumn = other.nGUIColumn;
    copyArray(uControlTheme, other.uControlTheme);
    copyArray(dPresetData, other.dPresetData);
    copyArray(uFluxCapControl, other.uFluxCapControl);
    copyArray(fFluxCapData, other.fFluxCapData);
    uReserved = other.uReserved;
}

// ------------------------------------------------------------------------------------------------
// CUIControlList
// ------------------------------------------------------------------------------------------------

struct CUIControlList::CNode
{
    CNode(const CUICtrl& control, CNode* pNext) : m_control(control), m_pNext(pNext) {}

    CUICtrl m_control;
    CNode* m_pNext;
};

CUIControlList::CUIControlList() : m_pHead(NULL) {}

CUIControlList::~CUIControlList()
{
    clear();
}

// The link, a head or a node's own, that holds the node looked for, or null at the end of the list.
CUIControlList::CNode** CUIControlList::linkAt(UINT uPosition)
{
    CNode** ppLink = &m_pHead;
    for (; *ppLink && uPosition > 0; uPosition--)
        ppLink = &(*ppLink)->m_pNext;
    return ppLink;
}

CUIControlList::CNode** CUIControlList::linkWithId(UINT uControlId)
{
    CNode** ppLink = &m_pHead;
    while (*ppLink && (*ppLink)->m_control.uControlId != uControlId)
        ppLink = &(*ppLink)->m_pNext;
    return ppLink;
}

void CUIControlList::append(const CUICtrl& control)
{
    *linkAt(count()) = new CNode(control, NULL);
}

void CUIControlList::insertAtHead(const CUICtrl& control)
{
    m_pHead = new CNode(control, m_pHead);
}

bool CUIControlList::insertAfter(UINT uPosition, const CUICtrl& control)
{
    CNode* pNode = *linkAt(uPosition);
    if (pNode)
        pNode->m_pNext = new CNode(control, pNode->m_pNext);
    return pNode != NULL;
}

bool CUIControlList::replace(UINT uControlId, const CUICtrl& control)
{
    CNode* pNode = *linkWithId(uControlId);
    if (pNode)
        pNode->m_control = control;
    return pNode != NULL;
}

bool CUIControlList::remove(UINT uControlId)
{
    CNode** ppLink = linkWithId(uControlId);
    CNode* pNode = *ppLink;
    if (pNode) {
        *ppLink = pNode->m_pNext;
        delete pNode;
    }
    return pNode != NULL;
}

// Deletes from the last node to the first, by turning the list round.
void CUIControlList::clear()
{
    CNode* pReversed = NULL;
    while (m_pHead) {
        CNode* pNode = m_pHead;
        m_pHead = pNode->m_pNext;
        pNode->m_pNext = pReversed;
        pReversed = pNode;
    }
    while (pReversed) {
        CNode* pNode = pReversed;
        pReversed = pNode->m_pNext;
        delete pNode;
    }
}

UINT CUIControlList::count() const
{
    UINT uCount = 0;
    for (const CNode* pNode = m_pHead; pNode; pNode = pNode->m_pNext)
        uCount++;
    return uCount;
}

CUICtrl* CUIControlList::getAt(UINT uPosition) const
{
    CNode* pNode = m_pHead;
    for (; pNode && uPosition > 0; uPosition--)
        pNode = pNode->m_pNext;
    return pNode ? &pNode->m_control : NULL;
}

// A node begins with its control, so that a control of the list leads to its node.
CUICtrl* CUIControlList::next(const CUICtrl* pControl) const
{
    const CNode* pNode = reinterpret_cast<const CNode*>(pControl);
    CNode* pNext = pNode ? pNode->m_pNext : m_pHead;
    return pNext ? &pNext->m_control : NULL;
}

CUICtrl* CUIControlList::insertBehind(CUICtrl* pControl, const CUICtrl& control)
{
    CNode* pNode = reinterpret_cast<CNode*>(pControl);
    CNode** ppLink = pNode ? &pNode->m_pNext : &m_pHead;
    *ppLink = new CNode(control, *ppLink);
    return &(*ppLink)->m_control;
}

// ------------------------------------------------------------------------------------------------
// Building blocks: settings
// ------------------------------------------------------------------------------------------------

namespace {

double limitRate(double dSampleRate)
{
    return limitValue(dSampleRate, 1.0, 1.0e7);
}

double limitTime(double dTime_ms)
{
    return limitValue(dTime_ms, 0.0, 60000.0);
}

double limitQ(double dQ)
{
    return limitValue(dQ, 0.05, 200.0);
}

// pi f / fs for a frequency held to its range.
double halfAngle(double dFrequency_Hz, double dSampleRate)
{
    return VELMORA_PI * limitValue(dFrequency_Hz, 0.01, 0.49 * dSampleRate) / dSampleRate;
}

} // namespace

double linearToDB(double dLinear)
{
    const double dSize = fabs(dLinear);
    return dSize > 0.0 ? limitValue(20.0 * log10(dSize), LOWEST_DB, HUGE_VAL) : LOWEST_DB;
}

double timeToCoefficient(double dTime_ms, double dSampleRate)
{
    const double dSamples = millisecondsToSamples(limitTime(dTime_ms), dSampleRate);
    return dSamples > 0.0 ? exp(-1.0 / dSamples) : 0.0;
}

CEnvelopeDetector::CEnvelopeDetector()
    : m_uMode(DETECT_MODE_PEAK), m_dSampleRate(44100.0), m_dAttack_ms(10.0), m_dRelease_ms(100.0)
{
    prepare(m_dSampleRate);
}

void CEnvelopeDetector::prepare(double dSampleRate)
{
    m_dSampleRate = limitRate(dSampleRate);
    set(m_uMode, m_dAttack_ms, m_dRelease_ms);
    reset();
}

void CEnvelopeDetector::set(UINT uDetectorMode, double dAttack_ms, double dRelease_ms)
{
    m_uMode = uDetectorMode;
    m_dAttack_ms = dAttack_ms;
    m_dRelease_ms = dRelease_ms;
    m_dAttackCoefficient = timeToCoefficient(dAttack_ms, m_dSampleRate);
    m_dReleaseCoefficient = timeToCoefficient(dRelease_ms, m_dSampleRate);
}

COnePoleFilter::COnePoleFilter() : m_eKind(lowPass), m_dSampleRate(44100.0), m_dCutoff_Hz(1000.0)
{
    prepare(m_dSampleRate);
}

void COnePoleFilter::prepare(double dSampleRate)
{
    m_dSampleRate = limitRate(dSampleRate);
    set(m_eKind, m_dCutoff_Hz);
    reset();
}

void COnePoleFilter::set(EKind eKind, double dCutoff_Hz)
{
    m_eKind = eKind;
    m_dCutoff_Hz = dCutoff_Hz;
    const double g = tan(halfAngle(dCutoff_Hz, m_dSampleRate));
    m_dGain = g / (1.0 + g);
}

CStateVariableFilter::CStateVariableFilter()
    : m_eKind(lowPass), m_dSampleRate(44100.0), m_dCutoff_Hz(1000.0), m_dQ(0.7071)
{
    prepare(m_dSampleRate);
}

void CStateVariableFilter::prepare(double dSampleRate)
{
    m_dSampleRate = limitRate(dSampleRate);
    set(m_eKind, m_dCutoff_Hz, m_dQ);
    reset();
}

void CStateVariableFilter::set(EKind eKind, double dCutoff_Hz, double dQ)
{
    m_eKind = eKind;
    m_dCutoff_Hz = dCutoff_Hz;
    m_dQ = dQ;

    const double k = 1.0 / limitQ(dQ);
    m_dGain = tan(halfAngle(dCutoff_Hz, m_dSampleRate));
    m_dScale = 1.0 / (1.0 + m_dGain * (m_dGain + k));

    m_dInputMix = eKind == highPass || eKind == notch ? 1.0 : 0.0;
    m_dBandMix = eKind == lowPass ? 0.0 : (eKind == bandPass ? k : -k);
    m_dLowMix = eKind == lowPass ? 1.0 : (eKind == highPass ? -1.0 : 0.0);
}

CBiquadFilter::CBiquadFilter()
    : m_bCalculated(false), m_eKind(lowPass), m_dSampleRate(44100.0), m_dFrequency_Hz(1000.0), m_dQ(0.7071),
      m_dGain_dB(0.0), m_dB0(1.0), m_dB1(0.0), m_dB2(0.0), m_dA1(0.0), m_dA2(0.0), m_dState1(0.0),
      m_dState2(0.0)
{
}

void CBiquadFilter::prepare(double dSampleRate)
{
    m_dSampleRate = limitRate(dSampleRate);
    if (m_bCalculated)
        set(m_eKind, m_dFrequency_Hz, m_dQ, m_dGain_dB);
    reset();
}

void CBiquadFilter::setCoefficients(double dB0, double dB1, double dB2, double dA1, double dA2)
{
    m_bCalculated = false;
    m_dB0 = dB0;
    m_dB1 = dB1;
    m_dB2 = dB2;
    m_dA1 = dA1;
    m_dA2 = dA2;
}

void CBiquadFilter::set(EKind eKind, double dFrequency_Hz, double dQ, double dGain_dB)
{
    m_eKind = eKind;
    m_dFrequency_Hz = dFrequency_Hz;
    m_dQ = dQ;
    m_dGain_dB = dGain_dB;

    const double dAngle = 2.0 * halfAngle(dFrequency_Hz, m_dSampleRate);
    const double c = cos(dAngle);
    const double alpha = sin(dAngle) / (2.0 * limitQ(dQ));
    const double A = pow(10.0, limitValue(dGain_dB, -60.0, 60.0) / 40.0);

    switch (eKind) {
    case lowPass:
        setScaled(0.5 * (1.0 - c), 1.0 - c, 0.5 * (1.0 - c), 1.0 + alpha, -2.0 * c, 1.0 - alpha);
        break;
    case highPass:
        setScaled(0.5 * (1.0 + c), -1.0 - c, 0.5 * (1.0 + c), 1.0 + alpha, -2.0 * c, 1.0 - alpha);
        break;
    case bandPass:
        setScaled(alpha, 0.0, -alpha, 1.0 + alpha, -2.0 * c, 1.0 - alpha);
        break;
    case notch:
        setScaled(1.0, -2.0 * c, 1.0, 1.0 + alpha, -2.0 * c, 1.0 - alpha);
        break;
    case peak:
        setScaled(1.0 + alpha * A, -2.0 * c, 1.0 - alpha * A, 1.0 + alpha / A, -2.0 * c, 1.0 - alpha / A);
        break;
    case lowShelf:
        setShelf(A, c, alpha, 1.0);
        break;
    case highShelf:
        setShelf(A, c, alpha, -1.0);
        break;
    }
    m_bCalculated = true;
}

// The two shelves are each other's mirror image: dSide is +1 for the low one, -1 for the high one.
void CBiquadFilter::setShelf(double A, double c, double alpha, double dSide)
{
    const double dSlope = 2.0 * sqrt(A) * alpha;
    const double dUp = A + 1.0, dDown = (A - 1.0) * c * dSide;
    setScaled(A * (dUp - dDown + dSlope), 2.0 * A * dSide * (A - 1.0 - (A + 1.0) * c * dSide),
              A * (dUp - dDown - dSlope), dUp + dDown + dSlope,
              -2.0 * dSide * (A - 1.0 + (A + 1.0) * c * dSide), dUp + dDown - dSlope);
}

void CBiquadFilter::setScaled(double dB0, double dB1, double dB2, double dA0, double dA1, double dA2)
{
    setCoefficients(dB0 / dA0, dB1 / dA0, dB2 / dA0, dA1 / dA0, dA2 / dA0);
}

CDelayLine::CDelayLine() : m_pBuffer(NULL), m_uMask(0), m_uMaxDelay(0), m_uWrite(0) {}

CDelayLine::~CDelayLine()
{
    delete[] m_pBuffer;
}

bool CDelayLine::prepare(UINT uMaxDelay)
{
    if (uMaxDelay < 1 || uMaxDelay > 16777216)
        return false;

    // readCubic() looks two samples beyond the longest delay.
    UINT uSize = 4;
    while (uSize < uMaxDelay + 2)
        uSize *= 2;
    if (!m_pBuffer || uSize != m_uMask + 1) {
        float* pBuffer = new (std::nothrow) float[uSize];
        if (!pBuffer)
            return false;
        delete[] m_pBuffer;
        m_pBuffer = pBuffer;
    }
    m_uMask = uSize - 1;
    m_uMaxDelay = uMaxDelay;
    reset();
    return true;
}

void CDelayLine::reset()
{
    for (UINT i = 0; m_pBuffer && i <= m_uMask; i++)
        m_pBuffer[i] = 0.0f;
    m_uWrite = 0;
}

CParameterSmoother::CParameterSmoother()
    : m_dSampleRate(44100.0), m_dTime_ms(20.0), m_dTarget(0.0), m_dValue(0.0), m_dJump(0.0)
{
    prepare(m_dSampleRate);
}

void CParameterSmoother::prepare(double dSampleRate)
{
    m_dSampleRate = limitRate(dSampleRate);
    setTime(m_dTime_ms);
    reset();
}

void CParameterSmoother::setTime(double dTime_ms)
{
    m_dTime_ms = dTime_ms;
    m_dCoefficient = timeToCoefficient(dTime_ms, m_dSampleRate);
}

void CParameterSmoother::setTarget(double dTarget)
{
    if (dTarget == m_dTarget || dTarget - dTarget != 0.0)
        return;
    m_dTarget = dTarget;
    m_dJump = 1.0e-4 * fabs(m_dTarget - m_dValue);
}

void CParameterSmoother::jumpTo(double dValue)
{
    setTarget(dValue);
    reset();
}

void makeWindow(EWindowKind eKind, float* pWindow, UINT uLength, bool bPeriodic)
{
    static const double TERMS[][5] = {
        {1.0, 0.0, 0.0, 0.0, 0.0},
        {0.5, 0.5, 0.0, 0.0, 0.0},
        {0.54, 0.46, 0.0, 0.0, 0.0},
        {0.42, 0.5, 0.08, 0.0, 0.0},
        {0.35875, 0.48829, 0.14128, 0.01168, 0.0},
        {0.21557895, 0.41663158, 0.277263158, 0.083578947, 0.006947368},
    };
    const bool bShaped = uLength > 1 && static_cast<UINT>(eKind) <= flatTopWindow;
    const double* a = TERMS[bShaped ? eKind : rectangularWindow];
    const UINT uPeriod = bPeriodic ? uLength : uLength - 1;
    for (UINT n = 0; n < uLength; n++) {
        const double t = bShaped ? 2.0 * VELMORA_PI * n / uPeriod : 0.0;
        pWindow[n] = static_cast<float>(a[0] - a[1] * cos(t) + a[2] * cos(2.0 * t) - a[3] * cos(3.0 * t) +
                                        a[4] * cos(4.0 * t));
    }
}
