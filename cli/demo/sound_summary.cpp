#include "cli/demo/sound_summary.h"

#include "audio/sound_file.h"
#include "dsp/fft.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <span>

namespace velmora::cli {

namespace {

constexpr long long MOST_SECONDS = 600;
constexpr int SPECTRUM_LENGTH = 8192;
const double BAND_RATIO = std::exp2(1.0 / 24.0);

double decibels(double dAmplitude)
{
    return 20.0 * std::log10(dAmplitude);
}

// Power of each bin below half the rate, summed over all windows and channels of the recording; answers
// how many windows there were.
int addUpPower(const CRecording& recording, std::vector<double>& power)
{
    std::vector<double> window(SPECTRUM_LENGTH);
    for (int n = 0; n < SPECTRUM_LENGTH; ++n)
        window[static_cast<std::size_t>(n)] =
            0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * n / SPECTRUM_LENGTH);
    // A sine at full scale has half of the window's sum as its magnitude.
    const double dScale = 2.0 / std::accumulate(window.begin(), window.end(), 0.0);

    CFFT fft;
    std::vector<double> in(SPECTRUM_LENGTH), real(SPECTRUM_LENGTH), imaginary(SPECTRUM_LENGTH);
    const auto uChannels = static_cast<std::size_t>(recording.m_nChannels);
    const std::size_t uFrames = recording.m_samples.size() / uChannels;
    int nWindows = 0;
    for (std::size_t uStart = 0; uStart == 0 || uStart + SPECTRUM_LENGTH <= uFrames;
         uStart += SPECTRUM_LENGTH / 2) {
        for (std::size_t uChannel = 0; uChannel < uChannels; ++uChannel) {
            for (std::size_t n = 0; n < in.size(); ++n) {
                const std::size_t uFrame = uStart + n;
                in[n] =
                    uFrame < uFrames
                        ? window[n] * static_cast<double>(recording.m_samples[uFrame * uChannels + uChannel])
                        : 0.0;
            }
            fft.transform(SPECTRUM_LENGTH, false, in.data(), nullptr, real.data(), imaginary.data());
            for (std::size_t k = 0; k < power.size(); ++k)
                power[k] += dScale * dScale * (real[k] * real[k] + imaginary[k] * imaginary[k]);
            ++nWindows;
        }
    }
    return nWindows;
}

} // namespace

std::optional<CRecording> readRecording(const std::filesystem::path& file, std::string& sError)
{
    CSoundFile sound;
    if (!sound.openForReading(file, sError))
        return {};
    const CSoundFileInfo info = sound.info();
    if (info.m_nFrames <= 0 || info.m_nSampleRate <= 0 ||
        info.m_nFrames / info.m_nSampleRate > MOST_SECONDS) {
        sError = file.string() + " holds no audio, or more than ten minutes.";
        return {};
    }
    CRecording recording{{}, info.m_nChannels, info.m_nSampleRate};
    recording.m_samples.resize(static_cast<std::size_t>(info.m_nFrames * info.m_nChannels));
    const long long nRead =
        sound.readFloats(recording.m_samples.data(), static_cast<long long>(recording.m_samples.size()));
    recording.m_samples.resize(static_cast<std::size_t>(std::max(0LL, nRead)));
    if (recording.m_samples.empty()) {
        sError = file.string() + " could not be read.";
        return {};
    }
    return recording;
}

std::vector<CPlotBand> waveformColumns(const CRecording& recording, int nColumns)
{
    std::vector<CPlotBand> result;
    const auto uChannels = static_cast<std::size_t>(recording.m_nChannels);
    const std::size_t uFrames = recording.m_samples.size() / uChannels;
    const auto uColumns = std::min(static_cast<std::size_t>(nColumns), uFrames);
    for (std::size_t uColumn = 0; uColumn < uColumns; ++uColumn) {
        const std::size_t uBegin = uColumn * uFrames / uColumns;
        const std::size_t uEnd = (uColumn + 1) * uFrames / uColumns;
        const auto samples =
            std::span(recording.m_samples).subspan(uBegin * uChannels, (uEnd - uBegin) * uChannels);
        const auto [lowest, highest] = std::minmax_element(samples.begin(), samples.end());
        const double dMiddle = 0.5 * static_cast<double>(uBegin + uEnd);
        result.push_back(
            {dMiddle / recording.m_nSampleRate, static_cast<double>(*lowest), static_cast<double>(*highest)});
    }
    return result;
}

std::vector<CPlotPoint> averageSpectrum(const CRecording& recording)
{
    std::vector<double> power(SPECTRUM_LENGTH / 2);
    const int nWindows = addUpPower(recording, power);
    const double dBinWidth = static_cast<double>(recording.m_nSampleRate) / SPECTRUM_LENGTH;
    std::vector<CPlotPoint> result;
    for (std::size_t uFirst = 1; uFirst < power.size();) {
        std::size_t uEnd = uFirst + 1;
        while (uEnd < power.size() && static_cast<double>(uEnd) <= BAND_RATIO * static_cast<double>(uFirst))
            ++uEnd;
        const double dHighest = *std::max_element(power.begin() + static_cast<std::ptrdiff_t>(uFirst),
                                                  power.begin() + static_cast<std::ptrdiff_t>(uEnd));
        const double dMiddle = std::sqrt(static_cast<double>(uFirst) * static_cast<double>(uEnd - 1));
        result.push_back({dMiddle * dBinWidth, 0.5 * decibels(dHighest / nWindows)});
        uFirst = uEnd;
    }
    return result;
}

double peakLevel(const CRecording& recording)
{
    double dPeak = 0.0;
    for (const float fSample : recording.m_samples)
        dPeak = std::max(dPeak, std::abs(static_cast<double>(fSample)));
    return decibels(dPeak);
}

double rmsLevel(const CRecording& recording)
{
    double dSum = 0.0;
    for (const float fSample : recording.m_samples)
        dSum += static_cast<double>(fSample) * static_cast<double>(fSample);
    return 0.5 * decibels(dSum / static_cast<double>(recording.m_samples.size()));
}

} // namespace velmora::cli
