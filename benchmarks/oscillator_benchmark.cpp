// The test oscillator: each kind, and the sweep, in stereo buffers of a stream's size and of a file's. Items
// are frames.

#include "dsp/modules/oscillator.h"

#include <benchmark/benchmark.h>
#include <string>
#include <vector>

namespace {

// nSound is a position in OSCILLATOR_KINDS, or its size for the sweep.
void stereoBuffer(benchmark::State& state, std::size_t uSound, int nFrames)
{
    velmora::COscillator oscillator;
    if (uSound < velmora::OSCILLATOR_KINDS.size())
        oscillator.setKind(velmora::OSCILLATOR_KINDS[uSound].m_eKind);
    else
        oscillator.setClass(velmora::OSCILLATOR_SWEEP);
    oscillator.prepareForPlay();
    std::vector<float> buffer(2 * static_cast<std::size_t>(nFrames));
    for ([[maybe_unused]] auto _ : state) {
        oscillator.processInterleaved(buffer.data(), buffer.data(), 2, 2 * static_cast<UINT>(nFrames), 0);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * nFrames);
}

// What a change of frequency between two buffers adds.
void frequencyChange(benchmark::State& state)
{
    velmora::COscillator oscillator;
    std::vector<float> buffer(128);
    float fFrequency = 1000.0F;
    for ([[maybe_unused]] auto _ : state) {
        oscillator.setFrequency(fFrequency = 3000.0F - fFrequency);
        oscillator.processInterleaved(buffer.data(), buffer.data(), 2, 128, 0);
        benchmark::ClobberMemory();
    }
}

[[maybe_unused]] const bool bRegistered = [] {
    for (std::size_t uSound = 0; uSound <= velmora::OSCILLATOR_KINDS.size(); ++uSound) {
        const std::string sName(
            uSound < velmora::OSCILLATOR_KINDS.size() ? velmora::OSCILLATOR_KINDS[uSound].m_sName : "sweep");
        for (const int nFrames : {64, 4096})
            benchmark::RegisterBenchmark((sName + "/" + std::to_string(nFrames)).c_str(), stereoBuffer,
                                         uSound, nFrames);
    }
    return true;
}();

} // namespace

BENCHMARK(frequencyChange);
