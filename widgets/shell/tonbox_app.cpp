#include "widgets/shell/tonbox_app.h"

#include "audio/portaudio_system.h"
#include "base/platform_folders.h"
#include "host/settings_table.h"
#include "project/codegen/product_version.h"
#include "widgets/common/message_dialogs.h"
#include "widgets/common/qt_text.h"
#include "widgets/common/theme.h"
#include "widgets/panel/prototype_panel.h"
#include "widgets/shell/designer_view.h"
#include "widgets/shell/main_frame.h"
#include "widgets/shell/preferences_edit.h"
#include "widgets/shell/splash_screen.h"

#include <QApplication>

namespace velmora {

namespace {

constexpr const char* PROFILE_FILE = "Velmora.ini";

} // namespace

CTonboxApp::CTonboxApp(QApplication& application, CStartOptions options)
    : m_application(application), m_options(std::move(options))
{
}

CTonboxApp::~CTonboxApp()
{
    if (m_pView)
        m_pView->detach();
    m_pDocument.reset(); // while the panel that it empties is there
    m_pFrame.reset();
    m_pView.reset();
}

bool CTonboxApp::initInstance()
{
    m_pDialogs = std::make_unique<CMessageDialogs>();
    m_pAudioSystem = std::make_unique<CPortAudioSystem>();
    const std::filesystem::path folder = m_options.m_userFolder.value_or(userFolder());
    std::error_code error;
    m_pProfile = std::make_unique<QSettings>(
        pathText(std::filesystem::absolute(folder.empty() ? "." : folder, error) / PROFILE_FILE),
        QSettings::IniFormat);
    CTheme::instance().setScheme(
        static_cast<EColourScheme>(std::clamp(m_pProfile->value(COLOUR_SCHEME_KEY, 0).toInt(), 0, 2)));
    CTheme::instance().applyTo(m_application);
    showSplash();
    if (!makeDocument())
        return false;
    makeMainFrame();
    if (m_pSplash)
        m_pSplash->finish();
    m_pFrame->showAsBefore();
    m_pFrame->activateWindow();
    m_pView->panel()->focusFirst();
    m_pSplash.reset();
    openFirstProject();
    return true;
}

void CTonboxApp::showSplash()
{
    if (!m_options.m_bSplash)
        return;
    m_pSplash = std::make_unique<CSplashScreen>();
    m_pSplash->begin();
    m_pSplash->addLine(qs("Velmora(TM) " + std::string(productVersion())));
    m_pSplash->addLine("Loading Modules and User Plug-Ins");
    m_pSplash->addLine(QString());
}

// Without audio the program goes on; it ends only if the user's folder cannot be had.
bool CTonboxApp::makeDocument()
{
    m_pView = std::make_unique<CDesignerView>(*m_pDialogs);
    m_pDocument =
        std::make_unique<CTonboxDoc>(*m_pDialogs, *m_pAudioSystem, m_pView->messages(), m_pView.get());
    CTonboxDoc::CStartUp startUp;
    startUp.m_userFolder = m_options.m_userFolder;
    if (!m_pDocument->OnNewDocument(startUp) &&
        (!m_pDocument->hasUserFolder() || m_pDocument->audioDevices().isAvailable()))
        return false;
    m_pDocument->autosave().start(m_pDocument->settingsFile().parent_path());
    m_pView->attach(*m_pDocument, *m_pProfile, programDataFolder("BaseClassFiles"));
    return true;
}

void CTonboxApp::makeMainFrame()
{
    m_pFrame = std::make_unique<CMainFrame>(CMainFrame::CParts{
        *m_pDocument, *m_pView, *m_pDialogs, *m_pProfile, programDataFolder("BaseClassFiles")});
    CMainFrame* pFrame = m_pFrame.get();
    CDesignerView* pView = m_pView.get();
    pFrame->setPage(EMainTab::Prototype, pView->panel());
    m_pDialogs->setMainWindow(pFrame);
    QObject::connect(pView, &CDesignerView::titleChanged, pFrame, &CMainFrame::setTitle);
    QObject::connect(pView, &CDesignerView::projectChanged, pFrame, &CMainFrame::projectChanged);
    QObject::connect(pView, &CDesignerView::plugInChanged, pFrame, &CMainFrame::plugInChanged);
    QObject::connect(pView, &CDesignerView::transportChanged, pFrame, &CMainFrame::transportChanged);
    QObject::connect(pView, &CDesignerView::busyChanged, pFrame, &CMainFrame::busyChanged);
    QObject::connect(pView, &CDesignerView::told, pFrame, &CMainFrame::showNote);
    pFrame->plugInChanged();
}

void CTonboxApp::openFirstProject()
{
    std::filesystem::path project = m_options.m_project;
    const CSettings& settings = m_pDocument->settings();
    if (project.empty() && settings.boolValue(settingLine("m_bOpenLastProject"))) {
        project = settings.stringValue(settingLine("m_sRecentProject"));
        std::error_code error;
        if (!project.empty() && !std::filesystem::exists(project, error)) {
            m_pFrame->showNote(pathText(project) + " is not there any more.");
            return;
        }
    }
    if (!project.empty())
        m_pView->openProjectFile(project);
}

} // namespace velmora
