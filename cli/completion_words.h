#pragma once

#include "cli/command.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora::cli {

// What the completion scripts of all shells are put together from.
using CWordList = std::vector<std::string_view>;

// The words with blanks between them.
[[nodiscard]] std::string joined(const CWordList& words, std::string_view sSeparator = " ");

// A text in single quotes, as every one of the shells reads it.
[[nodiscard]] std::string shellQuoted(std::string_view sText);

// sText with each pair's first text replaced by its second.
[[nodiscard]] std::string filledIn(std::string_view sText,
                                   const std::vector<std::pair<std::string, std::string>>& replacements);

// Both names of an option, if it has two.
[[nodiscard]] CWordList namesOf(const COption& option);

// Of all commands: the options that take a value, each once with the choices that any command gives it, and
// all their names.
[[nodiscard]] std::vector<COption> optionsWithValue();
[[nodiscard]] CWordList namesOfOptionsWithValue();

// First words of the commands, that is one-word commands and groups, in the order of the table.
[[nodiscard]] CWordList firstWords();
[[nodiscard]] CWordList groupNames();
[[nodiscard]] std::string_view summaryOf(std::string_view sFirstWord);

// The commands of a group, and the second word of one.
[[nodiscard]] std::vector<const CCommand*> commandsOfGroup(std::string_view sGroup);
[[nodiscard]] CWordList secondWordsOf(std::string_view sGroup);
[[nodiscard]] std::string_view secondWordOf(const CCommand& command);

} // namespace velmora::cli
