#pragma once

#include "cli/command.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::cli {

// One option as it was given.
struct CGivenOption
{
    std::string m_sName;  // the option's first name
    std::string m_sValue; // empty for a flag; absolute for files and folders
};

// What the user typed, checked against a command's row. Values are known to keep their rules, so the
// getters cannot fail; a name that the row does not have answers as if it was not given.
class CCommandLine
{
  public:
    [[nodiscard]] const CCommand* command() const { return m_pCommand; }
    [[nodiscard]] std::string_view group() const { return m_sGroup; }
    [[nodiscard]] bool wantsHelp() const { return m_bHelp; }

    // Why the line cannot be run; empty if it can.
    [[nodiscard]] const std::string& error() const { return m_sError; }

    // The text of an argument by its name in the usage line; none if it was left out.
    [[nodiscard]] std::optional<std::string> argument(std::string_view sName) const;

    [[nodiscard]] bool has(std::string_view sOption) const;
    [[nodiscard]] std::optional<std::string> text(std::string_view sOption) const;
    [[nodiscard]] double number(std::string_view sOption, double dDefault) const;

    // Every option in the order given.
    [[nodiscard]] const std::vector<CGivenOption>& options() const { return m_options; }

  private:
    friend class CCommandLineParser;

    const CCommand* m_pCommand = nullptr;
    std::string m_sGroup; // the first word, when only a group was named
    bool m_bHelp = false;
    std::string m_sError;
    std::vector<std::pair<std::string_view, std::string>> m_arguments; // name in the usage line, value
    std::vector<CGivenOption> m_options;
};

// Reads a command line, the program's name apart. Options may stand anywhere, as "--name value" or
// "--name=value"; "--" ends them; a number that begins with a minus sign is a value.
[[nodiscard]] CCommandLine parseCommandLine(const std::vector<std::string>& words);

} // namespace velmora::cli
