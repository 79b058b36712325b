#include "cli/markdown_page.h"

#include "base/text.h"
#include "cli/command.h"
#include "cli/help_text.h"

namespace velmora::cli {

namespace {

// Heading of a command turned into the anchor that renderers give it.
std::string anchorOf(std::string_view sName)
{
    std::string sAnchor(sName);
    for (char& c : sAnchor)
        if (c == ' ')
            c = '-';
    return sAnchor;
}

std::string tableCell(std::string_view sText)
{
    std::string sCell;
    for (const char c : sText)
        sCell += c == '|' ? std::string("\\|") : std::string(1, c);
    return sCell;
}

std::string row(std::string_view sName, std::string_view sMeaning)
{
    return "| `" + tableCell(sName) + "` | " + tableCell(sMeaning) + " |\n";
}

std::string tableHead(std::string_view sHeading)
{
    return "\n| " + std::string(sHeading) + " | Meaning |\n|---|---|\n";
}

std::string paragraphs(std::string_view sText)
{
    std::string sResult;
    for (const std::string& sParagraph : split(sText, '\n'))
        sResult += "\n" + sParagraph + "\n";
    return sResult;
}

std::string section(const CCommand& command)
{
    std::string sText = "\n## " + std::string(command.m_sName) + "\n\n```\n" + usageLine(command) + "\n```\n";
    sText += paragraphs(command.m_sDescription);
    if (!command.m_arguments.empty()) {
        sText += tableHead("Argument");
        for (const CArgument& argument : command.m_arguments)
            sText += row(argument.m_sName, argument.m_sHelp);
    }
    if (!command.m_options.empty()) {
        sText += tableHead("Option");
        for (const COption& option : command.m_options)
            sText += row(optionSyntax(option), option.m_sHelp);
    }
    if (command.m_bTakesFilter)
        sText += "\nIt also takes the [filter options](#filter-options).\n";
    sText += "\nResult with `--json`:\n\n```\n" + std::string(command.m_sJsonResult) + "\n```\n";
    for (const CExample& example : command.m_examples)
        sText += "\n" + std::string(example.m_sMeaning) + "\n\n```\n" + std::string(PROGRAM_NAME) + " " +
                 std::string(example.m_sLine) + "\n```\n";
    return sText;
}

} // namespace

std::string markdownPage()
{
    const std::string sProgram(PROGRAM_NAME);
    std::string sText = "# " + sProgram +
                        "\n\n<!-- Made from cli/command_table.cpp by velmora-cli-docs; "
                        "change it there. -->\n";
    sText += paragraphs(programDescription());
    sText += "\n| Command | Does |\n|---|---|\n";
    for (const CCommand& command : commandTable())
        sText += "| [`" + std::string(command.m_sName) + "`](#" + anchorOf(command.m_sName) + ") | " +
                 tableCell(command.m_sSummary) + " |\n";
    sText +=
        "\n## Common options\n\nThey may stand anywhere on the line, like every option, as `--name VALUE` or "
        "`--name=VALUE`. A number that begins with a minus sign is a value. `--` ends the options.\n";
    sText += tableHead("Option");
    for (const COption& option : globalOptions())
        sText += row(optionSyntax(option), option.m_sHelp);
    sText +=
        "\n## Filter options\n\nCommands that run audio through a filter take these. They are applied in the "
        "order given, before audio starts.\n";
    sText += tableHead("Option");
    for (const COption& option : filterOptions())
        sText += row(optionSyntax(option), option.m_sHelp);
    for (const CCommand& command : commandTable())
        sText += section(command);
    return sText;
}

} // namespace velmora::cli
