#include "examples/example_plugin.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <map>

namespace velmora::test {
namespace {

enum
{
    ATTACK = 0,
    DECAY = 1,
    SUSTAIN = 2,
    RELEASE = 3,
    CUTOFF = 4,
    SWEEP = 6,
    DETUNE = 7,
    VIBRATO_RATE = 8,
    BEND_RANGE = 9,
    AUDITION = 45,
    METER = 50,
    WAVEFORM = 70
};

double hertz(double dNote)
{
    return 440.0 * std::exp2((dNote - 69.0) / 12.0);
}

// A synth without detune, filter or fading: a held note is a steady tone.
class PolySynth : public testing::Test
{
  protected:
    void prepare(int nRate, int nWaveform = 0)
    {
        m_nRate = nRate;
        m_synth.set(WAVEFORM, nWaveform);
        m_synth.set(DETUNE, 0.0);
        m_synth.set(CUTOFF, 20480.0);
        m_synth.set(SWEEP, 0.0);
        m_synth.set(ATTACK, 1.0);
        m_synth.set(SUSTAIN, 100.0);
        m_synth.set(RELEASE, 10.0);
        m_synth.prepare(nRate);
    }

    void play(UINT uNote) { m_synth->midiNoteOn(0, uNote, 127); }
    void letGo(UINT uNote) { m_synth->midiNoteOff(0, uNote, 0, false); }

    std::vector<float> listen(double dSeconds)
    {
        return channelOf(m_synth.processSilence(static_cast<size_t>(dSeconds * m_nRate)), 0);
    }

    // Where the strongest component within 30 cents of the note lies, in cents.
    double centsFrom(const std::vector<float>& samples, double dNote) const
    {
        double dBest = 0.0;
        double dBestCents = 0.0;
        for (double dCents = -30.0; dCents <= 30.0; dCents += 1.0) {
            const double dFound = amplitudeAt(samples, hertz(dNote + dCents / 100.0), m_nRate);
            if (dFound > dBest) {
                dBest = dFound;
                dBestCents = dCents;
            }
        }
        return dBestCents;
    }

    bool isHeard(const std::vector<float>& samples, UINT uNote) const
    {
        return amplitudeAt(samples, hertz(uNote), m_nRate) > 0.02;
    }

    // All controls stand where a new synth has them.
    void checkStartValues()
    {
        const CExamplePlugIn fresh("PolySynth");
        for (const CUICtrl* pControl : fresh.controls())
            if (pControl->uControlType != FILTER_CONTROL_LED_METER) {
                EXPECT_EQ(m_synth.value(pControl->uControlId), fresh.value(pControl->uControlId))
                    << pControl->cControlName;
            }
    }

    CExamplePlugIn m_synth{"PolySynth"};
    int m_nRate = 44100;
};

} // namespace

TEST_F(PolySynth, playsEachWaveformInTune)
{
    for (int nRate : {44100, 48000, 96000}) {
        for (int nWaveform = 0; nWaveform < 4; ++nWaveform) {
            for (UINT uNote : {45U, 69U, 88U}) {
                prepare(nRate, nWaveform);
                play(uNote);
                const auto samples = listen(0.3);
                EXPECT_LE(std::abs(centsFrom(samples, uNote)), 1.0)
                    << "waveform " << nWaveform << ", note " << uNote << ", rate " << nRate;
                EXPECT_GT(peakOf(samples), 0.1);
            }
        }
    }
}

TEST_F(PolySynth, playsEightNotesAndStealsReleasedThenOldestVoices)
{
    prepare(44100);
    const std::vector<UINT> notes = {48, 52, 55, 59, 62, 66, 69, 73};
    for (UINT uNote : notes)
        play(uNote);
    auto samples = listen(0.5);
    for (UINT uNote : notes)
        EXPECT_TRUE(isHeard(samples, uNote)) << uNote;

    play(80); // all keys are down: the first note gives its voice
    samples = listen(0.5);
    EXPECT_TRUE(isHeard(samples, 80));
    EXPECT_FALSE(isHeard(samples, 48));
    EXPECT_TRUE(isHeard(samples, 52));

    m_synth.set(RELEASE, 5000.0);
    letGo(66);
    play(85); // one key is up: its voice goes, though others are older
    samples = listen(0.5);
    EXPECT_TRUE(isHeard(samples, 85));
    EXPECT_FALSE(isHeard(samples, 66));
    EXPECT_TRUE(isHeard(samples, 52));

    m_synth.set(RELEASE, 10.0);
    m_synth->midiNoteOff(0, 0, 0, true);
    listen(0.1);
    EXPECT_EQ(peakOf(listen(0.1)), 0.0);
}

TEST_F(PolySynth, followsReleaseVelocityAndAudition)
{
    prepare(44100);
    m_synth->midiNoteOn(0, 69, 64);
    const double dSoft = amplitudeAt(listen(0.2), 440.0, 44100);
    letGo(69);
    listen(0.1);
    EXPECT_EQ(peakOf(listen(0.05)), 0.0) << "silent after the release";
    play(69);
    const double dLoud = amplitudeAt(listen(0.2), 440.0, 44100);
    EXPECT_NEAR(dSoft / dLoud, std::pow(64.0 / 127.0, 2.0), 0.01);
    letGo(69);
    listen(0.1);

    m_synth.set(AUDITION, 1.0);
    const auto chord = listen(0.3);
    for (UINT uNote : {57U, 61U, 64U, 69U})
        EXPECT_TRUE(isHeard(chord, uNote)) << uNote;
    EXPECT_GT(m_synth.meter(METER), 0.5f);
    m_synth.prepare(44100);
    EXPECT_GT(peakOf(listen(0.1)), 0.05) << "a start of the audio begins the chord again";
    m_synth.set(AUDITION, 0.0);
    listen(0.1);
    EXPECT_EQ(peakOf(listen(0.05)), 0.0);
}

TEST_F(PolySynth, bendsAndVibrates)
{
    prepare(44100);
    m_synth.set(BEND_RANGE, 2.0);
    play(69);
    m_synth->midiPitchBend(0, 8191, 1.0f);
    EXPECT_LE(std::abs(centsFrom(listen(0.3), 71.0)), 1.0);
    m_synth.set(BEND_RANGE, 12.0);
    m_synth->midiPitchBend(0, -8192, -1.0f);
    listen(0.01);
    EXPECT_LE(std::abs(centsFrom(listen(0.3), 57.0)), 1.0);
    m_synth->midiPitchBend(0, 0, 0.0f);
    listen(0.01);

    // Vibrato of 5 Hz spreads the tone into lines 5 Hz apart.
    m_synth.set(VIBRATO_RATE, 5.0);
    const double dPlain = amplitudeAt(listen(1.0), 445.0, 44100);
    m_synth->midiModWheel(0, 127);
    listen(0.01);
    EXPECT_GT(amplitudeAt(listen(1.0), 445.0, 44100), 20.0 * dPlain);
}

TEST_F(PolySynth, lostNotesAreNotLeftHanging)
{
    prepare(44100);
    play(69);
    listen(0.05);
    for (UINT i = 0; i < 1000; ++i) // far more than fit, while no audio runs; the note-off is lost
        m_synth->midiPitchBend(0, 0, 0.0f);
    letGo(69);
    listen(0.1);
    EXPECT_EQ(peakOf(listen(0.1)), 0.0);
    play(69);
    EXPECT_GT(peakOf(listen(0.1)), 0.1) << "and it plays on";

    play(60);
    m_synth.prepare(44100);
    EXPECT_EQ(peakOf(listen(0.1)), 0.0) << "a start of the audio forgets what was played before";
}

TEST_F(PolySynth, presetsSoundAndDiffer)
{
    EXPECT_STREQ(m_synth->m_PresetNames[0], "Init");
    std::map<double, std::string> energies;
    int nPresets = 0;
    for (; nPresets < MAX_PRESETS && m_synth->m_PresetNames[nPresets]; ++nPresets) {
        const std::string sName = m_synth->m_PresetNames[nPresets];
        m_synth.selectPreset(nPresets);
        if (nPresets == 0)
            checkStartValues();
        m_synth.prepare(44100);
        for (UINT uNote : {45U, 57U, 61U, 64U})
            play(uNote);
        const auto samples = listen(2.0);
        EXPECT_GT(peakOf(samples), 0.1) << sName;
        EXPECT_LT(peakOf(samples), 1.0) << sName;
        double dEnergy = 0.0;
        for (float fSample : samples)
            dEnergy += static_cast<double>(fSample) * fSample;
        EXPECT_TRUE(energies.emplace(dEnergy, sName).second) << sName;
    }
    EXPECT_EQ(nPresets, 6);
}

} // namespace velmora::test
