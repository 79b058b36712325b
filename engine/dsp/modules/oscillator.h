#pragma once

#include "dsp/modules/module_filter.h"
#include "dsp/modules/oscillator_generator.h"
#include "dsp/modules/oscillator_kinds.h"
#include "dsp/modules/oscillator_parameters.h"

#include <atomic>
#include <optional>

namespace velmora {

// The built-in signal source, which plays in place of a file or the sound card. It reads no input; all
// channels carry the same signal.
//
// How settings reach the audio thread: each is one word, written here or by its control and seen at once by
// sliders and getters; the generator takes all words up when it begins its next buffer. For the frequency
// that word is the mailbox: the audio thread alone holds the resonator, compares the word with the frequency
// that it runs at, and where they differ goes over to the new one with the phase kept
// (CSineResonator::setFrequency). So nobody waits, and a frequency that is set while a buffer is made sounds
// one buffer later. Of two that are set between two buffers only the later one sounds.
//
// Threads: the process... operations [audio]; prepareForPlay() and setSeed() [main, no stream running];
// setControlPosition() and setControlText() [main], or the MIDI thread; all others [main].
class COscillator : public CModuleFilter
{
  public:
    static constexpr UINT FILTER_ID = 1009;
    static constexpr UINT CLASS_CONTROL_ID = FIRST_CONTROL_ID + OSCILLATOR_PARAMETER_COUNT;
    static constexpr UINT KIND_CONTROL_ID = CLASS_CONTROL_ID + 1;

    COscillator();

    void setFrequency(float fHz) { setParameter(OSCILLATOR_FREQUENCY, fHz); }
    [[nodiscard]] float getFrequency() const { return parameter(OSCILLATOR_FREQUENCY); }
    void setAmplitude(float f_dB) { setParameter(OSCILLATOR_AMPLITUDE, f_dB); } // dBFS
    [[nodiscard]] float getAmplitude() const { return parameter(OSCILLATOR_AMPLITUDE); }

    // The range of the frequency's slider, in Hz, between whose ends the sweep runs.
    void setFrequencyRange(float fLow, float fHigh);
    [[nodiscard]] float frequencyLow() const { return m_fFrequencyLow.load(std::memory_order_relaxed); }
    [[nodiscard]] float frequencyHigh() const { return m_fFrequencyHigh.load(std::memory_order_relaxed); }

    // By code. False, and nothing changes, for a code that there is not.
    bool setKind(UINT uCode) { return setChoice(KIND, uCode); }
    bool setClass(UINT uCode) { return setChoice(CLASS, uCode); }
    [[nodiscard]] EOscillatorKind kind() const { return static_cast<EOscillatorKind>(choice(KIND)); }
    [[nodiscard]] EOscillatorClass oscillatorClass() const
    {
        return static_cast<EOscillatorClass>(choice(CLASS));
    }

    // The single impulse sounds once, as soon as that kind plays.
    void fireImpulse() { m_bImpulsePending.store(true, std::memory_order_relaxed); }

    // From now on prepareForPlay() begins the noise from this number, not from the clock.
    void setSeed(unsigned uSeed) { m_uSeed = uSeed; }

    // Every parameter, kind and class back to its default, with the ranges that belong to it.
    bool resetToDefaults() override;
    bool reset() override { return resetToDefaults(); }

    // Begins everything from the start, at m_nSampleRate: phases, clocks, the sweep, the noise.
    bool prepareForPlay() override;

    // uChannels is 1 or 2; with another number nothing is written and the result is false. pIn is not read,
    // and may be pOut. processBuffer() at a full scale of 32768, processInterleaved() at one of 1.
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;
    bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;

  private:
    // The choices.
    static constexpr UINT CLASS = 0;
    static constexpr UINT KIND = 1;

    bool generate(float* pOut, UINT uChannels, UINT uSamples, float fFullScale);
    [[nodiscard]] float takeImpulse(bool bIsHeard);

    std::atomic<float> m_fFrequencyLow{20.0F};
    std::atomic<float> m_fFrequencyHigh{22050.0F};
    std::atomic<bool> m_bImpulsePending{false};
    std::optional<unsigned> m_uSeed;

    COscillatorGenerator m_generator; // [audio]
};

} // namespace velmora
