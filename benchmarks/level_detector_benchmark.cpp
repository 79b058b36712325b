// The meter detector: sample by sample, a block of one channel, a block of interleaved stereo. Items are
// samples (two for a stereo frame).

#include "dsp/level_detector.h"

#include <benchmark/benchmark.h>
#include <random>
#include <vector>

namespace {

velmora::CLevelDetector meter()
{
    velmora::CLevelDetector detector;
    detector.init(44100.0f, 0.0f, 100.0f, true, velmora::CLevelDetector::PEAK, true);
    return detector;
}

std::vector<float> noise(std::size_t uSamples)
{
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> distribution(-1.0f, 1.0f);
    std::vector<float> samples(uSamples);
    for (float& fSample : samples)
        fSample = distribution(generator);
    return samples;
}

void perSample(benchmark::State& state)
{
    auto detector = meter();
    const auto samples = noise(static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        for (const float fSample : samples)
            benchmark::DoNotOptimize(detector.detect(fSample));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void block(benchmark::State& state)
{
    auto detector = meter();
    const int nCount = static_cast<int>(state.range(0));
    const int nStride = static_cast<int>(state.range(1));
    const auto samples = noise(static_cast<std::size_t>(nCount) * nStride);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(detector.detectBlock(samples.data(), nStride, nCount));
    state.SetItemsProcessed(state.iterations() * nCount);
}

void stereoBlock(benchmark::State& state)
{
    auto left = meter();
    auto right = meter();
    const int nFrames = static_cast<int>(state.range(0));
    const auto samples = noise(static_cast<std::size_t>(nFrames) * 2);
    float fLeft = 0.0f;
    float fRight = 0.0f;
    for ([[maybe_unused]] auto _ : state) {
        velmora::CLevelDetector::detectStereoBlock(left, right, samples.data(), nFrames, fLeft, fRight);
        benchmark::DoNotOptimize(fLeft);
        benchmark::DoNotOptimize(fRight);
    }
    state.SetItemsProcessed(state.iterations() * nFrames * 2);
}

} // namespace

BENCHMARK(perSample)->Arg(64)->Arg(8192);
BENCHMARK(block)->Args({64, 1})->Args({64, 2})->Args({8192, 1})->Args({8192, 2});
BENCHMARK(stereoBlock)->Arg(1)->Arg(32)->Arg(64)->Arg(100)->Arg(512)->Arg(8192);
