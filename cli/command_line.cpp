#include "cli/command_line.h"

#include "base/text.h"
#include "cli/nearest_name.h"
#include "cli/value_check.h"

#include <algorithm>

namespace velmora::cli {

namespace {

// What the words of a line are, once it is known which options take a value.
struct CSplitLine
{
    std::vector<std::string> m_words; // command and arguments
    std::vector<CGivenOption> m_options;
    bool m_bHelp = false;
    std::string m_sError; // the first fault
};

bool isNamed(const COption& option, std::string_view sName)
{
    return option.m_sName == sName || (!option.m_sShortName.empty() && option.m_sShortName == sName);
}

const COption* findOption(const std::vector<COption>& options, std::string_view sName)
{
    const auto found =
        std::ranges::find_if(options, [&](const auto& option) { return isNamed(option, sName); });
    return found == options.end() ? nullptr : &*found;
}

bool looksLikeOption(std::string_view sWord)
{
    return sWord.size() > 1 && sWord[0] == '-' && !parseNumber(sWord);
}

std::string unknownOption(std::string_view sName, const std::vector<COption>& options)
{
    std::vector<std::string_view> names;
    for (const COption& option : options)
        names.push_back(option.m_sName);
    const std::string sNearest = nearestName(sName, names);
    std::string sText = "Unknown option " + std::string(sName) + ".";
    if (!sNearest.empty())
        sText += " Did you mean " + sNearest + "?";
    return sText;
}

CSplitLine splitLine(const std::vector<std::string>& line, const std::vector<COption>& options)
{
    CSplitLine split;
    const auto fail = [&](const std::string& sText) {
        if (split.m_sError.empty())
            split.m_sError = sText;
    };
    bool bOptionsEnded = false;
    for (std::size_t u = 0; u < line.size(); ++u) {
        const std::string& sWord = line[u];
        if (bOptionsEnded || !looksLikeOption(sWord)) {
            split.m_words.push_back(sWord);
            continue;
        }
        if (sWord == "--") {
            bOptionsEnded = true;
            continue;
        }
        const auto uEquals = sWord.find('=');
        const std::string sName = sWord.substr(0, uEquals);
        const COption* pOption = findOption(options, sName);
        if (!pOption) {
            fail(unknownOption(sName, options));
            continue;
        }
        CGivenOption given{std::string(pOption->m_sName), {}};
        if (pOption->m_rule.m_eKind == EValueKind::Flag) {
            if (uEquals != std::string::npos)
                fail("The option " + sName + " takes no value.");
            split.m_bHelp |= pOption->m_sName == "--help";
        } else if (uEquals != std::string::npos) {
            given.m_sValue = sWord.substr(uEquals + 1);
        } else if (u + 1 < line.size() && !looksLikeOption(line[u + 1])) {
            given.m_sValue = line[++u];
        } else {
            fail("The option " + sName + " needs a value: " + std::string(pOption->m_sValueName) + ".");
        }
        split.m_options.push_back(std::move(given));
    }
    return split;
}

// Until the command is known, an option belongs to whichever command has one of that name.
std::vector<COption> optionsOfAllCommands()
{
    std::vector<COption> options(globalOptions().begin(), globalOptions().end());
    for (const CCommand& command : commandTable())
        std::ranges::copy(optionsOf(command), std::back_inserter(options));
    return options;
}

const CCommand* commandOf(const std::vector<std::string>& words)
{
    if (words.empty())
        return nullptr;
    const CCommand* pCommand = words.size() > 1 ? findCommand(words[0] + " " + words[1]) : nullptr;
    return pCommand ? pCommand : findCommand(words[0]);
}

bool isGroup(std::string_view sWord)
{
    return std::ranges::any_of(commandGroups(), [&](const auto& group) { return group.m_sName == sWord; });
}

std::string unknownCommand(const std::vector<std::string>& words)
{
    if (words.empty())
        return "No command was given.";
    const bool bInGroup = isGroup(words[0]);
    if (bInGroup && words.size() == 1)
        return "The command " + words[0] + " needs a second word.";
    const std::string sTyped = bInGroup ? words[0] + " " + words[1] : words[0];
    std::vector<std::string_view> names;
    for (const CCommand& command : commandTable())
        names.push_back(command.m_sName);
    for (const CCommandGroup& group : commandGroups())
        names.push_back(group.m_sName);
    const std::string sNearest = nearestName(sTyped, names);
    std::string sText = "Unknown command " + sTyped + ".";
    if (!sNearest.empty())
        sText += " Did you mean " + sNearest + "?";
    return sText;
}

std::string checkOptions(std::vector<CGivenOption>& given, const std::vector<COption>& options)
{
    std::vector<std::string_view> seen;
    for (CGivenOption& option : given) {
        const COption& row = *findOption(options, option.m_sName);
        if (!row.m_sNeeds.empty() &&
            std::ranges::find(given, row.m_sNeeds, &CGivenOption::m_sName) == given.end())
            return "The option " + option.m_sName + " needs the option " + std::string(row.m_sNeeds) + ".";
        if (row.m_rule.m_eKind == EValueKind::Flag)
            continue;
        if (!row.m_bRepeatable && std::ranges::find(seen, row.m_sName) != seen.end())
            return "The option " + option.m_sName + " is given twice.";
        seen.push_back(row.m_sName);
        const std::string sTyped = option.m_sValue;
        const std::string sFault = checkValue(option.m_sValue, row.m_rule);
        if (!sFault.empty())
            return "The value of " + option.m_sName + ", \"" + sTyped + "\", " + sFault + ".";
    }
    return {};
}

} // namespace

// Takes a line apart in two passes: the first finds out which command it names, the second reads it
// with that command's own options.
class CCommandLineParser
{
  public:
    static CCommandLine parse(const std::vector<std::string>& line)
    {
        CCommandLine result;
        CSplitLine split = splitLine(line, optionsOfAllCommands());
        result.m_pCommand = commandOf(split.m_words);
        if (!result.m_pCommand) {
            result.m_options = split.m_options;
            if (!split.m_words.empty() && isGroup(split.m_words[0]))
                result.m_sGroup = split.m_words[0];
            const bool bUnknown = split.m_words.size() > (result.m_sGroup.empty() ? 0 : 1);
            result.m_bHelp = split.m_bHelp && !bUnknown;
            if (!split.m_words.empty() || split.m_sError.empty())
                split.m_sError = unknownCommand(split.m_words);
            result.m_sError = split.m_sError;
            return result;
        }
        const std::vector<COption> options = optionsOf(*result.m_pCommand);
        split = splitLine(line, options);
        result.m_bHelp = split.m_bHelp;
        result.m_options = std::move(split.m_options);
        result.m_sError = std::move(split.m_sError);
        if (result.m_sError.empty() && commandOf(split.m_words) != result.m_pCommand)
            result.m_sError = unknownCommand(split.m_words);
        if (result.m_sError.empty())
            result.m_sError = takeArguments(result, split.m_words);
        if (result.m_sError.empty())
            result.m_sError = checkOptions(result.m_options, options);
        return result;
    }

  private:
    static std::string takeArguments(CCommandLine& result, const std::vector<std::string>& words)
    {
        const CCommand& command = *result.m_pCommand;
        std::size_t uWord = command.m_sName.find(' ') == std::string_view::npos ? 1 : 2;
        for (const CArgument& argument : command.m_arguments) {
            if (uWord == words.size()) {
                if (argument.m_bOptional)
                    break;
                return "The argument " + std::string(argument.m_sName) + " is missing.";
            }
            std::string sValue = words[uWord++];
            const std::string sTyped = sValue;
            const std::string sFault = checkValue(sValue, argument.m_rule);
            if (!sFault.empty())
                return "The argument " + std::string(argument.m_sName) + ", \"" + sTyped + "\", " + sFault +
                       ".";
            result.m_arguments.emplace_back(argument.m_sName, std::move(sValue));
        }
        if (uWord < words.size())
            return "There is one argument too many: \"" + words[uWord] + "\".";
        return {};
    }
};

CCommandLine parseCommandLine(const std::vector<std::string>& words)
{
    return CCommandLineParser::parse(words);
}

std::optional<std::string> CCommandLine::argument(std::string_view sName) const
{
    for (const auto& [sArgument, sValue] : m_arguments)
        if (sArgument == sName)
            return sValue;
    return std::nullopt;
}

bool CCommandLine::has(std::string_view sOption) const
{
    return std::ranges::any_of(m_options, [&](const auto& option) { return option.m_sName == sOption; });
}

std::optional<std::string> CCommandLine::text(std::string_view sOption) const
{
    for (const CGivenOption& option : m_options)
        if (option.m_sName == sOption)
            return option.m_sValue;
    return std::nullopt;
}

double CCommandLine::number(std::string_view sOption, double dDefault) const
{
    const auto value = text(sOption);
    return value ? parseNumber(*value).value_or(dDefault) : dDefault;
}

} // namespace velmora::cli
