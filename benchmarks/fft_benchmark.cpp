// CFFT beside KissFFT: forward complex transforms of a real signal, in one run. Single precision uses
// KissFFT's library; in double precision Debian has only its C++ template, which is compiled here.

#include "dsp/fft.h"

#include <benchmark/benchmark.h>
#include <complex>
#include <kiss_fft.h>
#include <kissfft.hh>
#include <random>
#include <vector>

namespace {

template <typename Sample>
std::vector<Sample> noise(int nLength)
{
    std::mt19937 generator(1);
    std::uniform_real_distribution<Sample> distribution(-1, 1);
    std::vector<Sample> samples(static_cast<std::size_t>(nLength));
    for (Sample& sample : samples)
        sample = distribution(generator);
    return samples;
}

template <typename Sample>
void velmoraFFT(benchmark::State& state)
{
    const int nLength = static_cast<int>(state.range(0));
    const auto input = noise<Sample>(nLength);
    std::vector<Sample> real(input.size()), imaginary(input.size());
    velmora::CFFT fft;
    for ([[maybe_unused]] auto _ : state) {
        fft.transform(nLength, false, input.data(), nullptr, real.data(), imaginary.data());
        benchmark::DoNotOptimize(real.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * nLength);
}

void kissFloat(benchmark::State& state)
{
    const int nLength = static_cast<int>(state.range(0));
    const auto samples = noise<float>(nLength);
    std::vector<kiss_fft_cpx> input(samples.size()), output(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i)
        input[i] = {samples[i], 0.0f};
    kiss_fft_cfg plan = kiss_fft_alloc(nLength, 0, nullptr, nullptr);
    for ([[maybe_unused]] auto _ : state) {
        kiss_fft(plan, input.data(), output.data());
        benchmark::DoNotOptimize(output.data());
        benchmark::ClobberMemory();
    }
    kiss_fft_free(plan);
    state.SetItemsProcessed(state.iterations() * nLength);
}

void kissDouble(benchmark::State& state)
{
    const int nLength = static_cast<int>(state.range(0));
    const auto samples = noise<double>(nLength);
    const std::vector<std::complex<double>> input(samples.begin(), samples.end());
    std::vector<std::complex<double>> output(samples.size());
    const kissfft<double> plan(samples.size(), false);
    for ([[maybe_unused]] auto _ : state) {
        plan.transform(input.data(), output.data());
        benchmark::DoNotOptimize(output.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * nLength);
}

void lengths(benchmark::internal::Benchmark* pBenchmark)
{
    pBenchmark->Arg(1024)->Arg(131072);
}

} // namespace

BENCHMARK(velmoraFFT<float>)->Apply(lengths);
BENCHMARK(kissFloat)->Apply(lengths);
BENCHMARK(velmoraFFT<double>)->Apply(lengths);
BENCHMARK(kissDouble)->Apply(lengths);
