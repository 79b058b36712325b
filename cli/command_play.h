#pragma once

namespace velmora::cli {

class CCommandContext;

[[nodiscard]] int runPlay(CCommandContext& context);
[[nodiscard]] int runListen(CCommandContext& context);
[[nodiscard]] int runTone(CCommandContext& context);

} // namespace velmora::cli
