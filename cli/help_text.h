#pragma once

#include "cli/command.h"

#include <string>
#include <string_view>

namespace velmora::cli {

inline constexpr std::string_view PROGRAM_NAME = "velmora-cli";

// "velmora-cli process [OPTION]... IN OUT"
[[nodiscard]] std::string usageLine(const CCommand& command);

// "--in-gain DB", or "-h, --help".
[[nodiscard]] std::string optionSyntax(const COption& option);

// What --help prints for a command, for a group ("settings"), and for the whole program; 80 columns.
[[nodiscard]] std::string commandHelp(const CCommand& command);
[[nodiscard]] std::string groupHelp(std::string_view sGroup);
[[nodiscard]] std::string programHelp();

// What follows a complaint about a command line: the usage and where to read more. pCommand is null, and
// sGroup empty, as far as they are not known.
[[nodiscard]] std::string usageHint(const CCommand* pCommand, std::string_view sGroup);

// "Velmora 7.0.0.0" as velmora-cli says it.
[[nodiscard]] std::string versionText();

// What every page says about the program as a whole.
[[nodiscard]] std::string_view programSummary();
[[nodiscard]] std::string_view programDescription();

} // namespace velmora::cli
