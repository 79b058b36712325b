#pragma once

#include "host/loaded_plugin.h"
#include "host/plugin_probe.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velmora {

class IUserDialogs;

enum class EScanStatus
{
    loaded,
    wrongVersion,
    noVersion,
    loadFailed,
    duplicate,
    crashed
};

// "loaded", "wrong version", "no version", "load failed", "duplicate", "crashed"
[[nodiscard]] const char* scanStatusText(EScanStatus eStatus);

// What the scan found out about one file.
struct CScanEntry
{
    std::filesystem::path m_file;
    std::string m_sPlugInName; // empty if no object was made
    int m_nVersion = -1;       // -1: not known
    EScanStatus m_eStatus = EScanStatus::loadFailed;
    std::string m_sReason; // when loaded empty, or a hint
};

// The scan of the plug-in folder at start-up. [main]
class CPlugInScanner
{
  public:
    struct CResult
    {
        std::vector<std::unique_ptr<CLoadedPlugIn>> m_plugIns; // what was loaded, in file order
        std::vector<CScanEntry> m_entries;                     // every library of the folder, in file order
    };

    // Both are kept by reference.
    CPlugInScanner(IUserDialogs& dialogs, const CPlugInProbe& probe);

    // Loads the folder's libraries in the order of their names; subfolders and names that begin with a dot
    // are passed over. Each library goes through the probe first, and only one that passed is opened here.
    // A library that cannot be loaded is told in a message; one that is stale, crashes or hangs in a note.
    // Of several plug-ins with one name the first is kept, and one message at the end names the others.
    // The folder is the current directory meanwhile.
    [[nodiscard]] CResult scanPlugIns(const std::filesystem::path& folder);

  private:
    IUserDialogs& m_dialogs;
    const CPlugInProbe& m_probe;
};

} // namespace velmora
