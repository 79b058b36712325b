#include "CombFilter.h"
#include "Delay.h"
#include "DelayAPF.h"
#include "FFT.h"
#include "LPFCombFilter.h"
#include "OnePoleLPF.h"
#include "support/allocation_guard.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace {

using Complex = std::complex<double>;
using Process = std::function<float(float)>;
using Response = std::function<Complex(Complex zInverse, double dPrewarped)>;

constexpr double PI = std::numbers::pi;

std::vector<float> impulseResponse(const Process& process, int nLength)
{
    std::vector<float> result;
    for (int n = 0; n < nLength; n++)
        result.push_back(process(n == 0 ? 1.0f : 0.0f));
    return result;
}

TEST(StockObjects, DelaysComeInTime)
{
    CDelay delay;
    EXPECT_EQ(delay.process(1.0f), 0.0f);
    delay.setDelay(2.0); // fits itself to the rate that prepare() tells
    const struct
    {
        double m_dDelay_ms;
        int m_nFirst;
        float m_fFirst;
        float m_fSecond;
    } cases[] = {{2.0, 96, 1.0f, 0.0f},       {0.0, 0, 1.0f, 0.0f},       {10.25 / 48.0, 10, 0.75f, 0.25f},
                 {10.0, 480, 1.0f, 0.0f},     {99.0, 480, 1.0f, 0.0f},    {-1.0, 0, 1.0f, 0.0f},
                 {479.5 / 48, 479, .5f, .5f}, {std::nan(""), 0, 1.f, 0.f}};
    for (const auto& [dDelay_ms, nFirst, fFirst, fSecond] : cases) {
        ASSERT_TRUE(delay.prepare(48000.0, 10.0));
        if (dDelay_ms != 2.0)
            delay.setDelay(dDelay_ms);
        float fTap = 0.0f;
        const auto response = impulseResponse(
            [&](float x) {
                const float y = delay.process(x);
                fTap += delay.tap(5.0);
                return y;
            },
            600);
        for (int n = 0; n < 600; n++) {
            const float fExpected = n == nFirst ? fFirst : n == nFirst + 1 ? fSecond : 0.0f;
            EXPECT_NEAR(response[static_cast<std::size_t>(n)], fExpected, 1e-4f) << dDelay_ms << " " << n;
        }
        EXPECT_EQ(fTap, 1.0f);
    }
    EXPECT_FALSE(delay.prepare(400000.0, 60000.0));
    EXPECT_EQ(delay.process(1.0f), 1.0f); // as it was
}

// H(z) as the headers state it, on the unit circle. dPrewarped is tan(pi f / fs) / tan(pi fc / fs) for the
// low-pass inside, whose analog prototype is 1 / (1 + s).
TEST(StockObjects, FiltersFollowTheirEquations)
{
    constexpr double DELAY_MS = 2.5;
    constexpr double CUTOFF_HZ = 3000.0;
    for (const double fs : {44100.0, 96000.0})
        for (const double g : {0.7, -0.6}) {
            CCombFilter comb;
            CDelayAPF allPass;
            CLPFCombFilter darkComb;
            COnePoleLPF lowPass;
            COnePoleLPF ownLowPass;
            comb.set(DELAY_MS, g);
            allPass.set(DELAY_MS, g);
            darkComb.set(DELAY_MS, g, CUTOFF_HZ);
            lowPass.setCutoff(CUTOFF_HZ);
            ownLowPass.setCoefficient(0.9);
            ASSERT_TRUE(comb.prepare(fs, 20.0) && allPass.prepare(fs, 20.0) && darkComb.prepare(fs, 20.0));
            lowPass.prepare(fs);
            ownLowPass.prepare(fs);

            const double D = std::round(DELAY_MS * fs / 1000.0);
            const double c = 2.0 - std::cos(2.0 * PI * CUTOFF_HZ / fs);
            const double p = c - std::sqrt(c * c - 1.0);
            const struct
            {
                const char* m_pName;
                Process m_process;
                Response m_response;
            } cases[] = {
                {"comb", [&](float x) { return comb.process(x); },
                 [&](Complex z, double) { return std::pow(z, D) / (1.0 - g * std::pow(z, D)); }},
                {"all-pass", [&](float x) { return allPass.process(x); },
                 [&](Complex z, double) { return (std::pow(z, D) - g) / (1.0 - g * std::pow(z, D)); }},
                {"dark comb", [&](float x) { return darkComb.process(x); },
                 [&](Complex z, double w) {
                     const Complex L = 1.0 / Complex(1.0, w);
                     return std::pow(z, D) / (1.0 - g * L * std::pow(z, D));
                 }},
                {"low-pass", [&](float x) { return lowPass.process(x); },
                 [&](Complex z, double) { return (1.0 - p) / (1.0 - p * z); }},
                {"own low-pass", [&](float x) { return ownLowPass.process(x); },
                 [&](Complex z, double) { return 0.1 / (1.0 - 0.9 * z); }},
            };
            for (const auto& [pName, process, expected] : cases) {
                const auto response = impulseResponse(process, 20000);
                for (const double f : {0.0, 123.0, 1000.0, CUTOFF_HZ, 11111.0, 0.49 * fs}) {
                    Complex H = 0.0;
                    for (std::size_t n = 0; n < response.size(); n++)
                        H += static_cast<double>(response[n]) *
                             std::polar(1.0, -2.0 * PI * f / fs * static_cast<double>(n));
                    const double w = std::tan(PI * f / fs) / std::tan(PI * CUTOFF_HZ / fs);
                    const Complex wanted = expected(std::polar(1.0, -2.0 * PI * f / fs), w);
                    EXPECT_LT(std::abs(H - wanted), 1e-5)
                        << pName << " fs " << fs << " g " << g << " f " << f;
                    if (f == CUTOFF_HZ && pName == std::string("low-pass")) {
                        EXPECT_NEAR(std::abs(H), std::sqrt(0.5), 1e-5);
                    }
                }
            }
        }
}

TEST(StockObjects, ReverbTimeIsTheFallBySixtyDecibels)
{
    CCombFilter comb;
    CLPFCombFilter darkComb;
    const double g = dBToLinear(-60.0 * 25.0 / 1000.0); // 25 ms, one second
    comb.set(25.0, g);
    darkComb.set(25.0, g, 20000.0);
    ASSERT_TRUE(comb.prepare(48000.0, 50.0) && darkComb.prepare(48000.0, 50.0));
    const auto response = impulseResponse([&](float x) { return comb.process(x); }, 49201);
    EXPECT_NEAR(response[49200] / response[1200], 1e-3, 1e-6);
    float fSum = 0.0f; // a low tone, 0 Hz: each echo of the step is g times the one before
    for (int n = 0; n < 1000 * 1200; n++)
        fSum = darkComb.process(1.0f);
    EXPECT_NEAR(fSum, 1.0 / (1.0 - g), 1e-3);
}

// Whatever comes in and whatever is set: finite, no subnormals, silence before the first prepare(), and no
// memory taken.
TEST(StockObjects, BadInputLeavesNothingBehind)
{
    CDelay delay;
    CCombFilter comb;
    CDelayAPF allPass;
    CLPFCombFilter darkComb;
    COnePoleLPF lowPass;
    const Process all[] = {
        [&](float x) { return delay.process(x); }, [&](float x) { return comb.process(x); },
        [&](float x) { return allPass.process(x); }, [&](float x) { return darkComb.process(x); },
        [&](float x) { return lowPass.process(x); }};
    EXPECT_EQ(comb.process(1.0f), 0.0f);
    EXPECT_EQ(darkComb.process(1.0f), 0.0f);
    ASSERT_TRUE(delay.prepare(48000.0, 5.0) && comb.prepare(48000.0, 5.0) && allPass.prepare(48000.0, 5.0) &&
                darkComb.prepare(48000.0, 5.0));

    const float INFINITE = std::numeric_limits<float>::infinity();
    const float inputs[] = {1.0f, std::nanf(""), INFINITE, -INFINITE, 1e-40f, 1e38f, -1.0f};
    int nBad = 0;
    const velmora::test::CAllocationGuard guard;
    for (const double dSetting : {0.5, 1e9, -1e9, std::nan(""), 1e-12, 2.0}) {
        delay.setDelay(dSetting);
        comb.set(dSetting, dSetting);
        allPass.set(dSetting, dSetting);
        darkComb.set(dSetting, dSetting, dSetting);
        lowPass.setCutoff(dSetting);
        for (const auto& process : all)
            for (const float x : inputs)
                nBad += std::isnan(process(x));
        comb.reset();
        allPass.reset();
        darkComb.reset();
        delay.reset();
        lowPass.reset();
        for (const auto& process : all)
            for (int n = 0; n < 200000; n++) {
                const float y = process(n == 0 ? 1e-30f : 0.0f);
                nBad += !std::isfinite(y) || (y != 0.0f && !std::isnormal(y));
            }
    }
    EXPECT_EQ(guard.count(), 0u);
    EXPECT_EQ(nBad, 0);
}

TEST(StockObjects, FFTIsTheFourierSum)
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<float> noise(-1.0f, 1.0f);
    CFFT fft;
    for (const UINT uSize : {2u, 4u, 8u, 64u, 1024u}) {
        ASSERT_TRUE(fft.prepare(uSize));
        std::vector<float> real(uSize);
        std::vector<float> imaginary(uSize);
        std::ranges::generate(real, [&] { return noise(generator); });
        std::ranges::generate(imaginary, [&] { return noise(generator); });
        auto X = real;
        auto Y = imaginary;
        const velmora::test::CAllocationGuard guard;
        fft.forward(X.data(), Y.data());
        EXPECT_EQ(guard.count(), 0u);
        for (UINT k = 0; k < uSize; k++) {
            Complex sum = 0.0;
            for (UINT n = 0; n < uSize; n++)
                sum += Complex(real[n], imaginary[n]) * std::polar(1.0, -2.0 * PI * k * n / uSize);
            EXPECT_LT(std::abs(Complex(X[k], Y[k]) - sum), 1e-6 * uSize) << uSize << " " << k;
        }
        fft.inverse(X.data(), Y.data());
        for (UINT n = 0; n < uSize; n++) {
            EXPECT_NEAR(X[n], real[n], 1e-6f);
            EXPECT_NEAR(Y[n], imaginary[n], 1e-6f);
        }
    }
    for (const UINT uSize : {0u, 1u, 3u, 1000u, 2097152u})
        EXPECT_FALSE(fft.prepare(uSize)) << uSize;
    EXPECT_EQ(fft.size(), 1024u); // as it was
}

TEST(StockObjects, FFTShowsASineBehindItsWindow)
{
    constexpr UINT SIZE = 512;
    CFFT fft;
    fft.analyze(nullptr, nullptr, nullptr); // not prepared: does nothing
    ASSERT_TRUE(fft.prepare(SIZE));
    std::vector<float> signal(SIZE);
    for (UINT n = 0; n < SIZE; n++)
        signal[n] = static_cast<float>(0.5 * std::cos(2.0 * PI * 37 * n / SIZE + 0.8));
    std::vector<float> half(SIZE, 0.5f);
    std::vector<float> imaginary(SIZE);
    std::vector<float> magnitudes(SIZE / 2 + 1);
    std::vector<float> phases(SIZE / 2 + 1);
    for (const bool bOwn : {false, true}) {
        if (bOwn)
            fft.setWindow(half.data());
        else
            fft.setWindow(hannWindow);
        EXPECT_NEAR(fft.windowGain(), 0.5, 1e-6);
        auto real = signal;
        fft.analyze(real.data(), real.data(), imaginary.data()); // in place
        fft.magnitudes(real.data(), imaginary.data(), magnitudes.data());
        fft.phases(real.data(), imaginary.data(), phases.data());
        EXPECT_NEAR(magnitudes[37], 0.5 * SIZE / 2 * fft.windowGain(), 1e-3);
        EXPECT_NEAR(phases[37], 0.8, 1e-4);
        EXPECT_NEAR(magnitudes[36], bOwn ? 0.0 : 0.25 * 0.5 * SIZE / 2, 1e-3);
        EXPECT_NEAR(magnitudes[SIZE / 2], 0.0, 1e-3);
    }
    EXPECT_TRUE(fft.prepare(SIZE));
    EXPECT_EQ(fft.windowGain(), 1.0f); // rectangular again
}

} // namespace
