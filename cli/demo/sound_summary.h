#pragma once

#include "cli/demo/demo_report.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velmora::cli {

// A whole recording in memory.
struct CRecording
{
    std::vector<float> m_samples; // interleaved, -1.0 to +1.0
    int m_nChannels = 0;
    int m_nSampleRate = 0; // Hz

    [[nodiscard]] double seconds() const
    {
        return static_cast<double>(m_samples.size()) / m_nChannels / m_nSampleRate;
    }
};

// Reads a sound file of at most ten minutes; none, with the reason in sError, if that fails.
[[nodiscard]] std::optional<CRecording> readRecording(const std::filesystem::path& file, std::string& sError);

// What the channels together reach in each of nColumns equal stretches of time.
[[nodiscard]] std::vector<CPlotBand> waveformColumns(const CRecording& recording, int nColumns);

// The average power spectrum of all channels in dB, where a sine at full scale is at 0 dB: Hann windows
// of 8192 frames that overlap by half, and the strongest bin of each 1/24 octave. A
// recording shorter than a window is continued by silence.
//   P. D. Welch, IEEE Transactions on Audio and Electroacoustics 15 (1967), 70-73.
[[nodiscard]] std::vector<CPlotPoint> averageSpectrum(const CRecording& recording);

// Peak and root mean square of all samples, in dB re full scale; -infinity for silence.
[[nodiscard]] double peakLevel(const CRecording& recording);
[[nodiscard]] double rmsLevel(const CRecording& recording);

} // namespace velmora::cli
