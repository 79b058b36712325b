#include "cli/completion_words.h"

#include <algorithm>

namespace velmora::cli {

std::string joined(const CWordList& words, std::string_view sSeparator)
{
    std::string sText;
    for (const std::string_view sWord : words) {
        if (!sText.empty())
            sText += sSeparator;
        sText += sWord;
    }
    return sText;
}

std::string shellQuoted(std::string_view sText)
{
    return "'" + filledIn(sText, {{"'", "'\\''"}}) + "'";
}

std::string filledIn(std::string_view sText,
                     const std::vector<std::pair<std::string, std::string>>& replacements)
{
    std::string sResult(sText);
    for (const auto& [sName, sValue] : replacements)
        for (auto u = sResult.find(sName); u != std::string::npos; u = sResult.find(sName, u + sValue.size()))
            sResult.replace(u, sName.size(), sValue);
    return sResult;
}

CWordList namesOf(const COption& option)
{
    CWordList names = {option.m_sName};
    if (!option.m_sShortName.empty())
        names.push_back(option.m_sShortName);
    return names;
}

std::vector<COption> optionsWithValue()
{
    std::vector<COption> options;
    const auto take = [&](const COption& option) {
        const auto known = std::ranges::find(options, option.m_sName, &COption::m_sName);
        if (known == options.end()) {
            options.push_back(option);
            return;
        }
        CWordList& choices = known->m_rule.m_choices;
        for (const std::string_view sChoice : option.m_rule.m_choices)
            if (std::ranges::find(choices, sChoice) == choices.end())
                choices.push_back(sChoice);
    };
    for (const CCommand& command : commandTable())
        for (const COption& option : optionsOf(command))
            if (option.m_rule.m_eKind != EValueKind::Flag)
                take(option);
    return options;
}

CWordList namesOfOptionsWithValue()
{
    CWordList names;
    for (const COption& option : optionsWithValue())
        std::ranges::copy(namesOf(option), std::back_inserter(names));
    return names;
}

CWordList firstWords()
{
    CWordList words;
    for (const CCommand& command : commandTable()) {
        const std::string_view sWord = command.m_sName.substr(0, command.m_sName.find(' '));
        if (std::ranges::find(words, sWord) == words.end())
            words.push_back(sWord);
    }
    return words;
}

CWordList groupNames()
{
    CWordList names;
    for (const CCommandGroup& group : commandGroups())
        names.push_back(group.m_sName);
    return names;
}

std::string_view summaryOf(std::string_view sFirstWord)
{
    if (const CCommand* pCommand = findCommand(sFirstWord))
        return pCommand->m_sSummary;
    for (const CCommandGroup& group : commandGroups())
        if (group.m_sName == sFirstWord)
            return group.m_sSummary;
    return {};
}

std::vector<const CCommand*> commandsOfGroup(std::string_view sGroup)
{
    std::vector<const CCommand*> commands;
    for (const CCommand& command : commandTable())
        if (command.m_sName.starts_with(std::string(sGroup) + " "))
            commands.push_back(&command);
    return commands;
}

CWordList secondWordsOf(std::string_view sGroup)
{
    CWordList words;
    for (const CCommand* pCommand : commandsOfGroup(sGroup))
        words.push_back(secondWordOf(*pCommand));
    return words;
}

std::string_view secondWordOf(const CCommand& command)
{
    return command.m_sName.substr(command.m_sName.find(' ') + 1);
}

} // namespace velmora::cli
