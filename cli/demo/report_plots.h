#pragma once

#include "cli/demo/demo_report.h"
#include "cli/demo/plot.h"

#include <string>

namespace velmora::cli {

// Which recording, or which way of looking at the filter.
enum class EReportSound
{
    before,
    after
};
enum class EReportResponse
{
    frequency,
    phase,
    impulse,
    step
};

// The plots of the report, with axes chosen from its data. Two channels that agree are drawn as one
// curve; a phase that turns over from one end of its range to the other leaves a gap there.
[[nodiscard]] CPlot waveformPlot(const CDemoReport& report, EReportSound eSound);
[[nodiscard]] CPlot spectrumPlot(const CDemoReport& report);
[[nodiscard]] CPlot responsePlot(const CDemoReport& report, EReportResponse eResponse);

// A level in dB re full scale as a text; below -120 dB, and when it is no number, "silence".
[[nodiscard]] std::string levelText(double dLevel);

} // namespace velmora::cli
