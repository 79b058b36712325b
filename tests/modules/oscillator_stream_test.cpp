// The oscillator as a stream uses it: buffers of any size, changes from another thread.

#include "dsp/modules/oscillator_generator.h"
#include "oscillator_player.h"
#include "support/allocation_guard.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace velmora::test {

namespace {

// Each kind, and the sweep behind them.
constexpr std::size_t SOUNDS = OSCILLATOR_KINDS.size() + 1;

void choose(COscillator& oscillator, std::size_t uSound)
{
    oscillator.setKind(OSCILLATOR_KINDS[uSound % OSCILLATOR_KINDS.size()].m_eKind);
    oscillator.setClass(uSound < OSCILLATOR_KINDS.size() ? OSCILLATOR_STANDARD : OSCILLATOR_SWEEP);
    oscillator.setParameter(OSCILLATOR_PULSE_RATE, 9.7F);
    oscillator.setFrequency(441.7F);
    oscillator.setSeed(42);
    oscillator.fireImpulse();
}

TEST(OscillatorStream, BufferSizeChangesNothing)
{
    for (std::size_t uSound = 0; uSound < SOUNDS; ++uSound) {
        SCOPED_TRACE(uSound);
        COscillator oscillator;
        choose(oscillator, uSound);
        const auto samples = playFromStart(oscillator, 44100, 30000, 8192);
        EXPECT_GT(rms(samples), 1e-3);
        for (const int nBlock : {1, 64, 1000}) {
            oscillator.fireImpulse();
            EXPECT_EQ(playFromStart(oscillator, 44100, 30000, nBlock), samples) << nBlock;
        }
    }
}

TEST(OscillatorStream, BothOperationsAndBothChannelCountsCarryTheSameSignal)
{
    constexpr UINT FRAMES = 6000;
    for (std::size_t uSound = 0; uSound < SOUNDS; ++uSound) {
        SCOPED_TRACE(uSound);
        COscillator oscillator;
        choose(oscillator, uSound);
        const auto samples = playFromStart(oscillator, 48000, FRAMES);
        std::vector<float> stereo(2 * FRAMES, 9.0F);
        std::vector<float> scaled(2 * FRAMES, 9.0F);
        oscillator.prepareForPlay();
        oscillator.fireImpulse();
        const CAllocationGuard guard;
        EXPECT_TRUE(oscillator.processInterleaved(stereo.data(), stereo.data(), 2, 2 * FRAMES, 0));
        EXPECT_EQ(guard.count(), 0U);
        oscillator.prepareForPlay();
        oscillator.fireImpulse();
        EXPECT_TRUE(oscillator.processBuffer(nullptr, scaled.data(), 2, 2 * FRAMES, 0));
        for (UINT u = 0; u < 2 * FRAMES; ++u) {
            ASSERT_EQ(stereo[u], samples[u / 2]) << u;
            ASSERT_EQ(scaled[u], samples[u / 2] * 32768.0F) << u;
        }
        std::vector<float> untouched(12, 9.0F);
        EXPECT_FALSE(oscillator.processInterleaved(nullptr, untouched.data(), 3, 12, 0));
        EXPECT_FALSE(oscillator.processBuffer(nullptr, untouched.data(), 0, 12, 0));
        EXPECT_TRUE(oscillator.processInterleaved(nullptr, untouched.data(), 2, 0, 0));
        EXPECT_EQ(untouched, std::vector<float>(12, 9.0F));
    }
}

TEST(OscillatorStream, NoiseRepeatsWithItsSeedOnly)
{
    COscillator oscillator;
    oscillator.setKind(OSCILLATOR_WHITE_NOISE);
    const auto byClock = playFromStart(oscillator, 44100, 1000);
    EXPECT_NE(playFromStart(oscillator, 44100, 1000), byClock);
    oscillator.setSeed(7);
    const auto seven = playFromStart(oscillator, 44100, 1000);
    EXPECT_EQ(playFromStart(oscillator, 44100, 1000), seven);
    oscillator.setSeed(8);
    EXPECT_NE(playFromStart(oscillator, 44100, 1000), seven);

    CNoiseSource noise;
    noise.seed(0);
    EXPECT_EQ(noise.seedObject().m_nMask, 31);
    EXPECT_EQ(noise.seedObject().m_nKey, 0);
    EXPECT_TRUE(std::ranges::all_of(noise.seedObject().m_values, [](int n) { return n >= 0 && n < 25; }));
}

// Wherever the wave stands, a change neither jumps nor turns it round.
TEST(OscillatorStream, FrequencyChangesMakeNoClick)
{
    const auto radians = [](float fFrequency) { return 2.0 * std::numbers::pi * fFrequency / 48000.0; };
    for (const auto& [fOld, fNew] : {std::pair(1000.0F, 3000.0F), {1000.0F, 1000.1F}, {3000.0F, 50.0F}})
        for (int nPlace = 1; nPlace < 200; ++nPlace) {
            COscillator oscillator;
            oscillator.setAmplitude(0.0F);
            oscillator.setFrequency(fOld);
            auto samples = playFromStart(oscillator, 48000, nPlace);
            oscillator.setFrequency(fNew);
            EXPECT_EQ(oscillator.getFrequency(), fNew); // at once
            std::ranges::copy(play(oscillator, 1000), std::back_inserter(samples));
            const double dOld = radians(fOld);
            const double dNew = radians(fNew);
            for (std::size_t u = 2; u < samples.size(); ++u) {
                const double dStep = samples[u] - samples[u - 1];
                const double dBend = dStep - (samples[u - 1] - samples[u - 2]);
                ASSERT_LE(std::abs(dStep), std::max(dOld, dNew) + 1e-6) << fNew << ", " << nPlace;
                ASSERT_LE(std::abs(dBend), std::abs(dNew - dOld) + (dOld * dOld + dNew * dNew) / 2.0 + 1e-6)
                    << fNew << ", " << nPlace;
            }
            EXPECT_NEAR(std::ranges::max(samples), 1.0F, 0.02F);
        }
    COscillator oscillator;
    auto expected = playFromStart(oscillator, 48000, 600);
    auto samples = playFromStart(oscillator, 48000, 300);
    oscillator.setFrequency(2000.0F); // never heard
    oscillator.setFrequency(1000.0F);
    std::ranges::copy(play(oscillator, 300), std::back_inserter(samples));
    EXPECT_EQ(samples, expected);
    oscillator.setAmplitude(-20.0F);
    EXPECT_NEAR(std::ranges::max(play(oscillator, 480)), 0.1F, 1e-3F);
}

TEST(OscillatorStream, TakesChangesFromAnotherThread)
{
    COscillator oscillator;
    std::atomic<bool> bStop = false;
    std::thread audio([&] {
        std::vector<float> buffer(128);
        while (!bStop) {
            oscillator.processInterleaved(buffer.data(), buffer.data(), 2, 128, 0);
            for (const float fSample : buffer)
                ASSERT_TRUE(std::abs(fSample) <= 1.0F);
        }
    });
    for (int n = 0; n < 3000; ++n) {
        choose(oscillator, static_cast<std::size_t>(n) % SOUNDS);
        oscillator.setFrequency(static_cast<float>(20 + n));
        oscillator.setControlPosition(COscillator::FIRST_CONTROL_ID + OSCILLATOR_FREQUENCY, n % 257);
        oscillator.setFrequencyRange(20.0F, static_cast<float>(1000 + n));
        if (n % 100 == 0)
            oscillator.reset();
    }
    bStop = true;
    audio.join();
}

} // namespace

} // namespace velmora::test
