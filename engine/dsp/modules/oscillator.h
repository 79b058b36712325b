#pragma once

#include "dsp/modules/oscillator_generator.h"
#include "dsp/modules/oscillator_kinds.h"
#include "dsp/modules/oscillator_parameters.h"
#include "host/dsp_filter.h"

#include <array>
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
class COscillator : public CDSPFilter
{
  public:
    static constexpr UINT FILTER_ID = 1009;
    static constexpr UINT FIRST_CONTROL_ID = 600; // the controls of OSCILLATOR_PARAMETERS, in that order
    static constexpr UINT CLASS_CONTROL_ID = FIRST_CONTROL_ID + OSCILLATOR_PARAMETER_COUNT;
    static constexpr UINT KIND_CONTROL_ID = CLASS_CONTROL_ID + 1;

    COscillator();

    // Any value is taken, whatever the range; but a value that is not finite is not.
    void setParameter(EOscillatorParameter eParameter, float fValue);
    [[nodiscard]] float parameter(EOscillatorParameter eParameter) const;

    void setFrequency(float fHz) { setParameter(OSCILLATOR_FREQUENCY, fHz); }
    [[nodiscard]] float getFrequency() const { return parameter(OSCILLATOR_FREQUENCY); }
    void setAmplitude(float f_dB) { setParameter(OSCILLATOR_AMPLITUDE, f_dB); } // dBFS
    [[nodiscard]] float getAmplitude() const { return parameter(OSCILLATOR_AMPLITUDE); }

    // The range of the frequency's slider, in Hz, between whose ends the sweep runs.
    void setFrequencyRange(float fLow, float fHigh);
    [[nodiscard]] float frequencyLow() const { return m_fFrequencyLow.load(std::memory_order_relaxed); }
    [[nodiscard]] float frequencyHigh() const { return m_fFrequencyHigh.load(std::memory_order_relaxed); }

    // By code. False, and nothing changes, for a code that there is not.
    bool setKind(UINT uCode);
    bool setClass(UINT uCode);
    [[nodiscard]] EOscillatorKind kind() const;
    [[nodiscard]] EOscillatorClass oscillatorClass() const;

    // The single impulse sounds once, as soon as that kind plays.
    void fireImpulse() { m_bImpulsePending.store(true, std::memory_order_relaxed); }

    // From now on prepareForPlay() begins the noise from this number, not from the clock.
    void setSeed(unsigned uSeed) { m_uSeed = uSeed; }

    // Every parameter, kind and class back to its default, with the ranges that belong to it.
    bool reset() override;

    // Makes the controls anew from what is set now.
    bool createControls() override;

    // Begins everything from the start, at m_nSampleRate: phases, clocks, the sweep, the noise.
    bool prepareForPlay() override;

    // uChannels is 1 or 2; with another number nothing is written and the result is false. pIn is not read,
    // and may be pOut. processBuffer() at a full scale of 32768, processInterleaved() at one of 1.
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;
    bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;

    bool setControlPosition(UINT uControlId, int nPos) override;

  private:
    bool generate(float* pOut, UINT uChannels, UINT uSamples, float fFullScale);
    [[nodiscard]] float takeImpulse(bool bIsHeard);
    void setDefaults(COscillatorRange COscillatorParameter::*pRanges);
    void refreshControls();
    [[nodiscard]] const COscillatorKind& kindRow() const;

    // Settings: words of both threads.
    std::array<float, OSCILLATOR_PARAMETER_COUNT> m_values{};
    UINT m_uClass = 0; // position in OSCILLATOR_CLASSES
    UINT m_uKind = 0;  // position in OSCILLATOR_KINDS
    std::atomic<float> m_fFrequencyLow{20.0F};
    std::atomic<float> m_fFrequencyHigh{22050.0F};
    std::atomic<bool> m_bImpulsePending{false};
    std::optional<unsigned> m_uSeed;
    COscillatorRange COscillatorParameter::*m_pRanges = &COscillatorParameter::m_atConstruction;

    COscillatorGenerator m_generator; // [audio]
};

} // namespace velmora
