#pragma once

#include <limits>
#include <span>
#include <string_view>
#include <vector>

namespace velmora::cli {

class CCommandContext;

// Exit statuses of the program.
inline constexpr int EXIT_DONE = 0;   // the work was done
inline constexpr int EXIT_FAILED = 1; // it failed or was refused; a message said why
inline constexpr int EXIT_USAGE = 2;  // the command line was wrong

// What a value is: decides how it is checked before the command runs, and how shells complete it.
enum class EValueKind
{
    Flag,              // an option without a value
    Text,              // anything
    Number,            // a decimal number within the limits
    WholeNumber,       // a whole number within the limits
    File,              // a file; made absolute when it is read
    Folder,            // likewise
    Choice,            // one of the choices
    Assignment,        // ID=VALUE: a control's id and any text
    PositionAssignment // ID=POS: a control's id and a whole number within the limits
};

// What is known about a value of the command line.
struct CValueRule
{
    EValueKind m_eKind = EValueKind::Text;
    double m_dLowest = -std::numeric_limits<double>::max();
    double m_dHighest = std::numeric_limits<double>::max();
    std::vector<std::string_view> m_choices = {};
};

// A word that follows the command's name.
struct CArgument
{
    std::string_view m_sName; // as shown in the usage line: "IN"
    std::string_view m_sHelp;
    CValueRule m_rule = {};
    bool m_bOptional = false;
};

struct COption
{
    std::string_view m_sName;      // with its dashes: "--in-gain", "-o"
    std::string_view m_sValueName; // "DB"; empty for a flag
    std::string_view m_sHelp;
    CValueRule m_rule = {EValueKind::Flag};
    bool m_bRepeatable = false;
    std::string_view m_sShortName = {}; // a second name such as "-h"; empty if there is none
    std::string_view m_sNeeds = {};     // another option that must be given as well; empty if none
};

struct CExample
{
    std::string_view m_sLine; // what is typed, without the program's name
    std::string_view m_sMeaning;
};

// One command: the row of the table from which parsing, help, man page, completions and the
// documentation are made.
struct CCommand
{
    std::string_view m_sName;        // one or two words: "process", "settings set"
    std::string_view m_sSummary;     // one line without a full stop
    std::string_view m_sDescription; // paragraphs, separated by line ends
    std::vector<CArgument> m_arguments = {};
    std::vector<COption> m_options = {}; // without the filter options and the global ones
    bool m_bTakesFilter = false;         // takes the filter options as well
    std::string_view m_sJsonResult;      // the shape of the JSON object
    std::vector<CExample> m_examples = {};
    int (*m_pRun)(CCommandContext&) = nullptr; // answers an exit status
};

// The first word of commands that have two.
struct CCommandGroup
{
    std::string_view m_sName;
    std::string_view m_sSummary;
};

// The registry, in command_table.cpp.
[[nodiscard]] std::span<const CCommand> commandTable();
[[nodiscard]] std::span<const CCommandGroup> commandGroups();
[[nodiscard]] std::span<const COption> globalOptions();

// --plugin, --set and their like, for every command that runs a filter.
[[nodiscard]] std::span<const COption> filterOptions();

// Every option a command understands: its own, then the filter's, then the global ones.
[[nodiscard]] std::vector<COption> optionsOf(const CCommand& command);

// The command of that name, or null.
[[nodiscard]] const CCommand* findCommand(std::string_view sName);

} // namespace velmora::cli
