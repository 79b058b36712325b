#pragma once

#include <array>
#include <cstddef>

namespace velmora {

enum EWaveCode : unsigned
{
    WAVE_SAWTOOTH = 0, // 2x - 1 for x = 0..1 over the table
    WAVE_SINE = 1,     // sin(2 pi x)
    WAVE_TRIANGLE = 2, // from -1 up to +1 in the first half, and down again
    WAVE_SQUARE = 3,   // -1, then +1
};

// Reads a wave from a table, with straight lines between its entries, at a frequency that may change at
// every sample. Settings: [main, not in use]; a run: [audio].
class CTableOscillator
{
  public:
    static constexpr std::size_t TABLE_SIZE = 1024;

    CTableOscillator();

    void setWaveCode(EWaveCode eWave) { m_eWave = eWave; }
    void setFrequency(float fFrequency) { m_fFrequency = fFrequency; } // Hz
    [[nodiscard]] float frequency() const { return m_fFrequency; }
    void setSampleRate(float fSampleRate) { m_fSampleRate = fSampleRate; } // Hz
    void setAmplitude(float fAmplitude);                                   // held to 0.0..1.0

    // In degrees, held to -180..+180. A change of at least 0.01 degrees moves the place of reading by as much
    // of the table, also while it runs.
    void setPhaseOffset(float fDegrees);

    void setInverted(bool bInverted) { m_bInverted = bInverted; }
    void setUnipolar(bool bUnipolar) { m_bUnipolar = bUnipolar; } // 0..1 in place of -1..+1

    // Begins at the first entry of the sine, and at entry 127 of the others.
    void reset();

    // One sample after another from registers: begun with begin(), given back with end().
    class CRun
    {
      public:
        // One sample; then the place of reading moves on by frequency / (sample rate / 1024).
        [[nodiscard]] float next(float fFrequency)
        {
            const auto uEntry = static_cast<std::size_t>(m_fReadIndex);
            const float fFraction = m_fReadIndex - static_cast<float>(uEntry);
            const float fHere = m_pTable[uEntry];
            const float fThere = m_pTable[(uEntry + 1) % TABLE_SIZE];
            m_fReadIndex += fFrequency * m_fEntriesPerHz;
            if (!(m_fReadIndex >= 0.0F && m_fReadIndex < TABLE_SIZE)) [[unlikely]]
                m_fReadIndex = wrapped(m_fReadIndex);
            return (fFraction * fThere + (1.0F - fFraction) * fHere) * m_fScale + m_fOffset;
        }

        void reset() { m_fReadIndex = m_fFirstIndex; }

      private:
        friend class CTableOscillator;

        const float* m_pTable;
        float m_fReadIndex;
        float m_fFirstIndex;
        float m_fEntriesPerHz; // table entries per sample for each Hz
        float m_fScale;
        float m_fOffset;
    };

    [[nodiscard]] CRun begin() const;

    // Goes on where the run stopped, at the frequency of its last sample.
    void end(const CRun& run, float fFrequency);

  private:
    [[nodiscard]] float firstIndex() const { return m_eWave == WAVE_SINE ? 0.0F : 127.0F; }
    [[nodiscard]] static float wrapped(float fIndex);

    std::array<std::array<float, TABLE_SIZE>, 4> m_tables; // by wave code
    EWaveCode m_eWave = WAVE_SAWTOOTH;
    float m_fFrequency = 0.0F;
    float m_fAmplitude = 1.0F;
    float m_fPhaseOffset = 0.0F;     // degrees
    float m_fLastPhaseOffset = 0.0F; // the one that the read index has followed
    bool m_bInverted = false;
    bool m_bUnipolar = false;
    float m_fReadIndex = 127.0F;
    float m_fSampleRate = 44100.0F;
};

} // namespace velmora
