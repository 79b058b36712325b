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

// The difference equation alone, one pass over the buffer for each section; coefficients and state in locals,
// the channels side by side.
class CPlainSection
{
  public:
    void process(const float* pIn, float* pOut, UINT uFrames)
    {
        const auto [a0, a1, a2, b1, b2] = m_coefficients;
        CState state = m_state;
        auto& [x1, x2, y1, y2] = state;
        for (UINT u = 0; u < uFrames; ++u, pIn += CHANNELS, pOut += CHANNELS) {
            for (UINT c = 0; c < CHANNELS; ++c) {
                const float x = pIn[c];
                const float y = a0 * x + a1 * x1[c] + a2 * x2[c] - b1 * y1[c] - b2 * y2[c];
                x2[c] = x1[c];
                x1[c] = x;
                y2[c] = y1[c];
                y1[c] = y;
                pOut[c] = y;
            }
        }
        m_state = state;
    }

  private:
    struct CCoefficients
    {
        float m_fA0, m_fA1, m_fA2, m_fB1, m_fB2;
    };
    struct CState
    {
        float m_x1[CHANNELS], m_x2[CHANNELS], m_y1[CHANNELS], m_y2[CHANNELS];
    };

    // A low-pass of the second order at 1000 Hz.
    CCoefficients m_coefficients = {0.003917F, 0.007833F, 0.003917F, -1.815341F, 0.831006F};
    CState m_state{};
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
