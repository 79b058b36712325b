#pragma once

#include "audio/audio_engine.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace velmora::cli {

// What is shown of a running stream.
struct CStreamPicture
{
    double m_dSeconds = 0.0;                      // played so far
    double m_dLength = 0.0;                       // of the file, in seconds; 0 if it has no end
    std::array<float, METER_COUNT> m_meters = {}; // 0.0 (-60 dB and below) to 1.0 (0 dB)
    bool m_bSidechain = false;                    // its meters are shown as well
    double m_dLoad = 0.0;                         // 1.0 is all of a buffer's time
    std::uint64_t m_uUnderruns = 0;
};

// The picture as one line of at most uColumns characters. The meters take what is left of the line, up to 12
// characters each; on a line too short for them the time, the load and the underruns alone remain.
[[nodiscard]] std::string streamLine(const CStreamPicture& picture, std::size_t uColumns);

// Seconds as on a clock: "0:07", "12:00".
[[nodiscard]] std::string clockText(double dSeconds);

// How many characters fit on a line of the terminal that standard error is; 80 if that is not known.
[[nodiscard]] std::size_t terminalColumns();

} // namespace velmora::cli
