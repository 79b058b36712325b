#include "project/codegen/project_editing.h"

#include "base/patience.h"
#include "base/text.h"
#include "base/user_dialogs.h"
#include "project/codegen/added_files.h"
#include "project/codegen/base_files.h"
#include "project/codegen/compiler_access.h"
#include "project/codegen/library_files.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/plugin_sources.h"
#include "project/codegen/project_creation.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_history.h"
#include "project/codegen/project_text.h"
#include "project/codegen/text_surgery.h"
#include "project/dsp_project.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr const char* HISTORY_REASON = "Edit Project";
constexpr std::chrono::milliseconds SAVE_ALL_DELAY{1500};

bool holds(std::string_view sText, std::string_view sSought)
{
    return sText.find(sSought) != sText.npos;
}

std::string textOf(const std::filesystem::path& path, IUserDialogs& dialogs)
{
    return CEditedFile(path, dialogs).text();
}

// Changes one of the user's sources, and keeps what it was.
template <typename TChange>
bool editSource(const std::filesystem::path& path, IUserDialogs& dialogs,
                std::vector<std::filesystem::path>& changed, TChange change)
{
    CEditedFile file(path, dialogs);
    if (!file.check() || !change(file))
        return false;
    if (!file.isChanged())
        return true;
    CProjectHistory history(path.parent_path());
    if (history.keep(path, HISTORY_REASON))
        return file.save(changed);
    dialogs.showMessage(history.error());
    return false;
}

// What is chosen and not there yet.
void leaveNewOnes(CNewProjectRequest& request, const CNewProjectRequest& present)
{
    const auto erasePresent = [](auto& chosen, const auto& there) {
        std::erase_if(chosen, [&](const auto& one) { return std::ranges::find(there, one) != there.end(); });
    };
    erasePresent(request.m_modules, present.m_modules);
    erasePresent(request.m_stockObjects, present.m_stockObjects);
    request.m_bIncludeFFT &= !present.m_bIncludeFFT;
    request.m_bIncludeReverbObjects &= !present.m_bIncludeReverbObjects;
}

} // namespace

CNewProjectRequest requestOfProject(const CDSPProject& project, const CProjectEnvironment& environment,
                                    IUserDialogs& dialogs)
{
    CNewProjectRequest request;
    request.m_parentFolder = project.folder().parent_path();
    request.m_sProjectName = project.m_sProjectName;
    request.m_sHeaderFile = project.m_sHeaderFile;
    request.m_sSourceFile = project.m_sSourceFile;
    request.m_bCreateNewSolution = false;
    request.m_existingSolution = project.m_sSolutionFile;
    request.m_sCompanyName = project.m_sCompanyName;
    request.m_sLatency = shortestDecimal(static_cast<double>(project.m_fPlugInEx[0]));
    request.m_sCompanyCode = project.m_sCompanyCode;
    request.m_sPlugInCode = project.m_sPlugInCode;
    request.m_sVSTPlugInCode = project.m_sVSTPlugInCode;
    request.m_bOutputOnlyPlugIn = project.m_bOutputOnlyPlugIn;
    request.m_bSidechainEnabled = project.m_bSidechainEnabled;
    request.m_bWriteAUWrapper = project.m_bWriteAUWrapper;
    request.m_bCarbonGUI = project.m_bCarbonGUI;
    request.m_bCocoaGUI = project.m_bCocoaGUI;
    request.m_bWriteVSTWrapper = project.m_bWriteVSTWrapper;

    const std::string sSource = textOf(project.sourcePath(), dialogs);
    const std::string sHeader = textOf(project.headerPath(), dialogs);
    request.m_bUserCustomGUI = holds(sSource, "m_bUserCustomGUI = true");
    request.m_bUseCustomVSTGUI = holds(sSource, "m_bUseCustomVSTGUI = true");
    request.m_bVSTCompatible =
        holds(textOf(project.folder() / "VelmoraDLL.cpp", dialogs), VST_COMPATIBILITY_ENABLED);
    request.m_bIncludeFFT = fileExists(project.folder() / "FFT.h");
    request.m_bIncludeReverbObjects = std::ranges::all_of(reverbObjectNames(), [&](std::string_view sName) {
        return fileExists(project.folder() / (std::string(sName) + ".h"));
    });
    for (const std::string& sName : stockObjectNames(environment))
        if (includesFile(sHeader, sName + ".h"))
            request.m_stockObjects.push_back(sName);
    for (const auto& module : existingPlugIns(environment))
        if (includesFile(sHeader, module.stem().string() + ".h"))
            request.m_modules.push_back(module);
    return request;
}

bool editProject(CDSPProject& project, const CNewProjectRequest& request,
                 const CProjectEnvironment& environment, ICompilerAccess* pCompiler, IUserDialogs& dialogs,
                 std::vector<std::filesystem::path>& changed)
{
    if (pCompiler) {
        pCompiler->saveAll();
        if (!waitPatiently(SAVE_ALL_DELAY, "Waiting until the compiler has saved its files."))
            return false;
    }
    CNewProjectRequest own = request; // name and place are locked
    own.m_parentFolder = project.folder().parent_path();
    own.m_sProjectName = project.m_sProjectName;
    own.m_sHeaderFile = project.m_sHeaderFile;
    own.m_sSourceFile = project.m_sSourceFile;
    leaveNewOnes(own, requestOfProject(project, environment, dialogs));

    const CAddedFiles added = copyAddedFiles(own, project.folder(), environment, dialogs, changed);
    const bool bDone = editSource(project.headerPath(), dialogs, changed,
                                  [&](CEditedFile& file) {
                                      return addIncludes(file.text(), added.m_includes) ||
                                             file.critical("#include \"plugin.h\"").has_value();
                                  }) &&
                       listFiles(project.folder(), project.m_sProjectName, added.m_files, dialogs, changed) &&
                       editSource(project.sourcePath(), dialogs, changed, [&](CEditedFile& file) {
                           switchFlags(file.text(), own);
                           return true;
                       });
    if (bDone)
        fillProjectSettings(project, own);
    return bDone;
}

} // namespace velmora
