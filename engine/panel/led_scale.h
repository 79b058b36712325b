#pragma once

#include "pluginconstants.h"

#include <cstdint>

namespace velmora {

// How a meter of LEDs divides its height, and which of them a new level touches. LEDs count from the end that
// the meter fills from: its foot, or its top when it is upside down. [main]
class CLEDScale
{
  public:
    static constexpr int LEDS = 20;
    static constexpr int GAP = 2; // pixels between LEDs

    explicit CLEDScale(int nLEDs = LEDS, int nGap = GAP) : m_nLEDs(nLEDs), m_nGap(nGap) {}

    [[nodiscard]] int count() const { return m_nLEDs; }

    // In pixels, for a meter of that height: (H - ((n + 1) * gap + 2)) / n, at least 0.
    [[nodiscard]] int ledHeight(int nHeight) const;

    // Pixels from the top of the meter to the top of an LED.
    [[nodiscard]] int ledTop(int nLED, int nHeight, bool bUpsideDown) const;

    // How many are lit at a level of 0.0 to 1.0; levels beyond are limited.
    [[nodiscard]] int litCount(float fLevel) const;

    // LEDs from m_nFirst on, up to and without m_nEnd.
    struct CRange
    {
        int m_nFirst;
        int m_nEnd;

        [[nodiscard]] bool isEmpty() const { return m_nFirst >= m_nEnd; }
    };

    // What has to be drawn when the level goes from one to the other.
    [[nodiscard]] CRange changedLEDs(float fOldLevel, float fNewLevel) const;

  private:
    int m_nLEDs;
    int m_nGap;
};

// Colours of one LED as 0xRRGGBB.
struct CLEDColours
{
    std::uint32_t m_uOff;
    std::uint32_t m_uOn;

    [[nodiscard]] bool operator==(const CLEDColours&) const = default;
};

// The colours of an LED of a meter with that many, by CUICtrl::uMeterColorScheme. 1 to 6 have one colour;
// every other number is the multi-colour scale, from dark green by yellow to dark red. [any]
[[nodiscard]] CLEDColours ledColours(UINT uMeterColorScheme, int nLED, int nLEDs);

} // namespace velmora
