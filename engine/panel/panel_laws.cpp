#include "panel/panel_laws.h"

#include "audio/channel_mode.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr double FADER_RANGE = 72.0;   // dB
constexpr double FADER_LOWEST = -60.0; // dB
constexpr unsigned CHANNEL_CHOICES = 3;

} // namespace

int limitedPosition(int nPos)
{
    return std::clamp(nPos, 0, PANEL_POSITIONS);
}

double faderDecibels(int nPos)
{
    return static_cast<double>(PANEL_POSITIONS - limitedPosition(nPos)) / PANEL_POSITIONS * FADER_RANGE +
           FADER_LOWEST;
}

int faderPosition(double dGain)
{
    if (std::isnan(dGain))
        return FADER_END;
    const double dShare = std::clamp((dGain - FADER_LOWEST) / FADER_RANGE, 0.0, 1.0);
    return PANEL_POSITIONS - static_cast<int>(std::lround(dShare * PANEL_POSITIONS));
}

unsigned routingCode(const CRouting& routing)
{
    return routing.m_eFX * CHANNEL_CHOICES + (ROUTING_2_TO_2 - routing.m_eChannels);
}

std::optional<CRouting> routingOfCode(unsigned uCode)
{
    if (uCode >= 2 * CHANNEL_CHOICES)
        return std::nullopt;
    return CRouting{static_cast<ERoutingFX>(uCode / CHANNEL_CHOICES),
                    static_cast<ERoutingChannels>(ROUTING_2_TO_2 - uCode % CHANNEL_CHOICES)};
}

unsigned channelModeOf(const CRouting& routing)
{
    const unsigned uFirst =
        routing.m_eFX == ROUTING_AUX_FX ? CHANNEL_MODE_AUX_MONO_MONO : CHANNEL_MODE_MONO_MONO;
    return uFirst + routing.m_eChannels;
}

std::string radioButtonCaption(UINT uBank, UINT uButton, bool bProjectOpen)
{
    return (bProjectOpen ? "RB " : "Radio") + std::to_string(uBank + 1) + std::to_string(uButton + 1);
}

} // namespace velmora
