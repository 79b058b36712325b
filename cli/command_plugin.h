#pragma once

#include <string>

namespace velmora::cli {

class CCommandContext;
class CHeadlessDocument;

[[nodiscard]] int runPlugInScan(CCommandContext& context);
[[nodiscard]] int runPlugInInspect(CCommandContext& context);

// The current filter, plug-in or module, with its controls, as "plugin inspect" prints it.
[[nodiscard]] std::string plugInResult(CHeadlessDocument& document, bool bJson);

} // namespace velmora::cli
