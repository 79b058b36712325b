#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runProcess(CCommandContext& context);

} // namespace velmora::cli
