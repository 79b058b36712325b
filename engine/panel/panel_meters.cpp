#include "panel/panel_meters.h"

#include "host/control_walk.h"

#include <algorithm>

namespace velmora {

CPanelMeters::CPanelMeters(std::function<float(EMeter)> level, float fTicksPerSecond)
    : m_level(std::move(level)), m_fTicksPerSecond(fTicksPerSecond)
{
}

void CPanelMeters::setFilter(CDSPFilter* pFilter)
{
    m_pFilter = pFilter;
    m_levels.fill(0.0F);
    if (!m_pFilter)
        return;
    for (CDSPFilterControl* pControl : controlsOf(*m_pFilter))
        if (pControl->uControlType == FILTER_CONTROL_LED_METER)
            pControl->initMeter(m_fTicksPerSecond);
}

const CPanelMeters::CLevels& CPanelMeters::tick()
{
    m_levels.fill(0.0F);
    for (std::size_t u = 0; u < FIXED; ++u)
        m_levels[u] = std::clamp(m_level(static_cast<EMeter>(METER_INPUT_LEFT + u)), 0.0F, 1.0F);
    if (!m_pFilter)
        return m_levels;
    for (CDSPFilterControl* pControl : controlsOf(*m_pFilter)) {
        const std::size_t uSlot = std::size_t{pControl->uControlId} - FIRST_SLOT;
        if (pControl->uControlType == FILTER_CONTROL_LED_METER && uSlot < SLOTS)
            m_levels[FIXED + uSlot] = pControl->meterLevel();
    }
    return m_levels;
}

} // namespace velmora
