// Each built-in module at its defaults beside plain second-order sections, in stereo buffers of a stream's
// size and of a file's. Items are samples, two of them a frame; the time of one is 1 / items_per_second.

#include "base/platform_denormals.h"
#include "dsp/modules/module_registry.h"
#include "dsp/modules/noise_source.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <string>
#include <vector>

namespace {

constexpr int SAMPLE_RATE = 48000;
constexpr UINT CHANNELS = 2;
constexpr UINT PLAIN_SECTIONS = 12; // as many as the equalizer has

std::vector<float> noise(UINT uFrames)
{
    velmora::CNoiseSource source;
    source.seed(1);
    std::vector<float> samples(CHANNELS * static_cast<std::size_t>(uFrames));
    std::ranges::generate(samples, [&source] { return 0.5F * source.next(); });
    return samples;
}

// The difference equation alone, one pass over the buffer for each section, state and coefficients in locals.
class CPlainSection
{
  public:
    void process(const float* pIn, float* pOut, UINT uFrames)
    {
        for (UINT c = 0; c < CHANNELS; ++c) {
            float x1 = m_x1[c], x2 = m_x2[c], y1 = m_y1[c], y2 = m_y2[c];
            for (UINT u = c; u < CHANNELS * uFrames; u += CHANNELS) {
                const float x = pIn[u];
                const float y = m_fA0 * x + m_fA1 * x1 + m_fA2 * x2 - m_fB1 * y1 - m_fB2 * y2;
                x2 = x1;
                x1 = x;
                y2 = y1;
                y1 = y;
                pOut[u] = y;
            }
            m_x1[c] = x1;
            m_x2[c] = x2;
            m_y1[c] = y1;
            m_y2[c] = y2;
        }
    }

  private:
    // A low-pass of the second order at 1000 Hz.
    float m_fA0 = 0.003917F, m_fA1 = 0.007833F, m_fA2 = 0.003917F, m_fB1 = -1.815341F, m_fB2 = 0.831006F;
    float m_x1[CHANNELS]{}, m_x2[CHANNELS]{}, m_y1[CHANNELS]{}, m_y2[CHANNELS]{};
};

void plainSections(benchmark::State& state)
{
    const velmora::CDenormalsOff denormalsOff;
    const auto uFrames = static_cast<UINT>(state.range(1));
    const std::vector<float> input = noise(uFrames);
    std::vector<float> output(input.size());
    std::vector<CPlainSection> sections(static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        sections[0].process(input.data(), output.data(), uFrames);
        for (std::size_t u = 1; u < sections.size(); ++u)
            sections[u].process(output.data(), output.data(), uFrames);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int>(input.size()));
}

void module(benchmark::State& state, int nModule, UINT uFrames)
{
    const velmora::CDenormalsOff denormalsOff;
    velmora::CModuleList list;
    velmora::addBuiltInModules(list);
    velmora::CDSPFilter& filter = *list.at(nModule);
    filter.m_nSampleRate = SAMPLE_RATE;
    filter.setBufferSize(uFrames);
    filter.prepareForPlay();
    const std::vector<float> samples = noise(uFrames);
    std::vector<float> input = samples;
    std::vector<float> output(input.size());
    for ([[maybe_unused]] auto _ : state) {
        std::ranges::copy(samples, input.begin()); // some modules scale their input in place
        filter.processInterleaved(input.data(), output.data(), CHANNELS, CHANNELS * uFrames, 0);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int>(input.size()));
}

[[maybe_unused]] const bool bRegistered = [] {
    velmora::CModuleList list;
    velmora::addBuiltInModules(list);
    for (int nModule = 0; nModule < list.count(); ++nModule)
        for (const UINT uFrames : {64U, 4096U})
            benchmark::RegisterBenchmark((list.at(nModule)->m_sName + "/" + std::to_string(uFrames)).c_str(),
                                         module, nModule, uFrames);
    return true;
}();

} // namespace

BENCHMARK(plainSections)->ArgsProduct({{1, PLAIN_SECTIONS}, {64, 4096}});
