#pragma once

#include "cli/command.h"

namespace velmora {
class CAudioEngine;
class CSidechain;
} // namespace velmora

namespace velmora::cli {

class CCommandContext;
class CCommandLine;

// The options of every command that passes audio through the engine: --mode, the gains, --bypass.
[[nodiscard]] std::vector<COption> engineOptions();

// The options of those that take a sidechain as well.
[[nodiscard]] std::vector<COption> sidechainOptions();

// Both groups and then more, in the order of the help.
[[nodiscard]] std::vector<COption> joined(std::vector<std::vector<COption>> groups);

void applyEngineOptions(const CCommandLine& line, CAudioEngine& engine);

// False if the sidechain's file cannot be used; the user has been told.
[[nodiscard]] bool applySidechainOptions(CCommandContext& context, CSidechain& sidechain);

} // namespace velmora::cli
