#include "Gain.h"

#include <algorithm>

namespace {

const double SMOOTHING_MS = 20.0;   // time constant of a gain change
const double METER_FALL_MS = 300.0; // time constant with which a meter falls
const UINT METER_FRAMES = 64;       // the meters are worked out once in so many frames
const double METER_RANGE_DB = 60.0;

} // namespace

CGain::CGain()
{
    m_PlugInName = "Gain";
    CGain::initUI();
}

bool CGain::initUI()
{
    CUICtrl gain;
    gain.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
    gain.uControlId = GAIN;
    gain.cControlName = "Gain";
    gain.cControlUnits = "dB";
    gain.cVariableName = "m_fGain_dB";
    gain.uUserDataType = floatData;
    gain.m_pUserCookedFloatData = &m_fGain_dB;
    gain.fUserDisplayDataLoLimit = -60.0f;
    gain.fUserDisplayDataHiLimit = 24.0f;
    gain.fInitUserFloatValue = 0.0f;
    m_UIControlList.append(gain);

    CUICtrl mute;
    mute.uControlType = FILTER_CONTROL_RADIO_SWITCH_VARIABLE;
    mute.uControlId = MUTE;
    mute.cControlName = "Mute";
    mute.cVariableName = "m_uMute";
    mute.cEnumeratedList = "OFF,ON";
    mute.uUserDataType = UINTData;
    mute.m_pUserCookedUINTData = &m_uMute;
    mute.fUserDisplayDataLoLimit = OFF;
    mute.fUserDisplayDataHiLimit = ON;
    mute.fInitUserUINTValue = OFF;
    m_UIControlList.append(mute);

    appendMeter(LEFT_METER, "Left", "m_fLeftMeter", &m_fLeftMeter);
    appendMeter(RIGHT_METER, "Right", "m_fRightMeter", &m_fRightMeter);
    return true;
}

// A meter that shows its variable as it is: the level is followed and turned into dB here.
void CGain::appendMeter(UINT uId, const char* pName, const char* pVariableName, float* pVariable)
{
    CUICtrl meter;
    meter.uControlType = FILTER_CONTROL_LED_METER;
    meter.uControlId = uId;
    meter.cControlName = pName;
    meter.cMeterVariableName = pVariableName;
    meter.m_pCurrentMeterValue = pVariable;
    meter.bUseMeter = true;
    meter.uDetectorMode = DETECT_MODE_NONE;
    m_UIControlList.append(meter);
}

bool CGain::prepareForPlay()
{
    userInterfaceChange(GAIN);
    m_gain.prepare(m_nSampleRate);
    m_gain.setTime(SMOOTHING_MS);
    m_gain.jumpTo(m_dTargetGain);
    for (CEnvelopeDetector& level : m_levels) {
        level.prepare(m_nSampleRate);
        level.set(DETECT_MODE_PEAK, 0.0, METER_FALL_MS);
    }
    m_uFramesToMeter = METER_FRAMES;
    m_fLeftMeter = m_fRightMeter = 0.0f;
    return true;
}

// Runs on the main thread. One number sums up both controls, and an atomic one can be handed over at
// any moment; the smoother on the other side keeps the change from being heard as a click.
bool CGain::userInterfaceChange(int)
{
    m_dTargetGain = m_uMute == ON ? 0.0 : dBToLinear(m_fGain_dB);
    return true;
}

bool CGain::processAudioFrame(float* pInputBuffer, float* pOutputBuffer, UINT uNumInputChannels,
                              UINT uNumOutputChannels)
{
    m_gain.setTarget(m_dTargetGain.load(std::memory_order_relaxed));
    const float fGain = static_cast<float>(m_gain.next());

    for (UINT c = 0; c < uNumOutputChannels; ++c)
        pOutputBuffer[c] = fGain * pInputBuffer[std::min(c, uNumInputChannels - 1)];

    updateMeters(pOutputBuffer, uNumOutputChannels);
    return true;
}

void CGain::updateMeters(const float* pFrame, UINT uNumChannels)
{
    const float fLeft = m_levels[0].process(pFrame[0]);
    const float fRight = m_levels[1].process(pFrame[uNumChannels - 1]);
    if (--m_uFramesToMeter > 0)
        return;

    // The panel reads these on another thread, so each is written in one piece.
    const auto show = [](float& fMeter, float fLevel) {
        const double dShown = limitValue(1.0 + linearToDB(fLevel) / METER_RANGE_DB, 0.0, 1.0);
        std::atomic_ref(fMeter).store(static_cast<float>(dShown), std::memory_order_relaxed);
    };
    show(m_fLeftMeter, fLeft);
    show(m_fRightMeter, fRight);
    m_uFramesToMeter = METER_FRAMES;
}

VELMORA_EXPORT_PLUGIN(CGain)
