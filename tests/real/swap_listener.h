#pragma once

#include "base/latest_value.h"
#include "real/jack_client.h"
#include "real/swap_watch.h"

#include <functional>

namespace velmora::test {

// An output device that judges what is played into its left channel, and notes when its right one changes.
// It keeps nothing, and so can listen for any time.
class CSwapListener : public CJackClient
{
  public:
    explicit CSwapListener(unsigned uFadeFrames, const std::string& sName = "listener");
    ~CSwapListener() override;

    struct CHeard
    {
        CSwapWatch::CCounts m_swaps;
        float m_fRight = 0.0F;             // the last sample of the right channel
        std::uint64_t m_uRightChanged = 0; // the buffer that first held it
    };

    // What was heard up to the last buffer. [one thread]
    [[nodiscard]] const CHeard& heard();

    // Waits until what was heard is so, for half a minute at most; false if it never was.
    [[nodiscard]] bool waitUntil(const std::function<bool(const CHeard&)>& condition);

  private:
    void process(std::span<const std::span<float>> channels) override;

    CSwapWatch m_watch;
    CHeard m_now;    // [audio]
    CHeard m_latest; // [the one thread that asks]
    CLatestValue<CHeard> m_exchange;
};

} // namespace velmora::test
