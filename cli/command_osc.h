#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runOscRender(CCommandContext& context);

} // namespace velmora::cli
