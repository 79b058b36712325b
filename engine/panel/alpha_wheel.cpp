#include "panel/alpha_wheel.h"

#include "panel/panel_laws.h"
#include "panel/panel_model.h"

#include <algorithm>
#include <cstdint>

namespace velmora {

CAlphaWheel::CAlphaWheel(CPanelModel& model) : m_model(model)
{
    refresh();
}

void CAlphaWheel::refresh()
{
    m_slots = m_model.alphaWheelSlots();
    m_nPosition = std::clamp(m_nPosition, 0, std::max(0, count() - 1));
}

std::optional<UINT> CAlphaWheel::slot() const
{
    if (m_slots.empty())
        return std::nullopt;
    return m_slots[static_cast<std::size_t>(m_nPosition)];
}

bool CAlphaWheel::turn(int nDetents)
{
    const auto nWanted = std::int64_t{m_nPosition} + nDetents;
    const auto nLast = std::int64_t{std::max(0, count() - 1)};
    const auto nPosition = static_cast<int>(std::clamp(nWanted, std::int64_t{0}, nLast));
    const bool bChanged = nPosition != m_nPosition;
    m_nPosition = nPosition;
    return bChanged;
}

std::string CAlphaWheel::nameLine() const
{
    const auto uSlot = slot();
    return uSlot ? m_model.state(*uSlot).m_sName : std::string();
}

std::string CAlphaWheel::valueLine() const
{
    const auto uSlot = slot();
    if (!uSlot)
        return {};
    const CPanelSlotState state = m_model.state(*uSlot);
    std::string sLine = state.m_sValue;
    if (state.m_nItem >= 0)
        std::ranges::replace(sLine, '_', ' ');
    return sLine;
}

std::string CAlphaWheel::counterText() const
{
    return m_slots.empty() ? std::string() : std::to_string(m_nPosition + 1) + "/" + std::to_string(count());
}

bool CAlphaWheel::moveValue(int nPos)
{
    const auto uSlot = slot();
    return uSlot && m_model.moveSlider(*uSlot, nPos);
}

int CAlphaWheel::valuePosition() const
{
    const auto uSlot = slot();
    return uSlot ? m_model.state(*uSlot).m_nPos : 0;
}

} // namespace velmora
