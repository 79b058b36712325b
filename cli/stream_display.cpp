#include "cli/stream_display.h"

#include "base/text.h"

#include <algorithm>
#include <sys/ioctl.h>
#include <unistd.h>

namespace velmora::cli {

namespace {

struct CMeterPair
{
    const char* m_pName;
    EMeter m_eLeft;
};
constexpr std::array<CMeterPair, 3> METER_PAIRS = {
    {{"in", METER_INPUT_LEFT}, {"out", METER_OUTPUT_LEFT}, {"side", METER_SIDECHAIN_LEFT}}};
constexpr std::size_t SHORTEST_BAR = 3;
constexpr std::size_t LONGEST_BAR = 12;

// The level's part of the bar, rounded up, so that every level above the bottom is seen.
std::string bar(float fLevel, std::size_t uLength)
{
    const float fFilled = std::clamp(fLevel, 0.0F, 1.0F) * static_cast<float>(uLength);
    auto uFilled = static_cast<std::size_t>(fFilled);
    if (uFilled < uLength && fFilled > static_cast<float>(uFilled))
        ++uFilled;
    return std::string(uFilled, '#') + std::string(uLength - uFilled, '.');
}

} // namespace

std::string streamLine(const CStreamPicture& picture, std::size_t uColumns)
{
    std::string sTime = clockText(picture.m_dSeconds);
    if (picture.m_dLength > 0.0)
        sTime += "/" + clockText(picture.m_dLength);
    const std::string sEnd =
        formatted("load %5.1f %%  underruns %llu", std::min(picture.m_dLoad, 9.999) * 100.0,
                  static_cast<unsigned long long>(picture.m_uUnderruns));

    const std::size_t uPairs = picture.m_bSidechain ? 3 : 2;
    std::size_t uTaken = sTime.size() + 2 + sEnd.size();
    for (std::size_t u = 0; u < uPairs; ++u)
        uTaken += std::string_view(METER_PAIRS[u].m_pName).size() + sizeof " |  " - 1;
    std::string sLine = sTime + "  ";
    if (uTaken + 2 * uPairs * SHORTEST_BAR <= uColumns) {
        const std::size_t uLength = std::min((uColumns - uTaken) / (2 * uPairs), LONGEST_BAR);
        for (std::size_t u = 0; u < uPairs; ++u) {
            const auto [pName, eLeft] = METER_PAIRS[u];
            sLine += std::string(pName) + " " + bar(picture.m_meters[eLeft], uLength) + "|" +
                     bar(picture.m_meters[eLeft + 1], uLength) + "  ";
        }
    }
    return (sLine + sEnd).substr(0, uColumns);
}

std::string clockText(double dSeconds)
{
    const auto uSeconds = static_cast<unsigned long long>(std::max(dSeconds, 0.0));
    return formatted("%llu:%02llu", uSeconds / 60, uSeconds % 60);
}

std::size_t terminalColumns()
{
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

} // namespace velmora::cli
