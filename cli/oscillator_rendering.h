#pragma once

#include "audio/output_check.h"

#include <filesystem>
#include <string>

namespace velmora {
class CDSPFilter;
class CSoundFile;
class IProgress;
} // namespace velmora

namespace velmora::cli {

// Writes what a signal source plays into a WAV file of 32-bit floats: exactly the samples that a stream at
// the same rate plays from its start on. [main]
class COscillatorRendering
{
  public:
    struct CFormat
    {
        long long m_nFrames = 0;
        int m_nChannels = 2;   // 1 or 2
        int m_nSampleRate = 0; // Hz
    };

    // The most frames of one file: the container counts its bytes with 32 bits.
    [[nodiscard]] static long long mostFrames(int nChannels);

    // Readies the source and writes the file; it takes the target's place only when it is complete. On
    // failure returns false with a sentence in reason(), and what stood there is as it was.
    [[nodiscard]] bool renderInto(const std::filesystem::path& target, CDSPFilter& source,
                                  const CFormat& format, IProgress& progress);

    [[nodiscard]] const std::string& reason() const { return m_sReason; }

    // Of all that was written; 1.0 is full scale.
    [[nodiscard]] float peak() const { return m_output.peak(); }
    [[nodiscard]] double rms() const;

  private:
    [[nodiscard]] bool runLoop(CDSPFilter& source, const CFormat& format, CSoundFile& file,
                               IProgress& progress);
    bool fail(const std::string& sReason);

    COutputCheck m_output;
    double m_dSumOfSquares = 0.0;
    long long m_nSamples = 0;
    std::string m_sReason;
};

} // namespace velmora::cli
