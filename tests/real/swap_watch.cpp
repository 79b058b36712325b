#include "real/swap_watch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velmora::test {

namespace {

constexpr float TOLERANCE = 1e-6F; // of a fade; compilers may round its formula differently

// -1 if it is none.
int signatureOf(float fSample)
{
    for (int i = 0; i < CSwapWatch::SIGNATURES; ++i)
        if (fSample == CSwapWatch::signature(i))
            return i;
    return -1;
}

bool isConstant(std::span<const float> buffer)
{
    return std::ranges::all_of(buffer, [&](float fSample) { return fSample == buffer.front(); });
}

// Whether the buffer is the part of a fade that begins at frame uPosition of uLength.
bool isFadeTo(std::span<const float> buffer, float fOld, float fNew, unsigned uPosition, unsigned uLength)
{
    for (const float fSample : buffer) {
        const float fPart =
            std::min(1.0F, static_cast<float>(uPosition++) * (1.0F / static_cast<float>(uLength)));
        const float fExpected = fOld + fPart * (fNew - fOld);
        if (std::abs(fSample - fExpected) > (uPosition > uLength ? 0.0F : TOLERANCE))
            return false;
    }
    return true;
}

} // namespace

void CSwapWatch::add(std::span<const float> buffer)
{
    const std::uint64_t uBuffer = m_counts.m_uBuffers++;
    if (isConstant(buffer) && buffer.front() == 0.0F) {
        ++m_counts.m_uSilent;
        return;
    }
    const int nSignature = isConstant(buffer) ? signatureOf(buffer.front()) : -1;
    if (m_uPosition == 0 && nSignature >= 0 && (nSignature == m_nLast || m_nLast < 0 || m_uFadeFrames == 0)) {
        if (nSignature != m_nLast && m_nLast >= 0) {
            ++m_counts.m_uSteps;
            m_counts.m_uBegan = uBuffer;
        }
        ++m_counts.m_uWhole;
        m_counts.m_nCurrent = m_nLast = nSignature;
        return;
    }
    if (m_nLast < 0 || m_uFadeFrames == 0) {
        tear(buffer);
        return;
    }
    if (m_uPosition == 0) {
        m_candidates.fill(true);
        m_candidates[static_cast<std::size_t>(m_nLast)] = false;
        m_counts.m_uBegan = uBuffer;
        m_counts.m_nCurrent = -1;
    }
    advanceFade(buffer);
}

void CSwapWatch::advanceFade(std::span<const float> buffer)
{
    int nTarget = -1;
    for (int i = 0; i < SIGNATURES; ++i) {
        bool& bCandidate = m_candidates[static_cast<std::size_t>(i)];
        bCandidate =
            bCandidate && isFadeTo(buffer, signature(m_nLast), signature(i), m_uPosition, m_uFadeFrames);
        if (bCandidate)
            nTarget = i;
    }
    if (nTarget < 0) {
        tear(buffer);
        return;
    }
    ++m_counts.m_uFading;
    m_uPosition += static_cast<unsigned>(buffer.size());
    if (m_uPosition < m_uFadeFrames)
        return;
    ++m_counts.m_uFades;
    m_counts.m_nCurrent = m_nLast = nTarget;
    m_uPosition = 0;
}

// Goes on from whatever plays next.
void CSwapWatch::tear(std::span<const float> buffer)
{
    if (m_counts.m_uTorn++ == 0)
        m_counts.m_uFirstTorn = m_counts.m_uBuffers - 1;
    m_uPosition = 0;
    m_counts.m_nCurrent = m_nLast = signatureOf(buffer.back());
}

} // namespace velmora::test
