#include "cli/bench/bench_parts.h"
#include "cli/bench/offline_comparison.h"

namespace velmora::cli {

namespace {

constexpr double SECONDS = 20.0;
constexpr int ROUNDS = 5;

} // namespace

std::vector<CBenchFigure> benchOffline(const std::filesystem::path& folder, CBenchSteps& steps)
{
    const COfflineComparison comparison(folder, SECONDS);
    std::vector<CBenchFigure> figures;
    for (const CBenchPath& path : benchPaths()) {
        const CComparison result = comparison.compare(path, ROUNDS, [&] { steps.next(); });
        const std::string sName = std::string("offline, ") + path.m_pName;
        figures.push_back({sName + ": speed", SECONDS / result.m_dHostWallSeconds, "x real time"});
        figures.push_back(
            {sName + ": added by the host", 100.0 * (result.m_dRatio - 1.0), "% processor time"});
    }
    return figures;
}

} // namespace velmora::cli
