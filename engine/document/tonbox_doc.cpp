#include "document/tonbox_doc.h"

#include "base/audio_system.h"
#include "base/platform_folders.h"
#include "base/user_dialogs.h"
#include "dsp/modules/module_registry.h"
#include "project/dsp_project.h"
#include "project/project_file.h"

#include <array>

namespace velmora {

namespace {

constexpr unsigned OSCILLATOR_BUFFER_SIZE = 8192;

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

CTonboxDoc::CTonboxDoc(IUserDialogs& dialogs, IAudioSystem& audioSystem, IMessageTarget& messages,
                       IDocumentView* pView)
    : m_view(pView ? *pView : m_noView), m_dialogs(dialogs), m_audioDevices(audioSystem),
      m_engine(m_transportState, m_sidechain),
      m_streams(audioSystem, m_audioDevices, m_engine, m_sidechain, m_wave, m_settings, dialogs),
      m_transport(
          {m_transportState, m_engine, m_streams, m_wave, m_sidechain, m_format, dialogs, messages, m_view}),
      m_offlineProcessing(m_engine, m_transportState, m_sidechain, dialogs),
      m_plugInLoader(
          {m_engine, m_transport, m_transportState, m_modules, m_format, dialogs, messages, m_view})
{
    m_engine.setOscillator(&m_oscillator);
    m_sidechain.m_onLoaded = [this](const std::filesystem::path& file) {
        if (!m_pProject || m_pProject->m_sSidechainFile == file.string())
            return;
        m_pProject->m_sSidechainFile = file.string();
        projectChanged(false);
    };
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
    m_bUserFolder = enterUserFolder();
    if (!m_bUserFolder)
        return false;
    if (startUp.m_bRecordCrashes)
        tellOfCrash();
    readSettings();
    m_transport.setWaveFile(m_settings.defaultWAVFile());
    if (startUp.m_bOpenAudioSystem && !openAudioSystem())
        return false;
    if (!makeFolders())
        return false;
    if (m_modules.count() == 0)
        addBuiltInModules(m_modules);
    if (startUp.m_bScanPlugIns)
        m_plugInLoader.scanPlugIns(plugInFolder());
    makeOscillatorReady();
    return true;
}

void CTonboxDoc::makeOscillatorReady()
{
    m_oscillator.cleanUp();
    m_oscillator.setBufferSize(OSCILLATOR_BUFFER_SIZE);
    m_oscillator.prepareForPlay();
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

// Of the last run, once; from here on this one's crashes are recorded.
void CTonboxDoc::tellOfCrash()
{
    if (const auto report = CCrashRecorder::takeReport(m_root))
        m_dialogs.showMessage(report->message());
    if (!m_crashRecorder.start(m_root))
        m_dialogs.note("A crash would not be recorded in " + m_root.string() + ".");
}

void CTonboxDoc::readSettings()
{
    std::string sError;
    m_bSettingsUsable = m_settings.load(settingsFile(), m_userFolder, sError);
    if (!m_bSettingsUsable)
        m_dialogs.showMessage(sError);
    if (!m_preferences.load(preferencesFile(), sError))
        m_dialogs.showMessage(sError);
    applyPreferences();
}

void CTonboxDoc::applyPreferences()
{
    m_engine.m_bProtectSpeakers = m_preferences.isOn(PROTECT_SPEAKERS);
    m_plugInLoader.setCrossFade(m_preferences.isOn(CROSS_FADE_SWAPS));
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
    if (m_transport.state() == TRANSPORT_SOUND_IN)
        m_transport.stopSoundIn();
    m_view.releaseProject();
    m_autosave.setProject(nullptr);
    m_pProject = std::move(pProject);
    m_view.takeProject();
    m_autosave.setProject(m_pProject.get());
    if (m_pProject && !m_pProject->m_sSidechainFile.empty()) {
        if (m_streams.isOpen(STREAM_WAVE)) // running or paused, it reads the sidechain
            m_transport.onStop();
        m_sidechain.load(m_pProject->m_sSidechainFile, m_dialogs);
    }
    projectChanged(true);
}

void CTonboxDoc::projectChanged(bool bSaved)
{
    m_autosave.projectChanged(bSaved);
    if (!m_pProject)
        m_crashRecorder.clearProject();
    else if (!m_crashRecorder.setProject(m_pProject->m_sProjectFile, projectBytes(*m_pProject), bSaved))
        m_dialogs.note("There is no memory to keep unsaved changes of the project for the case of a crash.");
}

void CTonboxDoc::OnCloseDocument()
{
    m_transport.close();
    m_engine.m_bBypass = true;
    m_autosave.setProject(nullptr);
}

} // namespace velmora
