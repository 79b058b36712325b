#include "pluginconstants.h"
#include "support/allocation_guard.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <string>
#include <tuple>
#include <vector>

namespace {

using Complex = std::complex<double>;
using Process = std::function<float(float)>;

constexpr double PI = std::numbers::pi;
constexpr float INFINITE = std::numeric_limits<float>::infinity();
const float NOT_A_NUMBER = std::nanf("");

double dB(double dLinear)
{
    return 20.0 * std::log10(dLinear);
}

// |H| at a frequency, from an impulse response long enough to have died away.
double measuredGain(const Process& process, double dFrequency_Hz, double dSampleRate)
{
    Complex sum = 0.0;
    for (int n = 0; n < 8000; n++)
        sum += static_cast<double>(process(n == 0 ? 1.0f : 0.0f)) *
               std::polar(1.0, -2.0 * PI * dFrequency_Hz / dSampleRate * n);
    return std::abs(sum);
}

// The analog prototypes, with s = j at the filter's frequency. The bilinear transform maps a frequency f
// to s = j tan(pi f / fs) / tan(pi f0 / fs), so that these give the digital gain without its coefficients.
using Prototype = Complex (*)(Complex s, double Q, double A);

const struct
{
    const char* m_pName;
    CBiquadFilter::EKind m_eKind;
    Prototype m_prototype;
} BIQUAD_CASES[] = {
    {"low-pass", CBiquadFilter::lowPass,
     [](Complex s, double Q, double) { return 1.0 / (s * s + s / Q + 1.0); }},
    {"high-pass", CBiquadFilter::highPass,
     [](Complex s, double Q, double) { return s * s / (s * s + s / Q + 1.0); }},
    {"band-pass", CBiquadFilter::bandPass,
     [](Complex s, double Q, double) { return s / Q / (s * s + s / Q + 1.0); }},
    {"notch", CBiquadFilter::notch,
     [](Complex s, double Q, double) { return (s * s + 1.0) / (s * s + s / Q + 1.0); }},
    {"peak", CBiquadFilter::peak,
     [](Complex s, double Q, double A) { return (s * s + s * A / Q + 1.0) / (s * s + s / (A * Q) + 1.0); }},
    {"low shelf", CBiquadFilter::lowShelf,
     [](Complex s, double Q, double A) {
         const double R = std::sqrt(A) / Q;
         return A * (s * s + s * R + A) / (A * s * s + s * R + 1.0);
     }},
    {"high shelf", CBiquadFilter::highShelf,
     [](Complex s, double Q, double A) {
         const double R = std::sqrt(A) / Q;
         return A * (A * s * s + s * R + 1.0) / (s * s + s * R + A);
     }},
};

double prototypeGain(Prototype prototype, double f, double f0, double fs, double Q, double dGain_dB)
{
    const Complex s(0.0, std::tan(PI * f / fs) / std::tan(PI * f0 / fs));
    return std::abs(prototype(s, Q, std::pow(10.0, dGain_dB / 40.0)));
}

constexpr double RATES[] = {44100.0, 96000.0};
constexpr double FREQUENCIES[] = {50.0, 400.0, 1000.0, 3000.0, 15000.0};

template <typename Filter>
void expectPrototype(const char* pName, Prototype prototype, double Q, double dGain_dB,
                     const std::function<void(Filter&)>& set)
{
    for (const double fs : RATES) {
        Filter filter;
        set(filter);
        filter.prepare(fs);
        for (const double f : FREQUENCIES) {
            filter.reset();
            const double dGain = measuredGain([&](float x) { return filter.process(x); }, f, fs);
            EXPECT_NEAR(dGain, prototypeGain(prototype, f, 1000.0, fs, Q, dGain_dB), 2e-4)
                << pName << " fs " << fs << " Q " << Q << " f " << f;
        }
    }
}

TEST(BuildingBlocks, SecondOrderFiltersFollowTheAnalogPrototypes)
{
    for (const auto& [pName, eKind, prototype] : BIQUAD_CASES)
        for (const double Q : {0.5, 0.7071, 5.0})
            for (const double dGain_dB : {-12.0, 6.0})
                expectPrototype<CBiquadFilter>(
                    pName, prototype, Q, dGain_dB,
                    [&, eKind = eKind](CBiquadFilter& filter) { filter.set(eKind, 1000.0, Q, dGain_dB); });
    const std::pair<CStateVariableFilter::EKind, size_t> kinds[] = {{CStateVariableFilter::lowPass, 0},
                                                                    {CStateVariableFilter::highPass, 1},
                                                                    {CStateVariableFilter::bandPass, 2},
                                                                    {CStateVariableFilter::notch, 3}};
    for (const auto& [eKind, uCase] : kinds)
        for (const double Q : {0.5, 0.7071, 10.0})
            expectPrototype<CStateVariableFilter>(
                "state variable", BIQUAD_CASES[uCase].m_prototype, Q, 0.0,
                [&, eKind = eKind](CStateVariableFilter& filter) { filter.set(eKind, 1000.0, Q); });
}

TEST(BuildingBlocks, OnePoleFilterLosesThreeDecibelsAtItsCutoff)
{
    for (const double fs : RATES)
        for (const double fc : {30.0, 1000.0, 12000.0})
            for (const auto eKind : {COnePoleFilter::lowPass, COnePoleFilter::highPass}) {
                COnePoleFilter filter;
                filter.prepare(fs);
                filter.set(eKind, fc);
                const auto gainAt = [&](double f) {
                    filter.reset();
                    return dB(measuredGain([&](float x) { return filter.process(x); }, f, fs));
                };
                EXPECT_NEAR(gainAt(fc), -3.0103, 2e-3) << fc;
                const double w = std::tan(PI * 0.1 * fc / fs) / std::tan(PI * fc / fs);
                const double dExpected = eKind == COnePoleFilter::lowPass ? 1.0 : w;
                EXPECT_NEAR(gainAt(0.1 * fc), dB(dExpected / std::hypot(1.0, w)), 2e-2) << fc;
            }
}

TEST(BuildingBlocks, FiltersStayStableAtTheEndsOfTheirRanges)
{
    const double extremes[] = {
        -1.0, 0.0, 1e-9, 22050.0, 1e9, static_cast<double>(INFINITE), static_cast<double>(NOT_A_NUMBER)};
    for (const double dFrequency : extremes)
        for (const double dQ : extremes) {
            COnePoleFilter onePole;
            CStateVariableFilter stateVariable;
            CBiquadFilter biquad;
            onePole.set(COnePoleFilter::lowPass, dFrequency);
            for (const auto eKind : {CBiquadFilter::lowPass, CBiquadFilter::peak, CBiquadFilter::highShelf}) {
                stateVariable.set(CStateVariableFilter::bandPass, dFrequency, dQ);
                biquad.set(eKind, dFrequency, dQ, dQ);
                double dPeak = 0.0;
                for (int n = 0; n < 20000; n++) {
                    const float x = n % 3 == 0 ? 1.0f : -0.5f;
                    for (const float y : {onePole.process(x), stateVariable.process(x), biquad.process(x)})
                        dPeak = std::isfinite(y) ? std::max(dPeak, std::fabs(double(y))) : 1e30;
                }
                EXPECT_LT(dPeak, 4000.0) << dFrequency << " " << dQ; // a peak of 60 dB, and then some
            }
        }
}

TEST(BuildingBlocks, AMovingStateVariableFilterStaysBounded)
{
    CStateVariableFilter filter;
    double dPeak = 0.0;
    for (int n = 0; n < 100000; n++) {
        filter.set(CStateVariableFilter::lowPass, n % 2 ? 20.0 : 18000.0, 20.0);
        dPeak = std::max(dPeak, std::fabs(double(filter.process(n % 100 < 50 ? 1.0f : -1.0f))));
    }
    EXPECT_LT(dPeak, 40.0);
}

TEST(BuildingBlocks, EnvelopeDetectorTakesItsTimes)
{
    for (const double fs : RATES) {
        CEnvelopeDetector detector;
        detector.set(DETECT_MODE_PEAK, 10.0, 200.0);
        detector.prepare(fs);
        float fLevel = 0.0f;
        for (int n = 0; n < static_cast<int>(0.010 * fs); n++)
            fLevel = detector.process(-1.0f);
        EXPECT_NEAR(fLevel, 1.0 - std::exp(-1.0), 1e-4);
        for (int n = 0; n < static_cast<int>(fs); n++)
            fLevel = detector.process(1.0f);
        EXPECT_NEAR(fLevel, 1.0, 1e-6);
        for (int n = 0; n < static_cast<int>(0.200 * fs); n++)
            fLevel = detector.process(0.0f);
        EXPECT_NEAR(fLevel, std::exp(-1.0), 1e-4);
    }

    const std::pair<UINT, double> modes[] = {{DETECT_MODE_MS, 0.125}, {DETECT_MODE_RMS, std::sqrt(0.125)}};
    for (const auto& [uMode, dExpected] : modes) {
        CEnvelopeDetector detector;
        detector.set(uMode, 300.0, 300.0);
        float fLevel = 0.0f;
        for (int n = 0; n < 5 * 44100; n++)
            fLevel = detector.process(0.5f * static_cast<float>(std::sin(2.0 * PI * 1000.0 * n / 44100.0)));
        EXPECT_NEAR(fLevel, dExpected, 1e-3) << uMode;
    }

    CEnvelopeDetector immediate;
    immediate.set(DETECT_MODE_PEAK, 0.0, 0.0);
    EXPECT_EQ(immediate.process(-0.75f), 0.75f);
    EXPECT_EQ(immediate.process(0.25f), 0.25f);
}

TEST(BuildingBlocks, DelayLineInterpolates)
{
    CDelayLine line;
    EXPECT_EQ(line.read(1.0), 0.0f);
    line.write(1.0f);
    EXPECT_EQ(line.readCubic(5.0), 0.0f);
    EXPECT_FALSE(line.prepare(0));
    EXPECT_FALSE(line.prepare(16777217));
    ASSERT_TRUE(line.prepare(128));

    // A straight line is met exactly by the first way, a cubic by the second.
    const auto cubic = [](double t) { return 1e-4 * t * t * t - 0.02 * t * t + 0.3 * t - 1.0; };
    CDelayLine ramp;
    ASSERT_TRUE(ramp.prepare(128));
    for (int n = 0; n < 1000; n++) {
        ramp.write(static_cast<float>(n));
        line.write(static_cast<float>(cubic(n - 900)));
    }
    for (const double d : {1.0, 1.25, 2.0, 37.0, 37.5, 127.5, 128.0}) {
        EXPECT_NEAR(ramp.read(d), 1000.0 - d, 1e-3) << d;
        if (d >= 2.0) {
            EXPECT_NEAR(line.readCubic(d), cubic(100.0 - d), 1e-4) << d;
        }
    }
    EXPECT_EQ(ramp.readCubic(1.5), ramp.read(1.5));
    for (const double d : {-5.0, 0.0, static_cast<double>(NOT_A_NUMBER)})
        EXPECT_EQ(ramp.read(d), 999.0f) << d;
    for (const double d : {129.0, 1e300, static_cast<double>(INFINITE)})
        EXPECT_EQ(ramp.readCubic(d), 872.0f) << d;

    ASSERT_TRUE(ramp.prepare(128)); // forgets what was written
    EXPECT_EQ(ramp.read(50.0), 0.0f);
}

TEST(BuildingBlocks, DelayLineLosesWhatItsDescriptionSays)
{
    const std::pair<float (CDelayLine::*)(double) const, double> ways[] = {{&CDelayLine::read, -3.01},
                                                                           {&CDelayLine::readCubic, -1.07}};
    for (const auto& [read, dExpected_dB] : ways) {
        CDelayLine line;
        ASSERT_TRUE(line.prepare(16));
        const auto process = [&line, read = read](float x) {
            line.write(x);
            return (line.*read)(8.5);
        };
        EXPECT_NEAR(dB(measuredGain(process, 12000.0, 48000.0)), dExpected_dB, 0.01);
    }
}

TEST(BuildingBlocks, SmootherTakesItsTimeAndArrives)
{
    for (const double fs : RATES) {
        CParameterSmoother smoother;
        smoother.setTime(50.0);
        smoother.prepare(fs);
        smoother.jumpTo(100.0);
        smoother.setTarget(20.0);
        double dPrevious = 100.0;
        int nSamples = 0;
        for (; smoother.isMoving() && nSamples < fs; nSamples++) {
            const double dValue = smoother.next();
            EXPECT_LT(dValue, dPrevious);
            dPrevious = dValue;
            if (nSamples + 1 == static_cast<int>(0.05 * fs)) {
                EXPECT_NEAR(dValue, 20.0 + 80.0 * std::exp(-1.0), 1e-2);
            }
        }
        EXPECT_EQ(smoother.value(), 20.0);
        EXPECT_NEAR(nSamples / fs, 0.05 * std::log(1e4), 0.001);
        EXPECT_EQ(smoother.next(), 20.0);

        smoother.setTarget(static_cast<double>(NOT_A_NUMBER));
        smoother.setTarget(static_cast<double>(-INFINITE));
        EXPECT_EQ(smoother.next(), 20.0);
        smoother.setTime(0.0);
        smoother.setTarget(1.0);
        EXPECT_EQ(smoother.next(), 1.0);
    }
}

// Coherent gain and equivalent noise bandwidth in bins as the cited tables have them.
TEST(BuildingBlocks, WindowsHaveTheirFigures)
{
    const std::tuple<EWindowKind, double, double, double, double> cases[] = {
        {rectangularWindow, 1.0, 1.0, -13.2, 1.0},           {hannWindow, 0.5, 1.5, -31.4, 2.0},
        {hammingWindow, 0.54, 1.3628, -42.6, 2.0},           {blackmanWindow, 0.42, 1.7268, -58.1, 3.0},
        {blackmanHarrisWindow, 0.35875, 2.0044, -92.0, 4.0}, {flatTopWindow, 0.21557895, 3.7702, -93.0, 5.0},
    };
    constexpr UINT LENGTH = 1024;
    for (const auto& [eKind, dGain, dBandwidth, dHighestSideLobe_dB, dFirstLobeBins] : cases) {
        std::vector<float> w(LENGTH), symmetric(LENGTH);
        makeWindow(eKind, w.data(), LENGTH);
        makeWindow(eKind, symmetric.data(), LENGTH, false);
        const auto level = [&](double dBin) {
            Complex sum = 0.0;
            for (UINT n = 0; n < LENGTH; n++)
                sum += static_cast<double>(w[n]) * std::polar(1.0, 2.0 * PI * dBin * n / LENGTH);
            return std::abs(sum);
        };
        const double dSum = level(0.0);
        double dSquares = 0.0;
        for (UINT n = 0; n < LENGTH; n++) {
            dSquares += static_cast<double>(w[n]) * static_cast<double>(w[n]);
            EXPECT_NEAR(symmetric[n], symmetric[LENGTH - 1 - n], 1e-6);
        }
        EXPECT_NEAR(dSum / LENGTH, dGain, 1e-6) << eKind;
        EXPECT_NEAR(LENGTH * dSquares / (dSum * dSum), dBandwidth, 1e-4) << eKind;
        double dHighest = 0.0;
        for (double dBin = dFirstLobeBins + 0.05; dBin < 40.0; dBin += 0.05)
            dHighest = std::max(dHighest, level(dBin));
        EXPECT_LT(dB(dHighest / dSum), dHighestSideLobe_dB) << eKind;
        if (eKind == flatTopWindow) {
            EXPECT_GT(dB(level(0.5) / dSum), -0.01);
        }
    }
    float fOne = 0.0f;
    makeWindow(hannWindow, &fOne, 1, false);
    EXPECT_EQ(fOne, 1.0f);
    makeWindow(hannWindow, nullptr, 0);
}

TEST(BuildingBlocks, Decibels)
{
    for (const double d : {-120.0, -6.0206, 0.0, 20.0})
        EXPECT_NEAR(linearToDB(-dBToLinear(d)), d, 1e-9);
    for (const double d : {0.0, 1e-7, 1e-300, static_cast<double>(NOT_A_NUMBER)})
        EXPECT_EQ(linearToDB(d), LOWEST_DB) << d;
}

// Every block that has a memory, as a function from input to output.
struct CBlocks
{
    CBlocks()
    {
        m_biquad.set(CBiquadFilter::peak, 1000.0, 2.0, 12.0);
        m_stateVariable.set(CStateVariableFilter::lowPass, 1000.0, 2.0);
        m_highPass.set(COnePoleFilter::highPass, 100.0);
        m_rms.set(DETECT_MODE_RMS, 1.0, 5.0);
        EXPECT_TRUE(m_line.prepare(64));
        m_processes = {
            {"peak detector", [this](float x) { return m_peak.process(x); }},
            {"RMS detector", [this](float x) { return m_rms.process(x); }},
            {"low-pass", [this](float x) { return m_lowPass.process(x); }},
            {"high-pass", [this](float x) { return m_highPass.process(x); }},
            {"state variable", [this](float x) { return m_stateVariable.process(x); }},
            {"biquad", [this](float x) { return m_biquad.process(x); }},
            {"feedback delay",
             [this](float x) {
                 const float fEcho = m_line.read(20.5);
                 m_line.write(x + 0.5f * fEcho);
                 return fEcho;
             }},
        };
    }

    CEnvelopeDetector m_peak, m_rms;
    COnePoleFilter m_lowPass, m_highPass;
    CStateVariableFilter m_stateVariable;
    CBiquadFilter m_biquad;
    CDelayLine m_line;
    std::vector<std::pair<const char*, Process>> m_processes;
};

float noise(int n)
{
    return static_cast<float>(std::sin(n * 12.9898) * 0.9);
}

TEST(BuildingBlocks, BadInputCountsAsSilence)
{
    for (const float fBad : {NOT_A_NUMBER, -NOT_A_NUMBER, INFINITE, -INFINITE}) {
        CBlocks bad, clean;
        for (size_t i = 0; i + 1 < bad.m_processes.size(); i++)
            for (int n = 0; n < 500; n++) {
                const bool bHit = n % 100 == 50;
                const float fFound = bad.m_processes[i].second(bHit ? fBad : noise(n));
                const float fExpected = clean.m_processes[i].second(bHit ? 0.0f : noise(n));
                ASSERT_EQ(fFound, fExpected) << bad.m_processes[i].first << " at " << n;
            }

        // What is fed back is added to the input ahead of the line: there, both are lost for one sample.
        const auto& [pName, process] = bad.m_processes.back();
        for (int n = 0; n < 500; n++)
            ASSERT_TRUE(std::isfinite(process(n % 100 == 50 ? fBad : noise(n)))) << pName << " at " << n;
    }
}

TEST(BuildingBlocks, HugeInputAndUnstableCoefficientsAreForgotten)
{
    CBlocks blocks;
    for (const auto& [pName, process] : blocks.m_processes) {
        for (int n = 0; n < 100; n++)
            (void)process(n % 2 ? std::numeric_limits<float>::max() : -std::numeric_limits<float>::max());
        float fLast = 1.0f;
        for (int n = 0; n < 5 * 44100; n++)
            fLast = process(0.0f);
        EXPECT_EQ(fLast, 0.0f) << pName;
    }

    CBiquadFilter filter;
    filter.setCoefficients(1.0, 0.0, 0.0, -3.0, 2.5);
    for (int n = 0; n < 2000; n++)
        (void)filter.process(1.0f);
    filter.setCoefficients(0.25, 0.5, 0.25, 0.0, 0.0);
    for (int n = 0; n < 4; n++)
        (void)filter.process(1.0f);
    EXPECT_EQ(filter.process(1.0f), 1.0f);
}

TEST(BuildingBlocks, TailsEndInSilenceNotInDenormals)
{
    CBlocks blocks;
    for (const auto& [pName, process] : blocks.m_processes) {
        for (int n = 0; n < 1000; n++)
            (void)process(noise(n));
        int nDenormal = 0;
        float fLast = 1.0f;
        for (int n = 0; n < 10 * 44100; n++) {
            fLast = process(0.0f);
            nDenormal += std::fpclassify(fLast) == FP_SUBNORMAL;
        }
        EXPECT_EQ(fLast, 0.0f) << pName;
        EXPECT_LT(nDenormal, 200) << pName; // a tail of denormals would fill thousands of samples
    }
}

TEST(BuildingBlocks, NothingAllocatesWhileProcessing)
{
    CBlocks blocks;
    CParameterSmoother smoother;
    float fSum = 0.0f;
    const velmora::test::CAllocationGuard guard;
    for (int n = 0; n < 1000; n++) {
        for (const auto& [pName, process] : blocks.m_processes)
            fSum += process(noise(n));
        smoother.setTarget(n);
        fSum += static_cast<float>(smoother.next()) + blocks.m_line.readCubic(n % 70);
        blocks.m_biquad.set(CBiquadFilter::lowShelf, n, 1.0, 3.0);
        blocks.m_stateVariable.set(CStateVariableFilter::notch, n, 1.0);
        blocks.m_lowPass.set(COnePoleFilter::lowPass, n);
        blocks.m_rms.set(DETECT_MODE_MS, n, n);
    }
    blocks.m_line.reset();
    EXPECT_EQ(guard.count(), 0u);
    EXPECT_TRUE(std::isfinite(fSum));
    ASSERT_TRUE(blocks.m_line.prepare(4096));
    EXPECT_GT(guard.count(), 0u); // the guard does count
}

} // namespace
