#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runPresetSave(CCommandContext& context);
[[nodiscard]] int runPresetLoad(CCommandContext& context);
[[nodiscard]] int runPresetList(CCommandContext& context);
[[nodiscard]] int runPresetDelete(CCommandContext& context);

} // namespace velmora::cli
