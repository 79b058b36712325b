#pragma once

#include "dsp/modules/biquad_section.h"

namespace velmora {

// The codes of the buttons that choose a type.
enum EFilterType : UINT
{
    FILTER_LOW_SHELF = 300,
    FILTER_HIGH_SHELF = 301,
    FILTER_GRAPHIC_B = 302,
    FILTER_GRAPHIC_A = 303,
    FILTER_1ST_HPF = 304,
    FILTER_1ST_LPF = 305,
    FILTER_2ND_HPF = 306,
    FILTER_2ND_LPF = 307,
    FILTER_1ST_APF = 308,
    FILTER_2ND_APF = 309,
    FILTER_LINKWITZ_RILEY_LPF = 310,
    FILTER_LINKWITZ_RILEY_HPF = 311,
};

struct CBiquadDesignInput
{
    double m_dSampleRate; // Hz
    double m_dFc;         // Hz
    double m_dBoost;      // dB
    double m_dQ;          // a bandwidth in Hz for the all-pass filters
};

// The coefficients of one of EFilterType; another code gives a section that passes its input. Frequencies and
// bandwidths are kept below half the sample rate, where the bilinear transform ends and a filter would become
// unstable. With w = 2 pi fc / rate and V = 10^(boost / 20):
//
// FILTER_LOW_SHELF    k = 4 / (1 + V), t = k tan(w / 2), g = (1 - t) / (1 + t), d = (1 - g) / 2:
//                     y = x + (V - 1) lowpass, with a = d, d, 0 and b = -g, 0
// FILTER_HIGH_SHELF   k = (1 + V) / 4, d = (1 + g) / 2: y = x + (V - 1) highpass, with a = d, -d, 0
// FILTER_GRAPHIC_A    a band-pass of constant Q times V. A cut takes Q / 4.5; w / Q is held at pi.
//                     t = tan(w / (2 Q)), beta = (1 - t) / (1 + t) / 2, gamma = (1/2 + beta) cos(w)
// FILTER_GRAPHIC_B    a peak with Q = 1.414. From 1 dB on it is the boosting form, below the cutting one,
//                     which between 0 and 1 dB thus runs with V above 1.
// FILTER_1ST_LPF etc. g = cos(w) / (1 + sin(w)); the second order with Q,
//                     beta = (1 - sin(w) / 2Q) / (1 + sin(w) / 2Q) / 2, gamma = (1/2 + beta) cos(w)
// FILTER_1ST_APF etc. alpha = (tan(pi f / rate) - 1) / (tan(pi f / rate) + 1), with f = fc, or the
//                     bandwidth for the second order
// FILTER_LINKWITZ_... the bilinear transform of W^2 / (s + W)^2 and s^2 / (s + W)^2, W = pi fc
//
// [any but audio]
[[nodiscard]] CBiquadCoefficients designBiquad(UINT uType, const CBiquadDesignInput& input);

} // namespace velmora
