#include "audio/level_meters.h"

namespace velmora {

namespace {

constexpr float METER_ATTACK_MS = 0.0F;
constexpr float METER_RELEASE_MS = 100.0F;

} // namespace

void CLevelMeters::prepare(double dSampleRate)
{
    for (CLevelDetector& detector : m_detectors)
        detector.init(static_cast<float>(dSampleRate), METER_ATTACK_MS, METER_RELEASE_MS, true,
                      CLevelDetector::PEAK, true);
    clear();
}

void CLevelMeters::clear() noexcept
{
    for (auto& level : m_levels)
        level.store(0.0F, std::memory_order_relaxed);
}

void CLevelMeters::addFrames(EMeter eLeft, const float* pInterleaved, std::size_t uFrames) noexcept
{
    float fLeft = 0.0F;
    float fRight = 0.0F;
    CLevelDetector::detectStereoBlock(m_detectors[eLeft], m_detectors[eLeft + 1U], pInterleaved,
                                      static_cast<int>(uFrames), fLeft, fRight);
    show(eLeft, fLeft, fRight);
}

void CLevelMeters::addMono(EMeter eLeft, const float* pSamples, std::size_t uCount) noexcept
{
    const int nCount = static_cast<int>(uCount);
    show(eLeft, m_detectors[eLeft].detectBlock(pSamples, 1, nCount),
         m_detectors[eLeft + 1U].detectBlock(pSamples, 1, nCount));
}

void CLevelMeters::show(EMeter eLeft, float fLeft, float fRight) noexcept
{
    m_levels[eLeft].store(fLeft, std::memory_order_relaxed);
    m_levels[eLeft + 1U].store(fRight, std::memory_order_relaxed);
}

} // namespace velmora
