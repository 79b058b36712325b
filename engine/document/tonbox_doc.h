#pragma once

#include "audio/audio_devices.h"
#include "audio/audio_engine.h"
#include "audio/audio_streams.h"
#include "audio/offline_processing.h"
#include "audio/sidechain.h"
#include "audio/transport.h"
#include "audio/transport_state.h"
#include "audio/wave_stream.h"
#include "document/autosave.h"
#include "document/crash_recorder.h"
#include "document/plugin_loader.h"
#include "dsp/modules/oscillator.h"
#include "host/audio_format.h"
#include "host/document_view.h"
#include "host/module_list.h"
#include "host/preferences.h"
#include "host/settings.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace velmora {

class CDSPProject;
class IAudioSystem;
class IMessageTarget;
class IUserDialogs;

// The one document, which lives as long as the program. It owns one object for each concern and
// introduces them to one another; windows and commands talk to those objects. [main]
class CTonboxDoc
{
  public:
    // What start-up does beyond reading the settings and making the folders. A program without a window
    // leaves out what its command does not need.
    struct CStartUp
    {
        std::optional<std::filesystem::path> m_userFolder; // instead of the one from the environment
        bool m_bOpenAudioSystem = true;
        bool m_bScanPlugIns = true;
        bool m_bRecordCrashes = true; // and tells of the last one
    };

    // messages receives what plug-ins and the engine send. A program with a window gives its view. All must
    // outlive the document.
    CTonboxDoc(IUserDialogs& dialogs, IAudioSystem& audioSystem, IMessageTarget& messages,
               IDocumentView* pView = nullptr);

    // Closes every stream, then deletes each plug-in object ahead of its library.
    ~CTonboxDoc();

    CTonboxDoc(const CTonboxDoc&) = delete;
    CTonboxDoc& operator=(const CTonboxDoc&) = delete;

    // Start-up, in this order: user folder, report of an earlier crash, settings file, audio devices,
    // folders, built-in modules, plug-in scan, oscillator. False if the user folder cannot be used or the
    // audio system does not come up; the user has then been told, and the later steps have not been taken.
    bool OnNewDocument(const CStartUp& startUp);

    // Stops the transport, closes every stream, and bypasses the filter.
    void OnCloseDocument();

    // Has the engine and the loader follow the preferences, as after a change of them.
    void applyPreferences();

    // Whether the user folder could be entered; without it there is nothing to start with.
    [[nodiscard]] bool hasUserFolder() const { return m_bUserFolder; }

    // As it was given: empty when the environment names none.
    [[nodiscard]] const std::filesystem::path& userFolder() const { return m_userFolder; }
    [[nodiscard]] std::filesystem::path plugInFolder() const { return m_root / "PlugIns"; }
    [[nodiscard]] std::filesystem::path settingsFile() const { return m_root / "socket.log"; }

    [[nodiscard]] std::filesystem::path cacheFolder() const { return m_root / "Cache"; }
    [[nodiscard]] std::filesystem::path preferencesFile() const { return m_root / "preferences.txt"; }

    // The open project; null for none. Another one replaces and deletes it. Its sidechain file, if it names
    // one, becomes the sidechain's; sound input is stopped first, and with a sidechain file a
    // wave file, too.
    [[nodiscard]] CDSPProject* project() const { return m_pProject.get(); }
    void setProject(std::unique_ptr<CDSPProject> pProject);

    // To be called when the open project was changed or saved: what would be rescued in a crash, and what the
    // next autosave holds, is this state of it.
    void projectChanged(bool bSaved);

    [[nodiscard]] CPreferences& preferences() { return m_preferences; }
    [[nodiscard]] CSettings& settings() { return m_settings; }

    // False if the settings file could not be read or brought up to date; the user was told why.
    [[nodiscard]] bool areSettingsUsable() const { return m_bSettingsUsable; }
    [[nodiscard]] CAudioDevices& audioDevices() { return m_audioDevices; }
    [[nodiscard]] CTransportState& transportState() { return m_transportState; }
    [[nodiscard]] CTransport& transport() { return m_transport; }
    [[nodiscard]] CAudioStreams& streams() { return m_streams; }
    [[nodiscard]] CWaveStream& wave() { return m_wave; }
    [[nodiscard]] CSidechain& sidechain() { return m_sidechain; }
    [[nodiscard]] COscillator& oscillator() { return m_oscillator; }
    [[nodiscard]] CModuleList& modules() { return m_modules; }
    [[nodiscard]] CCrashRecorder& crashRecorder() { return m_crashRecorder; }
    [[nodiscard]] CAutosave& autosave() { return m_autosave; }

    // What the filter was last told about the audio.
    [[nodiscard]] CAudioFormat& format() { return m_format; }
    [[nodiscard]] CAudioEngine& audioEngine() { return m_engine; }
    [[nodiscard]] COfflineProcessing& offlineProcessing() { return m_offlineProcessing; }
    [[nodiscard]] CPlugInLoader& plugInLoader() { return m_plugInLoader; }

    // The filter that audio runs through; null for none.
    [[nodiscard]] CDSPFilter* currentFilter() const { return m_engine.filter(); }

  private:
    bool enterUserFolder();
    void readSettings();
    bool openAudioSystem();
    bool makeFolders();
    void tellOfCrash();
    void makeOscillatorReady();

    IDocumentView m_noView;
    IDocumentView& m_view;
    CTransportState m_transportState;
    CCrashRecorder m_crashRecorder{&m_transportState}; // outlives the streams
    IUserDialogs& m_dialogs;
    std::filesystem::path m_userFolder;
    std::filesystem::path m_root; // the same as an absolute path, whatever the current directory becomes
    CSettings m_settings;
    CPreferences m_preferences;
    bool m_bSettingsUsable = true;
    bool m_bUserFolder = false;
    CAudioDevices m_audioDevices;
    CAudioFormat m_format;
    COscillator m_oscillator;
    CModuleList m_modules;
    CSidechain m_sidechain;
    CWaveStream m_wave;
    CAudioEngine m_engine;
    CAudioStreams m_streams;
    CTransport m_transport;
    COfflineProcessing m_offlineProcessing;
    CPlugInLoader m_plugInLoader;
    std::unique_ptr<CDSPProject> m_pProject;
    CAutosave m_autosave{m_dialogs};
};

} // namespace velmora
