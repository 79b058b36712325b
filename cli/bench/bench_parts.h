#pragma once

#include "cli/bench/bench_figure.h"
#include "cli/bench/bench_steps.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmora::cli {

inline constexpr int BENCH_STEPS = 33;

// The parts of the benchmark. Each throws std::runtime_error with a full sentence if it cannot run.
// folder is an empty one to work in; steps hears of each of the BENCH_STEPS that all parts take together.

// What the host adds to a plug-in's own work when a file is processed, on each of the three process
// paths, beside a bare loop that reads, calls and writes the same; and how fast that is.
[[nodiscard]] std::vector<CBenchFigure> benchOffline(const std::filesystem::path& folder, CBenchSteps& steps);

// One callback of a stream, without the audio system.
[[nodiscard]] std::vector<CBenchFigure> benchCallback(CBenchSteps& steps);

// The Fourier transform and the level detector.
[[nodiscard]] std::vector<CBenchFigure> benchDsp(CBenchSteps& steps);

// Compiling an example plug-in, loading it, and scanning a folder of libraries. Needs a compiler.
[[nodiscard]] std::vector<CBenchFigure> benchLibraries(const std::filesystem::path& folder,
                                                       CBenchSteps& steps);

} // namespace velmora::cli
