#include "cli/bench/bench_parts.h"
#include "cli/bench/callback_comparison.h"

namespace velmora::cli {

std::vector<CBenchFigure> benchCallback(CBenchSteps& steps)
{
    constexpr int ROUNDS = 7;
    CCallbackComparison comparison;
    const auto times = comparison.times(ROUNDS);
    steps.next();
    return {{"callback of 64 frames, plug-in that hands on", times.m_dEngine, "ns"},
            {"callback of 64 frames, beside the bare calls", times.m_dRatio, "x"},
            {"callback of 64 frames, during a cross-fade", times.m_dFading, "ns"}};
}

} // namespace velmora::cli
