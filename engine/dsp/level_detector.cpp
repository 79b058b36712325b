#include "dsp/level_detector.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numbers>
#ifdef __SSE__
#include <xmmintrin.h>
#endif

namespace velmora {

namespace {

constexpr double ANALOG_TC = -1.0023935;
constexpr double DIGITAL_TC = -4.6051702;
constexpr float FLOOR_DB = -60.0f;

// Below this a sample counts as silence in the segmented form. It lies 540 dB below the meter's floor
// and keeps its products with the coefficients normal.
constexpr float SILENCE = 1e-30f;

// The segmented form works on chunks of LANES segments of up to STEPS samples. A lane is one segment of
// one channel; a vector holds four lanes.
using CVector = float __attribute__((vector_size(16)));
constexpr int VECTOR_LANES = 4;
constexpr int VECTORS = 2;
constexpr int LANES = VECTORS * VECTOR_LANES;
constexpr int STEPS = 32;

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

// Both answer the second value if one is not a number. The compiler does not find the one instruction for
// them where a value is a constant.
inline CVector greater(CVector first, CVector second)
{
#ifdef __SSE__
    return _mm_max_ps(first, second);
#else
    return first > second ? first : second;
#endif
}

inline CVector lesser(CVector first, CVector second)
{
#ifdef __SSE__
    return _mm_min_ps(first, second);
#else
    return first < second ? first : second;
#endif
}

// Rectified and held to SILENCE..1; what is not a number is silence.
template <bool SQUARE>
inline CVector limited(CVector value)
{
    using CBits = std::int32_t __attribute__((vector_size(16)));
    value = SQUARE ? value * value : std::bit_cast<CVector>(std::bit_cast<CBits>(value) & INT32_MAX);
    return lesser(greater(value, CVector{} + SILENCE), CVector{} + 1.0f);
}

// The steps of CHANNELS detectors whose attack coefficient is 0, by segments.
template <int CHANNELS, bool SQUARE>
class CSegmentedFollower
{
  public:
    explicit CSegmentedFollower(float fRelease) : m_fRelease(fRelease) {}

    // Moves the envelopes over nFrames frames of CHANNELS samples side by side; frames begin nStride
    // samples apart.
    void run(const float* pSamples, std::ptrdiff_t nStride, int nFrames, float (&envelopes)[CHANNELS]) const
    {
        while (nFrames >= SEGMENTS) {
            const int nSteps = std::min(STEPS, nFrames / SEGMENTS);
            runChunk(pSamples, nStride, nSteps, envelopes);
            pSamples += nSteps * SEGMENTS * nStride;
            nFrames -= nSteps * SEGMENTS;
        }
        for (; nFrames > 0; --nFrames, pSamples += nStride) {
            for (int c = 0; c < CHANNELS; ++c)
                envelopes[c] = moved(envelopes[c], pSamples[c], SQUARE, 0.0f, m_fRelease);
        }
    }

  private:
    static constexpr int SEGMENTS = LANES / CHANNELS;

    // The same sample of four lanes, whose segments begin nDistance samples apart.
    [[nodiscard]] static CVector gathered(const float* p, std::ptrdiff_t nDistance)
    {
        if constexpr (CHANNELS == 1) {
            return CVector{p[0], p[nDistance], p[2 * nDistance], p[3 * nDistance]};
        } else {
            using CFrames = double __attribute__((vector_size(16))); // two floats in each half
            double first = 0.0;
            double second = 0.0;
            std::memcpy(&first, p, sizeof first);
            std::memcpy(&second, p + nDistance, sizeof second);
            return std::bit_cast<CVector>(CFrames{first, second});
        }
    }

    void runChunk(const float* pSamples, std::ptrdiff_t nStride, int nSteps,
                  float (&envelopes)[CHANNELS]) const
    {
        CVector highest[VECTORS] = {}; // A
        CVector sum[VECTORS] = {};     // B
        double dWeight = 1.0;          // r^(k - 1 - j), in the end r^k
        const std::ptrdiff_t nSegment = nSteps * nStride;
        for (std::ptrdiff_t nStep = nSegment - nStride; nStep >= 0; nStep -= nStride) {
            const auto fWeight = static_cast<float>(dWeight);
            const auto fInputWeight = static_cast<float>(dWeight * (1.0f - m_fRelease));
            for (int v = 0; v < VECTORS; ++v) {
                const CVector value =
                    limited<SQUARE>(gathered(pSamples + nStep + v * nSegment, VECTORS * nSegment));
                highest[v] = greater(fWeight * value + sum[v], highest[v]);
                sum[v] += fInputWeight * value;
            }
            dWeight *= m_fRelease;
        }
        // Lane l of vector v is segment v of group l: the groups are joined side by side, then in turn.
        auto fPower = static_cast<float>(dWeight);
        for (int v = 1; v < VECTORS; ++v) {
            highest[0] = greater(sum[v] + fPower * highest[0], highest[v]);
            sum[0] = sum[v] + fPower * sum[0];
            dWeight *= fPower;
        }
        fPower = static_cast<float>(dWeight);
        for (int l = 0; l < VECTOR_LANES; ++l) {
            float& fEnvelope = envelopes[l % CHANNELS];
            fEnvelope = std::max(sum[0][l] + fPower * fEnvelope, highest[0][l]);
        }
        for (float& fEnvelope : envelopes)
            fEnvelope = fEnvelope > 2.0f * SILENCE ? std::min(fEnvelope, 1.0f) : 0.0f;
    }

    float m_fRelease;
};

template <int CHANNELS>
void runSegmented(bool bSquare, float fRelease, const float* pSamples, int nStride, int nFrames,
                  float (&envelopes)[CHANNELS])
{
    if (bSquare)
        CSegmentedFollower<CHANNELS, true>(fRelease).run(pSamples, nStride, nFrames, envelopes);
    else
        CSegmentedFollower<CHANNELS, false>(fRelease).run(pSamples, nStride, nFrames, envelopes);
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
        float envelopes[] = {m_fEnvelope};
        runSegmented(isSquaring(m_uDetectMode), m_fReleaseCoeff, pSamples, nStride, nCount, envelopes);
        m_fEnvelope = envelopes[0];
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
        runSegmented(bSquare, left.m_fReleaseCoeff, pInterleaved, 2, nFrames, envelopes);
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
