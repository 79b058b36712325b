// The one algorithm behind segmented_follower.h, for vectors of VELMORA_VECTOR_FLOATS floats. It is included
// once for each kind of vector, by a source that is compiled for it; so nothing here may be shared with
// other sources, and everything is local to the one that includes it.

#include "dsp/segmented_follower.h"

#include <cstddef>
#include <cstdint>
#include <immintrin.h>

namespace velmora {

namespace {

// A lane is one segment of one channel.
constexpr int VECTOR_LANES = VELMORA_VECTOR_FLOATS;
constexpr int VECTORS = VECTOR_LANES == 8 ? 4 : 2;
constexpr int LANES = VECTORS * VECTOR_LANES;
constexpr int STEPS = 32;

using CVector = float __attribute__((vector_size(VECTOR_LANES * sizeof(float))));
using CBits = std::int32_t __attribute__((vector_size(VECTOR_LANES * sizeof(float))));
using CFrames = double __attribute__((vector_size(VECTOR_LANES * sizeof(float)))); // two floats in each

// Below this a sample counts as silence. It lies 540 dB below the meter's floor and keeps its products
// with the coefficients normal.
constexpr float SILENCE = 1e-30f;

// Both answer the second value if one is not a number.
inline CVector greater(CVector first, CVector second)
{
#if VELMORA_VECTOR_FLOATS == 8
    return _mm256_max_ps(first, second);
#else
    return _mm_max_ps(first, second);
#endif
}

inline CVector lesser(CVector first, CVector second)
{
#if VELMORA_VECTOR_FLOATS == 8
    return _mm256_min_ps(first, second);
#else
    return _mm_min_ps(first, second);
#endif
}

// Rectified and held to SILENCE..1; what is not a number is silence.
template <bool SQUARE>
inline CVector limited(CVector value)
{
    value = SQUARE ? value * value : reinterpret_cast<CVector>(reinterpret_cast<CBits>(value) & INT32_MAX);
    return lesser(greater(value, CVector{} + SILENCE), CVector{} + 1.0f);
}

// The same sample of the lanes of one vector, whose segments begin nDistance samples apart.
template <int CHANNELS>
inline CVector gathered(const float* p, std::ptrdiff_t nDistance)
{
    if constexpr (CHANNELS == 1) {
        CVector samples{};
        for (int l = 0; l < VECTOR_LANES; ++l)
            samples[l] = p[l * nDistance];
        return samples;
    } else {
        CFrames frames{};
        for (int l = 0; l < VECTOR_LANES / 2; ++l) {
            double dFrame;
            __builtin_memcpy(&dFrame, p + l * nDistance, sizeof dFrame);
            frames[l] = dFrame;
        }
        return reinterpret_cast<CVector>(frames);
    }
}

// One chunk: LANES / CHANNELS segments of nSteps frames each, taken from their ends backwards.
template <int CHANNELS, bool SQUARE>
inline void followChunk(const CSegmentedSteps& steps, const float* pSamples, int nSteps, float* pEnvelopes)
{
    CVector highest[VECTORS] = {}; // A
    CVector sum[VECTORS] = {};     // B
    double dWeight = 1.0;          // r^(k - 1 - j), in the end r^k
    const std::ptrdiff_t nSegment = nSteps * steps.m_nStride;
    for (std::ptrdiff_t n = nSegment - steps.m_nStride; n >= 0; n -= steps.m_nStride) {
        const auto fWeight = static_cast<float>(dWeight);
        const auto fInputWeight = static_cast<float>(dWeight * (1.0f - steps.m_fRelease));
        for (int v = 0; v < VECTORS; ++v) {
            const CVector value =
                limited<SQUARE>(gathered<CHANNELS>(pSamples + n + v * nSegment, VECTORS * nSegment));
            highest[v] = greater(fWeight * value + sum[v], highest[v]);
            sum[v] += fInputWeight * value;
        }
        dWeight *= steps.m_fRelease;
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
        float& fEnvelope = pEnvelopes[l % CHANNELS];
        const float fDecayed = sum[0][l] + fPower * fEnvelope;
        fEnvelope = fDecayed > highest[0][l] ? fDecayed : highest[0][l];
    }
    for (int c = 0; c < CHANNELS; ++c) {
        const float fHeld = pEnvelopes[c] < 1.0f ? pEnvelopes[c] : 1.0f;
        pEnvelopes[c] = fHeld > 2.0f * SILENCE ? fHeld : 0.0f;
    }
}

template <int CHANNELS, bool SQUARE>
inline int followChunks(const CSegmentedSteps& steps, const float* pSamples, int nFrames, float* pEnvelopes)
{
    constexpr int SEGMENTS = LANES / CHANNELS;
    int nDone = 0;
    while (nFrames - nDone >= SEGMENTS) {
        const int nMost = (nFrames - nDone) / SEGMENTS;
        const int nSteps = nMost < STEPS ? nMost : STEPS;
        followChunk<CHANNELS, SQUARE>(steps, pSamples + nDone * steps.m_nStride, nSteps, pEnvelopes);
        nDone += nSteps * SEGMENTS;
    }
    return nDone;
}

inline int followVectors(const CSegmentedSteps& steps, const float* pSamples, int nFrames, float* pEnvelopes)
{
    if (steps.m_nChannels == 1)
        return steps.m_bSquare ? followChunks<1, true>(steps, pSamples, nFrames, pEnvelopes)
                               : followChunks<1, false>(steps, pSamples, nFrames, pEnvelopes);
    return steps.m_bSquare ? followChunks<2, true>(steps, pSamples, nFrames, pEnvelopes)
                           : followChunks<2, false>(steps, pSamples, nFrames, pEnvelopes);
}

} // namespace

} // namespace velmora
