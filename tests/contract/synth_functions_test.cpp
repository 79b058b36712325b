#include "support/allocation_guard.h"
#include "synthfunctions.h"

#include <cmath>
#include <complex>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace {

using std::numbers::pi;

TEST(SynthFunctions, Conversions)
{
    EXPECT_NEAR(midiNoteToHz(69.0), 440.0, 1e-12);
    EXPECT_NEAR(midiNoteToHz(60.0), 261.6255653, 1e-6);
    EXPECT_NEAR(midiNoteToHz(0.0), 8.1757989156, 1e-9);
    for (double dNote = 0.0; dNote <= 127.0; dNote += 0.37)
        EXPECT_NEAR(hzToMidiNote(midiNoteToHz(dNote)), dNote, 1e-9);
    EXPECT_EQ(midiVelocityToGain(0), 0.0);
    EXPECT_NEAR(midiVelocityToGain(64), 0.253953, 1e-6);
    EXPECT_EQ(midiVelocityToGain(127), 1.0);
    EXPECT_EQ(midiVelocityToGain(200), 1.0);
    EXPECT_NEAR(pitchBendToRatio(1.0, 12.0), 2.0, 1e-12);
    EXPECT_NEAR(pitchBendToRatio(-1.0, 2.0), std::pow(2.0, -1.0 / 6.0), 1e-12);
    EXPECT_EQ(pitchBendToRatio(0.0, 2.0), 1.0);
}

TEST(SynthFunctions, SineTableFollowsItsFormula)
{
    for (UINT i = 0; i <= SINE_TABLE_SIZE; i++)
        EXPECT_NEAR(g_sineTable.m_fValues[i], std::sin(2.0 * pi * i / 1024.0), 1e-7) << i;
    double dWorst = 0.0;
    for (double p = 0.0; p < 1.0; p += 1.0 / 13001.0)
        dWorst = std::max(dWorst, std::fabs(double(sineFromTable(g_sineTable, p)) - std::sin(2.0 * pi * p)));
    EXPECT_LT(dWorst, 4.9e-6); // the stated 4.7e-6 and the rounding of a float
}

// Runs the envelope until it leaves the state it is in; answers how many samples that took.
int samplesInState(CEnvelopeGenerator& envelope, float& fLevel)
{
    const CEnvelopeGenerator::EState eState = envelope.state();
    int nSamples = 0;
    for (; envelope.state() == eState && nSamples < 1000000; nSamples++)
        fLevel = envelope.next();
    return nSamples;
}

TEST(EnvelopeGenerator, SegmentsTakeExactlyTheirTimes)
{
    for (const double fs : {44100.0, 96000.0}) {
        CEnvelopeGenerator envelope;
        envelope.set(10.0, 100.0, 0.25, 300.0);
        envelope.prepare(fs);
        float fLevel = -1.0f;
        EXPECT_FALSE(envelope.isActive());
        EXPECT_EQ(envelope.next(), 0.0f);
        envelope.noteOff(); // without a note
        EXPECT_FALSE(envelope.isActive());

        envelope.noteOn();
        EXPECT_EQ(samplesInState(envelope, fLevel), std::lround(0.010 * fs));
        EXPECT_EQ(fLevel, 1.0f);
        EXPECT_EQ(samplesInState(envelope, fLevel), std::lround(0.100 * fs));
        EXPECT_NEAR(fLevel, 0.25, 1e-6);
        for (int n = 0; n < 1000; n++)
            EXPECT_NEAR(envelope.next(), 0.25, 1e-6);
        envelope.noteOff();
        EXPECT_EQ(samplesInState(envelope, fLevel), std::lround(0.300 * fs));
        EXPECT_NEAR(fLevel, 0.0, 1e-6);
        EXPECT_FALSE(envelope.isActive());
        EXPECT_EQ(envelope.next(), 0.0f);
    }
}

TEST(EnvelopeGenerator, SegmentsAreExponential)
{
    CEnvelopeGenerator envelope;
    envelope.prepare(48000.0);
    envelope.set(100.0, 0.0, 1.0, 100.0);
    envelope.noteOn();
    float fLevel = 0.0f;
    for (int n = 0; n < 2400; n++)
        fLevel = envelope.next();
    EXPECT_NEAR(fLevel, 1.3 * (1.0 - std::sqrt(0.3 / 1.3)), 1e-4); // half of the attack
    (void)samplesInState(envelope, fLevel);
    (void)samplesInState(envelope, fLevel);
    envelope.noteOff();
    for (int n = 0; n < 2400; n++)
        fLevel = envelope.next();
    EXPECT_NEAR(fLevel, -0.001 + 1.001 * std::sqrt(0.001 / 1.001), 1e-4); // half of the release
}

TEST(EnvelopeGenerator, NotesThatInterruptOneAnotherDoNotJump)
{
    CEnvelopeGenerator envelope;
    envelope.prepare(44100.0);
    envelope.set(20.0, 50.0, 0.5, 80.0);
    float fPrevious = 0.0f;
    double dBiggestStep = 0.0;
    for (int n = 0; n < 44100; n++) {
        if (n % 1500 == 0)
            envelope.noteOn();
        if (n % 1500 == 1100 - n / 100)
            envelope.noteOff();
        const float fLevel = envelope.next();
        EXPECT_TRUE(fLevel >= 0.0f && fLevel <= 1.0f) << fLevel;
        dBiggestStep = std::max(dBiggestStep, std::fabs(double(fLevel) - double(fPrevious)));
        fPrevious = fLevel;
    }
    EXPECT_LT(dBiggestStep, 0.005);

    EXPECT_GT(envelope.next(), 0.1f);
    envelope.retrigger();
    EXPECT_LT(envelope.next(), 0.01f);
    envelope.reset();
    EXPECT_EQ(envelope.next(), 0.0f);

    envelope.set(0.0, 0.0, 0.5, 0.0);
    envelope.noteOn();
    EXPECT_EQ(envelope.next(), 1.0f);
    EXPECT_NEAR(envelope.next(), 0.5f, 1e-6);
    envelope.set(0.0, 0.0, 0.75, 0.0); // the sustain level moves during the note
    for (int n = 0; n < 10; n++)
        (void)envelope.next();
    EXPECT_NEAR(envelope.next(), 0.75f, 1e-6);
}

TEST(LFO, ShapesStandWhereTheirFormulasSay)
{
    const struct
    {
        CLFO::EShape m_eShape;
        float m_fEighths[8]; // at phases 0, 1/8 ... 7/8
    } cases[] = {
        {CLFO::sine, {0.0f, 0.70710678f, 1.0f, 0.70710678f, 0.0f, -0.70710678f, -1.0f, -0.70710678f}},
        {CLFO::triangle, {0.0f, 0.5f, 1.0f, 0.5f, 0.0f, -0.5f, -1.0f, -0.5f}},
        {CLFO::saw, {-1.0f, -0.75f, -0.5f, -0.25f, 0.0f, 0.25f, 0.5f, 0.75f}},
        {CLFO::square, {1.0f, 1.0f, 1.0f, 1.0f, -1.0f, -1.0f, -1.0f, -1.0f}},
    };
    for (const auto& [eShape, fEighths] : cases) {
        CLFO lfo;
        lfo.set(eShape, 1000.0);
        lfo.prepare(8000.0);
        for (int n = 0; n < 80; n++)
            EXPECT_NEAR(lfo.next(), fEighths[n % 8], 1e-6) << eShape << " at " << n;
        lfo.reset(0.25);
        EXPECT_NEAR(lfo.next(), fEighths[2], 1e-6);
    }
}

TEST(LFO, SampleAndHoldKeepsARandomNumberForEachPeriod)
{
    CLFO lfo, same;
    for (CLFO* pLFO : {&lfo, &same}) {
        pLFO->set(CLFO::sampleAndHold, 100.0);
        pLFO->prepare(10000.0);
    }
    double dSum = 0.0, dSquares = 0.0;
    int nChanges = 0;
    float fPrevious = 2.0f;
    for (int n = 0; n < 200000; n++) {
        const float fValue = lfo.next();
        ASSERT_EQ(fValue, same.next());
        ASSERT_TRUE(fValue >= -1.0f && fValue <= 1.0f);
        if (fValue != fPrevious) {
            nChanges++;
            dSum += static_cast<double>(fValue);
            dSquares += static_cast<double>(fValue) * static_cast<double>(fValue);
        }
        fPrevious = fValue;
    }
    EXPECT_NEAR(nChanges, 2000, 2);
    EXPECT_NEAR(dSum / nChanges, 0.0, 0.05);
    EXPECT_NEAR(dSquares / nChanges, 1.0 / 3.0, 0.03);
}

// Power beside the mean and the harmonics, in dB of the power in these. The frequency lies on bin uBin, a
// prime, so that everything that folds back misses the harmonics' bins.
double foldedPower_dB(const std::function<double()>& next, UINT uBin)
{
    constexpr UINT LENGTH = 4096;
    std::vector<double> samples(LENGTH);
    for (UINT n = 0; n < LENGTH; n++)
        (void)next();
    double dAll = 0.0;
    for (double& dSample : samples) {
        dSample = next();
        dAll += dSample * dSample;
    }
    double dHarmonic = 0.0;
    for (UINT k = 0; k < LENGTH / 2; k += uBin) {
        const std::complex<double> turn = std::polar(1.0, 2.0 * pi * k / LENGTH);
        std::complex<double> sum = 0.0;
        for (const double dSample : samples)
            sum = sum * turn + dSample;
        dHarmonic += (k == 0 ? 1.0 : 2.0) * std::norm(sum) / LENGTH;
    }
    return 10.0 * std::log10((dAll - dHarmonic) / dHarmonic);
}

TEST(BandLimitedOscillator, FoldsBackFarLessThanThePlainShapes)
{
    const UINT bins[] = {41, 389, 797}; // 441 Hz, 4.2 kHz and 8.6 kHz
    const struct
    {
        CBandLimitedOscillator::EShape m_eShape;
        double m_dBetter_dB[3]; // than the plain shape, at least, on each bin
        std::function<double(double)> m_plain;
    } cases[] = {
        {CBandLimitedOscillator::saw, {15.5, 16.5, 14.5}, [](double p) { return 2.0 * p - 1.0; }},
        {CBandLimitedOscillator::square, {16.0, 20.0, 13.0}, [](double p) { return p < 0.5 ? 1.0 : -1.0; }},
        {CBandLimitedOscillator::triangle,
         {12.0, 17.0, 10.5},
         [](double p) { return p < 0.5 ? 4.0 * p - 1.0 : 3.0 - 4.0 * p; }},
    };
    for (const auto& [eShape, dBetter_dB, plain] : cases)
        for (size_t i = 0; i < std::size(bins); i++) {
            const UINT uBin = bins[i];
            const double dFrequency = 44100.0 * uBin / 4096.0;
            CBandLimitedOscillator oscillator;
            oscillator.set(eShape, dFrequency);
            double p = 0.0;
            const auto nextPlain = [&, &plain = plain] {
                const double dSample = plain(p);
                p = std::fmod(p + uBin / 4096.0, 1.0);
                return dSample;
            };
            const double dFolded = foldedPower_dB([&] { return double(oscillator.next()); }, uBin);
            EXPECT_LT(dFolded, foldedPower_dB(nextPlain, uBin) - dBetter_dB[i]) << eShape << " bin " << uBin;
        }
    CBandLimitedOscillator oscillator;
    oscillator.set(CBandLimitedOscillator::sine, 44100.0 * 389 / 4096.0);
    EXPECT_LT(foldedPower_dB([&] { return double(oscillator.next()); }, 389), -110.0);
}

// The plain shape, averaged over two samples with the weight 1 - |u| that the corrections stand for.
double smoothed(const std::function<double(double)>& plain, double dPhase, double dIncrement)
{
    constexpr int STEPS = 4000;
    double dSum = 0.0;
    for (int i = 0; i < STEPS; i++) {
        const double u = 2.0 * (i + 0.5) / STEPS - 1.0;
        const double p = dPhase + u * dIncrement;
        dSum += plain(p - std::floor(p)) * (1.0 - std::fabs(u)) * 2.0 / STEPS;
    }
    return dSum;
}

TEST(BandLimitedOscillator, IsThePlainShapeSmoothedOverTwoSamples)
{
    const struct
    {
        CBandLimitedOscillator::EShape m_eShape;
        double m_dTolerance; // of the sum above, which cannot meet an edge exactly
        std::function<double(double)> m_plain;
    } cases[] = {
        {CBandLimitedOscillator::saw, 2e-3, [](double p) { return 2.0 * p - 1.0; }},
        {CBandLimitedOscillator::square, 2e-3, [](double p) { return p < 0.3 ? 1.0 : -1.0; }},
        {CBandLimitedOscillator::triangle, 1e-5,
         [](double p) { return p < 0.5 ? 4.0 * p - 1.0 : 3.0 - 4.0 * p; }},
    };
    for (const auto& [eShape, dTolerance, plain] : cases)
        for (const double dIncrement : {0.01, 0.0917, 0.21}) {
            CBandLimitedOscillator oscillator;
            oscillator.set(eShape, dIncrement * 44100.0);
            oscillator.setPulseWidth(0.3);
            for (int n = 0; n < 150; n++)
                EXPECT_NEAR(oscillator.next(), smoothed(plain, n * dIncrement, dIncrement), dTolerance)
                    << eShape << " increment " << dIncrement << " sample " << n;
        }
}

TEST(BandLimitedOscillator, StaysInRangeAndOnPitch)
{
    for (const auto eShape : {CBandLimitedOscillator::sine, CBandLimitedOscillator::saw,
                              CBandLimitedOscillator::square, CBandLimitedOscillator::triangle})
        for (const double dFrequency : {-1.0, 0.0, 55.0, 440.0, 5000.0, 30000.0, std::nan("")})
            for (const double dWidth : {-1.0, 0.1, 0.5, 2.0}) {
                CBandLimitedOscillator oscillator;
                oscillator.setPulseWidth(dWidth);
                oscillator.set(eShape, dFrequency);
                int nRises = 0;
                float fPrevious = 0.0f;
                for (int n = 0; n < 44100; n++) {
                    const float fSample = oscillator.next();
                    ASSERT_TRUE(std::fabs(fSample) <= 1.0001f)
                        << eShape << " " << dFrequency << " " << fSample;
                    nRises += fPrevious <= 0.0f && fSample > 0.0f;
                    fPrevious = fSample;
                }
                if (dFrequency >= 55.0 && dFrequency <= 5000.0) {
                    EXPECT_NEAR(nRises, dFrequency, 2.0) << eShape << " width " << dWidth;
                }
            }
}

TEST(BandLimitedOscillator, PulseWidthSetsTheMean)
{
    for (const double dWidth : {0.1, 0.5, 0.8}) {
        CBandLimitedOscillator oscillator;
        oscillator.set(CBandLimitedOscillator::square, 441.0);
        oscillator.setPulseWidth(dWidth);
        double dSum = 0.0;
        for (int n = 0; n < 44100; n++)
            dSum += static_cast<double>(oscillator.next());
        EXPECT_NEAR(dSum / 44100.0, 2.0 * dWidth - 1.0, 1e-3);
    }
}

TEST(SynthFunctions, NothingAllocatesWhileSounding)
{
    CEnvelopeGenerator envelope;
    CLFO lfo;
    CBandLimitedOscillator oscillator;
    float fSum = 0.0f;
    const velmora::test::CAllocationGuard guard;
    for (int n = 0; n < 2000; n++) {
        if (n % 400 == 0)
            envelope.noteOn();
        if (n % 400 == 200)
            envelope.noteOff();
        lfo.set(static_cast<CLFO::EShape>(n % 5), 5.0);
        oscillator.set(static_cast<CBandLimitedOscillator::EShape>(n % 4), midiNoteToHz(n % 128));
        fSum += envelope.next() * lfo.next() * oscillator.next();
    }
    EXPECT_EQ(guard.count(), 0u);
    EXPECT_TRUE(std::isfinite(fSum));
}

} // namespace
