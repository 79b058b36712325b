#pragma once

#include "document/control_values.h"
#include "host/host_window.h"
#include "host/loaded_plugin.h"
#include "host/plugin_scanner.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmora {

class CAudioEngine;
class CDSPFilter;
class CTransport;
class CUserDSPFilter;
class IMessageTarget;
class IUserDialogs;

// Turns library files into filters and makes one of them current. [main]
//
// A library is first tried out by a helper process; one that crashes or hangs there is never opened
// here. A filter is swapped only while the engine's run gate is down.
class CPlugInLoader
{
  public:
    CPlugInLoader(CAudioEngine& engine, CTransport& transport, IUserDialogs& dialogs, IMessageTarget& view);
    ~CPlugInLoader();

    CPlugInLoader(const CPlugInLoader&) = delete;
    CPlugInLoader& operator=(const CPlugInLoader&) = delete;

    // Loads every library of the folder that can be loaded, and lists all of them with what became of
    // each. The folder becomes the current one.
    void scanPlugIns(const std::filesystem::path& folder);

    // Loads one library, a file name within the plug-in folder or a full path, and makes it the current
    // filter. Null on failure: the user has been told why, and the old filter is still current. With
    // bStreaming the run gate is lowered for the swap.
    CDSPFilter* loadPlugin(const std::filesystem::path& libraryName, bool bStreaming);

    // Why the last loadPlugin() returned null, as one sentence, where the message did not say it all; else
    // empty.
    [[nodiscard]] const std::string& reason() const { return m_sReason; }

    // The next plug-in that loadPlugin() loads gets these values, ahead of its first buffer; changes() then
    // tells what became of them. Without this call it starts from its initial values. onFresh, if given,
    // sees the plug-in while it still has those; audio is held meanwhile.
    void carryOver(CControlValues values, std::function<void(CPlugIn&)> onFresh = {})
    {
        m_carriedValues = std::move(values);
        m_onFresh = std::move(onFresh);
    }
    [[nodiscard]] const CControlChanges& changes() const { return m_changes; }

    // Takes the plug-in that was loaded out of the engine, deletes it and frees its library. bQuiet shows no
    // messages.
    void unloadPlugin(bool bQuiet);

    [[nodiscard]] const std::vector<CScanEntry>& scanEntries() const { return m_scanEntries; }
    [[nodiscard]] const std::vector<std::unique_ptr<CLoadedPlugIn>>& plugIns() const { return m_plugIns; }

    // The plug-in that is the current filter; null for none.
    [[nodiscard]] CLoadedPlugIn* current() const { return m_loaded.get(); }
    [[nodiscard]] bool isPlugInLoaded() const { return m_loaded != nullptr; }

    // The user answered Yes to the question whether a stale plug-in should be rebuilt.
    [[nodiscard]] bool isRebuildRequested() const { return m_bRebuildRequested; }

    // Where file names without a folder are looked for.
    void setPlugInFolder(const std::filesystem::path& folder);

    // What the filters are told about the audio: Hz, channels, bits.
    void setFormat(int nSampleRate, int nChannels, int nBitDepth);

  private:
    std::unique_ptr<CPlugInLibrary> openLibrary(const std::filesystem::path& file);
    bool isContractVersionRight(const CPlugInLibrary& library);
    CPlugIn* createPlugIn(const CPlugInLibrary& library);
    bool survivesProbe(const std::filesystem::path& file);
    bool swapTo(CLoadedPlugIn& plugIn);
    void prepareNewFilter(CLoadedPlugIn& plugIn);
    void carryValuesOver(CUserDSPFilter& filter);
    bool release(CLoadedPlugIn& plugIn);
    void keepReason(const std::string& sReason);

    CAudioEngine& m_engine;
    CTransport& m_transport;
    IUserDialogs& m_dialogs;
    CHostWindow m_window;
    std::filesystem::path m_folder;
    std::vector<std::unique_ptr<CLoadedPlugIn>> m_plugIns; // what the scan loaded
    std::unique_ptr<CLoadedPlugIn> m_loaded;               // the current filter, if it is a plug-in
    std::vector<CScanEntry> m_scanEntries;
    CControlValues m_carriedValues;
    std::function<void(CPlugIn&)> m_onFresh;
    CControlChanges m_changes;
    std::string m_sReason;
    bool m_bRebuildRequested = false;
    int m_nSampleRate = 44100;
    int m_nChannels = 2;
    int m_nBitDepth = 16;
};

} // namespace velmora
