#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

enum class ESettingType
{
    Unsigned,
    Signed,
    Bool,
    Double,
    String,
    UserFolderPath, // a string whose default lies below the user folder
};

// One line of the settings file.
struct CSettingRow
{
    int m_nLine; // counted from 1
    std::string_view m_sName;
    ESettingType m_eType;
    std::string_view m_sDefault; // as it stands in the file; below the user folder for a UserFolderPath
    std::string_view m_sMeaning;
};

inline constexpr std::size_t SETTING_COUNT = 71;
inline constexpr unsigned SETTINGS_FORMAT_VERSION = 4098;

// Every line of the settings file, in order. Reading, writing, the command line and docs/settings.md all
// go by this table.
[[nodiscard]] const std::array<CSettingRow, SETTING_COUNT>& settingsTable();

// The line of the setting with this name; 0 if there is none.
[[nodiscard]] int settingLine(std::string_view sName);

// "unsigned", "signed", "bool", "double" or "string".
[[nodiscard]] std::string_view settingTypeName(ESettingType eType);

// A line's default for a user folder, as it stands in the file.
[[nodiscard]] std::string settingDefault(const CSettingRow& row, const std::filesystem::path& userFolder);

// The text of docs/settings.md.
[[nodiscard]] std::string settingsTableAsMarkdown();

} // namespace velmora
