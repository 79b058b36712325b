#pragma once

#include "pluginconstants.h"

#include <array>

namespace velmora {

// Two planes of samples, left and right, as processChannelBuffers() takes them. [audio]
class CPlanePair
{
  public:
    static constexpr UINT FRAMES = 8192; // in each plane

    void clear();

    // Takes over the first one or two channels of an interleaved buffer of up to FRAMES frames; one
    // channel fills the left plane.
    void split(const float* pIn, UINT uChannels, UINT uFrames);

    // Writes an interleaved buffer of one or two channels from one or two planes. Of two planes one
    // channel shows the left; one plane goes to both channels.
    void join(float* pOut, UINT uPlanes, UINT uChannels, UINT uFrames) const;

    // Pointers to both planes, valid until the next call; aimed anew each time, whatever became of the
    // last ones.
    [[nodiscard]] float** pointers();

  private:
    using CPlane = std::array<float, FRAMES>;

    std::array<CPlane, 2> m_planes{};
    std::array<float*, 2> m_pointers{};
};

} // namespace velmora
