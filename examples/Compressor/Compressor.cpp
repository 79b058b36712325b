#include "Compressor.h"

#include <algorithm>
#include <cmath>

namespace {

const double SMOOTHING_MS = 20.0;       // time constant with which the curve and the makeup gain move
const double REDUCTION_RANGE_DB = 24.0; // what the reduction meter shows in full
const double LEVEL_RANGE_DB = 60.0;

} // namespace

CCompressor::CCompressor()
{
    m_PlugInName = "Compressor";
    m_bWantBuffers = true;
    CCompressor::initUI();
}

bool CCompressor::initUI()
{
    appendSliders();

    CUICtrl detector;
    detector.uControlType = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;
    detector.uControlId = DETECTOR;
    detector.cControlName = "Detector";
    detector.cVariableName = "m_uDetector";
    detector.cEnumeratedList = "Peak,RMS";
    detector.uUserDataType = UINTData;
    detector.m_pUserCookedUINTData = &m_uDetector;
    detector.fUserDisplayDataLoLimit = Peak;
    detector.fUserDisplayDataHiLimit = RMS;
    detector.fInitUserUINTValue = Peak;
    m_UIControlList.append(detector);

    appendMeter(REDUCTION_METER, "Reduction", "m_fReductionMeter", &m_fReductionMeter, true);
    appendMeter(LEVEL_METER, "Level", "m_fLevelMeter", &m_fLevelMeter, false);
    return true;
}

void CCompressor::appendSliders()
{
    const struct
    {
        UINT uId;
        const char *pName, *pUnits, *pVariableName;
        float* pVariable;
        float fLow, fHigh;
        bool bExponential; // times spread evenly by their ratio; the low limit must not be 0
    } sliders[] = {
        {THRESHOLD, "Threshold", "dB", "m_fThreshold_dB", &m_fThreshold_dB, -60.0f, 0.0f, false},
        {RATIO, "Ratio", ":1", "m_fRatio", &m_fRatio, 1.0f, 20.0f, false},
        {KNEE, "Knee", "dB", "m_fKnee_dB", &m_fKnee_dB, 0.0f, 24.0f, false},
        {ATTACK, "Attack", "ms", "m_fAttack_ms", &m_fAttack_ms, 0.1f, 200.0f, true},
        {RELEASE, "Release", "ms", "m_fRelease_ms", &m_fRelease_ms, 5.0f, 2000.0f, true},
        {MAKEUP, "Makeup", "dB", "m_fMakeup_dB", &m_fMakeup_dB, 0.0f, 24.0f, false},
    };
    for (const auto& slider : sliders) {
        CUICtrl record;
        record.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        record.uControlId = slider.uId;
        record.cControlName = slider.pName;
        record.cControlUnits = slider.pUnits;
        record.cVariableName = slider.pVariableName;
        record.uUserDataType = floatData;
        record.m_pUserCookedFloatData = slider.pVariable;
        record.fUserDisplayDataLoLimit = slider.fLow;
        record.fUserDisplayDataHiLimit = slider.fHigh;
        record.fInitUserFloatValue = *slider.pVariable; // as the class declares it
        record.bExpSlider = slider.bExponential;
        m_UIControlList.append(record);
    }
}

// A meter that shows its variable as it is: the smoothing is done here.
void CCompressor::appendMeter(UINT uId, const char* pName, const char* pVariableName, float* pVariable,
                              bool bUpsideDown)
{
    CUICtrl meter;
    meter.uControlType = FILTER_CONTROL_LED_METER;
    meter.uControlId = uId;
    meter.cControlName = pName;
    meter.cMeterVariableName = pVariableName;
    meter.m_pCurrentMeterValue = pVariable;
    meter.bUseMeter = true;
    meter.bUpsideDownMeter = bUpsideDown;
    meter.uDetectorMode = DETECT_MODE_NONE;
    m_UIControlList.append(meter);
}

bool CCompressor::prepareForPlay()
{
    m_detector.prepare(m_nSampleRate);
    userInterfaceChange(THRESHOLD);
    takeSettings();
    for (CParameterSmoother* pSmoother : {&m_threshold_dB, &m_slope, &m_knee_dB, &m_makeup_dB}) {
        pSmoother->setTime(SMOOTHING_MS);
        pSmoother->prepare(m_nSampleRate); // and jumps to the target
    }
    m_fReductionMeter = m_fLevelMeter = 0.0f;
    return true;
}

// Runs on the main thread, perhaps in the middle of a process call.
bool CCompressor::userInterfaceChange(int)
{
    m_settings.fThreshold_dB = m_fThreshold_dB;
    m_settings.fSlope = 1.0f - 1.0f / std::max(m_fRatio, 1.0f);
    m_settings.fKnee_dB = m_fKnee_dB;
    m_settings.fAttack_ms = m_fAttack_ms;
    m_settings.fRelease_ms = m_fRelease_ms;
    m_settings.fMakeup_dB = m_fMakeup_dB;
    m_settings.uDetectMode = m_uDetector == RMS ? DETECT_MODE_RMS : DETECT_MODE_PEAK;
    return true;
}

void CCompressor::takeSettings()
{
    m_threshold_dB.setTarget(m_settings.fThreshold_dB);
    m_slope.setTarget(m_settings.fSlope);
    m_knee_dB.setTarget(m_settings.fKnee_dB);
    m_makeup_dB.setTarget(m_settings.fMakeup_dB);
    m_detector.set(m_settings.uDetectMode, m_settings.fAttack_ms, m_settings.fRelease_ms);
}

// The static curve, as dB of reduction: nothing below the knee, the full slope above it, and a parabola
// that joins the two in between.
double CCompressor::reductionAt(double dLevel_dB) const
{
    const double dOver_dB = dLevel_dB - m_threshold_dB.value();
    const double dHalfKnee_dB = 0.5 * m_knee_dB.value();
    if (dOver_dB <= -dHalfKnee_dB)
        return 0.0;
    if (dOver_dB >= dHalfKnee_dB)
        return m_slope.value() * dOver_dB;
    const double dIntoKnee_dB = dOver_dB + dHalfKnee_dB;
    return m_slope.value() * dIntoKnee_dB * dIntoKnee_dB / (4.0 * dHalfKnee_dB);
}

bool CCompressor::processSocketAudioBuffer(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                                           UINT uNumOutputChannels, UINT uBufferSize)
{
    takeSettings();
    double dLevel_dB = LOWEST_DB;
    double dReduction_dB = 0.0;

    // uBufferSize counts the input's samples of all channels together.
    for (UINT uAt = 0; uAt + uNumInputChannels <= uBufferSize; uAt += uNumInputChannels) {
        float fLoudest = 0.0f;
        for (UINT c = 0; c < uNumInputChannels; ++c)
            fLoudest = std::max(fLoudest, std::fabs(pInputBuffer[c]));

        m_threshold_dB.next();
        m_slope.next();
        m_knee_dB.next();
        dLevel_dB = linearToDB(m_detector.process(fLoudest));
        dReduction_dB = reductionAt(dLevel_dB);
        const auto fGain = static_cast<float>(dBToLinear(m_makeup_dB.next() - dReduction_dB));

        for (UINT c = 0; c < uNumOutputChannels; ++c)
            pOutputBuffer[c] = fGain * pInputBuffer[std::min(c, uNumInputChannels - 1)];
        pInputBuffer += uNumInputChannels;
        pOutputBuffer += uNumOutputChannels;
    }
    showMeters(dReduction_dB, dLevel_dB);
    return true;
}

// The panel reads the meters on another thread, so each is written in one piece.
void CCompressor::showMeters(double dReduction_dB, double dLevel_dB)
{
    const auto show = [](float& fMeter, double dShown) {
        std::atomic_ref(fMeter).store(static_cast<float>(limitValue(dShown, 0.0, 1.0)),
                                      std::memory_order_relaxed);
    };
    show(m_fReductionMeter, dReduction_dB / REDUCTION_RANGE_DB);
    show(m_fLevelMeter, 1.0 + dLevel_dB / LEVEL_RANGE_DB);
}

VELMORA_EXPORT_PLUGIN(CCompressor)
