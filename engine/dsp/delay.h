#pragma once

#include <memory>

namespace velmora {

// A circular buffer with a fractional delay; it also serves the oscilloscope as a ring of samples.
//
// The delay's whole part stands in the distance of the two indexes; its fraction is interpolated in a
// straight line towards the previous sample. Every index is kept inside the buffer: a delay longer
// than the buffer reads wrapped data. All reads and writes but init() need a buffer.
class CDelay
{
  public:
    // Makes a buffer of nSize samples, 1 or more, filled with 0.0, and cooks. A buffer from before is
    // freed. [main]
    void init(int nSize);

    // Clears the buffer, sets both indexes to the start and cooks. [audio]
    void resetDelay();

    void setDelay_mSec(float fDelay_ms);          // ms [any]
    void setOutputAttenuation_dB(float fGain_dB); // dB, linear gain 10^(dB / 20) [any]

    // Works out the linear gain, the delay in samples and the read index from the settings; to be
    // called after m_nSampleRate was set. The one place that takes a power. [any]
    void cookVariables();

    // Stores a sample and moves both indexes on. [audio]
    void writeDelayAndInc(float fSample);

    // Stores a sample and moves the write index on, for the oscilloscope. [any]
    void writeDelay(float fSample);

    // The sample m_fDelayInSamples before the one to be written next. [audio]
    [[nodiscard]] float readDelay() const;

    // The same for a delay of fDelay_ms ms of its own. [audio]
    [[nodiscard]] float readDelayAt(float fDelay_ms) const;

    // The sample at an index of the buffer, 0 to m_nBufferSize - 1. [audio]
    [[nodiscard]] float readAt(int nIndex) const { return m_pBuffer[nIndex]; }

    // Copies two (three) samples that follow each other from nIndex on, around the buffer's end, and
    // with bAdvance moves nIndex to the next sample, around the end. nIndex: 0 to m_nBufferSize - 1. [any]
    void readPair(int& nIndex, float (&samples)[2], bool bAdvance) const;
    void readTriple(int& nIndex, float (&samples)[3], bool bAdvance) const;

    // One sample through the delay and its output gain. A delay of exactly 0.0 hands the input through;
    // one between 0 and 1 blends in the oldest sample of the buffer in its place. [audio]
    void processAudio(const float* pInput, float* pOutput);

    float m_fDelayInSamples = 0.0f;
    float m_fOutputAttenuation = 0.0f; // linear; set when cooked
    int m_nReadIndex = 0;
    int m_nWriteIndex = 0;
    int m_nBufferSize = 0; // samples
    int m_nSampleRate = 0; // Hz
    float m_fDelay_ms = 0.0f;
    float m_fOutputAttenuation_dB = 0.0f;
    std::unique_ptr<float[]> m_pBuffer;
    float m_fScopeThreshold = 0.01f;
    int m_nScopeTriggerMode = 1; // 0 free run, 1 rising, 2 falling

  private:
    [[nodiscard]] int next(int nIndex) const { return nIndex + 1 < m_nBufferSize ? nIndex + 1 : 0; }
    [[nodiscard]] int before(int nIndex, float fSamples) const;
    [[nodiscard]] float interpolated(int nIndex, float fFraction) const;
};

} // namespace velmora
