#include "cli/man_page.h"

#include "base/text.h"
#include "cli/command.h"
#include "cli/help_text.h"

namespace velmora::cli {

namespace {

// Text for roff: no character of it is taken for a request, an escape or a hyphen.
std::string roff(std::string_view sText)
{
    std::string sResult;
    for (const char c : sText) {
        if (c == '\\')
            sResult += "\\e";
        else if (c == '-')
            sResult += "\\-";
        else if (c == '\'')
            sResult += "\\(aq";
        else if (c == '"')
            sResult += "\\(dq";
        else
            sResult += c;
    }
    return sResult.starts_with('.') ? "\\&" + sResult : sResult;
}

std::string paragraphs(std::string_view sText)
{
    std::string sResult;
    for (const std::string& sParagraph : split(sText, '\n'))
        sResult += (sResult.empty() ? "" : ".PP\n") + roff(sParagraph) + "\n";
    return sResult;
}

std::string tagged(std::string_view sTag, std::string_view sText)
{
    return ".TP\n\\fB" + roff(sTag) + "\\fR\n" + roff(sText) + "\n";
}

template <class TOptions>
std::string optionList(const TOptions& options)
{
    std::string sText;
    for (const COption& option : options)
        sText += tagged(optionSyntax(option), option.m_sHelp);
    return sText;
}

std::string section(const CCommand& command)
{
    std::string sText =
        ".SS " + roff(command.m_sName) + "\n.PP\n\\fB" + roff(usageLine(command)) + "\\fR\n.PP\n";
    sText += paragraphs(command.m_sDescription);
    for (const CArgument& argument : command.m_arguments)
        sText += tagged(argument.m_sName, argument.m_sHelp);
    sText += optionList(command.m_options);
    if (command.m_bTakesFilter)
        sText += ".PP\nIt also takes the filter options.\n";
    sText += ".PP\nResult with \\fB\\-\\-json\\fR: " + roff(command.m_sJsonResult) + "\n";
    for (const CExample& example : command.m_examples)
        sText += ".PP\n" + roff(example.m_sMeaning) + "\n.PP\n.RS 4\n.EX\n" +
                 roff(std::string(PROGRAM_NAME) + " " + std::string(example.m_sLine)) + "\n.EE\n.RE\n";
    return sText;
}

} // namespace

std::string manPage()
{
    std::string sText = ".TH VELMORA\\-CLI 1 \"\" \"" + versionText() + "\" \"User Commands\"\n";
    sText += ".SH NAME\n" + roff(PROGRAM_NAME) + " \\- " + roff(programSummary()) + "\n";
    sText += ".SH SYNOPSIS\n\\fB" + roff(PROGRAM_NAME) +
             "\\fR [\\fIOPTION\\fR]... \\fICOMMAND\\fR "
             "[\\fIARGUMENT\\fR]...\n";
    sText += ".SH DESCRIPTION\n" + paragraphs(programDescription());
    sText +=
        ".SH \"COMMON OPTIONS\"\nThey may stand anywhere on the line, like every option, as \\-\\-name VALUE "
        "or "
        "\\-\\-name=VALUE. A number that begins with a minus sign is a value. \\-\\- ends the options.\n";
    sText += optionList(globalOptions());
    sText += ".SH \"FILTER OPTIONS\"\nCommands that run audio through a filter take these. They are applied "
             "in the "
             "order given, before audio starts.\n";
    sText += optionList(filterOptions());
    sText += ".SH COMMANDS\n";
    for (const CCommand& command : commandTable())
        sText += section(command);
    sText += ".SH \"EXIT STATUS\"\n" + tagged("0", "The work is done.") +
             tagged("1", "It failed or was refused; a message on standard error says why.") +
             tagged("2", "The command line is wrong.");
    sText += ".SH ENVIRONMENT\n" +
             tagged("APPDATA",
                    "The folder that holds the user folder, which is named Velmora. When it is not set, "
                    "XDG_DATA_HOME is taken, and without it ~/.local/share.");
    sText += ".SH FILES\n" + tagged("socket.log", "The settings, in the user folder.") +
             tagged("PlugIns", "The folder of plug-in libraries, in the user folder.");
    return sText;
}

} // namespace velmora::cli
