#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runDemo(CCommandContext& context);

} // namespace velmora::cli
