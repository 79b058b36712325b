#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runSettingsShow(CCommandContext& context);
[[nodiscard]] int runSettingsSet(CCommandContext& context);

} // namespace velmora::cli
