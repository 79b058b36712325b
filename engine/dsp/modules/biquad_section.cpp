#include "dsp/modules/biquad_section.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace velmora {

namespace {

// Section and route in one: c0 goes into the coefficients ahead of it, and all scales of the output into two.
struct CLoop
{
    CLoop(const CBiquadCoefficients& c, const CBiquadSection::CRoute& route)
        : m_fScale(route.m_fInputScale), m_dA0(c.m_dA0 * c.m_dC0), m_dA1(c.m_dA1 * c.m_dC0),
          m_dA2(c.m_dA2 * c.m_dC0), m_dB1(c.m_dB1 * c.m_dC0), m_dB2(c.m_dB2 * c.m_dC0),
          m_dWet(c.m_dWet * c.m_dM * route.m_fGain),
          m_dDry(c.m_dD0 * c.m_dM * route.m_fGain * route.m_fInputScale + (route.m_bAddsInput ? 1.0 : 0.0))
    {
    }

    float m_fScale;
    double m_dA0;
    double m_dA1;
    double m_dA2;
    double m_dB1;
    double m_dB2;
    double m_dWet;
    double m_dDry;
};

// The state is worked on as a copy, which the compiler keeps in registers, the channels side by side. The sum
// ends with the latest g, so that from one g to the next there are but a product and a difference.
template <UINT CHANNELS, bool MIXES>
void run(const CLoop loop, CBiquadSection::CChannel* pChannels, const float* pIn, float* pOut, UINT uFrames)
{
    double x1[CHANNELS], x2[CHANNELS], g1[CHANNELS], g2[CHANNELS];
    for (UINT c = 0; c < CHANNELS; ++c) {
        const auto& [state, rest] = pChannels[c];
        x1[c] = state[0];
        x2[c] = state[1];
        g1[c] = state[2] + rest[0];
        g2[c] = state[3] + rest[1];
    }
    for (UINT u = 0; u < uFrames; ++u, pIn += CHANNELS, pOut += CHANNELS) {
        double in[CHANNELS], out[CHANNELS];
        for (UINT c = 0; c < CHANNELS; ++c)
            in[c] = pIn[c];
        for (UINT c = 0; c < CHANNELS; ++c) {
            const double x = in[c] * loop.m_fScale;
            const double dPast =
                loop.m_dA0 * x + loop.m_dA1 * x1[c] + loop.m_dA2 * x2[c] - loop.m_dB2 * g2[c];
            const double g = dPast - loop.m_dB1 * g1[c];
            out[c] = loop.m_dDry * in[c] + loop.m_dWet * g;
            x2[c] = x1[c];
            x1[c] = x;
            g2[c] = g1[c];
            g1[c] = g;
        }
        for (UINT c = 0; c < CHANNELS; ++c)
            pOut[c] = static_cast<float>(MIXES ? pOut[c] + out[c] : out[c]);
    }
    for (UINT c = 0; c < CHANNELS; ++c) {
        auto& [state, rest] = pChannels[c];
        state = {static_cast<float>(x1[c]), static_cast<float>(x2[c]), static_cast<float>(g1[c]),
                 static_cast<float>(g2[c])};
        rest = {g1[c] - state[2], g2[c] - state[3]};
    }
}

void endTail(CBiquadSection::CChannel& channel)
{
    for (const UINT u : {0U, 1U}) {
        if (std::abs(channel.m_state[2 + u]) >= FLT_MIN)
            continue;
        channel.m_state[2 + u] = 0.0F;
        channel.m_rest[u] = 0.0;
    }
}

} // namespace

void CBiquadSection::reset()
{
    m_channels = {};
}

float CBiquadSection::tick(const CBiquadCoefficients& c, float fInput, float* pState)
{
    const double dSum = c.m_dA0 * fInput + c.m_dA1 * pState[0] + c.m_dA2 * pState[1] - c.m_dB1 * pState[2] -
                        c.m_dB2 * pState[3];
    const double dScaled = dSum * c.m_dC0;
    pState[1] = pState[0];
    pState[0] = fInput;
    pState[3] = pState[2];
    pState[2] = static_cast<float>(dScaled);
    return static_cast<float>((c.m_dD0 * fInput + c.m_dWet * dScaled) * c.m_dM);
}

void CBiquadSection::process(const CBiquadCoefficients& coefficients, const CRoute& route, const float* pIn,
                             float* pOut, UINT uChannels, UINT uFrames)
{
    const CLoop loop(coefficients, route);
    CChannel* const pChannels = m_channels.data();
    if (uChannels == 2)
        (route.m_bMixes ? run<2, true> : run<2, false>)(loop, pChannels, pIn, pOut, uFrames);
    else
        (route.m_bMixes ? run<1, true> : run<1, false>)(loop, pChannels, pIn, pOut, uFrames);
    std::ranges::for_each(m_channels, endTail);
}

} // namespace velmora
