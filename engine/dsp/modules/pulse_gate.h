#pragma once

namespace velmora {

// Lets a signal through for the first part of each period of a pulse clock, and remembers where the last
// changes between sound and silence were. [audio]; reset(): [main, not in use]
class CPulseGate
{
  public:
    // At the beginning of a period.
    void reset() { *this = {}; }

    // Silences the frames of an interleaved buffer that lie in the off part. A period lasts nPeriodSamples,
    // of which the first nOnSamples sound. A change of either takes hold where the clock stands.
    void apply(float* pSamples, unsigned uChannels, unsigned uFrames, int nPeriodSamples, int nOnSamples);

    // Frames since reset() at which sound last began after a silence and last ended; -1 until then.
    [[nodiscard]] long long firstIndex() const { return m_nFirstIndex; }
    [[nodiscard]] long long lastIndex() const { return m_nLastIndex; }

  private:
    enum class EState
    {
        fresh,
        silent,
        sounding
    };

    void enter(EState eState);

    int m_nCount = 0; // samples into the period
    EState m_eState = EState::fresh;
    long long m_nFirstIndex = -1;
    long long m_nLastIndex = -1;
    long long m_nRunningIndex = 0;
};

} // namespace velmora
