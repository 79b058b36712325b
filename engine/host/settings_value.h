#pragma once

#include "host/settings_table.h"

#include <string>
#include <string_view>
#include <variant>

namespace velmora {

// The value of one line of the settings file. All functions: [any].
using CSettingValue = std::variant<unsigned, int, bool, double, std::string>;

// Bytes that a line may have at most; all lines of this length together stay below 1 MiB.
inline constexpr std::size_t MAX_SETTING_LINE = 8192;

// Reads a line as leniently as the file is read: a number as far as its digits go, held to the range of
// the type, 0 where there is none; unsigned numbers with a minus sign wrap round.
[[nodiscard]] CSettingValue parsedSetting(ESettingType eType, std::string_view sText);

// The value as it stands in the file.
[[nodiscard]] std::string settingText(const CSettingValue& value);

// Judges text that a person entered: empty if it is of the type as it stands, else what the type takes,
// such as "true or false".
[[nodiscard]] std::string whatSettingTakes(ESettingType eType, std::string_view sText);

} // namespace velmora
