#pragma once

#include <filesystem>

namespace velmora {

// Whether the first thing that a compiler reads of the source, comments and include guards apart, is the
// contract header: directly, or by way of headers of the source's own folder. Only then does the source mean
// the same when the precompiled contract is put ahead of it. [any]
[[nodiscard]] bool beginsWithContract(const std::filesystem::path& source,
                                      const std::filesystem::path& contractHeader);

} // namespace velmora
