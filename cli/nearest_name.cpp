#include "cli/nearest_name.h"

#include <algorithm>

namespace velmora::cli {

std::string nearestName(std::string_view sName, const std::vector<std::string_view>& names)
{
    // Damerau's distance in its restricted form: two rows back are enough.
    const auto distance = [&](std::string_view sOther) {
        std::vector<std::vector<std::size_t>> d(sName.size() + 1,
                                                std::vector<std::size_t>(sOther.size() + 1));
        for (std::size_t i = 0; i <= sName.size(); ++i) {
            for (std::size_t j = 0; j <= sOther.size(); ++j) {
                if (i == 0 || j == 0) {
                    d[i][j] = i + j;
                    continue;
                }
                const std::size_t uCost = sName[i - 1] == sOther[j - 1] ? 0 : 1;
                d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + uCost});
                if (i > 1 && j > 1 && sName[i - 1] == sOther[j - 2] && sName[i - 2] == sOther[j - 1])
                    d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
            }
        }
        return d[sName.size()][sOther.size()];
    };
    if (sName.size() > 100)
        return {};
    std::string sNearest;
    std::size_t uLeast = std::max<std::size_t>(2, sName.size() / 3) + 1;
    for (const std::string_view sOther : names)
        if (const std::size_t uDistance = distance(sOther); uDistance < uLeast) {
            uLeast = uDistance;
            sNearest = sOther;
        }
    return sNearest;
}

} // namespace velmora::cli
