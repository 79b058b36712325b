#include "audio/callback_statistics.h"

#include "base/audio_system.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace velmora {

namespace {

constexpr double LOAD_SMOOTHING = 1.0 / 32.0; // weight of the last buffer
constexpr double STEPS_PER_MICROSECOND = 8.0;
constexpr unsigned OCTAVE_BITS = 3;                 // of eight steps
constexpr std::uint64_t OCTAVE = 1U << OCTAVE_BITS; // steps

// Step i below 8 ends at i + 1 eighths of a microsecond; from there on each octave has eight steps of equal
// width.
std::size_t stepOf(std::uint64_t uEighths)
{
    if (uEighths < OCTAVE)
        return static_cast<std::size_t>(uEighths);
    const unsigned uShift = static_cast<unsigned>(std::bit_width(uEighths)) - 1 - OCTAVE_BITS;
    return static_cast<std::size_t>(uShift * OCTAVE + (uEighths >> uShift));
}

double upperBoundMicroseconds(std::size_t uStep)
{
    const std::uint64_t uOctave = uStep / OCTAVE;
    if (uOctave == 0)
        return static_cast<double>(uStep + 1) / STEPS_PER_MICROSECOND;
    const double dEighths =
        std::ldexp(static_cast<double>(OCTAVE + uStep % OCTAVE + 1), static_cast<int>(uOctave) - 1);
    return dEighths / STEPS_PER_MICROSECOND;
}

// There is one writer, so that reading and writing need not be one operation.
template <typename T>
void increase(std::atomic<T>& count) noexcept
{
    count.store(count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

void raiseTo(std::atomic<double>& peak, double dValue) noexcept
{
    if (dValue > peak.load(std::memory_order_relaxed))
        peak.store(dValue, std::memory_order_relaxed);
}

} // namespace

void CCallbackStatistics::reset(double dSampleRate)
{
    m_dSampleRate = dSampleRate;
    for (auto* pCount : {&m_uBuffers, &m_uHostUnderruns, &m_uInputLosses, &m_uOverruns})
        pCount->store(0, std::memory_order_relaxed);
    for (auto* pLoad : {&m_dLoad, &m_dPeakLoad, &m_dPeakFilterLoad})
        pLoad->store(0.0, std::memory_order_relaxed);
    for (auto& count : m_histogram)
        count.store(0, std::memory_order_relaxed);
}

CCallbackStatistics::CFigures CCallbackStatistics::figures() const
{
    return {
        .m_uBuffers = m_uBuffers.load(std::memory_order_relaxed),
        .m_uHostUnderruns = m_uHostUnderruns.load(std::memory_order_relaxed),
        .m_uInputLosses = m_uInputLosses.load(std::memory_order_relaxed),
        .m_uOverruns = m_uOverruns.load(std::memory_order_relaxed),
        .m_dLoad = m_dLoad.load(std::memory_order_relaxed),
        .m_dPeakLoad = m_dPeakLoad.load(std::memory_order_relaxed),
        .m_dPeakFilterLoad = m_dPeakFilterLoad.load(std::memory_order_relaxed),
    };
}

double CCallbackStatistics::percentileMicroseconds(double dFraction) const
{
    std::array<std::uint64_t, STEPS> upTo{};
    std::uint64_t uTotal = 0;
    for (std::size_t i = 0; i < STEPS; ++i)
        upTo[i] = uTotal += m_histogram[i].load(std::memory_order_relaxed);
    if (uTotal == 0)
        return 0.0;
    const auto uWanted = static_cast<std::uint64_t>(
        std::clamp(std::ceil(dFraction * static_cast<double>(uTotal)), 1.0, static_cast<double>(uTotal)));
    const auto at = std::ranges::lower_bound(upTo, uWanted);
    return upperBoundMicroseconds(static_cast<std::size_t>(at - upTo.begin()));
}

void CCallbackStatistics::add(unsigned uFrames, unsigned uStatus, clock::duration total,
                              clock::duration filter) noexcept
{
    increase(m_uBuffers);
    if (uStatus & AUDIO_OUTPUT_LOST)
        increase(m_uHostUnderruns);
    if (uStatus & AUDIO_INPUT_LOST)
        increase(m_uInputLosses);
    const auto nNanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(total).count();
    const auto uEighths = static_cast<std::uint64_t>(std::max<long long>(nNanoseconds, 0)) / 125;
    increase(m_histogram[std::min(stepOf(uEighths), STEPS - 1)]);
    if (uFrames == 0)
        return;

    const double dBuffersPerSecond = m_dSampleRate / uFrames;
    const double dLoad = std::chrono::duration<double>(total).count() * dBuffersPerSecond;
    const double dFilterLoad = std::chrono::duration<double>(filter).count() * dBuffersPerSecond;
    if (dLoad > 1.0)
        increase(m_uOverruns);
    const double dSmoothed = m_dLoad.load(std::memory_order_relaxed);
    m_dLoad.store(dSmoothed + LOAD_SMOOTHING * (dLoad - dSmoothed), std::memory_order_relaxed);
    raiseTo(m_dPeakLoad, dLoad);
    raiseTo(m_dPeakFilterLoad, dFilterLoad);
}

} // namespace velmora
