#include "project/preset_folder.h"

#include "project/preset_file.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <limits>
#include <tuple>

namespace velmora {

namespace {

// Numbered files by number, then the others; for files that the folder may list in any order.
std::tuple<unsigned, std::string> orderOf(const std::filesystem::path& file)
{
    const std::string sStem = file.stem().string();
    unsigned uNumber = 0;
    const char* pEnd = sStem.data() + sStem.size();
    const auto result = std::from_chars(sStem.data(), pEnd, uNumber);
    const bool bNumbered = result.ec == std::errc() && result.ptr == pEnd;
    return {bNumbered ? uNumber : std::numeric_limits<unsigned>::max(), sStem};
}

std::vector<std::filesystem::path> presetFilesIn(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        const bool bHidden = entry->path().filename().native().starts_with('.');
        if (!bHidden && entry->path().extension() == PRESET_SUFFIX && entry->is_regular_file(ignored))
            files.push_back(entry->path());
    }
    std::ranges::sort(files, {}, orderOf);
    return files;
}

std::string noSuchPreset(std::string_view sName)
{
    return "There is no preset with the name \"" + std::string(sName) + "\".";
}

} // namespace

CPresetFolder::CPresetFolder(const std::filesystem::path& projectFolder) : m_folder(projectFolder / "Presets")
{
    loadPresetNames();
}

bool CPresetFolder::setUp(CPlugIn& plugIn, IUserDialogs& dialogs)
{
    std::error_code toldBySaving;
    std::filesystem::create_directories(m_folder, toldBySaving);
    const bool bSaved = savePreset(plugIn, slotFile(0), FACTORY_PRESET_NAME, dialogs);
    loadPresetNames();
    return bSaved;
}

bool CPresetFolder::setUp(std::string_view sFactoryText, IUserDialogs& dialogs)
{
    std::error_code toldBySaving;
    std::filesystem::create_directories(m_folder, toldBySaving);
    std::ifstream present(slotFile(0), std::ios::binary);
    const std::string sPresent((std::istreambuf_iterator<char>(present)), {});
    const bool bSaved =
        (present && sPresent == sFactoryText) || writePreset(slotFile(0), sFactoryText, dialogs);
    loadPresetNames();
    return bSaved;
}

void CPresetFolder::loadPresetNames()
{
    m_entries = presentEntries();
}

std::vector<CPresetFolder::CEntry> CPresetFolder::presentEntries() const
{
    std::vector<CEntry> entries = {{slotFile(0), std::string(FACTORY_PRESET_NAME)}};
    for (auto& file : presetFilesIn(m_folder))
        if (file != slotFile(0)) {
            std::string sName = readPreset(file).name();
            entries.push_back({std::move(file), std::move(sName)});
        }
    return entries;
}

std::filesystem::path CPresetFolder::find(std::string_view sName) const
{
    const auto entries = presentEntries();
    const auto found = std::ranges::find(entries, presetNameLine(sName), &CEntry::m_sName);
    return found == entries.end() ? std::filesystem::path() : found->m_file;
}

std::optional<int> CPresetFolder::nextFreeSlot() const
{
    for (int nSlot = 1; nSlot <= MAX_PRESET_SLOT; ++nSlot) {
        std::error_code ignored;
        if (!std::filesystem::exists(slotFile(nSlot), ignored))
            return nSlot;
    }
    return std::nullopt;
}

bool CPresetFolder::load(std::string_view sName, CPlugIn& plugIn, IUserDialogs& dialogs) const
{
    const auto file = find(sName);
    if (!file.empty())
        return loadPreset(plugIn, file, dialogs);
    dialogs.showMessage(noSuchPreset(sName));
    return false;
}

bool CPresetFolder::save(std::string_view sName, CPlugIn& plugIn, IUserDialogs& dialogs)
{
    if (sName.empty()) {
        dialogs.showMessage("Preset name can not be empty!");
        return false;
    }
    std::filesystem::path file = find(sName);
    if (file.empty()) {
        const auto nSlot = nextFreeSlot();
        if (!nSlot) {
            dialogs.showMessage(
                "Maximum number of 64 presets has been reached; delete some of your presets first.");
            return false;
        }
        file = slotFile(*nSlot);
        std::error_code toldBySaving;
        std::filesystem::create_directories(m_folder, toldBySaving);
    }
    const bool bSaved = savePreset(plugIn, file, sName, dialogs);
    loadPresetNames();
    return bSaved;
}

bool CPresetFolder::remove(std::string_view sName, IUserDialogs& dialogs)
{
    const auto file = find(sName);
    if (file.empty()) {
        dialogs.showMessage(noSuchPreset(sName));
        return false;
    }
    if (file == slotFile(0)) {
        dialogs.showMessage("You can not delete the Factory Preset!");
        return false;
    }
    std::error_code error;
    std::filesystem::remove(file, error);
    if (error)
        dialogs.showMessage(file.string() + " could not be deleted: " + error.message() + ".");
    loadPresetNames();
    return !error;
}

std::filesystem::path CPresetFolder::slotFile(int nSlot) const
{
    return m_folder / (std::to_string(nSlot) + std::string(PRESET_SUFFIX));
}

} // namespace velmora
