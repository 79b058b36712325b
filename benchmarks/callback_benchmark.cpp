// What one callback of a stream costs beside the bare calls of its plug-in, and which step takes how much of
// it.
//
// The steps are timed one by one, each in a loop of its own; what their sum differs from the whole by is
// shown as the last line.
//
//     callback_benchmark [--rounds N]

#include "base/text.h"
#include "cli/bench/callback_comparison.h"

#include <cstdio>
#include <string_view>

int main(int nArguments, char** pArguments)
{
    using velmora::cli::CCallbackComparison;
    int nRounds = 15;
    if (nArguments > 1) {
        const double dRounds = nArguments == 3 ? velmora::parseNumber(pArguments[2]).value_or(0.0) : 0.0;
        if (std::string_view(pArguments[1]) != "--rounds" || dRounds < 1.0)
            return std::fprintf(stderr, "callback_benchmark [--rounds N], N from 1\n"), 2;
        nRounds = static_cast<int>(dRounds);
    }
    CCallbackComparison comparison;
    const auto times = comparison.times(nRounds);
    std::printf(
        "One callback, %zu frames of stereo, plug-in that hands each frame on; ns, median of %d turns\n\n",
        CCallbackComparison::FRAMES, nRounds);
    std::printf("%-30s %8.1f\n%-30s %8.1f\n%-30s %8.2f\n%-30s %8.1f\n\n", "engine", times.m_dEngine,
                "bare calls", times.m_dBare, "engine to bare", times.m_dRatio, "engine during a cross-fade",
                times.m_dFading);
    double dRest = times.m_dEngine;
    for (const auto& figure : comparison.stages(nRounds)) {
        std::printf("%-30s %8.1f %7.1f %%\n", figure.m_sName.c_str(), figure.m_dValue,
                    100.0 * figure.m_dValue / times.m_dEngine);
        dRest -= figure.m_dValue;
    }
    std::printf("%-30s %8.1f %7.1f %%\n", "the rest", dRest, 100.0 * dRest / times.m_dEngine);
    return 0;
}
