#pragma once

#include "dsp/modules/module_filter.h"
#include "dsp/modules/trace_table.h"

#include <array>
#include <vector>

namespace velmora {

enum EStereoDelaySetting : UINT
{
    STEREODELAY_DELAY,    // samples, of which the whole part counts
    STEREODELAY_FEEDBACK, // linear
    STEREODELAY_LEVEL,    // linear
    STEREODELAY_MIX,      // 0 dry to 1 wet
};

// Two channels of feedback delay without cross-feed, each with a circular buffer of one second:
//     d[n] = b[n - D],  b[n] = x[n] + feedback d[n],  y[n] = (1 - mix) x[n] + mix level d[n];
// with a delay of 0, d is x and nothing is fed back. A delay above 0 and below 1 sample reads what is about
// to be overwritten, that is b[n - size]. Stable for a feedback within -1 to +1; at +1 or -1 an echo lasts
// for ever.
//
// A setting that is changed while audio runs is heard from the next buffer on; the read index, which lies D
// samples behind the write index, moves then.
//
// Threads: as CModuleFilter; tick() and the process operations [audio]; reset() and prepareForPlay() [main,
// no stream running].
class CStereoDelay : public CModuleFilter
{
  public:
    static constexpr UINT FILTER_ID = 1002;

    CStereoDelay();

    // In samples; any finite value is taken, and heard as one within 0 to the buffer's size.
    bool setDelay(float fSamples) { return setParameter(STEREODELAY_DELAY, fSamples); }

    // One sample on channel 0 or 1 through a buffer of bufferSize() floats.
    [[nodiscard]] float tick(float fIn, float* pBuffer, int nChannel);

    // Clears the buffers and the trace, and sets the write indices to 0.
    bool reset() override;

    // Makes the buffers, and the highest delay, as long as a second; then reset().
    bool prepareForPlay() override;

    // The ranges that belong to a reset, the highest delay still a second.
    bool resetToDefaults() override;

    // uChannels is 1 or 2; with another number nothing is written and the result is false. With 1 only the
    // left buffer runs. pOut may be pIn.
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;
    bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;

    [[nodiscard]] int bufferSize() const { return static_cast<int>(m_lines[0].m_buffer.size()); } // samples
    [[nodiscard]] int writeIndex(int nChannel) const { return line(nChannel).m_nWriteIndex; }
    [[nodiscard]] int readIndex(int nChannel) const;
    [[nodiscard]] float* buffer(int nChannel) { return m_lines[static_cast<UINT>(nChannel)].m_buffer.data(); }

    // Input and output of the left channel.
    [[nodiscard]] const CTraceTable& trace() const { return m_trace; }

  private:
    struct CLine
    {
        std::vector<float> m_buffer;
        int m_nWriteIndex = 0;
    };

    // What holds for one buffer.
    struct CHeld
    {
        float m_fDelay;
        float m_fFeedback;
        float m_fLevel;
        float m_fMix;
    };

    // Both indices of a line and its buffer, for a run of samples.
    struct CCursor
    {
        float* m_pBuffer;
        int m_nSize;
        int m_nWrite;
        int m_nRead;

        [[nodiscard]] float next(const CHeld& held, float fIn);
    };

    [[nodiscard]] const CLine& line(int nChannel) const { return m_lines[static_cast<UINT>(nChannel)]; }
    [[nodiscard]] CHeld held() const;
    bool process(const float* pIn, float* pOut, UINT uChannels, UINT uSamples, float fFullScale);
    void setHighestDelay();

    std::array<CLine, 2> m_lines;
    CTraceTable m_trace;
};

} // namespace velmora
