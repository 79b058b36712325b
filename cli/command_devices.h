#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runDevices(CCommandContext& context);

} // namespace velmora::cli
