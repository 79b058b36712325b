#include "cli/help_text.h"

#include "base/text.h"

#include <algorithm>

namespace velmora::cli {

namespace {

constexpr std::size_t PAGE_WIDTH = 80;
constexpr std::size_t HELP_COLUMN = 26;

// Breaks paragraphs into lines that begin at uIndent; the caller has already written the indent of the
// first one.
std::string wrapped(std::string_view sText, std::size_t uIndent)
{
    const std::string sIndent(uIndent, ' ');
    std::string sResult;
    for (const std::string& sParagraph : split(sText, '\n')) {
        if (!sResult.empty())
            sResult += uIndent == 0 ? "\n\n" : "\n" + sIndent;
        std::size_t uColumn = uIndent;
        for (const std::string& sWord : split(sParagraph, ' ')) {
            if (uColumn > uIndent && uColumn + 1 + sWord.size() > PAGE_WIDTH) {
                sResult += "\n" + sIndent;
                uColumn = uIndent;
            }
            if (uColumn > uIndent) {
                sResult += ' ';
                ++uColumn;
            }
            sResult += sWord;
            uColumn += sWord.size();
        }
    }
    return sResult;
}

// "  name      what it is": the help begins in a column of its own, on the next line if it must.
std::string entry(std::string_view sName, std::string_view sHelp)
{
    std::string sLine = "  " + std::string(sName);
    if (sLine.size() + 2 > HELP_COLUMN)
        sLine += "\n" + std::string(HELP_COLUMN, ' ');
    else
        sLine.resize(HELP_COLUMN, ' ');
    return sLine + wrapped(sHelp, HELP_COLUMN) + "\n";
}

template <class TOptions>
std::string optionList(std::string_view sHeading, const TOptions& options)
{
    if (options.empty())
        return {};
    std::string sText = "\n" + std::string(sHeading) + "\n";
    for (const COption& option : options)
        sText += entry(optionSyntax(option), option.m_sHelp);
    return sText;
}

std::string commandList(std::string_view sPrefix)
{
    std::string sText;
    for (const CCommand& command : commandTable())
        if (command.m_sName.starts_with(sPrefix))
            sText += entry(command.m_sName, command.m_sSummary);
    return sText;
}

} // namespace

std::string usageLine(const CCommand& command)
{
    std::string sLine = std::string(PROGRAM_NAME) + " " + std::string(command.m_sName) + " [OPTION]...";
    for (const CArgument& argument : command.m_arguments) {
        const std::string sName(argument.m_sName);
        sLine += argument.m_bOptional ? " [" + sName + "]" : " " + sName;
    }
    return sLine;
}

std::string optionSyntax(const COption& option)
{
    std::string sText;
    if (!option.m_sShortName.empty())
        sText = std::string(option.m_sShortName) + ", ";
    sText += option.m_sName;
    if (!option.m_sValueName.empty())
        sText += " " + std::string(option.m_sValueName);
    return sText;
}

std::string commandHelp(const CCommand& command)
{
    std::string sText = "Usage: " + usageLine(command) + "\n\n" + wrapped(command.m_sDescription, 0) + "\n";
    if (!command.m_arguments.empty())
        sText += "\nArguments:\n";
    for (const CArgument& argument : command.m_arguments)
        sText += entry(argument.m_sName, argument.m_sHelp);
    sText += optionList("Options:", command.m_options);
    if (command.m_bTakesFilter)
        sText +=
            optionList("Filter options, applied in the order given, before audio starts:", filterOptions());
    sText += optionList("Common options:", globalOptions());
    sText += "\nResult with --json:\n  " + wrapped(command.m_sJsonResult, 2) + "\n";
    if (!command.m_examples.empty())
        sText += "\nExamples:\n";
    for (const CExample& example : command.m_examples)
        sText += "  " + std::string(PROGRAM_NAME) + " " + std::string(example.m_sLine) + "\n      " +
                 wrapped(example.m_sMeaning, 6) + "\n";
    return sText;
}

std::string groupHelp(std::string_view sGroup)
{
    const std::string sName(sGroup);
    const auto groups = commandGroups();
    const auto group = std::ranges::find(groups, sGroup, &CCommandGroup::m_sName);
    std::string sText = "Usage: " + std::string(PROGRAM_NAME) + " " + sName + " COMMAND [OPTION]...\n\n";
    if (group != groups.end())
        sText += std::string(group->m_sSummary) + ".\n\n";
    sText += "Commands:\n" + commandList(sName + " ");
    sText += optionList("Common options:", globalOptions());
    return sText + "\n\"" + std::string(PROGRAM_NAME) + " " + sName +
           " COMMAND --help\" tells more about each.\n";
}

std::string programHelp()
{
    const std::string sProgram(PROGRAM_NAME);
    std::string sText = "Usage: " + sProgram + " [OPTION]... COMMAND [ARGUMENT]...\n\n";
    sText += wrapped(programDescription(), 0) + "\n\nCommands:\n" + commandList("");
    sText += optionList("Common options, anywhere on the line:", globalOptions());
    return sText + "\n\"" + sProgram + " COMMAND --help\" tells more about each command.\n";
}

std::string usageHint(const CCommand* pCommand, std::string_view sGroup)
{
    std::string sName(PROGRAM_NAME);
    std::string sUsage = sName + " [OPTION]... COMMAND [ARGUMENT]...";
    if (pCommand) {
        sName += " " + std::string(pCommand->m_sName);
        sUsage = usageLine(*pCommand);
    } else if (!sGroup.empty()) {
        sName += " " + std::string(sGroup);
        sUsage = sName + " COMMAND [OPTION]...";
    }
    return "Usage: " + sUsage + "\n\"" + sName + " --help\" tells more.";
}

std::string versionText()
{
    return "Velmora " VELMORA_VERSION;
}

std::string_view programSummary()
{
    return "the Velmora audio workbench without its windows";
}

std::string_view programDescription()
{
    return "The Velmora audio workbench without its windows: loads plug-ins, runs audio through them and "
           "measures them, from a shell or a script.\n"
           "Standard output holds the result alone: a table, or one JSON object with --json. Messages, "
           "questions and progress go to standard error. The exit status is 0 when the work is done, 1 when "
           "it failed or was refused, and 2 when the command line is wrong.";
}

} // namespace velmora::cli
