#include "document/project_commands.h"

#include "base/progress.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "document/tonbox_doc.h"
#include "host/plugin_library.h"
#include "host/plugin_library_image.h"
#include "host/user_dsp_filter.h"
#include "project/codegen/code_central_services.h"
#include "project/codegen/code_synchronisation.h"
#include "project/codegen/code_text.h"
#include "project/codegen/control_import.h"
#include "project/codegen/linux_project_files.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/project_copy.h"
#include "project/codegen/project_creation.h"
#include "project/codegen/project_editing.h"
#include "project/codegen/project_history.h"
#include "project/codegen/project_opening.h"
#include "project/codegen/text_surgery.h"
#include "project/codegen/variable_rename.h"
#include "project/compiler/build_watch.h"
#include "project/compiler/compiler_table.h"
#include "project/control_list.h"
#include "project/control_properties.h"
#include "project/control_slots.h"
#include "project/dsp_project.h"
#include "project/preset_file.h"
#include "project/preset_folder.h"
#include "project/project_file.h"
#include "project/user_variables.h"

#include <chrono>
#include <utility>

namespace velmora {

namespace {

constexpr const char* NO_PROJECT = "Open or Create a new Project first!";
constexpr const char* NO_BUILT_PROJECT = "Open an existing, compiled Project first!";
constexpr const char* COMPILER_NOT_FOUND =
    "Compiler not found - it is either loading up now or you closed it. Wait or reopen it.";

constexpr double START_DEADLINE_SECONDS = 60.0; // for a compiler's window to appear
constexpr double START_POLL_SECONDS = 0.25;

class CStopwatch
{
  public:
    [[nodiscard]] double seconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }

  private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

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
    return m_bEditsThroughCompiler ? &toolchain() : nullptr;
}

// A fresh list of changed files for the command that begins.
bool CProjectCommands::requireProject(const char* pMessage)
{
    m_changedFiles.clear();
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

bool CProjectCommands::newProject(const CNewProjectRequest& request)
{
    m_changedFiles.clear();
    CNewProjectRequest checked = request;
    const CProjectEnvironment here = environment();
    if (!checkNewProject(checked, true, m_dialogs) ||
        (checked.m_bVSTCompatible && !checkVSTFiles(here, m_dialogs)))
        return false;
    auto pProject = createProject(checked, here, m_dialogs);
    if (!pProject)
        return false;
    unloadPlugIn();
    m_keptValues = {};
    m_document.setProject(std::move(pProject));
    describeForEditors();
    if (ICompilerAccess* pEditor = editorAccess())
        static_cast<void>(pEditor->makeAvailable(*project()));
    return true;
}

bool CProjectCommands::editProject(const CNewProjectRequest& request)
{
    if (!requireProject("Open an existing Project first!"))
        return false;
    CNewProjectRequest checked = request;
    const CProjectEnvironment here = environment();
    if (!checkNewProject(checked, false, m_dialogs))
        return false;
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
    m_changedFiles.clear();
    auto pProject = std::make_unique<CDSPProject>();
    if (!velmora::loadProject(*pProject, file, m_dialogs))
        return false;
    // The file may have been moved or copied; its files lie beside it.
    const auto folder = std::filesystem::absolute(file).parent_path();
    pProject->m_sProjectFolder = folder.string();
    pProject->m_sProjectFile = std::filesystem::absolute(file).string();
    m_keptValues = {};
    m_document.setProject(std::move(pProject));
    return true;
}

bool CProjectCommands::openProject(const std::filesystem::path& file)
{
    m_changedFiles.clear();
    COpenedProject opened = openProjectFile(file, environment(), m_dialogs);
    m_changedFiles = std::move(opened.m_changed);
    if (!opened.m_pProject)
        return false;
    unloadPlugIn();
    m_keptValues = {};
    m_document.setProject(std::move(opened.m_pProject));
    describeForEditors();
    if (ICompilerAccess* pEditor = editorAccess())
        static_cast<void>(pEditor->makeAvailable(*project()));
    return true;
}

bool CProjectCommands::saveAs(const CProjectCopyRequest& request)
{
    if (!requireProject(NO_PROJECT))
        return false;
    const auto copy = copyProject(*project(), request, environment(), m_dialogs);
    if (copy)
        m_changedFiles = {*copy};
    return copy.has_value();
}

bool CProjectCommands::clearProject()
{
    if (!requireProject(NO_PROJECT))
        return false;
    clearControls(*project());
    return writeCode();
}

bool CProjectCommands::importControls(const std::filesystem::path& otherProject)
{
    if (!requireProject(NO_PROJECT) || !m_dialogs.askYesNo(IMPORT_QUESTION))
        return false;
    unloadPlugIn();
    return velmora::importControls(*project(), otherProject, m_dialogs) && writeCode();
}

bool CProjectCommands::synchronizeCode()
{
    if (!requireProject(NO_BUILT_PROJECT))
        return false;
    if (!m_document.plugInLoader().current() && !loadBuiltPlugIn()) {
        if (m_dialogs.askYesNo(SYNCHRONISE_LOAD_FAILED))
            return rebuild({}).m_bLoaded;
        return false;
    }
    auto copied = synchroniseFiles(*project(), environment());
    bool bDone = writeCode();
    copied.insert(copied.end(), m_changedFiles.begin(), m_changedFiles.end());
    CCodeCentralServices code(editorAccess(), m_dialogs);
    bDone = bDone && code.updateProcessSignatures(project());
    copied.insert(copied.end(), code.written().begin(), code.written().end());
    m_changedFiles = std::move(copied);
    if (bDone)
        m_dialogs.showMessage(SYNCHRONISE_DONE);
    unloadPlugIn();
    return bDone;
}

// ------------------------------------------------------------------------------------------------
// Controls
// ------------------------------------------------------------------------------------------------

bool CProjectCommands::acceptControl(const CControlEdit& edit, bool bNew)
{
    if (!requireProject(NO_PROJECT))
        return false;
    const UINT uId = edit.m_record.uControlId;
    const CUICtrl* pExisting = findControl(project()->m_UIControlList, uId);
    if (bNew == (pExisting != nullptr)) {
        m_dialogs.showMessage(bNew ? formatted("Slot %u is taken by the control \"%s\". Edit or remove it.",
                                               uId, pExisting->cControlName)
                                   : formatted("There is no control with the id %u.", uId));
        return false;
    }
    const CControlCheck check = checkControl(*project(), edit, pExisting);
    if (!confirmControl(check, m_dialogs))
        return false;
    if (pExisting) {
        const std::string sQuestion = renameQuestion(*pExisting, check.m_record);
        const bool bMeter = pExisting->uControlType == FILTER_CONTROL_LED_METER;
        const std::string sOld =
            bMeter ? meterVariableIdentifier(*pExisting) : variableIdentifier(*pExisting);
        const std::string sNew = bMeter ? check.m_record.cMeterVariableName : check.m_record.cVariableName;
        if (!sQuestion.empty() && m_dialogs.askYesNo(sQuestion) && !renameVariable(sOld, sNew))
            return false;
    }
    storeControl(*project(), check);
    return writeCode();
}

bool CProjectCommands::removeControl(unsigned uControlId)
{
    if (!requireProject(NO_PROJECT))
        return false;
    if (!findControlSlots(uControlId) || !project()->m_UIControlList.remove(uControlId)) {
        m_dialogs.showMessage(formatted("There is no control with the id %u.", uControlId));
        return false;
    }
    return writeCode();
}

// In the sources of the user; their earlier texts go into the history.
bool CProjectCommands::renameVariable(const std::string& sFrom, const std::string& sTo)
{
    if (ICompilerAccess* pEditor = editorAccess())
        pEditor->saveAll();
    CProjectHistory history(project()->folder());
    const std::string sReason = "Rename " + sFrom + " to " + sTo;
    for (const auto& file : {project()->headerPath(), project()->sourcePath()}) {
        std::string sText;
        constexpr int RETRIES = 20;
        if (!readFileToString(file, sText, true, RETRIES, true)) {
            m_dialogs.showMessage("The file " + file.string() +
                                  " can not be read. Nothing was renamed in it.");
            return false;
        }
        if (renameIdentifier(sText, sFrom, sTo) == 0)
            continue;
        if (!history.keep(file, sReason) || !writeStringToFile(file, sText)) {
            m_dialogs.showMessage("The file " + file.string() + " can not be changed: " +
                                  (history.error().empty() ? "it can not be written" : history.error()) +
                                  ".");
            return false;
        }
    }
    return true;
}

bool CProjectCommands::addUserVariable(const CUserVariableRequest& request)
{
    if (!requireProject(NO_PROJECT))
        return false;
    const std::string sRefusal = checkUserVariable(*project(), request);
    if (!sRefusal.empty()) {
        m_dialogs.showMessage(sRefusal);
        return false;
    }
    project()->m_UIControlList.append(makeUserVariable(*project(), request));
    m_dialogs.note(USER_VARIABLE_ADDED);
    return writeCode();
}

bool CProjectCommands::removeUserVariable(std::string_view sName)
{
    if (!requireProject(NO_PROJECT))
        return false;
    for (const CUICtrl* pControl : controlsOf(project()->m_UIControlList)) {
        if (pControl->uControlId < FIRST_USER_VARIABLE_ID || sName != pControl->cVariableName)
            continue;
        project()->m_UIControlList.remove(pControl->uControlId);
        m_dialogs.note(USER_VARIABLE_REMOVED);
        return writeCode();
    }
    m_dialogs.showMessage("There is no user-variable named " + std::string(sName) + ".");
    return false;
}

bool CProjectCommands::writeCode()
{
    return requireProject(NO_PROJECT) && writeRegions(editorAccess());
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
// Rebuild and reload
// ------------------------------------------------------------------------------------------------

CRebuildResult CProjectCommands::rebuild(const CRebuildOptions& options)
{
    CRebuildResult result;
    if (!prepareBuild(result, options))
        return result;
    result.m_build = toolchain().waitForBuild(options.m_dDeadlineSeconds, options.m_pProgress);
    if (result.m_build.m_eState == EBuildState::succeeded && options.m_bLoad)
        loadResult(result, options);
    return result;
}

// A compiler that was just started takes seconds until its window is there.
bool CProjectCommands::waitForCompiler(CRebuildResult& result, const CRebuildOptions& options)
{
    IToolchain& compiler = toolchain();
    for (double dWaited = 0.0; !compiler.waitForWindow(*project(), START_POLL_SECONDS);
         dWaited += START_POLL_SECONDS) {
        const bool bGoOn = !options.m_pProgress || options.m_pProgress->report(0.0);
        const bool bGone = compiler.state(*project()) == ECompilerState::notFound;
        if (bGoOn && !bGone && dWaited <= START_DEADLINE_SECONDS)
            continue;
        result.m_build.m_bCancelled = !bGoOn;
        const std::string sReason = compiler.lastError();
        m_dialogs.showMessage(sReason.empty() ? COMPILER_NOT_FOUND : sReason);
        return false;
    }
    return true;
}

bool CProjectCommands::prepareBuild(CRebuildResult& result, const CRebuildOptions& options)
{
    if (!requireProject(NO_BUILT_PROJECT))
        return false;
    IToolchain& compiler = toolchain();
    if (const std::string sReason = compiler.unavailableReason(); !sReason.empty()) {
        m_dialogs.showMessage(sReason);
        return false;
    }
    if (compiler.state(*project()) == ECompilerState::notFound) {
        m_dialogs.note(COMPILER_NOT_FOUND);
        if (!compiler.makeAvailable(*project()))
            return false;
    }
    if (!waitForCompiler(result, options))
        return false;
    if (const CLoadedPlugIn* pOld = m_document.plugInLoader().current())
        m_keptValues = CControlValues(*pOld->plugIn());
    if (options.m_bUnloadFirst)
        unloadPlugIn();

    const CStopwatch writing;
    if (!writeRegions(&compiler))
        return false;
    result.m_dWriteSeconds = writing.seconds();

    describeForEditors();
    deleteBuildResults(compiler.compilerId(), *project());
    if (compiler.rebuild(*project()))
        return true;
    const std::string sReason = compiler.lastError();
    m_dialogs.showMessage(sReason.empty() ? "The compiler could not be asked to rebuild." : sReason);
    return false;
}

// What a language server needs to know to read the project's sources.
void CProjectCommands::describeForEditors()
{
    static const std::vector<std::string> FLAGS = {"-std=c++20", "-fPIC", "-fvisibility=hidden", "-Wall",
                                                   "-Wextra"};
    if (writeCompileCommands(project()->folder(), "c++", FLAGS))
        m_changedFiles.push_back(project()->folder() / "compile_commands.json");
}

void CProjectCommands::loadResult(CRebuildResult& result, const CRebuildOptions& options)
{
    const CStopwatch loading;
    CPlugInLoader& loader = m_document.plugInLoader();
    const bool bKeepValues =
        !options.m_bStartFromInitialValues && !m_document.preferences().isOn(START_FROM_INITIAL_VALUES);
    if (!loadLibrary(result.m_build.m_library, bKeepValues ? m_keptValues : CControlValues()))
        return;
    result.m_bLoaded = true;
    result.m_changes = loader.changes();
    result.m_sBuildId = loader.current()->library()->buildId();
    m_keptValues = {};
    if (result.m_sBuildId != buildIdOfFile(result.m_build.m_library))
        m_dialogs.note("The code in memory is not the one in " + result.m_build.m_library.string() +
                       "; it may have been rebuilt meanwhile. Load it again.");
    result.m_dLoadSeconds = loading.seconds();
}

bool CProjectCommands::loadBuiltPlugIn()
{
    if (!requireProject(NO_BUILT_PROJECT))
        return false;
    return loadLibrary(builtLibrary(), {});
}

// The values that the plug-in was made with are the factory preset, whatever it is given afterwards.
bool CProjectCommands::loadLibrary(const std::filesystem::path& library, CControlValues values)
{
    CPlugInLoader& loader = m_document.plugInLoader();
    std::string sFactoryPreset;
    loader.carryOver(std::move(values), [&sFactoryPreset](CPlugIn& plugIn) {
        sFactoryPreset = presetText(plugIn, FACTORY_PRESET_NAME);
    });
    if (!loader.loadPlugin(library, m_document.transport().hasAudioThread()))
        return false;
    static_cast<void>(CPresetFolder(project()->folder()).setUp(sFactoryPreset, m_dialogs));
    return true;
}

void CProjectCommands::unloadPlugIn()
{
    CPlugInLoader& loader = m_document.plugInLoader();
    if (!loader.current())
        return;
    m_keptValues = CControlValues(*loader.current()->plugIn());
    m_document.transport().close();
    loader.unloadPlugin(!loader.isPlugInLoaded()); // one of the list stays there
}

// ------------------------------------------------------------------------------------------------
// Presets
// ------------------------------------------------------------------------------------------------

bool CProjectCommands::savePreset(const std::string& sName)
{
    if (!requireProject(NO_PROJECT) || !requirePlugIn())
        return false;
    CPresetFolder presets(project()->folder());
    presets.loadPresetNames();
    return presets.save(sName, *m_document.plugInLoader().current()->plugIn(), m_dialogs) && writeCode();
}

bool CProjectCommands::loadPreset(const std::string& sName)
{
    if (!requireProject(NO_PROJECT) || !requirePlugIn())
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
    if (!requireProject(NO_PROJECT))
        return false;
    CPresetFolder presets(project()->folder());
    presets.loadPresetNames();
    return presets.remove(sName, m_dialogs) && writeCode();
}

} // namespace velmora
