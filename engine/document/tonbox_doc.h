#pragma once

#include "audio/audio_devices.h"
#include "audio/audio_engine.h"
#include "audio/offline_processing.h"
#include "audio/sidechain.h"
#include "audio/transport.h"
#include "document/plugin_loader.h"
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
    };

    // view receives the messages that plug-ins and the engine send. All three must outlive the document.
    CTonboxDoc(IUserDialogs& dialogs, IAudioSystem& audioSystem, IMessageTarget& view);

    // Stops the transport, then deletes each plug-in object ahead of its library.
    ~CTonboxDoc();

    CTonboxDoc(const CTonboxDoc&) = delete;
    CTonboxDoc& operator=(const CTonboxDoc&) = delete;

    // Start-up, in this order: user folder, settings file, audio devices, folders, plug-in scan. False if
    // the user folder cannot be used or the audio system does not come up; the user has then been told,
    // and the later steps have not been taken.
    bool OnNewDocument(const CStartUp& startUp);

    // Stops the transport.
    void OnCloseDocument();

    // As it was given: empty when the environment names none.
    [[nodiscard]] const std::filesystem::path& userFolder() const { return m_userFolder; }
    [[nodiscard]] std::filesystem::path plugInFolder() const { return m_root / "PlugIns"; }
    [[nodiscard]] std::filesystem::path settingsFile() const { return m_root / "socket.log"; }

    [[nodiscard]] std::filesystem::path cacheFolder() const { return m_root / "Cache"; }
    [[nodiscard]] std::filesystem::path preferencesFile() const { return m_root / "preferences.txt"; }

    // The open project; null for none. Another one replaces and deletes it.
    [[nodiscard]] CDSPProject* project() const { return m_pProject.get(); }
    void setProject(std::unique_ptr<CDSPProject> pProject);

    [[nodiscard]] CPreferences& preferences() { return m_preferences; }
    [[nodiscard]] CSettings& settings() { return m_settings; }

    // False if the settings file could not be read or brought up to date; the user was told why.
    [[nodiscard]] bool areSettingsUsable() const { return m_bSettingsUsable; }
    [[nodiscard]] CAudioDevices& audioDevices() { return m_audioDevices; }
    [[nodiscard]] CTransport& transport() { return m_transport; }
    [[nodiscard]] CSidechain& sidechain() { return m_sidechain; }
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

    IUserDialogs& m_dialogs;
    std::filesystem::path m_userFolder;
    std::filesystem::path m_root; // the same as an absolute path, whatever the current directory becomes
    CSettings m_settings;
    CPreferences m_preferences;
    bool m_bSettingsUsable = true;
    CAudioDevices m_audioDevices;
    CTransport m_transport;
    CSidechain m_sidechain;
    CAudioEngine m_engine;
    COfflineProcessing m_offlineProcessing;
    CPlugInLoader m_plugInLoader;
    std::unique_ptr<CDSPProject> m_pProject;
};

} // namespace velmora
