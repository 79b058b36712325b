#include "dsp/level_detector.h"

#include "dsp/segmented_follower.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace velmora {

namespace {

constexpr double ANALOG_TC = -1.0023935;
constexpr double DIGITAL_TC = -4.6051702;
constexpr float FLOOR_DB = -60.0f;

bool isSquaring(unsigned uDetectMode)
{
    return uDetectMode == CLevelDetector::MEAN_SQUARE || uDetectMode == CLevelDetector::ROOT_MEAN_SQUARE;
}

// Never infinite; what is not a number is silence.
float rectified(float fInput, bool bSquare)
{
    const float fValue = bSquare ? fInput * fInput : std::abs(fInput);
    return fValue >= 0.0f ? std::min(fValue, FLT_MAX) : 0.0f;
}

// One step of the envelope.
float moved(float fEnvelope, float fInput, bool bSquare, float fAttack, float fRelease)
{
    const float fValue = rectified(fInput, bSquare);
    const float fCoefficient = fEnvelope < fValue ? fAttack : fRelease;
    fEnvelope = fCoefficient * (fEnvelope - fValue) + fValue;
    return fEnvelope >= FLT_MIN ? std::min(fEnvelope, 1.0f) : 0.0f;
}

// Whole segments at once, then what is left frame by frame.
void followFrames(const CSegmentedSteps& steps, const float* pSamples, int nFrames, float* pEnvelopes)
{
    for (int n = followSegments(steps, pSamples, nFrames, pEnvelopes); n < nFrames; ++n) {
        for (int c = 0; c < steps.m_nChannels; ++c)
            pEnvelopes[c] = moved(pEnvelopes[c], pSamples[n * steps.m_nStride + c], steps.m_bSquare, 0.0f,
                                  steps.m_fRelease);
    }
}

} // namespace

void CLevelDetector::init(float fSampleRate, float fAttackTime_mSec, float fReleaseTime_mSec, bool bAnalogTC,
                          unsigned uDetectMode, bool bLogDetect)
{
    m_fSampleRate = fSampleRate;
    m_bAnalogTC = bAnalogTC;
    m_uDetectMode = uDetectMode;
    m_bLogDetect = bLogDetect;
    setAttackTime(fAttackTime_mSec);
    setReleaseTime(fReleaseTime_mSec);
    reset();
}

void CLevelDetector::setAttackTime(float fAttackTime_mSec)
{
    m_fAttackTime_mSec = fAttackTime_mSec;
    m_fAttackCoeff = coefficient(fAttackTime_mSec);
}

void CLevelDetector::setReleaseTime(float fReleaseTime_mSec)
{
    m_fReleaseTime_mSec = fReleaseTime_mSec;
    m_fReleaseCoeff = coefficient(fReleaseTime_mSec);
}

void CLevelDetector::setTCModeAnalog(bool bAnalogTC)
{
    m_bAnalogTC = bAnalogTC;
    setAttackTime(m_fAttackTime_mSec);
    setReleaseTime(m_fReleaseTime_mSec);
}

void CLevelDetector::setBandPass(float fFrequency, float fQ)
{
    using std::numbers::pi;
    const double dB2 = std::exp(-2.0 * pi * (static_cast<double>(fFrequency) / fQ) / m_fSampleRate);
    const double dB1 = -4.0 * dB2 / (1.0 + dB2) * std::cos(2.0 * pi * fFrequency / m_fSampleRate);
    const double dA0 = 1.0 - std::sqrt(dB2);
    m_fA0 = static_cast<float>(dA0);
    m_fA1 = 0.0f;
    m_fA2 = static_cast<float>(-dA0);
    m_fB1 = static_cast<float>(dB1);
    m_fB2 = static_cast<float>(dB2);
}

void CLevelDetector::reset()
{
    m_fEnvelope = 0.0f;
    flushDelays();
}

float CLevelDetector::detect(float fInput)
{
    follow(fInput);
    return level();
}

float CLevelDetector::detectBlock(const float* pSamples, int nStride, int nCount)
{
    if (isSegmentable()) {
        followFrames({m_fReleaseCoeff, isSquaring(m_uDetectMode), 1, nStride}, pSamples, nCount,
                     &m_fEnvelope);
    } else {
        for (; nCount > 0; --nCount, pSamples += nStride)
            follow(*pSamples);
    }
    return level();
}

void CLevelDetector::detectStereoBlock(CLevelDetector& left, CLevelDetector& right, const float* pInterleaved,
                                       int nFrames, float& fLeft, float& fRight)
{
    const bool bSquare = isSquaring(left.m_uDetectMode);
    if (left.isSegmentable() && right.isSegmentable() && left.m_fReleaseCoeff == right.m_fReleaseCoeff &&
        bSquare == isSquaring(right.m_uDetectMode)) {
        float envelopes[] = {left.m_fEnvelope, right.m_fEnvelope};
        followFrames({left.m_fReleaseCoeff, bSquare, 2, 2}, pInterleaved, nFrames, envelopes);
        left.m_fEnvelope = envelopes[0];
        right.m_fEnvelope = envelopes[1];
        fLeft = left.level();
        fRight = right.level();
    } else {
        fLeft = left.detectBlock(pInterleaved, 2, nFrames);
        fRight = right.detectBlock(pInterleaved + 1, 2, nFrames);
    }
}

bool CLevelDetector::isSegmentable() const
{
    return !m_bUseFilter && m_fAttackCoeff == 0.0f && m_fReleaseCoeff >= 0.0f && m_fReleaseCoeff <= 1.0f;
}

float CLevelDetector::coefficient(float fTime_mSec) const
{
    const double dSamples = static_cast<double>(fTime_mSec) * m_fSampleRate * 0.001;
    const double dConstant = m_bAnalogTC ? ANALOG_TC : DIGITAL_TC;
    return dSamples == 0.0 ? 0.0f : static_cast<float>(std::exp(dConstant / dSamples));
}

void CLevelDetector::follow(float fInput)
{
    if (m_bUseFilter) {
        fInput = process(fInput);
        if (!std::isfinite(fInput)) {
            flushDelays();
            fInput = 0.0f;
        }
    }
    m_fEnvelope = moved(m_fEnvelope, fInput, isSquaring(m_uDetectMode), m_fAttackCoeff, m_fReleaseCoeff);
}

float CLevelDetector::level() const
{
    if (!m_bLogDetect)
        return m_fEnvelope;
    const float fOutput = m_uDetectMode == ROOT_MEAN_SQUARE ? std::sqrt(m_fEnvelope) : m_fEnvelope;
    if (fOutput <= 0.0f)
        return 0.0f;
    return (std::max(20.0f * std::log10(fOutput), FLOOR_DB) - FLOOR_DB) / -FLOOR_DB;
}

} // namespace velmora
