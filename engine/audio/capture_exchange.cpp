#include "audio/capture_exchange.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr float FULL_SCALE = 32768.0F;

void copyScaled(const float* pFrom, float* __restrict pTo, std::size_t uCount) noexcept
{
    for (std::size_t i = 0; i < uCount; ++i)
        pTo[i] = std::clamp(FULL_SCALE * pFrom[i], -FULL_SCALE, FULL_SCALE);
}

} // namespace

bool CCaptureExchange::add(const float* pIn, const float* pOut, std::size_t uSamples, int nChannels,
                           bool bBypass, bool bOutputIsInput) noexcept
{
    constexpr std::size_t END = CCaptureFrame::SAMPLES;
    if (m_uPosition > END)
        return false;
    CCaptureFrame& frame = m_frames.slot();
    const std::size_t uFitting = std::min(uSamples, END - m_uPosition);
    copyScaled(pIn, frame.m_left.data() + m_uPosition, uFitting);
    copyScaled(pOut, frame.m_right.data() + m_uPosition, uFitting);
    m_uPosition += uSamples;
    if (m_uPosition != END)
        return false;
    m_uPosition = 0;
    if (bOutputIsInput)
        frame.m_right = frame.m_left;
    frame.m_nChannels = nChannels;
    frame.m_bBypass = bBypass;
    m_frames.publish();
    return true;
}

} // namespace velmora
