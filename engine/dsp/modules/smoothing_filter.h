#pragma once

#include "dsp/modules/module_filter.h"
#include "dsp/modules/trace_table.h"

#include <array>

namespace velmora {

// The mean of the last n samples,
//     y[n] = (x[n - N + 1] + ... + x[n]) / N,    y = x for N = 0,
// each summed afresh from the oldest on, so that no rounding builds up. The cost is N per sample; samples
// that follow one another are summed side by side.
//
// Threads: the process... operations [audio]; reset() and prepareForPlay() [main, no stream running].
class CSmoothingFilter : public CModuleFilter
{
  public:
    static constexpr UINT SAMPLES = 0; // the parameter: N, of which the whole part counts
    static constexpr std::size_t MAX_SAMPLES = 1024;

    CSmoothingFilter();

    // Clears past samples and trace.
    bool reset() override;
    bool prepareForPlay() override { return reset(); }

    // uChannels is 1 or 2; with another number nothing is written and the result is false. pOut may be pIn.
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;
    bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;

    [[nodiscard]] const CTraceTable& trace() const { return m_trace; }

  private:
    static constexpr std::size_t BLOCK = 256; // samples that are taken up at once

    // A channel's past samples and, behind them, those that are being worked on.
    using CLine = std::array<float, MAX_SAMPLES + BLOCK>;

    bool process(const float* pIn, float* pOut, UINT uChannels, UINT uSamples, float fFullScale);
    void processBlock(std::size_t uChannel, const float* pIn, float* pOut, std::size_t uStride,
                      std::size_t uCount, std::size_t uLength, float fFullScale);

    std::array<CLine, 2> m_lines{};
    CTraceTable m_trace;
};

} // namespace velmora
