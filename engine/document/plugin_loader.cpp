#include "document/plugin_loader.h"

#include "audio/audio_engine.h"
#include "audio/transport.h"
#include "base/user_dialogs.h"
#include "host/plugin_library.h"
#include "host/plugin_probe.h"
#include "host/user_dsp_filter.h"

#include <exception>
#include <utility>

namespace velmora {

namespace {

constexpr unsigned BUFFER_SIZE = 8192;

constexpr const char* STALE_PLUGIN_QUESTION =
    "This Plug-In is not compatible with the current Contract Version.\n\n"
    "You can not load this Plug-In until you sucessfully rebuild with the new files.\n\n"
    "Would you like Velmora to copy the new Base Class Files and initiate a Rebuild?\n\n"
    "If you choose <No> you must manually copy and rebuild the project.";

} // namespace

CPlugInLoader::CPlugInLoader(CAudioEngine& engine, CTransport& transport, IUserDialogs& dialogs,
                             IMessageTarget& view)
    : m_engine(engine), m_transport(transport), m_dialogs(dialogs), m_window(view)
{
}

CPlugInLoader::~CPlugInLoader()
{
    m_engine.setFilter(nullptr);
}

void CPlugInLoader::setPlugInFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    m_folder = std::filesystem::absolute(folder, error);
}

void CPlugInLoader::scanPlugIns(const std::filesystem::path& folder)
{
    setPlugInFolder(folder);
    std::error_code error;
    std::filesystem::current_path(m_folder, error);
    const CPlugInProbe probe;
    auto result = CPlugInScanner(m_dialogs, probe).scanPlugIns(m_folder);
    m_plugIns = std::move(result.m_plugIns);
    m_scanEntries = std::move(result.m_entries);
}

CDSPFilter* CPlugInLoader::loadPlugin(const std::filesystem::path& libraryName, bool bStreaming)
{
    m_bRebuildRequested = false;
    m_sReason.clear();
    std::error_code error;
    std::filesystem::current_path(m_folder, error);
    const auto file = m_folder / libraryName;
    if (!std::filesystem::exists(file, error)) {
        m_dialogs.showMessage("Path not found for the DLL: " + libraryName.string());
        return nullptr;
    }
    if (!survivesProbe(file))
        return nullptr;
    auto pLibrary = openLibrary(file);
    if (!pLibrary)
        return nullptr;
    if (!pLibrary->createObject())
        m_dialogs.showMessage("Error getting DLL function pointer");
    if (!isContractVersionRight(*pLibrary))
        return nullptr;
    CPlugIn* pPlugIn = createPlugIn(*pLibrary);
    if (!pPlugIn)
        return nullptr;

    auto pNew = CLoadedPlugIn::create(std::move(pLibrary), pPlugIn);
    m_dialogs.note("Plugin-buddy created.");
    if (bStreaming) {
        if (m_transport.hasAudioThread())
            m_engine.bufferDone().wait();
        m_engine.runGate().reset();
        m_dialogs.note("Buffer event done.");
    }
    const bool bSwapped = swapTo(*pNew);
    if (bStreaming)
        m_engine.runGate().set();
    if (!bSwapped)
        return nullptr;
    std::swap(m_loaded, pNew);
    if (pNew) // the old plug-in and its library go here, when nothing uses them any more
        static_cast<void>(release(*pNew));
    m_dialogs.note("m_bPlugInLoaded = true");
    m_dialogs.note("loadPlugin( ) Done.");
    return &m_loaded->filter();
}

// A library that would take the program down is named and left alone. What the helper process finds
// wrong short of that is found again, and reported in the described words, by the load itself.
bool CPlugInLoader::survivesProbe(const std::filesystem::path& file)
{
    const auto result = CPlugInProbe().probe({&file, 1}).front();
    if (result.m_eStatus != EProbeStatus::crashed && result.m_eStatus != EProbeStatus::timedOut &&
        result.m_eStatus != EProbeStatus::notExamined)
        return true;
    m_dialogs.showMessage("The plug-in " + file.filename().string() + " was not loaded: it " +
                          result.m_sReason + ".");
    return false;
}

std::unique_ptr<CPlugInLibrary> CPlugInLoader::openLibrary(const std::filesystem::path& file)
{
    std::string sReason;
    auto pLibrary = CPlugInLibrary::load(file, sReason);
    if (!pLibrary) {
        m_dialogs.showMessage("Error loading DLL");
        keepReason(file.filename().string() + ": " + sReason + ".");
    }
    return pLibrary;
}

bool CPlugInLoader::isContractVersionRight(const CPlugInLibrary& library)
{
    if (library.version() == PLUGIN_API_VERSION)
        return true;
    m_bRebuildRequested = m_dialogs.askYesNo(STALE_PLUGIN_QUESTION);
    if (m_bRebuildRequested)
        m_engine.runGate().set();
    return false;
}

CPlugIn* CPlugInLoader::createPlugIn(const CPlugInLibrary& library)
{
    std::string sReason;
    CPlugIn* pPlugIn = library.makeObject(sReason);
    if (pPlugIn) {
        m_dialogs.note("Plugin created.");
    } else {
        m_dialogs.showMessage("Could not create the Plug In object.");
        keepReason(library.path().filename().string() + ": " + sReason + ".");
    }
    return pPlugIn;
}

void CPlugInLoader::keepReason(const std::string& sReason)
{
    m_sReason = sReason;
    m_dialogs.note(sReason);
}

// False, with everything as it was, if the plug-in throws.
bool CPlugInLoader::swapTo(CLoadedPlugIn& plugIn)
{
    CDSPFilter* pOldFilter = m_engine.filter();
    m_dialogs.note("Old filter cleanup.");
    m_engine.setFilter(&plugIn.filter());
    plugIn.filter().cleanUp();
    m_dialogs.note("New filter cleanup.");
    try {
        prepareNewFilter(plugIn);
        return true;
    } catch (const std::exception& exception) {
        keepReason(plugIn.filter().m_sName + " threw an exception: " + exception.what());
    } catch (...) {
        keepReason(plugIn.filter().m_sName + " threw an exception.");
    }
    m_engine.setFilter(pOldFilter);
    m_dialogs.showMessage("Could not create the Plug In object.");
    return false;
}

void CPlugInLoader::prepareNewFilter(CLoadedPlugIn& plugIn)
{
    CUserDSPFilter& filter = plugIn.filter();
    filter.createControls();
    plugIn.plugIn()->m_hParentWnd = m_window.handle();
    plugIn.plugIn()->init();
    carryValuesOver(filter);
    m_dialogs.note("Init GUI Form.");

    filter.setBufferSize(BUFFER_SIZE);
    filter.setBitDepth(m_nBitDepth);
    filter.m_nSampleRate = m_nSampleRate;
    filter.m_nChannels = m_nChannels;
    if (m_transport.state() != TRANSPORT_STOP && m_transport.state() != TRANSPORT_IDLE)
        filter.prepareForPlay();
    m_dialogs.note("prepareForPlay()");
}

// What carryOver() handed over serves one load.
void CPlugInLoader::carryValuesOver(CUserDSPFilter& filter)
{
    m_changes = {};
    if (const auto onFresh = std::exchange(m_onFresh, {}))
        onFresh(*filter.m_pPlugIn);
    const CControlValues values = std::exchange(m_carriedValues, {});
    if (values.isEmpty())
        return;
    m_changes = values.applyTo(*filter.m_pPlugIn);
    for (const auto& pControl : filter.m_ControlList)
        pControl->updateFromVariable();
}

// False, and the status window says why, if the library's code stays in memory.
bool CPlugInLoader::release(CLoadedPlugIn& plugIn)
{
    const bool bGone = plugIn.unload();
    if (!bGone)
        m_dialogs.note("The old library stays in memory: " + plugIn.pinReason() + ".");
    return bGone;
}

void CPlugInLoader::unloadPlugin(bool bQuiet)
{
    if (!m_loaded)
        return;
    if (m_transport.hasAudioThread())
        m_engine.bufferDone().wait();
    m_engine.runGate().reset();
    m_engine.setFilter(nullptr);
    if (!release(*m_loaded) && !bQuiet)
        m_dialogs.showMessage("Couldn't FreeLibrary! Error Code: %02X\n");
    m_loaded.reset();
    m_engine.runGate().set();
}

void CPlugInLoader::setFormat(int nSampleRate, int nChannels, int nBitDepth)
{
    m_nSampleRate = nSampleRate;
    m_nChannels = nChannels;
    m_nBitDepth = nBitDepth;
}

} // namespace velmora
