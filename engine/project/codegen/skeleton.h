#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velmora {

// One replacement of a skeleton.
struct CToken
{
    std::string_view m_sFrom;
    std::string m_sTo;
};

// The skeleton with all tokens replaced in one pass from its start: what was put in is not searched again.
// Where several tokens begin at one place, the first of the list counts. [any]
[[nodiscard]] std::string instantiateSkeleton(std::string_view sSkeleton, std::span<const CToken> tokens);

} // namespace velmora
