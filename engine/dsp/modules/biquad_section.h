#pragma once

#include "pluginconstants.h"

#include <array>

namespace velmora {

// The coefficients of a second-order section with a dry path beside it.
struct CBiquadCoefficients
{
    double m_dA0 = 1.0;
    double m_dA1 = 1.0;
    double m_dA2 = 1.0;
    double m_dB1 = 1.0;
    double m_dB2 = 1.0;
    double m_dC0 = 1.0; // scales the sum, ahead of the feedback
    double m_dWet = 1.0;
    double m_dD0 = 1.0; // dry
    double m_dM = 1.0;  // scales the output
};

// Past samples and sample loops of such a section, in direct form I, for one or two channels:
//     g = c0 (a0 x + a1 x[n-1] + a2 x[n-2] - b1 g[n-1] - b2 g[n-2])
//     y = m (d0 x + wet g)
// Stable while |c0 b2| < 1 and |c0 b1| < 1 + c0 b2. Samples are floats. In a buffer g keeps the precision of
// a double, also from one buffer to the next: rounded to a float each time, its errors would add up to more
// than what a high-pass filter lets through of the lowest notes. Between two buffers a g too small for a
// normal float becomes 0, so that a tail that has died away does not slow the arithmetic down. All
// operations: [audio]; reset(): [main, not in use]
class CBiquadSection
{
  public:
    using CState = std::array<float, 4>; // x[n-1], x[n-2], g[n-1], g[n-2]

    // What lies between a buffer and the section: with s the input scale and v the gain,
    //     out = v y(s in), plus in and plus what out holds already, as wished.
    struct CRoute
    {
        float m_fInputScale = 1.0F;
        float m_fGain = 1.0F;
        bool m_bAddsInput = false;
        bool m_bMixes = false;
    };

    void reset();
    [[nodiscard]] CState& state(UINT uChannel) { return m_channels[uChannel].m_state; }

    // y of one sample. The state moves on.
    static float tick(const CBiquadCoefficients& coefficients, float fInput, float* pState);

    // A buffer of uChannels, 1 or 2, interleaved. pOut may be pIn.
    void process(const CBiquadCoefficients& coefficients, const CRoute& route, const float* pIn, float* pOut,
                 UINT uChannels, UINT uFrames);

    struct CChannel
    {
        CState m_state{};
        std::array<double, 2> m_rest{}; // what g[n-1] and g[n-2] have beyond the floats
    };

  private:
    std::array<CChannel, 2> m_channels;
};

} // namespace velmora
