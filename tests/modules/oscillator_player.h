#pragma once

#include "dsp/modules/oscillator.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace velmora::test {

// The next nFrames of one channel, made in buffers of at most nBlock frames.
inline std::vector<float> play(COscillator& oscillator, int nFrames, int nBlock = 4096)
{
    std::vector<float> samples(static_cast<std::size_t>(nFrames));
    for (int nDone = 0; nDone < nFrames; nDone += nBlock)
        oscillator.processInterleaved(nullptr, samples.data() + nDone, 1,
                                      static_cast<UINT>(std::min(nBlock, nFrames - nDone)), 0);
    return samples;
}

// As play(), from the start of a stream at a rate in Hz on.
inline std::vector<float> playFromStart(COscillator& oscillator, int nRate, int nFrames, int nBlock = 4096)
{
    oscillator.m_nSampleRate = nRate;
    oscillator.prepareForPlay();
    return play(oscillator, nFrames, nBlock);
}

// Amplitude and phase of one frequency, in turns per sample, by correlation with a turning phasor. Exact when
// the samples hold whole periods.
template <class Samples>
std::complex<double> component(const Samples& samples, double dTurnsPerSample)
{
    std::complex<double> sum;
    for (std::size_t u = 0; u < samples.size(); ++u)
        sum += static_cast<double>(samples[u]) *
               std::polar(1.0, -2.0 * std::numbers::pi * std::fmod(dTurnsPerSample * u, 1.0));
    return 2.0 / static_cast<double>(samples.size()) * sum;
}

template <class Samples>
double rms(const Samples& samples)
{
    double dSum = 0.0;
    for (const double dSample : samples)
        dSum += dSample * dSample;
    return std::sqrt(dSum / static_cast<double>(samples.size()));
}

inline const float MINUS_6_DB = 0.50118723F;

} // namespace velmora::test
