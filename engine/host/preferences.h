#pragma once

#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

// One switch of the workbench that the settings file, whose lines are fixed, has no place for.
struct CPreferenceRow
{
    std::string_view m_sName;
    bool m_bDefault;
    std::string_view m_sHelp; // one sentence
};

inline constexpr std::string_view START_FROM_INITIAL_VALUES = "startFromInitialValues";
inline constexpr std::string_view PROTECT_SPEAKERS = "protectSpeakers";
inline constexpr std::string_view CROSS_FADE_SWAPS = "crossFadeSwaps";

// All of them.
[[nodiscard]] std::span<const CPreferenceRow> preferenceTable();

// The switches of the workbench: the file "preferences.txt" in the user folder, one "name = true" or
// "name = false" a line. A switch that the file lacks has its default; a line that is not understood, such
// as one of a newer program, is kept as it is. [main]
class CPreferences
{
  public:
    // A missing file leaves the defaults. False with the reason in sError if the file cannot be read or is
    // larger than 64 KiB; the defaults stand then, and save() refuses to replace it.
    [[nodiscard]] bool load(const std::filesystem::path& file, std::string& sError);
    [[nodiscard]] bool save(const std::filesystem::path& file, std::string& sError) const;

    // The name must be one of the table's.
    [[nodiscard]] bool isOn(std::string_view sName) const;

    // Takes "true" or "false". False with a message in sError for another text or an unknown name.
    [[nodiscard]] bool set(std::string_view sName, std::string_view sText, std::string& sError);

  private:
    std::map<std::string, bool, std::less<>> m_values; // what differs from the defaults or stood in the file
    std::string m_sOtherLines;
    bool m_bUsable = true;
};

} // namespace velmora
