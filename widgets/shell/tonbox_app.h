#pragma once

#include "document/tonbox_doc.h"

#include <QSettings>
#include <filesystem>
#include <memory>
#include <optional>

class QApplication;

namespace velmora {

class CDesignerView;
class CMainFrame;
class CMessageDialogs;
class CSplashScreen;
class IAudioSystem;

// What the command line of the workbench says.
struct CStartOptions
{
    std::optional<std::filesystem::path> m_userFolder; // instead of the one from the environment
    std::filesystem::path m_project;                   // to be opened; empty for none
    bool m_bSplash = true;
};

// The application object: makes the view, the document and the main window in their order, and takes them
// down in the reverse one. [main]
class CTonboxApp
{
  public:
    CTonboxApp(QApplication& application, CStartOptions options);
    ~CTonboxApp();

    CTonboxApp(const CTonboxApp&) = delete;
    CTonboxApp& operator=(const CTonboxApp&) = delete;

    // From the splash to the shown window, with the project of the command line or the last one. False if the
    // user folder cannot be used, which the user has been told.
    bool initInstance();

    [[nodiscard]] CMainFrame& mainFrame() { return *m_pFrame; }
    [[nodiscard]] CDesignerView& view() { return *m_pView; }
    [[nodiscard]] CTonboxDoc& document() { return *m_pDocument; }

  private:
    void showSplash();
    bool makeDocument();
    void makeMainFrame();
    void openFirstProject();

    QApplication& m_application;
    CStartOptions m_options;
    std::unique_ptr<CMessageDialogs> m_pDialogs;
    std::unique_ptr<IAudioSystem> m_pAudioSystem;
    std::unique_ptr<QSettings> m_pProfile;
    std::unique_ptr<CSplashScreen> m_pSplash;
    std::unique_ptr<CDesignerView> m_pView;
    std::unique_ptr<CTonboxDoc> m_pDocument;
    std::unique_ptr<CMainFrame> m_pFrame;
};

} // namespace velmora
