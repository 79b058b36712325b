#include "support/allocation_guard.h"
#include "synthfunctions.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using std::numbers::pi;

TEST(SynthFunctions, Conversions)
{
    EXPECT_NEAR(midiNoteToHz(60.0), 261.6255653, 1e-6);
    for (double dNote = 0.0; dNote <= 127.0; dNote += 0.37)
        EXPECT_NEAR(hzToMidiNote(midiNoteToHz(dNote)), dNote, 1e-9);
    EXPECT_NEAR(midiVelocityToGain(64), 0.253953, 1e-6);
    EXPECT_EQ(midiVelocityToGain(200), 1.0);
    EXPECT_NEAR(pitchBendToRatio(-1.0, 2.0), std::pow(2.0, -1.0 / 6.0), 1e-12);
}

TEST(SynthFunctions, SineTableStaysWithinItsError)
{
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
    CLFO lfo;
    lfo.set(CLFO::sampleAndHold, 100.0);
    lfo.prepare(10000.0);
    double dSquares = 0.0;
    int nChanges = 0;
    float fPrevious = 2.0f;
    for (int n = 0; n < 200000; n++) {
        const float fValue = lfo.next();
        ASSERT_TRUE(fValue >= -1.0f && fValue <= 1.0f);
        nChanges += fValue != fPrevious;
        dSquares += static_cast<double>(fValue) * static_cast<double>(fValue);
        fPrevious = fValue;
    }
    EXPECT_NEAR(nChanges, 2000, 2);
    EXPECT_NEAR(dSquares / 200000, 1.0 / 3.0, 0.03); // spread evenly
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
