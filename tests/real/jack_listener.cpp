#include "real/jack_listener.h"

#include <stdexcept>
#include <thread>

namespace velmora::test {

CJackListener::CJackListener(double dSeconds, const std::string& sName, int nChannels, int nSampleRate)
    : CJackClient(sName, EDirection::records, nChannels),
      m_samples(static_cast<std::size_t>(dSeconds * nSampleRate) * static_cast<std::size_t>(nChannels))
{
    activate();
}

CJackListener::~CJackListener()
{
    deactivate();
}

void CJackListener::restart()
{
    m_bRestart = true;
    while (m_bRestart)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

std::vector<float> CJackListener::recorded() const
{
    if (m_bFull)
        throw std::runtime_error("the listener cannot keep as much as was played");
    const std::size_t uSamples = frames() * static_cast<std::size_t>(channels());
    return {m_samples.begin(), m_samples.begin() + static_cast<std::ptrdiff_t>(uSamples)};
}

bool CJackListener::waitForMore(std::size_t uFrames, std::chrono::seconds patience) const
{
    const std::size_t uTarget = frames() + uFrames;
    const auto end = std::chrono::steady_clock::now() + patience;
    while (frames() < uTarget) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

void CJackListener::process(std::span<const std::span<float>> channels)
{
    if (m_bRestart) {
        m_uFrames = 0;
        m_bFull = false;
        m_bRestart = false;
    }
    const std::size_t uFrames = channels.front().size();
    const std::size_t uBegin = m_uFrames.load(std::memory_order_relaxed);
    if ((uBegin + uFrames) * channels.size() > m_samples.size()) {
        m_bFull = true;
        return;
    }
    float* pTo = m_samples.data() + uBegin * channels.size();
    for (std::size_t i = 0; i < uFrames; ++i)
        for (const std::span<float> channel : channels)
            *pTo++ = channel[i];
    m_uFrames.store(uBegin + uFrames, std::memory_order_release);
}

} // namespace velmora::test
