#pragma once

#include "document/control_values.h"
#include "document/filter_swap.h"
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
class CModuleList;
class CTransport;
class CUserDSPFilter;
class IDocumentView;
class IMessageTarget;
class IUserDialogs;
struct CAudioFormat;

// Turns library files into filters and makes one filter, plug-in or built-in module, the current one, also
// while audio runs. [main]
//
// A library is first tried out by a helper process; one that crashes or hangs there is never opened here.
class CPlugInLoader
{
  public:
    struct CParts
    {
        CAudioEngine& m_engine;
        CTransport& m_transport;
        const CTransportState& m_state;
        CModuleList& m_modules;
        CAudioFormat& m_format; // what filters are told about the audio
        IUserDialogs& m_dialogs;
        IMessageTarget& m_messages;
        IDocumentView& m_view;
    };

    explicit CPlugInLoader(const CParts& parts);

    // Takes the filter out and deletes every plug-in. If the audio does not come back from one of them, all
    // stay in memory for good.
    ~CPlugInLoader();

    CPlugInLoader(const CPlugInLoader&) = delete;
    CPlugInLoader& operator=(const CPlugInLoader&) = delete;

    // Where file names without a folder are looked for.
    void setPlugInFolder(const std::filesystem::path& folder);

    // Whether a swap under a running stream is a cross-fade.
    void setCrossFade(bool bOn) { m_swap.setCrossFade(bOn); }

    // Whether a plug-in without audio input is played as soon as it is the current filter; it is unless this
    // is switched off, as for a program that only looks at it or processes files.
    void setPlaysSynths(bool bOn) { m_bPlaysSynths = bOn; }

    // Loads every library of the folder that can be loaded, and lists all of them with what became of
    // each. The folder becomes the current one.
    void scanPlugIns(const std::filesystem::path& folder);

    // Loads one library, a file name within the plug-in folder or a full path, and makes it the current
    // filter. Null on failure: the user has been told why, and the old filter is still current. bStreaming
    // says that audio runs.
    CDSPFilter* loadPlugin(const std::filesystem::path& libraryName, bool bStreaming);

    // Lets the user choose a library anywhere, and loads it. The current directory stays as it is.
    CDSPFilter* loadRemotePlugin();

    // Why the last operation failed, as one sentence, where the message did not say it all; else empty.
    [[nodiscard]] const std::string& reason() const { return m_sReason; }

    // The next loadPlugin() gives the plug-in these values, ahead of its first buffer; changes() then tells
    // what became of them. Without this call it starts from its initial values. onFresh, if given, sees the
    // plug-in while it still has those. Both are for that one load, also if it fails.
    void carryOver(CControlValues values, std::function<void(CPlugIn&)> onFresh = {})
    {
        m_carriedValues = std::move(values);
        m_onFresh = std::move(onFresh);
    }
    [[nodiscard]] const CControlChanges& changes() const { return m_changes; }

    // Takes the plug-in that was loaded out of the engine, deletes it and frees its library; one of the list
    // stays there without its library. bQuiet shows no message when no library or another one is current.
    void unloadPlugin(bool bQuiet);

    // Frees the library of a listed plug-in, ahead of a rebuild.
    void unloadPlugInByName(const std::string& sName);

    // The selections that the two operations below use; -1 for none.
    void setSelectedPlugIn(int nIndex) { m_nSelectedPlugIn = nIndex; }
    void setSelectedModule(int nIndex) { m_nSelectedModule = nIndex; }

    // Makes the selected plug-in of the list current, loading its library anew if it was freed.
    void selectPlugIn();

    // Makes the selected built-in module current.
    void selectModule();

    // Takes a built-in module out: no filter is current then. A plug-in stays.
    void deselectModule();

    [[nodiscard]] const std::vector<CScanEntry>& scanEntries() const { return m_scanEntries; }
    [[nodiscard]] const std::vector<std::unique_ptr<CLoadedPlugIn>>& plugIns() const { return m_plugIns; }

    // The plug-in that is the current filter; null for none.
    [[nodiscard]] CLoadedPlugIn* current() const;

    // A plug-in that loadPlugin() brought in is the current filter.
    [[nodiscard]] bool isPlugInLoaded() const { return m_bPlugInLoaded; }

    // The user answered Yes to the question whether a stale plug-in should be rebuilt.
    [[nodiscard]] bool isRebuildRequested() const { return m_bRebuildRequested; }

  private:
    CLoadedPlugIn* load(const std::filesystem::path& libraryName, bool bStreaming);
    std::unique_ptr<CLoadedPlugIn> open(const std::filesystem::path& file);
    bool isContractVersionRight(const CPlugInLibrary& library);
    CPlugIn* createPlugIn(const CPlugInLibrary& library);
    bool survivesProbe(const std::filesystem::path& file);
    CLoadedPlugIn* makeCurrent(std::unique_ptr<CLoadedPlugIn> pNew, bool bStreaming);
    void stopStreamsThatDoNotFit(bool bOldIsSynth, bool bNewIsSynth);
    bool prepareLoaded(CLoadedPlugIn& plugIn);
    void startLoaded(CLoadedPlugIn& plugIn);
    void initOnce(CLoadedPlugIn& plugIn);
    void carryValuesOver(CUserDSPFilter& filter);
    void prepareSelected(CDSPFilter& filter);
    void showSelected(CDSPFilter& filter);
    void moveViewTo(CDSPFilter* pFilter);
    void playSynth();
    void showImpulses(const CDSPFilter& filter);
    void reloadSelected();
    bool release(CLoadedPlugIn& plugIn);
    void retireLoaded();
    void keepReason(const std::string& sReason);

    CParts m_parts;
    CFilterSwap m_swap;
    CHostWindow m_window;
    std::filesystem::path m_folder;
    std::vector<std::unique_ptr<CLoadedPlugIn>> m_plugIns; // what the scan loaded
    std::unique_ptr<CLoadedPlugIn> m_loaded;               // what loadPlugin() loaded beside the list
    const CPlugInLibrary* m_hParentDLL = nullptr; // the library of the last load; null once it is freed
    std::vector<CScanEntry> m_scanEntries;
    int m_nSelectedPlugIn = -1;
    int m_nSelectedModule = -1;
    CControlValues m_carriedValues;
    std::function<void(CPlugIn&)> m_onFresh;
    CControlChanges m_changes;
    std::string m_sReason;
    bool m_bPlugInLoaded = false;
    bool m_bRebuildRequested = false;
    bool m_bPlaysSynths = true;
};

} // namespace velmora
