#include "dsp/modules/smoothing_filter.h"

#include "host/control_law.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr CModuleParameter PARAMETERS[] = {{"Samples", "", {5.0F, 0.0F, 1024.0F}, {5.0F, 0.0F, 1024.0F}}};

constexpr std::size_t SIDE_BY_SIDE = 16; // sums that are made at once, each in its own order

// Each output is the mean of the uLength samples up to its input, which stands at the same place. pOut is
// written in whole groups.
void smooth(const float* pIn, float* pOut, std::size_t uCount, std::size_t uLength)
{
    const float* pOldest = pIn + 1 - uLength;
    for (std::size_t uDone = 0; uDone < uCount; uDone += SIDE_BY_SIDE, pOldest += SIDE_BY_SIDE) {
        float sums[SIDE_BY_SIDE] = {};
        for (std::size_t uSample = 0; uSample < uLength; ++uSample)
            for (std::size_t u = 0; u < SIDE_BY_SIDE; ++u)
                sums[u] += pOldest[uSample + u];
        for (std::size_t u = 0; u < SIDE_BY_SIDE; ++u)
            pOut[uDone + u] = sums[u] / static_cast<float>(uLength);
    }
}

} // namespace

CSmoothingFilter::CSmoothingFilter() : CModuleFilter("SmoothingFilter", 0, PARAMETERS, {})
{
    CSmoothingFilter::createControls();
}

bool CSmoothingFilter::reset()
{
    m_lines = {};
    return m_trace.reset();
}

bool CSmoothingFilter::processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return process(pIn, pOut, uChannels, uSamples, FULL_SCALE);
}

bool CSmoothingFilter::processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return process(pIn, pOut, uChannels, uSamples, 1.0F);
}

bool CSmoothingFilter::process(const float* pIn, float* pOut, UINT uChannels, UINT uSamples, float fFullScale)
{
    if (uChannels != 1 && uChannels != 2)
        return false;
    const auto uLength = static_cast<std::size_t>(
        std::clamp(truncatedToInt(parameter(SAMPLES)), 0, static_cast<int>(MAX_SAMPLES)));
    const std::size_t uFrames = uSamples / uChannels;
    for (std::size_t uDone = 0; uDone < uFrames; uDone += BLOCK) {
        const std::size_t uCount = std::min(BLOCK, uFrames - uDone);
        const std::size_t uOffset = uDone * uChannels;
        for (std::size_t c = 0; c < uChannels; ++c)
            processBlock(c, pIn + uOffset + c, pOut + uOffset + c, uChannels, uCount, uLength, fFullScale);
    }
    return true;
}

// Up to BLOCK samples of one channel, of which pIn and pOut hold every uStride-th.
void CSmoothingFilter::processBlock(std::size_t uChannel, const float* pIn, float* pOut, std::size_t uStride,
                                    std::size_t uCount, std::size_t uLength, float fFullScale)
{
    float* const pLine = m_lines[uChannel].data();
    float* const pNew = pLine + MAX_SAMPLES;
    for (std::size_t u = 0; u < uCount; ++u)
        pNew[u] = pIn[u * uStride] / fFullScale;
    std::array<float, BLOCK> means;
    if (uLength > 0)
        smooth(pNew, means.data(), uCount, uLength);
    else
        std::copy_n(pNew, uCount, means.begin());
    for (std::size_t u = 0; u < uCount; ++u)
        pOut[u * uStride] = means[u] * fFullScale;
    for (std::size_t u = 0; uChannel == 0 && u < uCount && !m_trace.isFull(); ++u)
        m_trace.add(pNew[u], means[u]);
    std::copy_n(pLine + uCount, MAX_SAMPLES, pLine);
}

} // namespace velmora
