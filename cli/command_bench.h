#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runBench(CCommandContext& context);

} // namespace velmora::cli
