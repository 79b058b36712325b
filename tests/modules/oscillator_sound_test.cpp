// What each kind sounds like, measured from outside.

#include "dsp/fft.h"
#include "dsp/modules/pulse_gate.h"
#include "dsp/modules/sine_resonator.h"
#include "oscillator_player.h"

#include <gtest/gtest.h>
#include <set>

namespace velmora::test {

namespace {

TEST(OscillatorSound, SineHasItsFrequencyItsHeightAndNothingElse)
{
    struct CCase
    {
        int m_nRate;
        float m_fFrequency;
        int m_nFrames; // whole periods
    };
    for (const auto& [nRate, fFrequency, nFrames] : {CCase{44100, 20, 441000},
                                                     {48000, 20, 480000},
                                                     {192000, 20, 960000},
                                                     {192000, 2, 960000},
                                                     {48000, 1000, 480000},
                                                     {44100, 997, 441000},
                                                     {96000, 47999, 96000},
                                                     {8000, 4000, 8000}}) {
        SCOPED_TRACE(::testing::Message() << fFrequency << " Hz at " << nRate << " Hz");
        COscillator oscillator;
        oscillator.setFrequency(fFrequency);
        const auto samples = playFromStart(oscillator, nRate, nFrames);
        const double dTurns = static_cast<double>(fFrequency) / nRate;
        const bool bAlternates = 2.0F * fFrequency == static_cast<float>(nRate);
        const auto sine = component(samples, dTurns) * (bAlternates ? 0.5 : 1.0);
        EXPECT_NEAR(std::abs(sine), MINUS_6_DB, 2e-6);

        std::vector<double> rest;
        for (std::size_t u = 0; u < samples.size(); ++u)
            rest.push_back(samples[u] - std::real(sine * std::polar(1.0, 2.0 * std::numbers::pi *
                                                                             std::fmod(dTurns * u, 1.0))));
        EXPECT_LT(20.0 * std::log10(rms(rest) / rms(samples)), -110.0);
        EXPECT_NEAR(std::ranges::max(samples), MINUS_6_DB, fFrequency < 2000.0F ? 2e-4 : 1e-2);
        EXPECT_LE(std::ranges::max(samples), MINUS_6_DB * 1.000001F);
    }
}

TEST(OscillatorSound, SineKeepsItsHeightForTenMinutes)
{
    for (const double dFrequency : {20.0, 997.0, 15000.0}) {
        CSineResonator sine;
        sine.start(dFrequency, 48000.0);
        double dPeak = 0.0;
        for (int n = 0; n < 600 * 48000; ++n) {
            const double dSample = std::abs(sine.next());
            dPeak = n < 595 * 48000 ? 0.0 : std::max(dPeak, dSample);
        }
        EXPECT_NEAR(dPeak, 1.0, 1e-6) << dFrequency;
    }
}

TEST(OscillatorSound, SquareHasOddHarmonics)
{
    COscillator oscillator;
    oscillator.setKind(OSCILLATOR_SQUARE);
    oscillator.setFrequency(101.0F);
    oscillator.setAmplitude(0.0F);
    const auto samples = playFromStart(oscillator, 96000, 96000);
    EXPECT_EQ(std::set<float>(samples.begin(), samples.end()), (std::set<float>{-1.0F, 1.0F}));
    for (int nHarmonic = 1; nHarmonic <= 9; ++nHarmonic)
        EXPECT_NEAR(std::abs(component(samples, 101.0 * nHarmonic / 96000)),
                    nHarmonic % 2 == 1 ? 4.0 / (std::numbers::pi * nHarmonic) : 0.0, 3e-3)
            << nHarmonic;
}

TEST(OscillatorSound, ImpulsesKeepTheirMeanSpacing)
{
    struct CCase
    {
        int m_nRate;
        float m_fFrequency;
        std::set<int> m_spacings;
    };
    for (const auto& [nRate, fFrequency, spacings] : {CCase{48000, 1000.0F, {48}},
                                                      {44100, 1000.0F, {44, 45}},
                                                      {44100, 20.5F, {2151, 2152}},
                                                      {96000, 40000.0F, {2, 3}},
                                                      {48000, 24000.0F, {2}}}) {
        SCOPED_TRACE(::testing::Message() << fFrequency << " Hz at " << nRate << " Hz");
        COscillator oscillator;
        oscillator.setKind(OSCILLATOR_IMPULSES);
        oscillator.setFrequency(fFrequency);
        const auto samples = playFromStart(oscillator, nRate, 100 * nRate);
        std::vector<int> places;
        for (int n = 0; n < 100 * nRate; ++n)
            if (samples[static_cast<std::size_t>(n)] != 0.0F) {
                EXPECT_EQ(samples[static_cast<std::size_t>(n)], MINUS_6_DB);
                places.push_back(n);
            }
        EXPECT_EQ(places.front(), 0);
        std::set<int> found;
        for (std::size_t u = 1; u < places.size(); ++u)
            found.insert(places[u] - places[u - 1]);
        EXPECT_EQ(found, spacings);
        EXPECT_NEAR(static_cast<double>(places.size()), 100.0 * fFrequency, 1.0);
    }
}

TEST(OscillatorSound, ImpulsesAreNotMadeUpForWhenTheyComeFaster)
{
    COscillator oscillator;
    oscillator.setKind(OSCILLATOR_IMPULSES);
    for (const float fBefore : {20.0F, 0.0F}) {
        oscillator.setFrequency(fBefore);
        (void)playFromStart(oscillator, 48000, 2000);
        oscillator.setFrequency(10000.0F);
        const auto samples = play(oscillator, 4800);
        EXPECT_EQ(std::ranges::count(samples, MINUS_6_DB), 1000) << fBefore;
    }
}

TEST(OscillatorSound, NoiseIsWhiteAndUniform)
{
    COscillator oscillator;
    oscillator.setKind(OSCILLATOR_WHITE_NOISE);
    oscillator.setAmplitude(0.0F);
    oscillator.setSeed(1);
    constexpr std::size_t LENGTH = 1 << 18;
    const auto samples = playFromStart(oscillator, 48000, LENGTH);
    EXPECT_GE(std::ranges::min(samples), -16383.0F / 16384.0F);
    EXPECT_LT(std::ranges::min(samples), -0.999F);
    EXPECT_LE(std::ranges::max(samples), 1.0F);
    EXPECT_GT(std::ranges::max(samples), 0.999F);
    EXPECT_NEAR(rms(samples), 1.0 / std::sqrt(3.0), 0.003);
    std::vector<float> real(LENGTH);
    std::vector<float> imaginary(LENGTH);
    CFFT().transform(LENGTH, false, samples.data(), nullptr, real.data(), imaginary.data());
    constexpr std::size_t BAND = LENGTH / 2 / 64;
    for (std::size_t uBand = 0; uBand < 64; ++uBand) { // the mean power of as many bins, 1 in every band
        double dPower = 0.0;
        for (std::size_t u = std::max<std::size_t>(1, uBand * BAND); u < (uBand + 1) * BAND; ++u)
            dPower += 3.0 / LENGTH / BAND * (std::pow(real[u], 2.0) + std::pow(imaginary[u], 2.0));
        EXPECT_NEAR(dPower, 1.0, 0.1) << uBand;
    }
}

TEST(OscillatorSound, PulsesSoundForTheirDutyCycle)
{
    struct CCase
    {
        int m_nRate;
        float m_fPulseRate;
        float m_fDuty;
        int m_nOn;
        int m_nOff;
    };
    for (const UINT uKind : {OSCILLATOR_PULSED_SINUSOID, OSCILLATOR_PULSED_NOISE})
        for (const auto& [nRate, fPulseRate, fDuty, nOn, nOff] : {CCase{44100, 2.0F, 50.0F, 11025, 11025},
                                                                  {48000, 10.0F, 1.0F, 48, 4752},
                                                                  {44100, 7.0F, 33.0F, 2079, 4221},
                                                                  {48000, 0.1F, 99.0F, 475200, 4800}}) {
            SCOPED_TRACE(::testing::Message() << uKind << ", " << fPulseRate << " Hz, " << fDuty << " %");
            COscillator oscillator;
            oscillator.setKind(uKind);
            oscillator.setParameter(OSCILLATOR_PULSE_RATE, fPulseRate);
            oscillator.setParameter(OSCILLATOR_DUTY_CYCLE, fDuty);
            oscillator.setFrequency(997.0F);
            oscillator.setSeed(5);
            const auto pulsed = playFromStart(oscillator, nRate, 3 * (nOn + nOff), 1000);
            oscillator.setKind(uKind == OSCILLATOR_PULSED_NOISE ? OSCILLATOR_WHITE_NOISE
                                                                : OSCILLATOR_SINUSOID);
            auto expected = playFromStart(oscillator, nRate, 3 * (nOn + nOff)); // runs on in the pauses
            for (std::size_t u = 0; u < expected.size(); ++u)
                if (static_cast<int>(u) % (nOn + nOff) >= nOn)
                    expected[u] = 0.0F;
            EXPECT_EQ(pulsed, expected);
        }

    CPulseGate gate;
    std::vector<float> samples(20, 1.0F);
    gate.apply(samples.data(), 2, 3, 7, 4);
    EXPECT_EQ(gate.firstIndex(), -1);
    EXPECT_EQ(gate.lastIndex(), -1);
    gate.apply(samples.data(), 2, 7, 7, 4);
    EXPECT_EQ(gate.lastIndex(), 4);
    EXPECT_EQ(gate.firstIndex(), 7);
}

TEST(OscillatorSound, SingleImpulseSoundsOnceWhenFired)
{
    COscillator oscillator;
    oscillator.setKind(OSCILLATOR_SINGLE_IMPULSE);
    oscillator.setParameter(OSCILLATOR_IMPULSE_HEIGHT, 0.5F);
    const std::vector<float> silence(100, 0.0F);
    EXPECT_EQ(playFromStart(oscillator, 48000, 100), silence);
    auto impulse = silence;
    impulse[0] = 0.5F * MINUS_6_DB;
    for (int n = 0; n < 2; ++n) {
        oscillator.fireImpulse();
        EXPECT_EQ(play(oscillator, 100), impulse);
        EXPECT_EQ(play(oscillator, 100), silence);
    }
}

TEST(OscillatorSound, SweepRisesLinearlyAndBeginsAnew)
{
    struct CCase
    {
        float m_fLow;
        float m_fHigh;
        float m_fPeriod;
    };
    constexpr int RATE = 48000;
    for (const auto& [fLow, fHigh, fPeriod] :
         {CCase{100.0F, 1100.0F, 2.0F}, {20.0F, 20000.0F, 5.0F}, {1000.0F, 1000.5F, 10.0F}}) {
        SCOPED_TRACE(fHigh);
        COscillator oscillator;
        oscillator.setClass(OSCILLATOR_SWEEP);
        oscillator.setAmplitude(0.0F);
        oscillator.setFrequencyRange(fLow, fHigh);
        oscillator.setParameter(OSCILLATOR_SWEEP_PERIOD, fPeriod);
        const int nPeriod = static_cast<int>(fPeriod) * RATE;
        const auto samples = playFromStart(oscillator, RATE, 2 * nPeriod);

        double dWorst = 0.0;
        const double dStep = (static_cast<double>(fHigh) - fLow) / nPeriod;
        for (double n = 0; n < nPeriod; ++n) {
            const double dTurns = (fLow * n + dStep * n * (n - 1.0) / 2.0) / RATE;
            const double dSine = std::sin(2.0 * std::numbers::pi * std::fmod(dTurns, 1.0));
            dWorst = std::max(dWorst, std::abs(dSine - samples[static_cast<std::size_t>(n)]));
        }
        EXPECT_LT(dWorst, 0.01);
        // The step that reaches the high end may be rounded beyond it or not.
        const auto again = samples.begin() + nPeriod;
        const auto second = *again == 0.0F ? again : again + 1;
        EXPECT_TRUE(std::equal(second, samples.end(), samples.begin()));
    }
}

} // namespace

} // namespace velmora::test
