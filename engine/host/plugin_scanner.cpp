#include "host/plugin_scanner.h"

#include "base/platform_folders.h"
#include "base/user_dialogs.h"
#include "host/plugin_library.h"
#include "host/user_dsp_filter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velmora {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 6> STATUS_TEXTS{"loaded",      "wrong version", "no version",
                                                  "load failed", "duplicate",     "crashed"};

// How the scan names what the probe found.
EScanStatus scanStatus(EProbeStatus eStatus)
{
    switch (eStatus) {
    case EProbeStatus::good:
        return EScanStatus::loaded;
    case EProbeStatus::wrongVersion:
        return EScanStatus::wrongVersion;
    case EProbeStatus::noVersion:
        return EScanStatus::noVersion;
    case EProbeStatus::crashed:
    case EProbeStatus::timedOut:
        return EScanStatus::crashed;
    case EProbeStatus::noCreateObject:
    case EProbeStatus::loadFailed:
    case EProbeStatus::notExamined:
    case EProbeStatus::nullObject:
    case EProbeStatus::badObject:
        break;
    }
    return EScanStatus::loadFailed;
}

// Makes a folder the current directory and puts the former one back.
class CCurrentFolder
{
  public:
    explicit CCurrentFolder(const fs::path& folder)
    {
        std::error_code error;
        m_former = fs::current_path(error);
        fs::current_path(folder, error);
    }
    ~CCurrentFolder()
    {
        std::error_code error;
        if (!m_former.empty())
            fs::current_path(m_former, error);
    }
    CCurrentFolder(const CCurrentFolder&) = delete;
    CCurrentFolder& operator=(const CCurrentFolder&) = delete;

  private:
    fs::path m_former;
};

// The libraries of a folder, sorted by name.
std::vector<fs::path> findLibraries(const fs::path& folder, std::error_code& error)
{
    std::vector<fs::path> files;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        const fs::path name = entry->path().filename();
        if (name.extension() == PLUGIN_LIBRARY_SUFFIX && !name.string().starts_with('.') &&
            !entry->is_directory(ignored))
            files.push_back(entry->path());
    }
    std::ranges::sort(files);
    return files;
}

std::string nameOf(const CScanEntry& entry)
{
    return entry.m_file.filename().string();
}

// One scan under way.
class CScan
{
  public:
    explicit CScan(IUserDialogs& dialogs) : m_dialogs(dialogs) {}

    void add(const CProbeResult& probed);
    CPlugInScanner::CResult finish();

  private:
    void skip(CScanEntry& entry, EScanStatus eStatus, std::string sReason);
    void loadInto(CScanEntry& entry);
    void keepOrReject(CScanEntry& entry, std::unique_ptr<CPlugInLibrary> pLibrary, CPlugIn* pPlugIn);
    const CScanEntry* loadedWithName(const std::string& sPlugInName) const;
    void showLoadError(const CScanEntry& entry);
    void noteVersionFunction(bool bFound);
    void showDuplicates();

    IUserDialogs& m_dialogs;
    CPlugInScanner::CResult m_result;
    std::string m_sNotExamined; // why libraries were not; empty if all were
};

// What the probe refused is dealt with as if it had been refused here.
void CScan::add(const CProbeResult& probed)
{
    CScanEntry entry{
        probed.m_file, probed.m_sPlugInName, probed.m_nVersion, scanStatus(probed.m_eStatus), {}};
    if (probed.m_eStatus == EProbeStatus::good) {
        loadInto(entry);
    } else {
        if (probed.m_eStatus == EProbeStatus::notExamined)
            m_sNotExamined = probed.m_sReason;
        else if (probed.m_eStatus == EProbeStatus::loadFailed)
            showLoadError(entry);
        else if (entry.m_eStatus != EScanStatus::crashed)
            noteVersionFunction(probed.m_nVersion >= 0);
        skip(entry, entry.m_eStatus, probed.m_sReason);
    }
    m_result.m_entries.push_back(std::move(entry));
}

void CScan::showLoadError(const CScanEntry& entry)
{
    m_dialogs.showMessage("Error loading DLL\n" + nameOf(entry));
    noteVersionFunction(false);
}

void CScan::noteVersionFunction(bool bFound)
{
    m_dialogs.note(bFound ? "getAPIVersion: found" : "getAPIVersion: does not exist");
}

void CScan::skip(CScanEntry& entry, EScanStatus eStatus, std::string sReason)
{
    entry.m_eStatus = eStatus;
    entry.m_sReason = std::move(sReason);
    m_dialogs.note(nameOf(entry) + ": " + entry.m_sReason);
}

// The file may have changed since it was probed, so that nothing is taken for granted.
void CScan::loadInto(CScanEntry& entry)
{
    std::string sError;
    auto pLibrary = CPlugInLibrary::load(entry.m_file, sError);
    if (!pLibrary) {
        showLoadError(entry);
        skip(entry, EScanStatus::loadFailed, sError);
        return;
    }
    noteVersionFunction(pLibrary->getAPIVersion() != nullptr);
    if (pLibrary->version() != PLUGIN_API_VERSION) {
        skip(entry, EScanStatus::wrongVersion, "was replaced by another version during the scan");
        return;
    }
    CPlugIn* pPlugIn = pLibrary->makeObject(sError);
    if (!pPlugIn) {
        skip(entry, EScanStatus::loadFailed, sError);
        return;
    }
    keepOrReject(entry, std::move(pLibrary), pPlugIn);
}

void CScan::keepOrReject(CScanEntry& entry, std::unique_ptr<CPlugInLibrary> pLibrary, CPlugIn* pPlugIn)
{
    // From here on the object and its library are freed in the right order, whatever becomes of them.
    entry.m_sPlugInName = pPlugIn->m_PlugInName ? pPlugIn->m_PlugInName : "";
    auto pLoaded = CLoadedPlugIn::create(std::move(pLibrary), pPlugIn);
    if (const auto* pFirst = loadedWithName(entry.m_sPlugInName)) {
        skip(entry, EScanStatus::duplicate,
             "was not loaded: " + nameOf(*pFirst) + " has the same plug-in name, " + entry.m_sPlugInName);
        return;
    }
    entry.m_eStatus = EScanStatus::loaded;
    if (entry.m_sPlugInName != entry.m_file.stem())
        entry.m_sReason = "its m_PlugInName is \"" + entry.m_sPlugInName + "\", not the file's name";
    m_result.m_plugIns.push_back(std::move(pLoaded));
}

const CScanEntry* CScan::loadedWithName(const std::string& sPlugInName) const
{
    const auto found = std::ranges::find_if(m_result.m_entries, [&](const CScanEntry& entry) {
        return entry.m_eStatus == EScanStatus::loaded && entry.m_sPlugInName == sPlugInName;
    });
    return found == m_result.m_entries.end() ? nullptr : &*found;
}

void CScan::showDuplicates()
{
    std::string sDuplicates;
    std::string sLoaded;
    const auto& entries = m_result.m_entries;
    for (const auto& entry : entries) {
        const auto isTwin = [&](const CScanEntry& other) {
            return other.m_eStatus == EScanStatus::duplicate && other.m_sPlugInName == entry.m_sPlugInName;
        };
        if (entry.m_eStatus == EScanStatus::duplicate)
            sDuplicates += nameOf(entry) + "\n";
        else if (entry.m_eStatus == EScanStatus::loaded && std::ranges::any_of(entries, isTwin))
            sLoaded += nameOf(entry) + "\n";
    }
    if (sDuplicates.empty())
        return;
    m_dialogs.showMessage("The following duplicate Plug-Ins were NOT loaded:\n\n" + sDuplicates +
                          "\nbecause their plug-in names matched one or more of the following:\n\n" +
                          sLoaded +
                          "\nThis happens if you change the DLL name without changing the Plug-In name. "
                          "Please correct this by first closing Velmora and then deleting the undesired "
                          "plug-in(s) in the Velmora PlugIns folder to prevent this messsage from appearing "
                          "again.");
}

CPlugInScanner::CResult CScan::finish()
{
    if (!m_sNotExamined.empty())
        m_dialogs.showMessage("Plug-ins were not loaded: the libraries " + m_sNotExamined +
                              ". Install Velmora completely, or build all of it.");
    showDuplicates();
    return std::move(m_result);
}

} // namespace

const char* scanStatusText(EScanStatus eStatus)
{
    return STATUS_TEXTS[static_cast<std::size_t>(eStatus)];
}

CPlugInScanner::CPlugInScanner(IUserDialogs& dialogs, const CPlugInProbe& probe)
    : m_dialogs(dialogs), m_probe(probe)
{
}

CPlugInScanner::CResult CPlugInScanner::scanPlugIns(const fs::path& folder)
{
    std::error_code error;
    const fs::path absolute = fs::absolute(folder, error).lexically_normal();
    CScan scan(m_dialogs);
    const auto files = findLibraries(absolute, error);
    if (error) {
        m_dialogs.note("The plug-in folder " + folder.string() + " cannot be read: " + error.message());
        return scan.finish();
    }
    const CCurrentFolder current(absolute);
    for (const auto& probed : m_probe.probe(files))
        scan.add(probed);
    return scan.finish();
}

} // namespace velmora
