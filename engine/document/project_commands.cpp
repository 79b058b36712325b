#include "document/project_commands.h"

#include "base/patience.h"
#include "base/user_dialogs.h"
#include "document/tonbox_doc.h"
#include "host/guarded_call.h"
#include "host/plugin_call_marker.h"
#include "host/user_dsp_filter.h"
#include "project/codegen/code_central_services.h"
#include "project/codegen/code_synchronisation.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_copy.h"
#include "project/codegen/project_creation.h"
#include "project/codegen/project_editing.h"
#include "project/codegen/project_opening.h"
#include "project/compiler/build_watch.h"
#include "project/compiler/compiler_table.h"
#include "project/dsp_project.h"
#include "project/preset_file.h"
#include "project/preset_folder.h"
#include "project/project_file.h"

#include <utility>

namespace velmora {

namespace {

constexpr const char* BUSY = "Wait until what is under way has ended.";

CIdeSettings ideSettings(const CSettings& settings)
{
    CIdeSettings result;
    result.m_codeBlocksFolder = settings.codeBlocksFolder();
    result.m_bStartMinimized = settings.boolValue(settingLine("m_bStartCompilerMinimized"));
    result.m_bCloseWithProject = settings.boolValue(settingLine("m_bCloseCompilerWithProject"));
    return result;
}

} // namespace

CProjectCommands::CProjectCommands(CTonboxDoc& document, IUserDialogs& dialogs,
                                   std::filesystem::path baseClassFolder)
    : m_document(document), m_dialogs(dialogs), m_baseClassFolder(std::move(baseClassFolder)),
      m_compilers(dialogs, document.plugInFolder(), document.cacheFolder(), ideSettings(document.settings()),
                  static_cast<int>(document.settings().compilerId()))
{
}

CProjectCommands::~CProjectCommands() = default;

CDSPProject* CProjectCommands::project() const
{
    return m_document.project();
}

std::filesystem::path CProjectCommands::plugInsFolder() const
{
    return m_document.plugInFolder();
}

std::filesystem::path CProjectCommands::builtLibrary() const
{
    return project() ? builtLibraryPath(*project(), plugInsFolder()) : std::filesystem::path();
}

CProjectEnvironment CProjectCommands::environment() const
{
    CProjectEnvironment result = currentProjectEnvironment(findCompiler(m_compilers.chosenId())->m_eFamily);
    result.m_baseClassFolder = m_baseClassFolder;
    result.m_plugInsFolder = plugInsFolder();
    result.m_projectsFolder = m_document.settings().defaultProjectFolder();
    return result;
}

ICompilerAccess* CProjectCommands::editorAccess()
{
    return m_bEditsThroughCompiler && mayControlCompiler() ? &toolchain() : nullptr;
}

void CProjectCommands::applySettings()
{
    m_compilers.setIdeSettings(ideSettings(m_document.settings()));
}

bool CProjectCommands::mayControlCompiler() const
{
    return m_document.settings().boolValue(settingLine("m_bEnableCompilerControl"));
}

bool CProjectCommands::isBusy() const
{
    return m_bRebuilding || isWaiting();
}

// A fresh list of changed files for the command that begins, if it may.
bool CProjectCommands::begin()
{
    if (isBusy()) {
        m_dialogs.note(BUSY);
        return false;
    }
    m_changedFiles.clear();
    return true;
}

bool CProjectCommands::requireProject(const char* pMessage)
{
    if (!begin())
        return false;
    if (!project())
        m_dialogs.showMessage(pMessage);
    return project() != nullptr;
}

bool CProjectCommands::requirePlugIn()
{
    if (m_document.plugInLoader().current())
        return true;
    m_dialogs.showMessage("Load the project's plug-in first.");
    return false;
}

// ------------------------------------------------------------------------------------------------
// Projects
// ------------------------------------------------------------------------------------------------

void CProjectCommands::setHoldsProject(bool bOn)
{
    m_bHoldsProject = bOn;
    if (!bOn)
        m_lock.letGo();
    else if (project() && !m_lock.isHeld() && !m_lock.take(project()->m_sProjectFile))
        m_dialogs.showMessage(m_lock.reason());
}

// Keeps the project from others, in a lock of its own as long as it is not the open one. False after a
// message.
bool CProjectCommands::lockProject(const std::filesystem::path& file, CProjectLock& lock)
{
    if (!m_bHoldsProject || m_lock.holds(file) || lock.take(file))
        return true;
    m_dialogs.showMessage(lock.reason());
    return false;
}

// What was changed and not saved is saved before another project takes this one's place.
void CProjectCommands::leaveProject()
{
    if (project() && m_document.autosave().isChanged())
        static_cast<void>(saveOpenProject());
}

void CProjectCommands::takeProject(std::unique_ptr<CDSPProject> pProject, CProjectLock lock)
{
    m_keptValues = {};
    m_edits.clear();
    m_document.setProject(std::move(pProject));
    if (lock.isHeld() || !project())
        m_lock = std::move(lock);
}

bool CProjectCommands::closeProject()
{
    if (!begin())
        return false;
    leaveProject();
    takeOutPlugIn();
    takeProject(nullptr, {});
    return true;
}

bool CProjectCommands::save()
{
    return requireProject(PROJECT_NEEDED) && saveOpenProject();
}

bool CProjectCommands::newProject(const CNewProjectRequest& request)
{
    if (!begin())
        return false;
    CNewProjectRequest checked = request;
    const CProjectEnvironment here = environment();
    if (!checkNewProject(checked, true, m_dialogs) ||
        (checked.m_bVSTCompatible && !checkVSTFiles(here, m_dialogs)))
        return false;
    auto pProject = createProject(checked, here, m_dialogs);
    if (!pProject)
        return false;
    leaveProject();
    takeOutPlugIn();
    CProjectLock lock;
    static_cast<void>(lockProject(pProject->m_sProjectFile, lock)); // a new folder is nobody else's
    takeProject(std::move(pProject), std::move(lock));
    describeForEditors();
    if (ICompilerAccess* pEditor = editorAccess())
        static_cast<void>(pEditor->makeAvailable(*project()));
    return true;
}

bool CProjectCommands::editProject(const CNewProjectRequest& request, const CStripTexts& showStrip)
{
    if (!requireProject("Open an existing Project first!"))
        return false;
    CNewProjectRequest checked = request;
    const CProjectEnvironment here = environment();
    if (!checkNewProject(checked, false, m_dialogs))
        return false;
    if (showStrip)
        showStrip("Modifying", "Project...");
    std::vector<std::filesystem::path> changed;
    const bool bEdited =
        velmora::editProject(*project(), checked, here, editorAccess(), m_dialogs, changed) && writeCode();
    m_changedFiles.insert(m_changedFiles.begin(), changed.begin(), changed.end());
    if (bEdited)
        m_dialogs.showMessage(EDIT_PROJECT_DONE);
    return bEdited;
}

bool CProjectCommands::loadProject(const std::filesystem::path& file)
{
    CProjectLock lock;
    if (!begin() || !lockProject(file, lock))
        return false;
    leaveProject();
    auto pProject = std::make_unique<CDSPProject>();
    if (!velmora::loadProject(*pProject, file, m_dialogs))
        return false;
    // The file may have been moved or copied; its files lie beside it.
    const auto folder = std::filesystem::absolute(file).parent_path();
    pProject->m_sProjectFolder = folder.string();
    pProject->m_sProjectFile = std::filesystem::absolute(file).string();
    takeProject(std::move(pProject), std::move(lock));
    return true;
}

bool CProjectCommands::openProject(const std::filesystem::path& file, const std::function<bool()>& prepare)
{
    CProjectLock lock;
    if (!begin() || !lockProject(file, lock))
        return false;
    leaveProject();
    if (prepare && !prepare())
        return false;
    COpenedProject opened = openProjectFile(file, environment(), m_dialogs);
    m_changedFiles = std::move(opened.m_changed);
    if (!opened.m_pProject)
        return false;
    takeOutPlugIn();
    takeProject(std::move(opened.m_pProject), std::move(lock));
    describeForEditors();
    if (ICompilerAccess* pEditor = editorAccess())
        static_cast<void>(pEditor->makeAvailable(*project()));
    return true;
}

bool CProjectCommands::saveAs(const CProjectCopyRequest& request)
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    const auto copy = copyProject(*project(), request, environment(), m_dialogs);
    if (copy)
        m_changedFiles = {*copy};
    return copy.has_value();
}

bool CProjectCommands::synchronizeCode(const CStripTexts& showStrip,
                                       const std::function<bool()>& rebuildFirst)
{
    if (!requireProject(BUILT_PROJECT_NEEDED))
        return false;
    if (!m_document.plugInLoader().current() && !loadBuiltPlugIn()) {
        if (!m_dialogs.askYesNo(SYNCHRONISE_LOAD_FAILED))
            return false;
        return rebuildFirst ? rebuildFirst() : rebuild({}).m_bLoaded;
    }
    if (showStrip)
        showStrip("Copying", "Files...");
    auto copied = synchroniseFiles(*project(), environment());
    bool bDone = writeCode();
    copied.insert(copied.end(), m_changedFiles.begin(), m_changedFiles.end());
    resetJoystick();
    CCodeCentralServices code(editorAccess(), m_dialogs);
    bDone = bDone && code.updateProcessSignatures(project());
    copied.insert(copied.end(), code.written().begin(), code.written().end());
    m_changedFiles = std::move(copied);
    if (bDone)
        m_dialogs.showMessage(SYNCHRONISE_DONE);
    takeOutPlugIn();
    return bDone;
}

// To its centre, where all four corners have the same share. The plug-in hears of it like of a move.
void CProjectCommands::resetJoystick()
{
    constexpr float CORNER = 0.25F;
    constexpr float MIDDLE = 0.5F;
    if (m_onJoystickReset)
        m_onJoystickReset();
    const CLoadedPlugIn* pLoaded = m_document.plugInLoader().current();
    if (!pLoaded)
        return;
    const CPlugInCallMarker marker(pLoaded->filter(), EPlugInCall::userInterfaceChange);
    const auto thrown = thrownBy(
        [&] { pLoaded->plugIn()->joystickControlChange(CORNER, CORNER, CORNER, CORNER, MIDDLE, MIDDLE); });
    if (thrown)
        m_dialogs.note("The plug-in threw an exception in joystickControlChange(): " + *thrown);
}

// ------------------------------------------------------------------------------------------------
// Writing
// ------------------------------------------------------------------------------------------------

bool CProjectCommands::writeCode()
{
    return requireProject(PROJECT_NEEDED) && writeRegions(editorAccess());
}

// The project is saved also when the sources could not be written, so that the edit itself is not lost.
bool CProjectCommands::writeRegions(ICompilerAccess* pEditor)
{
    CCodeCentralServices code(pEditor, m_dialogs);
    const bool bWritten = code.writeCodeRegions(project());
    m_changedFiles = code.written();
    return saveOpenProject() && bWritten;
}

bool CProjectCommands::saveOpenProject()
{
    const bool bSaved = saveProject(*project(), project()->m_sProjectFile, m_dialogs);
    m_document.projectChanged(bSaved);
    return bSaved;
}

// ------------------------------------------------------------------------------------------------
// Presets
// ------------------------------------------------------------------------------------------------

bool CProjectCommands::savePreset(const std::string& sName)
{
    if (!requireProject(PROJECT_NEEDED) || !requirePlugIn())
        return false;
    CPresetFolder presets(project()->folder());
    presets.loadPresetNames();
    return presets.save(sName, *m_document.plugInLoader().current()->plugIn(), m_dialogs) && writeCode();
}

bool CProjectCommands::loadPreset(const std::string& sName)
{
    if (!requireProject(PROJECT_NEEDED) || !requirePlugIn())
        return false;
    CPresetFolder presets(project()->folder());
    presets.loadPresetNames();
    const CLoadedPlugIn& loaded = *m_document.plugInLoader().current();
    if (!presets.load(sName, *loaded.plugIn(), m_dialogs))
        return false;
    for (const auto& pControl : loaded.filter().m_ControlList)
        pControl->updateFromVariable();
    return true;
}

bool CProjectCommands::deletePreset(const std::string& sName)
{
    if (!requireProject(PROJECT_NEEDED))
        return false;
    CPresetFolder presets(project()->folder());
    presets.loadPresetNames();
    return presets.remove(sName, m_dialogs) && writeCode();
}

} // namespace velmora
