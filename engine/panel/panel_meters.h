#pragma once

#include "audio/level_meters.h"
#include "host/dsp_filter.h"

#include <array>
#include <cstddef>
#include <functional>

namespace velmora {

// The levels of all meters on the panel: the four fixed ones, then the ten LED meter slots. [main]
class CPanelMeters
{
  public:
    static constexpr std::size_t FIXED = 4; // input left and right, output left and right
    static constexpr std::size_t SLOTS = 10;
    static constexpr UINT FIRST_SLOT = 50;            // id of the first LED meter
    using CLevels = std::array<float, FIXED + SLOTS>; // 0.0 to 1.0

    // level answers what the audio side has stored for a meter. The panel's timer calls tick() so many times
    // a second; the meters' attack and release times go by that.
    CPanelMeters(std::function<float(EMeter)> level, float fTicksPerSecond);

    // The filter whose meters are shown; not owned, null for none. Its detectors begin at 0.
    void setFilter(CDSPFilter* pFilter);

    // Reads every meter. A slot without a meter is dark.
    const CLevels& tick();

    [[nodiscard]] const CLevels& levels() const { return m_levels; }

  private:
    std::function<float(EMeter)> m_level;
    float m_fTicksPerSecond;
    CDSPFilter* m_pFilter = nullptr;
    CLevels m_levels{};
};

} // namespace velmora
