#include "panel/led_scale.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

constexpr int FRAME = 2; // pixels, above and below together

// Schemes 1 to 6.
constexpr std::array<CLEDColours, 6> SCHEMES = {{
    {0x8B0000, 0xFF0000},
    {0xB8860B, 0xEEE8AA},
    {0xB8860B, 0xFFFF00},
    {0x006400, 0x90EE90},
    {0x00008B, 0xADD8E6},
    {0x9400D3, 0xEE82EE},
}};

constexpr std::uint32_t SCALE_OFF = 0xD3D3D3;

// The multi-colour scale: each colour up to this share of the meter.
struct CZone
{
    int m_nPercent;
    std::uint32_t m_uOn;
};
constexpr std::array<CZone, 6> SCALE = {{
    {35, 0x006400},
    {60, 0x90EE90},
    {75, 0xFFFF00},
    {85, 0xB8860B},
    {95, 0xFF0000},
    {100, 0x8B0000},
}};

} // namespace

int CLEDScale::ledHeight(int nHeight) const
{
    return std::max(0, (nHeight - ((m_nLEDs + 1) * m_nGap + FRAME)) / m_nLEDs);
}

int CLEDScale::ledTop(int nLED, int nHeight, bool bUpsideDown) const
{
    const int nFromTop = bUpsideDown ? nLED : m_nLEDs - 1 - nLED;
    return FRAME / 2 + m_nGap + nFromTop * (ledHeight(nHeight) + m_nGap);
}

int CLEDScale::litCount(float fLevel) const
{
    return static_cast<int>(static_cast<float>(m_nLEDs) * (fLevel > 0.0F ? std::min(fLevel, 1.0F) : 0.0F));
}

CLEDScale::CRange CLEDScale::changedLEDs(float fOldLevel, float fNewLevel) const
{
    const auto [nFirst, nEnd] = std::minmax({litCount(fOldLevel), litCount(fNewLevel)});
    return {nFirst, nEnd};
}

CLEDColours ledColours(UINT uMeterColorScheme, int nLED, int nLEDs)
{
    if (uMeterColorScheme >= 1 && uMeterColorScheme <= SCHEMES.size())
        return SCHEMES[uMeterColorScheme - 1];
    const auto zone = std::ranges::find_if(
        SCALE, [=](const CZone& candidate) { return 100 * (nLED + 1) <= candidate.m_nPercent * nLEDs; });
    return {SCALE_OFF, zone == SCALE.end() ? SCALE.back().m_uOn : zone->m_uOn};
}

} // namespace velmora
