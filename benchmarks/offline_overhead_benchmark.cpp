// What the host adds to offline processing, beside a bare loop that reads the same file, calls the same
// plug-in and writes the same file; and what one call of the engine costs beside the bare call.
//
// Both sides take turns, and each figure is the median over the turns, so that a machine whose speed
// drifts does not favour either.
//
//     offline_overhead_benchmark [--minutes M] [--rounds N]

#include "audio/sound_file.h"
#include "base/text.h"
#include "cli/bench/offline_comparison.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace velmora::cli {
namespace {

void compareFiles(const std::filesystem::path& folder, double dMinutes, int nRounds)
{
    const COfflineComparison comparison(folder, 60.0 * dMinutes);
    std::printf("%g minutes of stereo at %d Hz, 16-bit, processor time, median of %d turns\n", dMinutes,
                BENCH_SAMPLE_RATE, nRounds);
    std::printf("%-12s %10s %10s %10s\n", "path", "host s", "bare s", "overhead");
    for (const CBenchPath& path : benchPaths()) {
        const CComparison result = comparison.compare(path, nRounds);
        std::printf("%-12s %10.3f %10.3f %9.1f%%\n", path.m_pName, result.m_dHostSeconds,
                    result.m_dBareSeconds, 100.0 * (result.m_dRatio - 1.0));
    }
}

void compareCalls(int nRounds)
{
    constexpr int TOTAL_FRAMES = 4000000;
    const CSoundFileInfo info{0, 2, BENCH_SAMPLE_RATE, 0};
    std::printf("\nOne call of the engine, ns, median of %d turns\n", nRounds);
    std::printf("%-12s %8s %10s %10s %12s\n", "path", "frames", "engine", "bare", "added/frame");
    for (const CBenchPath& path : benchPaths()) {
        for (const int nFrames : {1, 64, 4096, 8192}) {
            CBenchHost host(path);
            host.m_transport.setState(TRANSPORT_PLAY);
            CBenchPlugIn bare;
            std::vector<float> in(static_cast<std::size_t>(2 * nFrames), 0.25F);
            std::vector<float> out(in.size());
            const int nCalls = TOTAL_FRAMES / nFrames;
            const auto result = compareInTurns(
                nRounds,
                [&] {
                    for (int i = 0; i < nCalls; ++i)
                        host.m_engine.processPortAudioFile(in.data(), out.data(), 2 * nFrames, true, &info);
                },
                [&] {
                    for (int i = 0; i < nCalls; ++i)
                        for (int nDone = 0; nDone < 2 * nFrames; nDone += BENCH_BLOCK_ITEMS)
                            path.m_pCall(bare, in.data() + nDone, out.data() + nDone,
                                         static_cast<UINT>(std::min(2 * nFrames - nDone, BENCH_BLOCK_ITEMS)));
                });
            const double dScale = 1e9 / nCalls;
            std::printf("%-12s %8d %10.1f %10.1f %12.3f\n", path.m_pName, nFrames,
                        dScale * result.m_dHostSeconds, dScale * result.m_dBareSeconds,
                        dScale * (result.m_dHostSeconds - result.m_dBareSeconds) / nFrames);
        }
    }
}

} // namespace
} // namespace velmora::cli

int main(int nArguments, char** pArguments)
{
    double dMinutes = 10.0;
    int nRounds = 7;
    for (int i = 1; i + 1 < nArguments; i += 2) {
        const auto value = velmora::parseNumber(pArguments[i + 1]);
        if (!value || *value <= 0.0)
            return std::fprintf(stderr, "%s needs a number above 0\n", pArguments[i]), 2;
        if (std::string_view(pArguments[i]) == "--minutes")
            dMinutes = *value;
        else
            nRounds = static_cast<int>(*value);
    }
    const auto folder =
        std::filesystem::temp_directory_path() / ("velmora-benchmark-" + std::to_string(::getpid()));
    std::filesystem::create_directory(folder);
    velmora::cli::compareFiles(folder, dMinutes, nRounds);
    velmora::cli::compareCalls(nRounds);
    std::filesystem::remove_all(folder);
    return 0;
}
