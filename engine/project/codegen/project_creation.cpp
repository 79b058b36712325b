#include "project/codegen/project_creation.h"

#include "base/user_dialogs.h"
#include "project/codegen/added_files.h"
#include "project/codegen/base_files.h"
#include "project/codegen/library_files.h"
#include "project/codegen/linker_settings.h"
#include "project/codegen/linux_project_files.h"
#include "project/codegen/new_project_request.h"
#include "project/codegen/plugin_sources.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/project_update.h"
#include "project/codegen/solution_file.h"
#include "project/codegen/visual_studio_files.h"
#include "project/dsp_project.h"
#include "project/project_file.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr const char* CREATION_FAILED =
    "Could not create/copy project files. Check directory/disc structure'";

bool makeFolder(const std::filesystem::path& folder, const char* pMessage, IUserDialogs& dialogs)
{
    std::error_code error;
    if (std::filesystem::create_directory(folder, error))
        return true;
    dialogs.showMessage(pMessage);
    return false;
}

std::filesystem::path solutionPath(const CNewProjectRequest& request)
{
    return request.m_bCreateNewSolution ? request.folder() / (request.m_sProjectName + ".sln")
                                        : std::filesystem::absolute(request.m_existingSolution);
}

bool provideSolution(const CNewProjectRequest& request, const CProjectEnvironment& environment,
                     IUserDialogs& dialogs, std::vector<std::filesystem::path>& changed)
{
    if (request.m_bCreateNewSolution)
        return writeDefaultSolution(request.folder(), request.m_sProjectName, environment, dialogs, changed);
    CEditedFile solution(request.m_existingSolution, dialogs);
    return addToSolution(solution.text(), request.m_sProjectName, std::filesystem::absolute(request.folder()),
                         dialogs) &&
           solution.save(changed);
}

} // namespace

bool createProjectFiles(const CNewProjectRequest& request, const CProjectEnvironment& environment,
                        IUserDialogs& dialogs)
{
    const auto folder = request.folder();
    std::error_code error;
    if (!std::filesystem::is_directory(environment.m_baseClassFolder, error)) {
        dialogs.showMessage(
            "The program's folder BaseClassFiles was not found. Please install Velmora again.");
        return false;
    }
    if (!makeFolder(folder, "Could not create project folder. Check permissions.", dialogs) ||
        !makeFolder(folder / "Presets", "Could not create Presets folder. Check permissions.", dialogs))
        return false;

    std::vector<std::filesystem::path> changed;
    copyBaseFiles(baseFileNames(), environment, folder, changed);
    if (request.m_bVSTCompatible)
        copyVSTFiles(environment, folder, request.m_sProjectName, changed);
    const CAddedFiles added = copyAddedFiles(request, folder, environment, dialogs, changed);

    const CLibraryFiles library{folder, request.m_sProjectName, request.m_sHeaderFile, request.m_sCompanyName,
                                request.m_bVSTCompatible};
    return writeLibraryFiles(library, environment, dialogs, changed) &&
           writePlugInSources(request, added.m_includes, environment, dialogs, changed) &&
           writeVisualStudioFiles(request, added.m_files, environment, dialogs, changed) &&
           provideSolution(request, environment, dialogs, changed) &&
           provideLinuxProjectFiles(folder, request.m_sProjectName, environment, dialogs, changed) &&
           listFiles(folder, request.m_sProjectName, added.m_files, dialogs, changed);
}

void fillProject(CDSPProject& project, const CNewProjectRequest& request,
                 const CProjectEnvironment& environment)
{
    const auto folder = std::filesystem::absolute(request.folder()).lexically_normal();
    project.m_sSolutionFile = solutionPath(request).lexically_normal().string();
    project.m_sProjectFolder = folder.string();
    project.m_sProjectFile = (folder / (request.m_sProjectName + ".prj")).string();
    project.m_sProjectName = request.m_sProjectName;
    project.m_sHeaderFile = request.m_sHeaderFile;
    project.m_sSourceFile = request.m_sSourceFile;
    fillProjectSettings(project, request);
    std::fill(std::begin(project.m_uControlTheme), std::end(project.m_uControlTheme), 0U);
    project.m_uPlugInEx[0] = environment.runningVersion();
    project.m_uPlugInEx[1] = VSTGUI_LAYER_VERSION;
}

void fillProjectSettings(CDSPProject& project, const CNewProjectRequest& request)
{
    project.m_sCompanyName = request.m_sCompanyName;
    project.m_sCompanyCode = request.m_sCompanyCode;
    project.m_sPlugInCode = request.m_sPlugInCode;
    project.m_sVSTPlugInCode = request.m_sVSTPlugInCode;
    project.m_bWriteAUWrapper = request.m_bWriteAUWrapper;
    project.m_bCarbonGUI = request.m_bCarbonGUI;
    project.m_bCocoaGUI = request.m_bCocoaGUI;
    project.m_bWriteVSTWrapper = request.m_bWriteVSTWrapper;
    project.m_bVSTCompatible = request.m_bVSTCompatible;
    project.m_bUseCustomVSTGUI = request.m_bUseCustomVSTGUI;
    project.m_bUserCustomGUI = request.m_bUserCustomGUI;
    project.m_bOutputOnlyPlugIn = request.m_bOutputOnlyPlugIn;
    project.m_bSidechainEnabled = request.m_bSidechainEnabled;
    project.m_uPlugInEx[4] = request.m_bSidechainEnabled ? 1U : 0U;
    project.m_fPlugInEx[0] = request.latency();
}

std::unique_ptr<CDSPProject> createProject(const CNewProjectRequest& request,
                                           const CProjectEnvironment& environment, IUserDialogs& dialogs)
{
    if (!createProjectFiles(request, environment, dialogs)) {
        dialogs.showMessage(CREATION_FAILED);
        return nullptr;
    }
    auto pProject = std::make_unique<CDSPProject>();
    fillProject(*pProject, request, environment);
    if (!saveProject(*pProject, pProject->m_sProjectFile, dialogs))
        return nullptr;
    std::vector<std::filesystem::path> changed;
    updateLinkerSettings(*pProject, environment, dialogs, changed);
    return pProject;
}

} // namespace velmora
