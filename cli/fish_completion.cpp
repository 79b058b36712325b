#include "base/text.h"
#include "cli/completion_scripts.h"
#include "cli/completion_words.h"
#include "cli/help_text.h"

namespace velmora::cli {

namespace {

// "complete -c velmora-cli" with a condition, if one is given.
std::string completing(const std::string& sCondition)
{
    std::string sText = "complete -c " + std::string(PROGRAM_NAME);
    return sCondition.empty() ? sText : sText + " -n " + shellQuoted(sCondition);
}

std::string offering(const CValueRule& rule)
{
    switch (rule.m_eKind) {
    case EValueKind::Flag:
        return "";
    case EValueKind::File:
        return " -r -F";
    case EValueKind::Folder:
        return " -x -a '(__fish_complete_directories)'";
    case EValueKind::Choice:
        return " -x -a " + shellQuoted(joined(rule.m_choices));
    default:
        return " -x";
    }
}

std::string optionLine(const COption& option, const std::string& sCondition)
{
    std::string sText = completing(sCondition);
    for (const std::string_view sName : namesOf(option)) {
        const bool bLong = sName.starts_with("--");
        sText += (bLong ? " -l " : " -s ") + std::string(sName.substr(bLong ? 2 : 1));
    }
    return sText + offering(option.m_rule) + " -d " + shellQuoted(option.m_sHelp) + "\n";
}

std::string wordLine(std::string_view sWord, std::string_view sSummary, const std::string& sCondition)
{
    return completing(sCondition) + " -a " + std::string(sWord) + " -d " + shellQuoted(sSummary) + "\n";
}

std::string commandLines(const CCommand& command)
{
    std::string sCondition;
    for (const std::string& sWord : split(command.m_sName, ' '))
        sCondition += (sCondition.empty() ? "" : "; and ") + ("__fish_seen_subcommand_from " + sWord);
    std::string sText;
    for (const COption& option : command.m_options)
        sText += optionLine(option, sCondition);
    if (command.m_bTakesFilter)
        for (const COption& option : filterOptions())
            sText += optionLine(option, sCondition);
    for (const CArgument& argument : command.m_arguments)
        if (argument.m_rule.m_eKind == EValueKind::File)
            sText += completing(sCondition) + " -F\n";
        else if (argument.m_rule.m_eKind == EValueKind::Folder ||
                 argument.m_rule.m_eKind == EValueKind::Choice)
            sText += completing(sCondition) + offering(argument.m_rule) + "\n";
    return sText;
}

} // namespace

std::string fishCompletion()
{
    std::string sText =
        "# Completion of " + std::string(PROGRAM_NAME) + " for fish, made from the table of commands.\n";
    sText += completing("") + " -f\n";
    for (const COption& option : globalOptions())
        sText += optionLine(option, "");
    for (const std::string_view sWord : firstWords())
        sText += wordLine(sWord, summaryOf(sWord), "__fish_use_subcommand");
    for (const std::string_view sGroup : groupNames()) {
        const std::string sCondition = "__fish_seen_subcommand_from " + std::string(sGroup) +
                                       "; and not __fish_seen_subcommand_from " +
                                       joined(secondWordsOf(sGroup));
        for (const CCommand* pCommand : commandsOfGroup(sGroup))
            sText += wordLine(secondWordOf(*pCommand), pCommand->m_sSummary, sCondition);
    }
    for (const CCommand& command : commandTable())
        sText += commandLines(command);
    return sText;
}

} // namespace velmora::cli
