#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runMeasure(CCommandContext& context);

} // namespace velmora::cli
