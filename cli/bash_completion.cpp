#include "cli/completion_scripts.h"
#include "cli/completion_words.h"
#include "cli/help_text.h"

namespace velmora::cli {

namespace {

// The names in capitals stand for what the table of commands says.
constexpr std::string_view SCRIPT = R"(# Completion of PROGRAM for bash, made from the table of commands.
_velmora_cli()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local command= arguments=0 index word
    COMPREPLY=()
    case $previous in
OPTION_VALUES    esac
    for ((index = 1; index < COMP_CWORD; index++)); do
        word=${COMP_WORDS[index]}
        case $word in
        TAKING_VALUES) ((index++)) ;;
        -*) ;;
        *)
            case $command in
            '') command=$word ;;
            GROUPS) command="$command $word" ;;
            *) ((arguments++)) ;;
            esac
            ;;
        esac
    done
    case $command in
COMMANDS    esac
}
complete -F _velmora_cli PROGRAM
)";

constexpr std::string_view COMMAND_CASE = R"(    NAME)
        if [[ $current == -* ]]; then
            COMPREPLY=($(compgen -W OPTIONS -- "$current"))
            return
        fi
        case $arguments in
ARGUMENTS        esac
        ;;
)";

// What offers the values of a rule.
std::string offering(const CValueRule& rule)
{
    switch (rule.m_eKind) {
    case EValueKind::File:
        return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$current\")";
    case EValueKind::Folder:
        return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$current\")";
    case EValueKind::Choice:
        return "COMPREPLY=($(compgen -W " + shellQuoted(joined(rule.m_choices)) + " -- \"$current\"))";
    default:
        return "COMPREPLY=()";
    }
}

std::string wordsCase(const std::string& sPattern, const CWordList& words)
{
    CWordList offered = words;
    for (const COption& option : globalOptions())
        offered.push_back(option.m_sName);
    return "    " + sPattern + ") COMPREPLY=($(compgen -W " + shellQuoted(joined(offered)) +
           " -- \"$current\")) ;;\n";
}

std::string commandCase(const CCommand& command)
{
    CWordList options;
    for (const COption& option : optionsOf(command))
        options.push_back(option.m_sName);
    std::string sArguments;
    for (std::size_t u = 0; u < command.m_arguments.size(); ++u)
        sArguments +=
            "        " + std::to_string(u) + ") " + offering(command.m_arguments[u].m_rule) + " ;;\n";
    return filledIn(COMMAND_CASE, {{"NAME", shellQuoted(command.m_sName)},
                                   {"OPTIONS", shellQuoted(joined(options))},
                                   {"ARGUMENTS", sArguments}});
}

} // namespace

std::string bashCompletion()
{
    std::string sOptionValues;
    for (const COption& option : optionsWithValue())
        sOptionValues +=
            "    " + joined(namesOf(option), "|") + ") " + offering(option.m_rule) + "; return ;;\n";
    std::string sCommands = wordsCase("''", firstWords());
    for (const std::string_view sGroup : groupNames())
        sCommands += wordsCase(std::string(sGroup), secondWordsOf(sGroup));
    for (const CCommand& command : commandTable())
        sCommands += commandCase(command);
    return filledIn(SCRIPT, {{"PROGRAM", std::string(PROGRAM_NAME)},
                             {"TAKING_VALUES", joined(namesOfOptionsWithValue(), "|")},
                             {"GROUPS", joined(groupNames(), "|")},
                             {"OPTION_VALUES", sOptionValues},
                             {"COMMANDS", sCommands}});
}

} // namespace velmora::cli
