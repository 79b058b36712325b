#include "StereoDelay.h"

#include <algorithm>
#include <cmath>

namespace {

const float MAX_TIME_MS = 2000.0f;
const float MAX_DUCK_DB = 40.0f;
const double TIME_GLIDE_MS = 120.0; // time constant with which a delay moves: pitch bends like on tape
const double SMOOTHING_MS = 20.0;   // and that of feedback and mix
const double DUCK_ATTACK_MS = 5.0;

CUICtrl makeSlider(UINT uId, const char* pName, const char* pUnits, const char* pVariableName,
                   float* pVariable, float fLow, float fHigh, float fStart)
{
    CUICtrl slider;
    slider.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
    slider.uControlId = uId;
    slider.cControlName = pName;
    slider.cControlUnits = pUnits;
    slider.cVariableName = pVariableName;
    slider.uUserDataType = floatData;
    slider.m_pUserCookedFloatData = pVariable;
    slider.fUserDisplayDataLoLimit = fLow;
    slider.fUserDisplayDataHiLimit = fHigh;
    slider.fInitUserFloatValue = fStart;
    return slider;
}

} // namespace

CStereoDelay::CStereoDelay()
{
    m_PlugInName = "StereoDelay";
    CStereoDelay::initUI();
}

bool CStereoDelay::initUI()
{
    const CUICtrl sliders[] = {
        makeSlider(LEFT_TIME, "Left Time", "ms", "m_fLeftTime_ms", &m_fLeftTime_ms, 1.0f, MAX_TIME_MS,
                   375.0f),
        makeSlider(RIGHT_TIME, "Right Time", "ms", "m_fRightTime_ms", &m_fRightTime_ms, 1.0f, MAX_TIME_MS,
                   250.0f),
        makeSlider(FEEDBACK, "Feedback", "%", "m_fFeedback_pct", &m_fFeedback_pct, 0.0f, 95.0f, 45.0f),
        makeSlider(MIX, "Mix", "%", "m_fMix_pct", &m_fMix_pct, 0.0f, 100.0f, 35.0f),
        makeSlider(DUCK_THRESHOLD, "Duck Threshold", "dB", "m_fDuckThreshold_dB", &m_fDuckThreshold_dB,
                   -60.0f, 0.0f, -30.0f),
        makeSlider(DUCK_DEPTH, "Duck Depth", "dB", "m_fDuckDepth_dB", &m_fDuckDepth_dB, 0.0f, MAX_DUCK_DB,
                   18.0f),
        makeSlider(DUCK_RELEASE, "Duck Release", "ms", "m_fDuckRelease_ms", &m_fDuckRelease_ms, 10.0f,
                   2000.0f, 200.0f),
    };
    for (const CUICtrl& slider : sliders)
        m_UIControlList.append(slider);

    CUICtrl meter;
    meter.uControlType = FILTER_CONTROL_LED_METER;
    meter.uControlId = DUCK_METER;
    meter.cControlName = "Ducking";
    meter.cMeterVariableName = "m_fDuckMeter";
    meter.m_pCurrentMeterValue = &m_fDuckMeter;
    meter.bUseMeter = true;
    meter.bUpsideDownMeter = true;
    meter.uDetectorMode = DETECT_MODE_NONE;
    m_UIControlList.append(meter);
    return true;
}

bool CStereoDelay::prepareForPlay()
{
    const auto uMaxDelay = static_cast<UINT>(std::ceil(millisecondsToSamples(MAX_TIME_MS, m_nSampleRate)));
    for (CDelayLine& line : m_lines)
        if (!line.prepare(uMaxDelay))
            sendStatusWndText("StereoDelay: no memory for the delay lines; there will be no echoes.");

    m_sidechainLevel.prepare(m_nSampleRate);
    m_fSidechain = 0.0f;
    userInterfaceChange(LEFT_TIME);
    takeSettings();
    for (CParameterSmoother* pSmoother : {&m_delays[LEFT], &m_delays[RIGHT], &m_feedback, &m_mix}) {
        pSmoother->setTime(SMOOTHING_MS);
        pSmoother->prepare(m_nSampleRate); // and jumps to the target
    }
    m_delays[LEFT].setTime(TIME_GLIDE_MS);
    m_delays[RIGHT].setTime(TIME_GLIDE_MS);
    m_fDuckMeter = 0.0f;
    return true;
}

// Runs on the main thread, perhaps in the middle of a process call: it hands the settings over, and the
// audio thread takes them up at its next frame.
bool CStereoDelay::userInterfaceChange(int)
{
    m_settings.fTime_ms[LEFT] = m_fLeftTime_ms;
    m_settings.fTime_ms[RIGHT] = m_fRightTime_ms;
    m_settings.fFeedback = std::clamp(m_fFeedback_pct / 100.0f, 0.0f, 0.95f); // 1.0 would never die away
    m_settings.fMix = m_fMix_pct / 100.0f;
    m_settings.fDuckThreshold_dB = m_fDuckThreshold_dB;
    m_settings.fDuckDepth_dB = m_fDuckDepth_dB;
    m_settings.fDuckRelease_ms = m_fDuckRelease_ms;
    m_bNewSettings.store(true, std::memory_order_release);
    return true;
}

void CStereoDelay::takeSettings()
{
    m_bNewSettings.exchange(false, std::memory_order_acquire);
    for (int c = 0; c < CHANNELS; ++c)
        m_delays[c].setTarget(millisecondsToSamples(m_settings.fTime_ms[c], m_nSampleRate));
    m_feedback.setTarget(m_settings.fFeedback);
    m_mix.setTarget(m_settings.fMix);
    m_dDuckThreshold_dB = m_settings.fDuckThreshold_dB;
    m_dDuckDepth_dB = m_settings.fDuckDepth_dB;
    m_sidechainLevel.set(DETECT_MODE_PEAK, DUCK_ATTACK_MS, m_settings.fDuckRelease_ms);
}

// Comes just ahead of each frame, if there is a sidechain at all.
bool CStereoDelay::processAuxInputBus(auxInputData* pAuxInputData)
{
    m_fSidechain = 0.0f;
    if (pAuxInputData->bInputEnabled && pAuxInputData->pFramePtr)
        for (UINT c = 0; c < pAuxInputData->uNumChannels; ++c)
            m_fSidechain = std::max(m_fSidechain, std::fabs(pAuxInputData->pFramePtr[c]));
    return true;
}

// The echoes' gain, linear: dB for dB below what the sidechain has above the threshold.
double CStereoDelay::nextDucking()
{
    const float fLevel = m_sidechainLevel.process(m_fSidechain);
    m_fSidechain = 0.0f; // a frame counts once, also when no other follows it
    const double dDuck_dB = limitValue(linearToDB(fLevel) - m_dDuckThreshold_dB, 0.0, m_dDuckDepth_dB);
    std::atomic_ref(m_fDuckMeter)
        .store(static_cast<float>(dDuck_dB / MAX_DUCK_DB), std::memory_order_relaxed);
    return dDuck_dB > 0.0 ? dBToLinear(-dDuck_dB) : 1.0;
}

bool CStereoDelay::processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                                     UINT uNumOutputChannels)
{
    if (m_bNewSettings.load(std::memory_order_relaxed))
        takeSettings();

    const double dFeedback = m_feedback.next();
    const double dMix = m_mix.next();
    const double dWetGain = dMix * nextDucking();

    // Both lines run in any case; a mono input feeds both, and a mono output takes the left one.
    for (UINT c = 0; c < CHANNELS; ++c) {
        const float fInput = pInputBuffer[std::min(c, uNumInputChannels - 1)];
        const float fEcho = m_lines[c].readCubic(m_delays[c].next());
        m_lines[c].write(static_cast<float>(fInput + dFeedback * fEcho));
        if (c < uNumOutputChannels)
            pOutputBuffer[c] = static_cast<float>((1.0 - dMix) * fInput + dWetGain * fEcho);
    }
    return true;
}

VELMORA_EXPORT_PLUGIN(CStereoDelay)
