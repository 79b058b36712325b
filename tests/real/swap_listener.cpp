#include "real/swap_listener.h"

#include <chrono>
#include <thread>

namespace velmora::test {

CSwapListener::CSwapListener(unsigned uFadeFrames, const std::string& sName)
    : CJackClient(sName, EDirection::records, 2), m_watch(uFadeFrames)
{
    activate();
}

CSwapListener::~CSwapListener()
{
    deactivate();
}

const CSwapListener::CHeard& CSwapListener::heard()
{
    if (const CHeard* pNew = m_exchange.latest())
        m_latest = *pNew;
    return m_latest;
}

bool CSwapListener::waitUntil(const std::function<bool(const CHeard&)>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition(heard())) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return true;
}

void CSwapListener::process(std::span<const std::span<float>> channels)
{
    m_watch.add(channels[0]);
    m_now.m_swaps = m_watch.counts();
    const float fRight = channels[1].back();
    if (fRight != m_now.m_fRight) {
        m_now.m_fRight = fRight;
        m_now.m_uRightChanged = m_now.m_swaps.m_uBuffers - 1;
    }
    m_exchange.slot() = m_now;
    m_exchange.publish();
}

} // namespace velmora::test
