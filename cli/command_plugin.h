#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runPlugInScan(CCommandContext& context);
[[nodiscard]] int runPlugInInspect(CCommandContext& context);

} // namespace velmora::cli
