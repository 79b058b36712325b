#include "cli/completion_scripts.h"
#include "cli/completion_words.h"
#include "cli/help_text.h"

namespace velmora::cli {

namespace {

// The names in capitals stand for what the table of commands says. _arguments counts the words behind
// the command's own, so the line is cut there.
constexpr std::string_view SCRIPT = R"(#compdef PROGRAM
# Completion of PROGRAM for zsh, made from the table of commands.
_velmora_cli()
{
    local context state state_descr line command
    typeset -A opt_args
    local -a entries
    local -i index
    for (( index = 2; index < CURRENT; index++ )); do
        case ${words[index]} in
        TAKING_VALUES) (( index++ )) ;;
        -*) ;;
        *)
            command="${command:+$command }${words[index]}"
            case $command in
            GROUP_NAMES) ;;
            *) break ;;
            esac
            ;;
        esac
    done
    case $command in
    '')
        entries=(FIRST_WORDS)
        _arguments GLOBAL_OPTIONS '*:command:->commands'
        [[ $state == commands ]] && _describe command entries
        return
        ;;
GROUP_CASES    esac
    words=("${words[1]}" "${(@)words[index+1,-1]}")
    (( CURRENT -= index - 1 ))
    case $command in
COMMAND_CASES    esac
}
_velmora_cli "$@"
)";

constexpr std::string_view GROUP_CASE = R"(    NAME)
        entries=(SECOND_WORDS)
        _describe command entries
        return
        ;;
)";

// A text inside a word for _arguments.
std::string argumentsText(std::string_view sText)
{
    return filledIn(sText, {{"\\", "\\\\"}, {"[", "\\["}, {"]", "\\]"}, {":", "\\:"}});
}

std::string actionFor(const CValueRule& rule)
{
    switch (rule.m_eKind) {
    case EValueKind::File:
        return "_files";
    case EValueKind::Folder:
        return "_files -/";
    case EValueKind::Choice:
        return "(" + joined(rule.m_choices) + ")";
    default:
        return " ";
    }
}

template <class TOptions>
std::string argumentsWords(const TOptions& options)
{
    std::string sText;
    for (const COption& option : options)
        for (const std::string_view sName : namesOf(option)) {
            std::string sOptionWord = (option.m_bRepeatable ? "*" : "") + std::string(sName) + "[" +
                                      argumentsText(option.m_sHelp) + "]";
            if (option.m_rule.m_eKind != EValueKind::Flag)
                sOptionWord += ":" + argumentsText(option.m_sValueName) + ":" + actionFor(option.m_rule);
            sText += " \\\n            " + shellQuoted(sOptionWord);
        }
    return sText;
}

std::string commandCase(const CCommand& command)
{
    std::string sText =
        "    " + shellQuoted(command.m_sName) + ")\n        _arguments" + argumentsWords(optionsOf(command));
    for (const CArgument& argument : command.m_arguments)
        sText += " \\\n            " +
                 shellQuoted((argument.m_bOptional ? "::" : ":") + argumentsText(argument.m_sName) + ":" +
                             actionFor(argument.m_rule));
    return sText + "\n        ;;\n";
}

std::string entry(std::string_view sWord, std::string_view sSummary)
{
    return " " + shellQuoted(argumentsText(sWord) + ":" + std::string(sSummary));
}

} // namespace

std::string zshCompletion()
{
    std::string sFirstWords;
    for (const std::string_view sWord : firstWords())
        sFirstWords += entry(sWord, summaryOf(sWord));
    std::string sGroupCases;
    for (const std::string_view sGroup : groupNames()) {
        std::string sSecondWords;
        for (const CCommand* pCommand : commandsOfGroup(sGroup))
            sSecondWords += entry(secondWordOf(*pCommand), pCommand->m_sSummary);
        sGroupCases += filledIn(GROUP_CASE, {{"NAME", std::string(sGroup)}, {"SECOND_WORDS", sSecondWords}});
    }
    std::string sCommandCases;
    for (const CCommand& command : commandTable())
        sCommandCases += commandCase(command);
    return filledIn(SCRIPT, {{"PROGRAM", std::string(PROGRAM_NAME)},
                             {"TAKING_VALUES", joined(namesOfOptionsWithValue(), "|")},
                             {"GROUP_NAMES", joined(groupNames(), "|")},
                             {"FIRST_WORDS", sFirstWords},
                             {" GLOBAL_OPTIONS", argumentsWords(globalOptions()) + " \\\n           "},
                             {"GROUP_CASES", sGroupCases},
                             {"COMMAND_CASES", sCommandCases}});
}

} // namespace velmora::cli
