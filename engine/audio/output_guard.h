#pragma once

#include <span>

namespace velmora {

class CAudioNotices;

// The last step of a stream's buffer, ahead of the device: a buffer that holds NaN or infinity becomes
// silence, and samples beyond LIMIT are held to it. Each is told once until rearm(). A clean buffer passes
// bit for bit, at the cost of one look at it. [audio]
class COutputGuard
{
  public:
    static constexpr float LIMIT = 15.8489319F; // +24 dBFS

    explicit COutputGuard(CAudioNotices& notices) : m_notices(notices) {}

    // Another filter or stream begins: the next fault is told again. [main, run gate closed or no stream
    // running]
    void rearm() noexcept { m_bNotFiniteTold = m_bLimitedTold = false; }

    // bLimit says whether samples are held to LIMIT.
    void apply(std::span<float> out, bool bLimit) noexcept;

    // The largest size of a sample; NaN or infinity if any sample is.
    [[nodiscard]] static float largestSize(std::span<const float> samples) noexcept;

  private:
    CAudioNotices& m_notices;
    bool m_bNotFiniteTold = false;
    bool m_bLimitedTold = false;
};

} // namespace velmora
