#include "dsp/modules/biquad_designs.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmora {

namespace {

using std::numbers::pi;

constexpr double HIGHEST_FREQUENCY = 0.499; // of the sample rate
constexpr double GRAPHIC_B_Q = 1.414;
constexpr double GRAPHIC_B_LEAST_BOOST = 1.0; // dB
constexpr double GRAPHIC_A_CUT_Q = 1.0 / 4.5;

struct CDesignValues
{
    double m_dSampleRate;
    double m_dFc;
    double m_dBoost; // dB
    double m_dV;     // the same, linear
    double m_dQ;
    double m_dW; // radians per sample
};

CBiquadCoefficients section(double dA0, double dA1, double dA2, double dB1, double dB2, double dWet = 1.0,
                            double dDry = 0.0)
{
    return {dA0, dA1, dA2, dB1, dB2, 1.0, dWet, dDry, 1.0};
}

CBiquadCoefficients shelf(const CDesignValues& in, double dK, double dSign)
{
    const double t = dK * std::tan(in.m_dW / 2.0);
    const double g = (1.0 - t) / (1.0 + t);
    const double d = (1.0 - dSign * g) / 2.0;
    return section(d, dSign * d, 0.0, -g, 0.0, in.m_dV - 1.0, 1.0);
}

CBiquadCoefficients lowShelf(const CDesignValues& in)
{
    return shelf(in, 4.0 / (1.0 + in.m_dV), 1.0);
}

CBiquadCoefficients highShelf(const CDesignValues& in)
{
    return shelf(in, (1.0 + in.m_dV) / 4.0, -1.0);
}

CBiquadCoefficients graphicA(const CDesignValues& in)
{
    const double dQ = std::max(in.m_dBoost < 0.0 ? in.m_dQ * GRAPHIC_A_CUT_Q : in.m_dQ, in.m_dW / pi);
    const double t = std::tan(in.m_dW / (2.0 * dQ));
    const double dBeta = 0.5 * (1.0 - t) / (1.0 + t);
    const double dGamma = (0.5 + dBeta) * std::cos(in.m_dW);
    return section(0.5 - dBeta, 0.0, dBeta - 0.5, -2.0 * dGamma, 2.0 * dBeta, in.m_dV);
}

CBiquadCoefficients graphicB(const CDesignValues& in)
{
    const double k = std::tan(in.m_dW / 2.0);
    const double q = GRAPHIC_B_Q;
    const auto polynomial = [k](double dMiddle) { return 1.0 + dMiddle + k * k; };
    const double dBeta = 2.0 * (k * k - 1.0);
    const double dTop = polynomial(k / q);
    const double dDelta = polynomial(-k / q);
    if (in.m_dBoost >= GRAPHIC_B_LEAST_BOOST)
        return section(polynomial(in.m_dV * k / q) / dTop, dBeta / dTop, polynomial(-in.m_dV * k / q) / dTop,
                       dBeta / dTop, dDelta / dTop);
    const double dBottom = polynomial(k / (in.m_dV * q));
    return section(dTop / dBottom, dBeta / dBottom, dDelta / dBottom, dBeta / dBottom,
                   polynomial(-k / (in.m_dV * q)) / dBottom);
}

// The sign is that of the coefficient of the last input: + for a low-pass, - for a high-pass.
CBiquadCoefficients firstOrder(const CDesignValues& in, double dSign)
{
    const double g = std::cos(in.m_dW) / (1.0 + std::sin(in.m_dW));
    const double a = (1.0 - dSign * g) / 2.0;
    return section(a, dSign * a, 0.0, -g, 0.0);
}

CBiquadCoefficients secondOrder(const CDesignValues& in, double dSign)
{
    const double d = std::sin(in.m_dW) / (2.0 * in.m_dQ);
    const double dBeta = 0.5 * (1.0 - d) / (1.0 + d);
    const double dGamma = (0.5 + dBeta) * std::cos(in.m_dW);
    const double a = (0.5 + dBeta - dSign * dGamma) / 2.0;
    return section(a, 2.0 * dSign * a, a, -2.0 * dGamma, 2.0 * dBeta);
}

// (tan(pi f / rate) - 1) / (tan(pi f / rate) + 1)
double allPassAlpha(const CDesignValues& in, double dFrequency)
{
    const double t = std::tan(pi * dFrequency / in.m_dSampleRate);
    return (t - 1.0) / (t + 1.0);
}

CBiquadCoefficients firstAllPass(const CDesignValues& in)
{
    const double dAlpha = allPassAlpha(in, in.m_dFc);
    return section(dAlpha, 1.0, 0.0, dAlpha, 0.0);
}

CBiquadCoefficients secondAllPass(const CDesignValues& in)
{
    const double dAlpha = allPassAlpha(in, std::clamp(in.m_dQ, 0.0, HIGHEST_FREQUENCY * in.m_dSampleRate));
    const double dBeta = -std::cos(in.m_dW);
    return section(-dAlpha, dBeta * (1.0 - dAlpha), 1.0, dBeta * (1.0 - dAlpha), -dAlpha);
}

CBiquadCoefficients linkwitzRiley(const CDesignValues& in, double dSign)
{
    const double w = pi * in.m_dFc;
    const double k = w / std::tan(in.m_dW / 2.0);
    const double d = k * k + w * w + 2.0 * k * w;
    const double a = (dSign > 0.0 ? w * w : k * k) / d;
    return section(a, 2.0 * dSign * a, a, 2.0 * (w * w - k * k) / d, (k * k + w * w - 2.0 * k * w) / d);
}

struct CBiquadDesign
{
    UINT m_uType;
    CBiquadCoefficients (*m_pDesign)(const CDesignValues&);
};

constexpr CBiquadDesign DESIGNS[] = {
    {FILTER_LOW_SHELF, lowShelf},
    {FILTER_HIGH_SHELF, highShelf},
    {FILTER_GRAPHIC_B, graphicB},
    {FILTER_GRAPHIC_A, graphicA},
    {FILTER_1ST_HPF, [](const CDesignValues& in) { return firstOrder(in, -1.0); }},
    {FILTER_1ST_LPF, [](const CDesignValues& in) { return firstOrder(in, 1.0); }},
    {FILTER_2ND_HPF, [](const CDesignValues& in) { return secondOrder(in, -1.0); }},
    {FILTER_2ND_LPF, [](const CDesignValues& in) { return secondOrder(in, 1.0); }},
    {FILTER_1ST_APF, firstAllPass},
    {FILTER_2ND_APF, secondAllPass},
    {FILTER_LINKWITZ_RILEY_LPF, [](const CDesignValues& in) { return linkwitzRiley(in, 1.0); }},
    {FILTER_LINKWITZ_RILEY_HPF, [](const CDesignValues& in) { return linkwitzRiley(in, -1.0); }},
};

} // namespace

CBiquadCoefficients designBiquad(UINT uType, const CBiquadDesignInput& input)
{
    const double dFc = std::clamp(input.m_dFc, 0.0, HIGHEST_FREQUENCY * input.m_dSampleRate);
    const CDesignValues values{input.m_dSampleRate, dFc,
                               input.m_dBoost,      std::pow(10.0, input.m_dBoost / 20.0),
                               input.m_dQ,          2.0 * pi * dFc / input.m_dSampleRate};
    const auto found = std::ranges::find(DESIGNS, uType, &CBiquadDesign::m_uType);
    return found == std::end(DESIGNS) ? section(1.0, 0.0, 0.0, 0.0, 0.0) : found->m_pDesign(values);
}

} // namespace velmora
