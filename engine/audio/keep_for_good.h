#pragma once

#include <utility>
#include <vector>

namespace velmora {

// Keeps what somebody who does not answer may still use: it is never given back, not even at the program's
// end. [main]
template <typename T>
void keepForGood(T thing)
{
    static auto& s_kept = *new std::vector<T>;
    s_kept.push_back(std::move(thing));
}

} // namespace velmora
