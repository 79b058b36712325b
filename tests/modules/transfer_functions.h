#pragma once

#include "analyzer/response_measurement.h"
#include "host/dsp_filter.h"

#include <cmath>
#include <complex>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>

namespace velmora::test {

using std::numbers::pi;
using CComplex = std::complex<double>;

// A second-order section with a dry path: numerator, denominator (after its leading 1), the two weights.
struct CTransferFunction
{
    CComplex at(double dRadians) const
    {
        const CComplex z = std::polar(1.0, -dRadians);
        return dDry + dWet * (a0 + z * (a1 + z * a2)) / (1.0 + z * (b1 + z * b2));
    }

    double a0, a1, a2, b1, b2;
    double dWet = 1.0;
    double dDry = 0.0;
};

// What a section is set to: rate and frequency in Hz, gain in dB, Q or bandwidth in Hz.
struct CSetting
{
    double fs, fc;
    double gain = 0.0;
    double q = 0.0;
};

inline CTransferFunction lowShelf(const CSetting& s)
{
    const double v = std::pow(10.0, s.gain / 20.0), t = 4.0 / (1.0 + v) * std::tan(pi * s.fc / s.fs);
    const double g = (1.0 - t) / (1.0 + t), d = (1.0 - g) / 2.0;
    return {d, d, 0.0, -g, 0.0, v - 1.0, 1.0};
}

inline CTransferFunction highShelf(const CSetting& s)
{
    const double v = std::pow(10.0, s.gain / 20.0), t = (1.0 + v) / 4.0 * std::tan(pi * s.fc / s.fs);
    const double g = (1.0 - t) / (1.0 + t), d = (1.0 + g) / 2.0;
    return {d, -d, 0.0, -g, 0.0, v - 1.0, 1.0};
}

// With the input beside it, as in measurements. A cut is 4.5 times as wide.
inline CTransferFunction graphicA(const CSetting& s)
{
    const double w = 2.0 * pi * s.fc / s.fs;
    const double q = s.gain < 0.0 ? s.q / 4.5 : s.q;
    const double t = w / q > pi ? std::tan(pi / 2.0) : std::tan(w / (2.0 * q));
    const double beta = 0.5 * (1.0 - t) / (1.0 + t), gamma = (0.5 + beta) * std::cos(w);
    return {0.5 - beta, 0.0, -(0.5 - beta), -2 * gamma, 2.0 * beta, std::pow(10.0, s.gain / 20.0), 1.0};
}

inline CTransferFunction graphicB(const CSetting& s)
{
    const double k = std::tan(pi * s.fc / s.fs), q = 1.414, v = std::pow(10.0, s.gain / 20.0);
    const double d0 = 1 + k / q + k * k, e0 = 1 + k / (v * q) + k * k, beta = 2 * (k * k - 1);
    const double delta = 1 - k / q + k * k;
    if (s.gain >= 1.0)
        return {(1 + v * k / q + k * k) / d0, beta / d0, (1 - v * k / q + k * k) / d0, beta / d0, delta / d0};
    return {d0 / e0, beta / e0, delta / e0, beta / e0, (1 - k / (v * q) + k * k) / e0};
}

inline CTransferFunction firstOrder(const CSetting& s, double dSign)
{
    const double w = 2 * pi * s.fc / s.fs, g = std::cos(w) / (1 + std::sin(w));
    return {(1 - dSign * g) / 2, dSign * (1 - dSign * g) / 2, 0, -g, 0};
}

inline CTransferFunction firstLowPass(const CSetting& s)
{
    return firstOrder(s, 1.0);
}

inline CTransferFunction firstHighPass(const CSetting& s)
{
    return firstOrder(s, -1.0);
}

inline CTransferFunction secondOrder(const CSetting& s, double dSign)
{
    const double w = 2 * pi * s.fc / s.fs, d = std::sin(w) / s.q / 2;
    const double beta = 0.5 * (1 - d) / (1 + d), gamma = (0.5 + beta) * std::cos(w);
    const double a0 = (0.5 + beta - dSign * gamma) / 2;
    return {a0, dSign * 2 * a0, a0, -2 * gamma, 2 * beta};
}

inline CTransferFunction firstAllPass(const CSetting& s)
{
    const double t = std::tan(pi * s.fc / s.fs), alpha = (t - 1) / (t + 1);
    return {alpha, 1, 0, alpha, 0};
}

inline CTransferFunction secondAllPass(const CSetting& s)
{
    const double t = std::tan(pi * s.q / s.fs), alpha = (t - 1) / (t + 1);
    const double beta = -std::cos(2 * pi * s.fc / s.fs);
    return {-alpha, beta * (1 - alpha), 1, beta * (1 - alpha), -alpha};
}

inline CTransferFunction linkwitzRiley(const CSetting& s, double dSign)
{
    const double w = pi * s.fc, k = w / std::tan(pi * s.fc / s.fs), d = k * k + w * w + 2 * k * w;
    const double b1 = (-2 * k * k + 2 * w * w) / d, b2 = (-2 * k * w + k * k + w * w) / d;
    const double a0 = (dSign > 0.0 ? w * w : k * k) / d;
    return {a0, dSign * 2 * a0, a0, b1, b2};
}

inline CTransferFunction linkwitzRileyLowPass(const CSetting& s)
{
    return linkwitzRiley(s, 1.0);
}

inline CTransferFunction linkwitzRileyHighPass(const CSetting& s)
{
    return linkwitzRiley(s, -1.0);
}

// What a filter makes of a rate in Hz and a frequency in radians per sample.
using CResponse = std::function<CComplex(double dRate, double dRadians)>;

// Measures both channels at three rates from 20 Hz to 20 kHz; the tolerance is 0.01 dB and as much of the
// phase or, where next to nothing is let through, the step of a float at full scale.
inline void expectResponse(CDSPFilter& filter, const CResponse& expected)
{
    constexpr double TOLERANCE = 0.00115;
    constexpr double FLOAT_STEP = 6e-8;
    constexpr double IMPULSE = 32767.0 / 32768.0;
    for (const double dRate : {44100.0, 48000.0, 96000.0}) {
        CResponseMeasurement measurement;
        ASSERT_TRUE(measurement.measureImpulseLong(&filter, false, 1 << 17, dRate));
        for (const int nChannel : {0, 1}) {
            const auto samples = measurement.channel(nChannel);
            const auto magnitude = frequencyResponse(samples, dRate);
            const auto phase = phaseResponse(samples);
            const double dBin = dRate / 2.0 / static_cast<double>(phase.size());
            for (auto u = static_cast<std::size_t>(std::ceil(20.0 / dBin)); u * dBin <= 20000.0;
                 u += 1 + u / 64) {
                const CComplex target = IMPULSE * expected(dRate, 2.0 * pi * u * dBin / dRate);
                const CComplex measured =
                    std::polar(std::pow(10.0, magnitude.m_dB[u] / 20.0), phase[u] * pi / 180.0);
                ASSERT_LT(std::abs(measured - target), TOLERANCE * std::abs(target) + FLOAT_STEP)
                    << filter.m_sName << ", " << u * dBin << " Hz at " << dRate;
            }
        }
    }
}

} // namespace velmora::test
