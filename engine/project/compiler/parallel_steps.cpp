#include "project/compiler/parallel_steps.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace velmora {

void runInParallel(std::span<const std::function<void()>> steps)
{
    std::atomic<std::size_t> uNext{0};
    const auto work = [&] {
        for (std::size_t uStep = uNext++; uStep < steps.size(); uStep = uNext++)
            steps[uStep]();
    };
    const std::size_t uProcessors = std::max(1u, std::thread::hardware_concurrency());
    std::vector<std::jthread> helpers;
    while (helpers.size() + 1 < std::min(uProcessors, steps.size()))
        helpers.emplace_back(work);
    work();
}

} // namespace velmora
