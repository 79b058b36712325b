#pragma once

#include <string>
#include <vector>

namespace velmora {
struct CRebuildResult;
}

namespace velmora::cli {

// The result of a rebuild as one JSON object on one line. With changedFiles, the names of the files that
// made it necessary as well.
[[nodiscard]] std::string buildResultAsJson(const CRebuildResult& result,
                                            const std::vector<std::string>* pChangedFiles);

// The same for people: each complaint as "FILE:LINE:COLUMN: error: TEXT", which editors understand, then how
// it ended.
[[nodiscard]] std::string buildResultAsText(const CRebuildResult& result);

// Built, and loaded if that was asked for.
[[nodiscard]] bool isBuildGood(const CRebuildResult& result);

} // namespace velmora::cli
