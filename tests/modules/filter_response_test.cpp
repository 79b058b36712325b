#include "analyzer/response_measurement.h"
#include "dsp/modules/all_pass_filter.h"
#include "dsp/modules/biquad_designs.h"
#include "dsp/modules/hp_lp_filter.h"
#include "dsp/modules/linkwitz_riley_filter.h"
#include "dsp/modules/volume_ctrl.h"

#include <cmath>
#include <complex>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>

namespace velmora {
namespace {

using std::numbers::pi;
constexpr int FRAMES = 1 << 17;

// Numerator, denominator (after its leading 1), and the weights of filter and input.
struct CTransferFunction
{
    std::complex<double> at(double dRadians) const
    {
        const auto z = std::polar(1.0, -dRadians);
        return dDry + dWet * (a0 + z * (a1 + z * a2)) / (1.0 + z * (b1 + z * b2));
    }

    double a0, a1, a2, b1, b2;
    double dWet = 1.0;
    double dDry = 0.0;
};

// What a filter is set to: rate, frequency, gain in dB, and Q or bandwidth.
struct CSetting
{
    double fs, fc, gain, q;
};

CTransferFunction lowShelf(const CSetting& s)
{
    const double v = std::pow(10.0, s.gain / 20.0), t = 4.0 / (1.0 + v) * std::tan(pi * s.fc / s.fs);
    const double g = (1.0 - t) / (1.0 + t), d = (1.0 - g) / 2.0;
    return {d, d, 0.0, -g, 0.0, v - 1.0, 1.0};
}

CTransferFunction highShelf(const CSetting& s)
{
    const double v = std::pow(10.0, s.gain / 20.0), t = (1.0 + v) / 4.0 * std::tan(pi * s.fc / s.fs);
    const double g = (1.0 - t) / (1.0 + t), d = (1.0 + g) / 2.0;
    return {d, -d, 0.0, -g, 0.0, v - 1.0, 1.0};
}

// With the input beside it, as in measurements. A cut is 4.5 times as wide.
CTransferFunction graphicA(const CSetting& s)
{
    const double w = 2.0 * pi * s.fc / s.fs;
    const double q = s.gain < 0.0 ? s.q / 4.5 : s.q;
    const double t = w / q > pi ? std::tan(pi / 2.0) : std::tan(w / (2.0 * q));
    const double beta = 0.5 * (1.0 - t) / (1.0 + t), gamma = (0.5 + beta) * std::cos(w);
    return {0.5 - beta, 0.0, -(0.5 - beta), -2 * gamma, 2.0 * beta, std::pow(10.0, s.gain / 20.0), 1.0};
}

CTransferFunction graphicB(const CSetting& s)
{
    const double k = std::tan(pi * s.fc / s.fs), q = 1.414, v = std::pow(10.0, s.gain / 20.0);
    const double d0 = 1 + k / q + k * k, e0 = 1 + k / (v * q) + k * k, beta = 2 * (k * k - 1);
    const double delta = 1 - k / q + k * k;
    if (s.gain >= 1.0)
        return {(1 + v * k / q + k * k) / d0, beta / d0, (1 - v * k / q + k * k) / d0, beta / d0, delta / d0};
    return {d0 / e0, beta / e0, delta / e0, beta / e0, (1 - k / (v * q) + k * k) / e0};
}

CTransferFunction firstOrder(const CSetting& s, double dSign)
{
    const double w = 2 * pi * s.fc / s.fs, g = std::cos(w) / (1 + std::sin(w));
    return {(1 - dSign * g) / 2, dSign * (1 - dSign * g) / 2, 0, -g, 0};
}

CTransferFunction secondOrder(const CSetting& s, double dSign)
{
    const double w = 2 * pi * s.fc / s.fs, d = std::sin(w) / s.q / 2;
    const double beta = 0.5 * (1 - d) / (1 + d), gamma = (0.5 + beta) * std::cos(w);
    const double a0 = (0.5 + beta - dSign * gamma) / 2;
    return {a0, dSign * 2 * a0, a0, -2 * gamma, 2 * beta};
}

CTransferFunction firstAllPass(const CSetting& s)
{
    const double t = std::tan(pi * s.fc / s.fs), alpha = (t - 1) / (t + 1);
    return {alpha, 1, 0, alpha, 0};
}

CTransferFunction secondAllPass(const CSetting& s)
{
    const double t = std::tan(pi * s.q / s.fs), alpha = (t - 1) / (t + 1);
    const double beta = -std::cos(2 * pi * s.fc / s.fs);
    return {-alpha, beta * (1 - alpha), 1, beta * (1 - alpha), -alpha};
}

CTransferFunction linkwitzRiley(const CSetting& s, bool bHighPass)
{
    const double w = pi * s.fc, k = w / std::tan(pi * s.fc / s.fs), d = k * k + w * w + 2 * k * w;
    const double b1 = (-2 * k * k + 2 * w * w) / d, b2 = (-2 * k * w + k * k + w * w) / d;
    if (bHighPass)
        return {k * k / d, -2 * k * k / d, k * k / d, b1, b2};
    return {w * w / d, 2 * w * w / d, w * w / d, b1, b2};
}

struct CType
{
    UINT m_uCode;
    std::function<std::unique_ptr<CMultiFilter>()> m_make;
    std::function<CTransferFunction(const CSetting&)> m_transferFunction;
};

template <class Filter>
std::unique_ptr<CMultiFilter> make()
{
    return std::make_unique<Filter>();
}

const CType TYPES[] = {
    {300, make<CMultiFilter>, lowShelf},
    {301, make<CMultiFilter>, highShelf},
    {302, make<CMultiFilter>, graphicB},
    {303, make<CMultiFilter>, graphicA},
    {304, make<CHP_LPFilter>, [](const CSetting& s) { return firstOrder(s, -1); }},
    {305, make<CHP_LPFilter>, [](const CSetting& s) { return firstOrder(s, 1); }},
    {306, make<CHP_LPFilter>, [](const CSetting& s) { return secondOrder(s, -1); }},
    {307, make<CHP_LPFilter>, [](const CSetting& s) { return secondOrder(s, 1); }},
    {308, make<CAllPassFilter>, firstAllPass},
    {309, make<CAllPassFilter>, secondAllPass},
    {310, make<CLinkwitzRileyFilter>, [](const CSetting& s) { return linkwitzRiley(s, false); }},
    {311, make<CLinkwitzRileyFilter>, [](const CSetting& s) { return linkwitzRiley(s, true); }},
};

// 20 Hz to 20 kHz in 0.01 dB, magnitude and phase; or, where next to nothing is let through, half a step of a
// float at full scale.
constexpr double TOLERANCE = 0.00115;
constexpr double FLOAT_STEP = 6e-8;

void expectResponse(CDSPFilter& filter, double fs, const CTransferFunction& expected)
{
    CResponseMeasurement measurement;
    ASSERT_TRUE(measurement.measureImpulseLong(&filter, false, FRAMES, fs));
    for (const int nChannel : {0, 1}) {
        const auto response = measurement.channel(nChannel);
        const auto magnitude = frequencyResponse(response, fs);
        const auto phase = phaseResponse(response);
        const double dHzPerBin = fs / 2.0 / static_cast<double>(magnitude.m_dB.size());
        for (auto uBin = static_cast<std::size_t>(std::ceil(20.0 / dHzPerBin)); uBin * dHzPerBin <= 20000.0;
             uBin += 1 + uBin / 64) {
            const auto target = 32767.0 / 32768.0 * expected.at(2.0 * pi * uBin * dHzPerBin / fs);
            const auto measured =
                std::polar(std::pow(10.0, magnitude.m_dB[uBin] / 20.0), phase[uBin] * pi / 180.0);
            ASSERT_LT(std::abs(measured - target), TOLERANCE * std::abs(target) + FLOAT_STEP)
                << uBin * dHzPerBin << " Hz";
        }
    }
}

TEST(FilterResponse, IsThatOfTheDescribedCoefficients)
{
    for (const CType& type : TYPES) {
        const bool bAllPass = type.m_uCode == 308 || type.m_uCode == 309;
        for (const double fs : {44100.0, 48000.0, 96000.0})
            for (const auto& [fc, gain, q] :
                 {std::tuple{1000.0, 0.5, 0.9}, std::tuple{3000.0, 12.0, 5.0}, std::tuple{400.0, -9.0, 1.414},
                  std::tuple{9000.0, 1.0, 0.8}, std::tuple{250.0, 0.0, 2.0}}) {
                const CSetting setting{fs, fc, gain, bAllPass ? 1000.0 * q : q};
                SCOPED_TRACE(testing::Message() << type.m_uCode << " at " << fs << ", fc " << fc);
                const auto pFilter = type.m_make();
                ASSERT_TRUE(pFilter->setType(type.m_uCode));
                pFilter->setParameter(MULTIFILTER_FC, static_cast<float>(fc));
                pFilter->setParameter(MULTIFILTER_BOOST_CUT, static_cast<float>(gain));
                pFilter->setParameter(MULTIFILTER_Q, static_cast<float>(setting.q));
                expectResponse(*pFilter, fs, type.m_transferFunction(setting));
                EXPECT_EQ(pFilter->parameter(MULTIFILTER_Q), static_cast<float>(setting.q));
            }
    }
}

TEST(FilterResponse, OfTheVolumeIsALowShelfTimesTheVolume)
{
    for (const double fs : {44100.0, 48000.0, 96000.0})
        for (const double gain : {-12.0, 0.0, 6.0}) {
            CVolumeCtrl volume;
            volume.setParameter(VOLUME_OUTPUT, 0.25F);
            volume.setParameter(VOLUME_SHELF_FC, 300.0F);
            volume.setParameter(VOLUME_BOOST_CUT, static_cast<float>(gain));
            CTransferFunction expected = lowShelf({fs, 300.0, gain, 0.0});
            expected.dWet *= 0.25;
            expected.dDry *= 0.25;
            expectResponse(volume, fs, expected);
        }
}

// The two halves of a crossover, one of them reversed, add up to a first-order all-pass.
TEST(FilterResponse, OfLinkwitzRileyHalvesIsAnAllPassWithOneReversed)
{
    CLinkwitzRileyFilter low;
    CLinkwitzRileyFilter high;
    high.setType(FILTER_LINKWITZ_RILEY_HPF);
    high.setReversePhase(true);
    std::vector<float> in(1 << 14), out(in.size());
    in[0] = 1.0F;
    for (CLinkwitzRileyFilter* pFilter : {&low, &high}) {
        pFilter->prepareForPlay();
        pFilter->processInterleaved(in.data(), out.data(), 1, static_cast<UINT>(out.size()),
                                    pFilter == &high);
    }
    for (const double dB : frequencyResponse(std::vector<double>(out.begin(), out.end()), 44100.0).m_dB)
        ASSERT_NEAR(dB, 0.0, 0.001);
    EXPECT_EQ(high.processSample(1.0F, high.state(1), 1),
              -high.CMultiFilter::processSample(1.0F, std::array<float, 4>{}.data(), 1));
}

} // namespace
} // namespace velmora
