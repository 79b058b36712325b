#pragma once

#include "host/dsp_filter.h"

#include <atomic>
#include <vector>

namespace velmora {

// A delay of whole samples in a circular buffer, which other modules also use as storage:
//     y(n) = x(n - d), d = the integer part of the delay; y(n) = x(n) with a delay of 0.
// A delay above 0 and below 1 sample reads what is about to be overwritten, that is x(n - size).
//
// The read index is d samples behind the write index at any moment, so it follows from the two; a delay that
// is set while audio runs is heard from the next buffer on.
//
// Threads: setDelay() [any]; init() and reset() [main, not in use]; all others on the one thread that uses
// the line, which is [audio] for the process operations.
class CDelayLine : public CDSPFilter
{
  public:
    static constexpr UINT FILTER_ID = 1007;

    CDelayLine();

    // In samples, at least 0; more than the buffer holds is as much as it holds. A value that is not finite
    // is not taken.
    void setDelay(float fSamples);
    [[nodiscard]] float delay() const { return m_fDelayInSamples.load(std::memory_order_relaxed); }

    // Makes a new buffer of nSize zeros, at least one, and sets the write index to 0 and the tap half the
    // delay behind it.
    void init(int nSize);

    // Clears the buffer and sets the indices as init() does.
    bool reset() override;

    // One sample through a buffer of size() floats: reads, writes, advances.
    [[nodiscard]] float tick(float fIn, float* pBuffer);

    // The sample at the read index, which is 0 from then on if bClear; both indices advance. bWrapped tells
    // whether the read index has reached the tap index; the tap is then moved to half the delay behind the
    // write index.
    [[nodiscard]] float advanceTap(bool bClear, bool& bWrapped);

    // Reads and writes at offsets of at least 0 from the read index. Beyond the end of the buffer the index
    // is mirrored, size - index, and not taken over to the beginning; what that leaves below 0 counts from
    // the end, so that no offset leaves the buffer.
    [[nodiscard]] float readAt(int nOffset) const;
    void writeAt(float fValue, int nOffset);
    void fill(float fValue, int nStart, int nCount); // offsets nStart to nStart + nCount - 1

    [[nodiscard]] int size() const { return static_cast<int>(m_buffer.size()); } // samples
    [[nodiscard]] int writeIndex() const { return m_nWriteIndex; }
    [[nodiscard]] int readIndex() const;

    // All samples pass through the one line in their order, whatever the number of channels. pIn may be pOut.
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;
    bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;

  private:
    [[nodiscard]] int behindWriteIndex(float fSamples) const;
    [[nodiscard]] int mirroredIndex(int nOffset) const;
    bool process(const float* pIn, float* pOut, UINT uSamples, float fFullScale);

    std::atomic<float> m_fDelayInSamples{0.0F};
    std::vector<float> m_buffer;
    int m_nWriteIndex = 0;
    int m_nTapIndex = 0;
};

} // namespace velmora
