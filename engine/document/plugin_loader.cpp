#include "document/plugin_loader.h"

#include "audio/audio_engine.h"
#include "audio/transport.h"
#include "base/message_target.h"
#include "base/user_dialogs.h"
#include "host/audio_format.h"
#include "host/document_view.h"
#include "host/guarded_call.h"
#include "host/module_list.h"
#include "host/plugin_call_marker.h"
#include "host/plugin_library.h"
#include "host/plugin_probe.h"
#include "host/user_dsp_filter.h"
#include "host/view_messages.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

constexpr unsigned BUFFER_SIZE = 8192;

constexpr const char* LIBRARY_SUFFIX = ".so";

constexpr UINT LEAST_VERSION_OF_A_WINDOW = 2; // of a built-in module's plug-in

constexpr const char* STALE_PLUGIN_QUESTION =
    "This Plug-In is not compatible with the current Contract Version.\n\n"
    "You can not load this Plug-In until you sucessfully rebuild with the new files.\n\n"
    "Would you like Velmora to copy the new Base Class Files and initiate a Rebuild?\n\n"
    "If you choose <No> you must manually copy and rebuild the project.";

bool isSynth(const CDSPFilter* pFilter)
{
    return pFilter && pFilter->m_pPlugIn && pFilter->m_pPlugIn->m_bOutputOnlyPlugIn;
}

} // namespace

CPlugInLoader::CPlugInLoader(const CParts& parts)
    : m_parts(parts), m_swap(parts.m_engine, parts.m_state, parts.m_dialogs), m_window(parts.m_messages)
{
}

CPlugInLoader::~CPlugInLoader()
{
    const CClosedGate gate(m_parts.m_engine.gate());
    if (gate) {
        m_parts.m_engine.setFilter(nullptr);
        return;
    }
    static_cast<void>(m_loaded.release());
    for (auto& pPlugIn : m_plugIns)
        static_cast<void>(pPlugIn.release());
}

void CPlugInLoader::setPlugInFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    m_folder = std::filesystem::absolute(folder, error);
}

CLoadedPlugIn* CPlugInLoader::current() const
{
    const CDSPFilter* pFilter = m_parts.m_engine.filter();
    if (!pFilter)
        return nullptr;
    if (m_loaded && &m_loaded->filter() == pFilter)
        return m_loaded.get();
    const auto found = std::ranges::find_if(
        m_plugIns, [pFilter](const auto& pPlugIn) { return &pPlugIn->filter() == pFilter; });
    return found == m_plugIns.end() ? nullptr : found->get();
}

void CPlugInLoader::scanPlugIns(const std::filesystem::path& folder)
{
    setPlugInFolder(folder);
    std::error_code error;
    std::filesystem::current_path(m_folder, error);
    const CPlugInProbe probe;
    auto result = CPlugInScanner(m_parts.m_dialogs, probe).scanPlugIns(m_folder);
    m_plugIns = std::move(result.m_plugIns);
    m_scanEntries = std::move(result.m_entries);
    m_hParentDLL = nullptr;
}

// ------------------------------------------------------------------------------------------------
// Loading
// ------------------------------------------------------------------------------------------------

CDSPFilter* CPlugInLoader::loadPlugin(const std::filesystem::path& libraryName, bool bStreaming)
{
    m_bRebuildRequested = false;
    m_sReason.clear();
    CLoadedPlugIn* pCurrent = load(libraryName, bStreaming);
    m_carriedValues = {};
    m_onFresh = {};
    if (!pCurrent)
        return nullptr;
    startLoaded(*pCurrent);
    return &pCurrent->filter();
}

CLoadedPlugIn* CPlugInLoader::load(const std::filesystem::path& libraryName, bool bStreaming)
{
    std::error_code error;
    std::filesystem::current_path(m_folder, error);
    const auto file = m_folder / libraryName;
    if (!std::filesystem::exists(file, error)) {
        m_parts.m_dialogs.showMessage("Path not found for the DLL: " + libraryName.string());
        return nullptr;
    }
    auto pNew = survivesProbe(file) ? open(file) : nullptr;
    return pNew ? makeCurrent(std::move(pNew), bStreaming) : nullptr;
}

CDSPFilter* CPlugInLoader::loadRemotePlugin()
{
    m_sReason.clear();
    std::error_code error;
    const auto directory = std::filesystem::current_path(error);
    const std::string sSuffix = LIBRARY_SUFFIX;
    const auto chosen =
        m_parts.m_dialogs.chooseOpenFile("Velmora PlugIns (*" + sSuffix + ")|*" + sSuffix + "||");
    CDSPFilter* pFilter = nullptr;
    if (chosen && chosen->filename().string().find(sSuffix) == std::string::npos)
        m_parts.m_dialogs.showMessage("Not a .DLL file.");
    else if (chosen)
        pFilter = loadPlugin(std::filesystem::absolute(*chosen, error), m_parts.m_state.hasAudioThread());
    std::filesystem::current_path(directory, error);
    return pFilter;
}

std::unique_ptr<CLoadedPlugIn> CPlugInLoader::open(const std::filesystem::path& file)
{
    const std::string sName = file.stem().string();
    const std::string sFile = file.string();
    const CPlugInCallMarker marker(sName.c_str(), EPlugInCall::loading, sFile.c_str());
    std::string sReason;
    auto pLibrary = CPlugInLibrary::load(file, sReason);
    if (!pLibrary) {
        m_parts.m_dialogs.showMessage("Error loading DLL");
        keepReason(file.filename().string() + ": " + sReason + ".");
        return nullptr;
    }
    if (!pLibrary->createObject())
        m_parts.m_dialogs.showMessage("Error getting DLL function pointer");
    if (!isContractVersionRight(*pLibrary))
        return nullptr;
    const CPlugInCallMarker construction(sName.c_str(), EPlugInCall::construction, sFile.c_str());
    CPlugIn* pPlugIn = createPlugIn(*pLibrary);
    return pPlugIn ? CLoadedPlugIn::create(std::move(pLibrary), pPlugIn) : nullptr;
}

// A library that would take the program down is named and left alone. What the helper process finds
// wrong short of that is found again, and reported in the described words, by the load itself.
bool CPlugInLoader::survivesProbe(const std::filesystem::path& file)
{
    const auto result = CPlugInProbe().probe({&file, 1}).front();
    if (result.m_eStatus != EProbeStatus::crashed && result.m_eStatus != EProbeStatus::timedOut &&
        result.m_eStatus != EProbeStatus::notExamined)
        return true;
    m_parts.m_dialogs.showMessage("The plug-in " + file.filename().string() + " was not loaded: it " +
                                  result.m_sReason + ".");
    return false;
}

bool CPlugInLoader::isContractVersionRight(const CPlugInLibrary& library)
{
    if (library.version() == PLUGIN_API_VERSION)
        return true;
    m_bRebuildRequested = m_parts.m_dialogs.askYesNo(STALE_PLUGIN_QUESTION);
    if (m_bRebuildRequested)
        m_parts.m_engine.gate().open();
    return false;
}

CPlugIn* CPlugInLoader::createPlugIn(const CPlugInLibrary& library)
{
    std::string sReason;
    CPlugIn* pPlugIn = library.makeObject(sReason);
    if (pPlugIn) {
        m_parts.m_dialogs.note("Plugin created.");
    } else {
        m_parts.m_dialogs.showMessage("Could not create the Plug In object.");
        keepReason(library.path().filename().string() + ": " + sReason + ".");
    }
    return pPlugIn;
}

// Makes a plug-in that was just opened the current filter, and keeps it. Null, with the old filter current,
// if it throws.
CLoadedPlugIn* CPlugInLoader::makeCurrent(std::unique_ptr<CLoadedPlugIn> pNew, bool bStreaming)
{
    CDSPFilter* pOldFilter = m_parts.m_engine.filter();
    stopStreamsThatDoNotFit(isSynth(pOldFilter), isSynth(&pNew->filter()));
    m_parts.m_dialogs.note("Plugin-buddy created.");
    if (bStreaming)
        m_parts.m_dialogs.note("Buffer event done.");
    m_parts.m_dialogs.note("Old filter cleanup.");

    const bool bSwapped = m_swap.swapTo(&pNew->filter(), [&] { return prepareLoaded(*pNew); });
    if (!bSwapped && m_parts.m_engine.filter() == pOldFilter)
        return nullptr;
    moveViewTo(&pNew->filter());
    // Without the swap's word for it the audio thread is inside the old plug-in, which has to stay for ever.
    if (bSwapped)
        retireLoaded();
    else
        static_cast<void>(m_loaded.release());
    m_loaded = std::move(pNew);
    m_hParentDLL = m_loaded->library();
    return m_loaded.get();
}

// The old plug-in and its library go when nothing uses them any more.
void CPlugInLoader::retireLoaded()
{
    if (m_loaded)
        static_cast<void>(release(*m_loaded));
    m_loaded.reset();
}

// A plug-in that makes sound of its own runs in a stream of its own. From one such to another the stream goes
// on when the swap is a cross-fade.
void CPlugInLoader::stopStreamsThatDoNotFit(bool bOldIsSynth, bool bNewIsSynth)
{
    const ETransportState eState = m_parts.m_state.state();
    if (bOldIsSynth && bNewIsSynth && eState == TRANSPORT_USER_OSC && m_swap.fades())
        return;
    if (eState == TRANSPORT_USER_OSC)
        m_parts.m_transport.stopUserOsc();
    else if (bNewIsSynth && eState != TRANSPORT_STOP)
        m_parts.m_transport.stopWaveStream();
}

// False, with everything as it was, if the plug-in throws.
bool CPlugInLoader::prepareLoaded(CLoadedPlugIn& plugIn)
{
    CUserDSPFilter& filter = plugIn.filter();
    const CPlugInCallMarker marker(filter, EPlugInCall::initializing);
    const auto thrown = thrownBy([&] {
        filter.cleanUp();
        m_parts.m_dialogs.note("New filter cleanup.");
        filter.createControls();
        initOnce(plugIn);
        carryValuesOver(filter);
        m_parts.m_dialogs.note("Init GUI Form.");

        filter.setBufferSize(BUFFER_SIZE);
        m_parts.m_format.applyTo(filter);
        if (m_parts.m_state.state() != TRANSPORT_STOP && m_parts.m_state.state() != TRANSPORT_IDLE) {
            const CPlugInCallMarker preparing(filter, EPlugInCall::preparing);
            filter.prepareForPlay();
        }
        m_parts.m_dialogs.note("prepareForPlay()");
    });
    if (!thrown)
        return true;
    keepReason(filter.m_sName + " threw an exception: " + *thrown + ".");
    m_parts.m_dialogs.showMessage("Could not create the Plug In object.");
    return false;
}

void CPlugInLoader::initOnce(CLoadedPlugIn& plugIn)
{
    plugIn.plugIn()->m_hParentWnd = m_window.handle();
    plugIn.initOnce();
}

// What follows when the loaded plug-in is the current filter.
void CPlugInLoader::startLoaded(CLoadedPlugIn& plugIn)
{
    CUserDSPFilter& filter = plugIn.filter();
    showImpulses(filter);
    m_parts.m_view.setTitle(filter.m_sName);
    if (isSynth(&filter))
        playSynth();
    else
        m_parts.m_transport.stopUserOsc();
    m_bPlugInLoaded = true;
    m_parts.m_dialogs.note("m_bPlugInLoaded = true");
    m_parts.m_view.refresh();
    m_parts.m_dialogs.note("loadPlugin( ) Done.");
}

void CPlugInLoader::playSynth()
{
    if (m_bPlaysSynths)
        m_parts.m_transport.startUserOsc();
}

void CPlugInLoader::showImpulses(const CDSPFilter& filter)
{
    const CPlugIn* pPlugIn = filter.m_pPlugIn;
    if (!pPlugIn || !pPlugIn->m_bWantIRs)
        return;
    m_parts.m_messages.post(MESSAGE_HIDE_ANALYZER, 0, 0);
    m_parts.m_view.showImpulses(pPlugIn->m_h_Left, pPlugIn->m_h_Right,
                                static_cast<int>(pPlugIn->m_nIRLength));
    m_parts.m_messages.post(MESSAGE_SHOW_ANALYZER, 0, 0);
}

void CPlugInLoader::carryValuesOver(CUserDSPFilter& filter)
{
    m_changes = {};
    if (m_onFresh)
        m_onFresh(*filter.m_pPlugIn);
    if (m_carriedValues.isEmpty())
        return;
    m_changes = m_carriedValues.applyTo(*filter.m_pPlugIn);
    for (const auto& pControl : filter.m_ControlList)
        pControl->updateFromVariable();
}

// ------------------------------------------------------------------------------------------------
// Unloading
// ------------------------------------------------------------------------------------------------

// False, and the status window says why, if the library's code stays in memory.
bool CPlugInLoader::release(CLoadedPlugIn& plugIn)
{
    if (plugIn.library() == m_hParentDLL)
        m_hParentDLL = nullptr;
    const bool bGone = plugIn.unload();
    if (!bGone)
        m_parts.m_dialogs.note("The old library stays in memory: " + plugIn.pinReason() + ".");
    return bGone;
}

void CPlugInLoader::unloadPlugin(bool bQuiet)
{
    const CDSPFilter* pFilter = m_parts.m_engine.filter();
    if (!pFilter)
        return;
    m_parts.m_transport.stopUserOsc();
    if (!m_hParentDLL) {
        if (!bQuiet)
            m_parts.m_dialogs.showMessage("Error un-loading DLL");
        return;
    }
    CLoadedPlugIn* pCurrent = current();
    if (!pCurrent || pFilter->m_hParentDLL != m_hParentDLL) {
        if (!bQuiet)
            m_parts.m_dialogs.showMessage("Error: UserDLL does not match parent DLL.");
        m_parts.m_view.setTitle(MAIN_TITLE);
        return;
    }
    m_parts.m_view.closeCustomGUI();
    m_parts.m_view.clearImpulses();
    if (!m_swap.swapTo(nullptr, [] { return true; }))
        return;
    m_parts.m_view.showFilter(nullptr);
    if (!release(*pCurrent))
        m_parts.m_dialogs.showMessage("Couldn't FreeLibrary! Error Code: %02X\n");
    if (pCurrent == m_loaded.get())
        m_loaded.reset();
    m_bPlugInLoaded = false;
    m_parts.m_view.setTitle(MAIN_TITLE);
    m_parts.m_view.refresh();
}

void CPlugInLoader::unloadPlugInByName(const std::string& sName)
{
    for (const auto& pPlugIn : m_plugIns) {
        if (pPlugIn->filter().m_sName != sName)
            continue;
        if (!pPlugIn->library()) {
            m_parts.m_dialogs.note(sName + ": m_hParentDLL is NULL");
            continue;
        }
        // A plug-in that is not current may still be inside a call that it does not come back from.
        CDSPFilter* pStaying = pPlugIn.get() == current() ? nullptr : m_parts.m_engine.filter();
        if (!m_swap.swapTo(pStaying, [] { return true; }))
            return;
        if (!pStaying)
            moveViewTo(nullptr);
        m_parts.m_dialogs.note(sName + (release(*pPlugIn) ? ": Unloaded" : ": Unload FAILED!"));
        m_bPlugInLoaded = false;
        break;
    }
    m_parts.m_view.setTitle(MAIN_TITLE);
}

// ------------------------------------------------------------------------------------------------
// Selecting
// ------------------------------------------------------------------------------------------------

void CPlugInLoader::selectPlugIn()
{
    m_sReason.clear();
    if (m_nSelectedPlugIn < 0 || m_nSelectedPlugIn >= static_cast<int>(m_plugIns.size()))
        return;
    CLoadedPlugIn& listed = *m_plugIns[static_cast<std::size_t>(m_nSelectedPlugIn)];
    // A cross-fade needs the loaded plug-in for as long as it fades out.
    if (m_bPlugInLoaded && !m_swap.fades())
        unloadPlugin(false);
    if (m_parts.m_state.state() == TRANSPORT_OSC && listed.plugIn()) {
        m_parts.m_transport.stopOsc();
        m_parts.m_messages.post(MESSAGE_HIDE_OSCILLATOR, 0, 0);
    }
    if (!listed.library()) {
        reloadSelected();
        return;
    }
    CUserDSPFilter& filter = listed.filter();
    stopStreamsThatDoNotFit(isSynth(m_parts.m_engine.filter()), isSynth(&filter));
    const bool bSwapped = m_swap.swapTo(&filter, [&] {
        const auto thrown = thrownBy([&] {
            prepareSelected(filter);
            if (listed.plugIn()->m_uPlugInVersion >= PLUGIN_API_VERSION)
                initOnce(listed);
        });
        if (thrown) {
            keepReason(filter.m_sName + " threw an exception: " + *thrown + ".");
            m_parts.m_dialogs.showMessage(m_sReason);
        }
        return !thrown;
    });
    if (!bSwapped)
        return;
    m_bPlugInLoaded = false;
    moveViewTo(&filter);
    retireLoaded();
    if (isSynth(&filter))
        playSynth();
    showSelected(filter);
}

// The library was freed for a rebuild: what lies in the folder now takes the entry's place.
void CPlugInLoader::reloadSelected()
{
    auto& pEntry = m_plugIns[static_cast<std::size_t>(m_nSelectedPlugIn)];
    if (!loadPlugin(pEntry->filter().m_sName + LIBRARY_SUFFIX, m_parts.m_state.hasAudioThread())) {
        m_parts.m_dialogs.showMessage(
            "This Plug-In is no longer available. Did you re-compile it with errors?");
        return;
    }
    pEntry = std::move(m_loaded);
}

void CPlugInLoader::selectModule()
{
    m_sReason.clear();
    CDSPFilter* pModule = m_parts.m_modules.at(m_nSelectedModule);
    if (!pModule)
        return;
    if (m_bPlugInLoaded && !m_swap.fades())
        unloadPlugin(false);
    stopStreamsThatDoNotFit(isSynth(m_parts.m_engine.filter()), isSynth(pModule));
    const auto prepare = [&] {
        prepareSelected(*pModule);
        return true;
    };
    if (!m_swap.swapTo(pModule, prepare))
        return;
    m_bPlugInLoaded = false;
    CPlugIn* pPlugIn = pModule->m_pPlugIn;
    if (pPlugIn && pPlugIn->m_uPlugInVersion >= LEAST_VERSION_OF_A_WINDOW)
        pPlugIn->m_hParentWnd = m_window.handle();
    moveViewTo(pModule);
    retireLoaded();
    if (isSynth(pModule))
        playSynth();
    showSelected(*pModule);
}

void CPlugInLoader::deselectModule()
{
    if (!m_parts.m_engine.filter() || current() || !m_swap.swapTo(nullptr, [] { return true; }))
        return;
    moveViewTo(nullptr);
    m_parts.m_view.setTitle(MAIN_TITLE);
    m_parts.m_view.refresh();
}

// Readies a filter of one of the lists. It is told about the format and prepared also while audio runs, since
// it does not play yet: it may never have been prepared, or for another rate.
void CPlugInLoader::prepareSelected(CDSPFilter& filter)
{
    const CPlugInCallMarker marker(filter, EPlugInCall::preparing);
    filter.createControls();
    filter.setBufferSize(BUFFER_SIZE);
    if (!m_parts.m_state.hasAudioThread())
        static_cast<void>(m_parts.m_transport.loadWaveFormat());
    m_parts.m_format.applyTo(filter);
    filter.prepareForPlay();
}

// To be called ahead of the old filter's end: its window and its impulses are of its library.
void CPlugInLoader::moveViewTo(CDSPFilter* pFilter)
{
    m_parts.m_view.closeCustomGUI();
    m_parts.m_view.clearImpulses();
    m_parts.m_view.showFilter(pFilter);
}

void CPlugInLoader::showSelected(CDSPFilter& filter)
{
    m_parts.m_view.setTitle(filter.m_sName);
    showImpulses(filter);
    m_parts.m_view.refresh();
}

void CPlugInLoader::keepReason(const std::string& sReason)
{
    m_sReason = sReason;
    m_parts.m_dialogs.note(sReason);
}

} // namespace velmora
