#include "document/tonbox_doc.h"

#include "base/audio_system.h"
#include "base/platform_folders.h"
#include "base/user_dialogs.h"
#include "project/dsp_project.h"

#include <array>

namespace velmora {

namespace {

// Folders below the user folder, in the order in which they are made.
constexpr std::array<const char*, 11> USER_FOLDERS = {
    "Skin",
    "IR1024",
    "AudioFiles",
    "VSTFiles",
    "VelmoraProjects",
    "PlugIns",
    "AU Templates",
    "VST Templates",
    "VST Templates/VST3",
    "VST Ported Projects",
    "AU Ported Projects",
};

} // namespace

CTonboxDoc::CTonboxDoc(IUserDialogs& dialogs, IAudioSystem& audioSystem, IMessageTarget& view)
    : m_dialogs(dialogs), m_audioDevices(audioSystem), m_engine(m_transport, m_sidechain),
      m_offlineProcessing(m_engine, m_transport, m_sidechain, dialogs),
      m_plugInLoader(m_engine, m_transport, dialogs, view)
{
}

CTonboxDoc::~CTonboxDoc()
{
    OnCloseDocument();
}

bool CTonboxDoc::OnNewDocument(const CStartUp& startUp)
{
    m_userFolder = startUp.m_userFolder.value_or(velmora::userFolder());
    std::error_code error;
    m_root = std::filesystem::absolute(m_userFolder.empty() ? "." : m_userFolder, error);
    m_plugInLoader.setPlugInFolder(plugInFolder());
    if (!enterUserFolder())
        return false;
    readSettings();
    if (startUp.m_bOpenAudioSystem && !openAudioSystem())
        return false;
    if (!makeFolders())
        return false;
    if (startUp.m_bScanPlugIns)
        m_plugInLoader.scanPlugIns(plugInFolder());
    return true;
}

bool CTonboxDoc::enterUserFolder()
{
    if (m_userFolder.empty())
        return true;
    std::error_code error;
    std::filesystem::create_directories(m_userFolder, error);
    if (!error)
        std::filesystem::current_path(m_userFolder, error);
    if (!error)
        return true;
    m_dialogs.showMessage("The user folder " + m_userFolder.string() + " cannot be used: " + error.message() +
                          ". Make it writable, or name another one.");
    return false;
}

void CTonboxDoc::readSettings()
{
    std::string sError;
    m_bSettingsUsable = m_settings.load(settingsFile(), m_userFolder, sError);
    if (!m_bSettingsUsable)
        m_dialogs.showMessage(sError);
    if (!m_preferences.load(preferencesFile(), sError))
        m_dialogs.showMessage(sError);
}

bool CTonboxDoc::openAudioSystem()
{
    CAudioDeviceChoice choice{m_settings.inputDeviceName(), m_settings.outputDeviceName(),
                              m_settings.DUTDeviceName(), m_settings.sampleRate()};
    const std::string sMessage = m_audioDevices.choose(choice);
    if (!sMessage.empty())
        m_dialogs.showMessage(sMessage);
    if (!m_audioDevices.isAvailable())
        return false;
    m_settings.setInputDeviceName(choice.m_sInputName);
    m_settings.setOutputDeviceName(choice.m_sOutputName);
    m_settings.setDUTDeviceName(choice.m_sDUTName);
    m_settings.setSampleRate(choice.m_dSampleRate);
    return true;
}

bool CTonboxDoc::makeFolders()
{
    for (const char* pName : USER_FOLDERS) {
        std::error_code error;
        std::filesystem::create_directories(m_root / pName, error);
        if (error) {
            m_dialogs.showMessage("The folder " + (m_root / pName).string() +
                                  " cannot be made: " + error.message() + ".");
            return false;
        }
    }
    return true;
}

void CTonboxDoc::setProject(std::unique_ptr<CDSPProject> pProject)
{
    m_pProject = std::move(pProject);
}

void CTonboxDoc::OnCloseDocument()
{
    m_transport.onStop();
    m_engine.m_bBypass = true;
}

} // namespace velmora
