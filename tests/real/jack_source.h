#pragma once

#include "real/jack_client.h"

#include <vector>

namespace velmora::test {

// An input device that plays a given signal over and over.
class CJackSource : public CJackClient
{
  public:
    // The signal is interleaved and not empty.
    explicit CJackSource(std::vector<float> signal, const std::string& sName = "source", int nChannels = 2);
    ~CJackSource() override;

  private:
    void process(std::span<const std::span<float>> channels) override;

    std::vector<float> m_signal;
    std::size_t m_uNext = 0;
};

} // namespace velmora::test
