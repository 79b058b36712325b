#include "project/codegen/linker_settings.h"

#include "base/user_dialogs.h"
#include "project/codegen/base_files.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/text_surgery.h"
#include "project/codegen/vcxproj_text.h"
#include "project/dsp_project.h"

namespace velmora {

namespace {

constexpr CLinkerLibraries LIBRARIES[] = {
    {ECompilerFamily::visualStudio2010, "Port2VST3d_vc10.lib", "Port2VST3d_vc10.lib;base_vc10d.lib",
     "Port2VST3_vc10.lib;base_vc10.lib", "<PlatformToolset>v100"},
    {ECompilerFamily::visualStudio2012, "Port2VST3d_vc11.lib", "Port2VST3d_vc11.lib;base_vc11d.lib",
     "Port2VST3_vc11.lib;base_vc11.lib", "<PlatformToolset>v110"},
    {ECompilerFamily::visualStudio2013, "Port2VST3d_vc12.lib", "Port2VST3d_vc12.lib;base_vc12d.lib",
     "Port2VST3_vc12.lib;base_vc12.lib", "<PlatformToolset>v120"},
    {ECompilerFamily::visualStudio2015, "Port2VST3d_vc14.lib", "Port2VST3d_vc14.lib;base_vc14d.lib",
     "Port2VST3_vc14.lib;base_vc14.lib", "<PlatformToolset>v140"}};

constexpr const char* OTHER_DEPENDENCIES = ";.\\resources\\Port2VST3.res;%(AdditionalDependencies)";

constexpr const char* SETTINGS_UPDATED =
    "Visual Studio Linker settings have been updated - did you switch compilers? Anser YES if prompted to "
    "reload the solution in Visual Studio.";

} // namespace

const CLinkerLibraries* linkerLibraries(ECompilerFamily eFamily)
{
    for (const CLinkerLibraries& row : LIBRARIES)
        if (row.m_eFamily == eFamily)
            return &row;
    return nullptr;
}

bool setLinkerLibraries(std::string& sText, ECompilerFamily eFamily, std::string_view sFile,
                        IUserDialogs& dialogs)
{
    const CLinkerLibraries* pLibraries = linkerLibraries(eFamily);
    if (!pLibraries)
        return false;
    std::string sNew = sText;
    std::string sMissing = setVcxprojLinkElement(sNew, "Debug", "AdditionalDependencies",
                                                 std::string(pLibraries->m_pDebug) + OTHER_DEPENDENCIES);
    if (sMissing.empty())
        sMissing = setVcxprojLinkElement(sNew, "Release", "AdditionalDependencies",
                                         std::string(pLibraries->m_pRelease) + OTHER_DEPENDENCIES);
    if (!sMissing.empty())
        return checkCriticalString(-1, sMissing, sFile, dialogs);
    sText = std::move(sNew);
    return true;
}

bool updateLinkerSettings(const CDSPProject& project, const CProjectEnvironment& environment,
                          IUserDialogs& dialogs, std::vector<std::filesystem::path>& changed)
{
    const CLinkerLibraries* pLibraries = linkerLibraries(environment.m_eFamily);
    CEditedFile file(project.folder() / (project.m_sProjectName + ".vcxproj"), dialogs);
    if (!pLibraries || !file.isPresent())
        return true;
    if (!file.check())
        return false;

    if (!fileExists(project.folder() / pLibraries->m_pDebugLibrary))
        copyBaseFiles(librarySet(environment.m_eFamily), environment, project.folder(), changed);
    const bool bOutOfDate = file.text().find(pLibraries->m_pDebugLibrary) == std::string::npos;
    setVcxprojToolset(file.text(), pLibraries->m_pToolset);
    if (bOutOfDate && !setLinkerLibraries(file.text(), environment.m_eFamily, file.path().string(), dialogs))
        return false;
    if (!file.save(changed))
        return false;
    if (file.isChanged())
        dialogs.showMessage(SETTINGS_UPDATED);
    return true;
}

} // namespace velmora
