#include "real/jack_source.h"

#include <utility>

namespace velmora::test {

CJackSource::CJackSource(std::vector<float> signal, const std::string& sName, int nChannels)
    : CJackClient(sName, EDirection::plays, nChannels), m_signal(std::move(signal))
{
    activate();
}

CJackSource::~CJackSource()
{
    deactivate();
}

void CJackSource::process(std::span<const std::span<float>> channels)
{
    for (std::size_t i = 0; i < channels.front().size(); ++i)
        for (const std::span<float> channel : channels) {
            channel[i] = m_signal[m_uNext];
            m_uNext = (m_uNext + 1) % m_signal.size();
        }
}

} // namespace velmora::test
