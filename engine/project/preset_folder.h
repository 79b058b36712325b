#pragma once

#include "base/user_dialogs.h"
#include "plugin.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

inline constexpr std::string_view FACTORY_PRESET_NAME = "Factory Preset";

// The presets of a project: the files 0.spf, which is the factory preset, and 1.spf to 63.spf in its folder
// Presets. A preset is chosen by its name; after save() and remove() the code regions are to be written
// anew. [main]
class CPresetFolder
{
  public:
    struct CEntry
    {
        std::filesystem::path m_file;
        std::string m_sName;
    };

    static constexpr int MAX_PRESET_SLOT = 63;

    explicit CPresetFolder(const std::filesystem::path& projectFolder);

    // For a plug-in that was just made: creates the folder, writes the factory preset anew from the plug-in's
    // values, and reads the names. False after a failure, which is shown.
    [[nodiscard]] bool setUp(CPlugIn& plugIn, IUserDialogs& dialogs);

    // The same with the text of a factory preset that was taken when the plug-in was made. A file that holds
    // it already is left alone.
    [[nodiscard]] bool setUp(std::string_view sFactoryText, IUserDialogs& dialogs);

    // The factory preset, then every other preset file: numbered ones by number, others by file name.
    void loadPresetNames();
    [[nodiscard]] const std::vector<CEntry>& entries() const { return m_entries; }

    // The file of the first preset with this name, as the folder is now; empty if there is none.
    [[nodiscard]] std::filesystem::path find(std::string_view sName) const;

    // The lowest number from 1 to 63 without a file; none when all are taken.
    [[nodiscard]] std::optional<int> nextFreeSlot() const;

    // Gives the plug-in a preset's values.
    [[nodiscard]] bool load(std::string_view sName, CPlugIn& plugIn, IUserDialogs& dialogs) const;

    // Saves the plug-in's values, over the preset of that name if there is one.
    [[nodiscard]] bool save(std::string_view sName, CPlugIn& plugIn, IUserDialogs& dialogs);

    // Deletes a preset, but not the factory preset.
    [[nodiscard]] bool remove(std::string_view sName, IUserDialogs& dialogs);

    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder; }

  private:
    [[nodiscard]] std::vector<CEntry> presentEntries() const;
    [[nodiscard]] std::filesystem::path slotFile(int nSlot) const;

    std::filesystem::path m_folder;
    std::vector<CEntry> m_entries;
};

} // namespace velmora
