#include "widgets/shell/project_dialogs.h"

#include "base/text.h"
#include "base/user_dialogs.h"
#include "document/autosave.h"
#include "document/project_commands.h"
#include "document/tonbox_doc.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_copy.h"
#include "project/codegen/project_editing.h"
#include "project/dsp_project.h"
#include "project/user_variables.h"
#include "widgets/common/qt_text.h"
#include "widgets/project/new_project_dialog.h"
#include "widgets/project/recovery_dialog.h"
#include "widgets/project/save_as_dialog.h"
#include "widgets/project/save_preset_dialog.h"
#include "widgets/project/user_variable_dialog.h"
#include "widgets/shell/preferences_edit.h"

#include <QSettings>

namespace velmora {

namespace {

constexpr const char* PROJECT_FILTER = "DSP Project Files (*.prj)|*.prj||";
constexpr const char* AUDIO_FILTER = "Wave Files (*.wav)|*.wav|AIF Files (*.aif)|*.aif||";

} // namespace

std::optional<std::filesystem::path> CProjectDialogs::chooseProject()
{
    const auto file = m_parts.m_dialogs.chooseOpenFile(PROJECT_FILTER,
                                                       m_parts.m_document.settings().defaultProjectFolder());
    if (!file || equalsIgnoreCase(file->extension().string(), ".prj"))
        return file;
    m_parts.m_dialogs.showMessage("Not a .PRJ file.");
    return std::nullopt;
}

std::optional<std::filesystem::path> CProjectDialogs::chooseAudioFile()
{
    const std::filesystem::path last = m_parts.m_document.transport().waveFile().parent_path();
    return m_parts.m_dialogs.chooseOpenFile(
        AUDIO_FILTER,
        last.empty() ? std::filesystem::path(m_parts.m_document.settings().defaultWAVFolder()) : last);
}

bool CProjectDialogs::newProject(const std::function<void()>& beforeIt)
{
    CNewProjectRequest request;
    request.m_parentFolder = m_parts.m_document.settings().defaultProjectFolder();
    request.m_sCompanyName = m_parts.m_document.settings().companyName();
    CNewProjectDialog dialog(request, false, m_parts.m_commands.environment(), m_parts.m_dialogs,
                             m_parts.m_pParent);
    dialog.setStore([&](CNewProjectRequest& wanted) {
        if (!checkNewProject(wanted, true, m_parts.m_dialogs))
            return false;
        beforeIt();
        return m_parts.m_commands.newProject(wanted);
    });
    return dialog.exec() == QDialog::Accepted;
}

bool CProjectDialogs::editProject()
{
    if (!m_parts.m_commands.project()) {
        m_parts.m_dialogs.showMessage("Open an existing Project first!");
        return false;
    }
    const CProjectEnvironment here = m_parts.m_commands.environment();
    CNewProjectDialog dialog(requestOfProject(*m_parts.m_commands.project(), here, m_parts.m_dialogs), true,
                             here, m_parts.m_dialogs, m_parts.m_pParent);
    dialog.setStore([this](CNewProjectRequest& wanted) {
        return m_parts.m_commands.editProject(wanted, m_parts.m_showStrip);
    });
    return dialog.exec() == QDialog::Accepted;
}

bool CProjectDialogs::saveAs()
{
    if (!m_parts.m_commands.project()) {
        m_parts.m_dialogs.showMessage(PROJECT_NEEDED);
        return false;
    }
    CSaveAsDialog dialog(*m_parts.m_commands.project(), m_parts.m_dialogs, m_parts.m_pParent);
    dialog.setStore(
        [this](const CProjectCopyRequest& request) { return m_parts.m_commands.saveAs(request); });
    return dialog.exec() == QDialog::Accepted;
}

bool CProjectDialogs::userVariables()
{
    CUserVariableDialog dialog(*m_parts.m_commands.project(), m_parts.m_dialogs, m_parts.m_pParent);
    dialog.setAdd(
        [this](const CUserVariableRequest& request) { return m_parts.m_commands.addUserVariable(request); });
    dialog.setRemove(
        [this](const std::string& sName) { return m_parts.m_commands.removeUserVariable(sName); });
    return dialog.exec() == QDialog::Accepted;
}

// They belong to a project and act on its plug-in.
bool CProjectDialogs::hasPresets()
{
    const bool bProject = m_parts.m_commands.project() != nullptr;
    const bool bPlugIn = bProject && m_parts.m_document.plugInLoader().current();
    if (!bPlugIn)
        m_parts.m_dialogs.showMessage(bProject ? "Load the project's plug-in first." : PROJECT_NEEDED);
    return bPlugIn;
}

QString CProjectDialogs::savePreset(const QString& sSelected)
{
    if (!hasPresets())
        return {};
    QString sSaved;
    CSavePresetDialog dialog(sSelected, m_parts.m_dialogs, m_parts.m_pParent);
    dialog.setStore([&](const std::string& sName) {
        sSaved = m_parts.m_commands.savePreset(sName) ? qs(sName) : QString();
        return !sSaved.isEmpty();
    });
    return dialog.exec() == QDialog::Accepted ? sSaved : QString();
}

bool CProjectDialogs::deletePreset(const QString& sSelected)
{
    return hasPresets() && m_parts.m_commands.deletePreset(utf8(sSelected));
}

bool CProjectDialogs::offerRecovery(const std::filesystem::path& project)
{
    const auto recovery = findRecovery(project, m_parts.m_document.settingsFile().parent_path());
    if (!recovery)
        return true;
    CRecoveryDialog dialog(*recovery, m_parts.m_pParent);
    switch (dialog.ask()) {
    case ERecoveryAnswer::Recover:
        return recover(*recovery, m_parts.m_dialogs);
    case ERecoveryAnswer::KeepSaved:
        return discard(*recovery, m_parts.m_dialogs);
    case ERecoveryAnswer::Later:
        break;
    }
    return false;
}

bool CProjectDialogs::storePreferences(const CPreferencesEdit& edit)
{
    std::string sError;
    const bool bDone = writePreferences(edit, m_parts.m_document, m_parts.m_profile, sError);
    if (!bDone)
        m_parts.m_dialogs.showMessage(sError);
    return bDone;
}

} // namespace velmora
