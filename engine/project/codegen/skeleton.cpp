#include "project/codegen/skeleton.h"

#include <algorithm>
#include <vector>

namespace velmora {

std::string instantiateSkeleton(std::string_view sSkeleton, std::span<const CToken> tokens)
{
    std::vector<std::size_t> found; // where each token stands next
    for (const CToken& token : tokens)
        found.push_back(token.m_sFrom.empty() ? sSkeleton.npos : sSkeleton.find(token.m_sFrom));

    std::string sResult;
    std::size_t uCopied = 0;
    for (;;) {
        const auto nearest = std::min_element(found.begin(), found.end());
        if (nearest == found.end() || *nearest == sSkeleton.npos)
            return sResult.append(sSkeleton.substr(uCopied));
        const CToken& token = tokens[static_cast<std::size_t>(nearest - found.begin())];
        sResult.append(sSkeleton.substr(uCopied, *nearest - uCopied)).append(token.m_sTo);
        uCopied = *nearest + token.m_sFrom.size();
        for (std::size_t i = 0; i < found.size(); ++i)
            if (found[i] < uCopied)
                found[i] = sSkeleton.find(tokens[i].m_sFrom, uCopied);
    }
}

} // namespace velmora
