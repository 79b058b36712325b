#pragma once

#include <functional>
#include <span>

namespace velmora {

// Runs the steps on as many threads as there are processors, each step once, and returns when all have run.
// The calling thread takes its share. [any but audio]
void runInParallel(std::span<const std::function<void()>> steps);

} // namespace velmora
