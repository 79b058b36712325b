#include "project/codegen/code_markers.h"

#include "project/codegen/text_surgery.h"

#include <algorithm>
#include <vector>

namespace velmora {

namespace {

constexpr bool isMarkerRecognised(std::string_view sMarker)
{
    return std::ranges::any_of(MARKER_BEGINNINGS,
                               [=](auto sBeginning) { return sMarker.find(sBeginning) != sMarker.npos; });
}
static_assert(std::ranges::all_of(CODE_REGIONS, [](const CCodeRegion& region) {
    return isMarkerRecognised(region.m_sBegin) && isMarkerRecognised(region.m_sEnd);
}));

struct CFoundRegion
{
    std::size_t m_uKept; // characters ahead of the new content
    std::size_t m_uEnd;  // where the end marker begins
};

std::optional<CFoundRegion> findCodeRegion(std::string_view sText, const CCodeRegion& region)
{
    const auto nBegin = foundAt(sText.find(region.m_sBegin));
    const auto nEnd = foundAt(sText.find(region.m_sEnd));
    if (nEnd <= nBegin)
        return std::nullopt;
    const auto uKept = static_cast<std::size_t>(nBegin + static_cast<std::ptrdiff_t>(region.m_sBegin.size()));
    return CFoundRegion{std::min(uKept, sText.size()), static_cast<std::size_t>(nEnd)};
}

std::string withLineEnds(std::string_view sPlain, std::string_view sLineEnd)
{
    std::string sText;
    for (;;) {
        const auto uEnd = sPlain.find('\n');
        sText += sPlain.substr(0, uEnd);
        if (uEnd == std::string_view::npos)
            return sText;
        sText += sLineEnd;
        sPlain.remove_prefix(uEnd + 1);
    }
}

// Lines that end in "\r\n", less lines that end in "\n" alone.
std::ptrdiff_t surplusOfCarriageReturns(std::string_view sText)
{
    std::ptrdiff_t nSurplus = 0;
    for (auto uEnd = sText.find('\n'); uEnd != std::string_view::npos; uEnd = sText.find('\n', uEnd + 1))
        nSurplus += uEnd > 0 && sText[uEnd - 1] == '\r' ? 1 : -1;
    return nSurplus;
}

} // namespace

std::optional<CRegionFault> findRegionFault(std::string_view sText, const CCodeRegion& region)
{
    const std::string sBegin(region.m_sBegin), sEnd(region.m_sEnd);
    const auto uBegin = sText.find(sBegin);
    const auto uEnd = sText.find(sEnd);
    if (uEnd == std::string_view::npos)
        return CRegionFault{"the mark " + sEnd + " is missing"};
    if (uBegin == std::string_view::npos)
        return CRegionFault{"the mark " + sBegin + " is missing", true};
    if (uEnd < uBegin)
        return CRegionFault{"the mark " + sEnd + " stands too early"};
    if (sText.substr(0, uEnd).rfind(sBegin) != uBegin)
        return CRegionFault{"the mark " + sBegin + " stands twice", true};
    return std::nullopt;
}

std::string_view prevailingLineEnd(std::string_view sText, std::initializer_list<CCodeRegion> regions)
{
    std::vector<CFoundRegion> found;
    for (const CCodeRegion& region : regions)
        if (const auto position = findCodeRegion(sText, region))
            found.push_back(*position);
    std::ranges::sort(found, {}, &CFoundRegion::m_uKept);
    std::ptrdiff_t nSurplus = 0;
    std::size_t uCounted = 0;
    for (const CFoundRegion& region : found) {
        if (region.m_uKept > uCounted)
            nSurplus += surplusOfCarriageReturns(sText.substr(uCounted, region.m_uKept - uCounted));
        uCounted = std::max(uCounted, region.m_uEnd);
    }
    nSurplus += surplusOfCarriageReturns(sText.substr(uCounted));
    return nSurplus > 0 ? "\r\n" : "\n";
}

bool replaceCodeRegion(std::string& sText, const CCodeRegion& region, std::string_view sBody,
                       std::string_view sLineEnd)
{
    const auto found = findCodeRegion(sText, region);
    if (!found)
        return false;
    // The two lie over one another where the end marker begins within the characters that are kept.
    const std::string sOverlap = found->m_uEnd < found->m_uKept
                                     ? sText.substr(found->m_uEnd, found->m_uKept - found->m_uEnd)
                                     : std::string();
    const std::size_t uOld = found->m_uEnd - std::min(found->m_uEnd, found->m_uKept);
    std::string sFrame;
    sFrame.append(sLineEnd).append(sLineEnd).append(sLineEnd).append(region.m_sBeforeEnd).append(sOverlap);
    sText.replace(found->m_uKept, uOld, sFrame);
    const std::size_t uBody = found->m_uKept + 2 * sLineEnd.size();
    if (sLineEnd == "\n")
        sText.insert(uBody, sBody);
    else
        sText.insert(uBody, withLineEnds(sBody, sLineEnd));
    return true;
}

} // namespace velmora
