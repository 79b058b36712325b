#pragma once

#include "base/latest_value.h"
#include "dsp/modules/biquad_section.h"
#include "dsp/modules/module_filter.h"
#include "dsp/modules/trace_table.h"

#include <array>
#include <mutex>

namespace velmora {

// A module that is one second-order section with an output volume.
//
// How settings reach the audio thread: whoever changes one works out all coefficients and hands them over as
// one block (CLatestValue), which the audio thread takes up when it begins its next buffer. So it neither
// waits nor sees half of a block. Two threads that change settings wait for one another.
class CBiquadFilter : public CModuleFilter
{
  public:
    // The two buffer operations. uChannels is 1 or 2; with another number nothing is written and the result
    // is false. With uWord not 0 ("mix") the result is added to what pOut holds. pOut may be pIn.
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;
    bool processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;

    // Works out the coefficients of what is set now, at m_nSampleRate.
    virtual void calculateCoefficients();

    // One sample at a full scale of 1, ahead of the output volume. pState is a CBiquadSection::CState; with
    // that of the left channel, state(0), the sample goes into the trace while there is room. [audio]
    virtual float processSample(float fInput, float* pState, int nChannel);
    using CDSPFilter::processSample;

    // Clears the past samples and the trace. [main, no stream running]
    bool reset() override;

    // Clears the past samples and works out the coefficients. [main, no stream running]
    bool prepareForPlay() override;

    [[nodiscard]] float* state(int nChannel) { return m_section.state(static_cast<UINT>(nChannel)).data(); }
    [[nodiscard]] const CTraceTable& trace() const { return m_trace; }

    // As the block diagram calls them: c0 "m", wet "c0", the final m "n".
    [[nodiscard]] std::vector<CModuleCoefficient> coefficients() const override;

  protected:
    // What a setting makes of the section.
    struct CDesign
    {
        CBiquadCoefficients m_coefficients;
        float m_fVolume = 1.0F;    // negative: with the phase reversed
        bool m_bAddsInput = false; // the input goes beside the filter in processBuffer()
    };

    CBiquadFilter(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                  std::span<const CModuleChoice> choices);

    [[nodiscard]] virtual CDesign design() const = 0;
    void settingsChanged() override { calculateCoefficients(); }

  private:
    static constexpr std::size_t COEFFICIENTS = 9;

    bool process(const CBiquadSection::CRoute& route, const float* pIn, float* pOut, UINT uChannels,
                 UINT uSamples);
    void takeUpDesign();
    void trace(const CBiquadCoefficients& coefficients, float fInput, const float* pState);

    std::mutex m_writers;
    CLatestValue<CDesign> m_exchange;
    std::array<float, COEFFICIENTS> m_shown; // for the block diagram, as relaxed words

    CDesign m_design; // [audio], as all below
    CBiquadSection m_section;
    CTraceTable m_trace;
};

} // namespace velmora
