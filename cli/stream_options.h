#pragma once

#include "cli/command.h"

namespace velmora::cli {

// The options of the commands that run a stream, in groups.
[[nodiscard]] std::vector<COption> inputOptions();   // --input-device
[[nodiscard]] std::vector<COption> outputOptions();  // --output-device, --frames
[[nodiscard]] std::vector<COption> rateOptions();    // --rate
[[nodiscard]] std::vector<COption> runningOptions(); // --seconds, --watch

} // namespace velmora::cli
