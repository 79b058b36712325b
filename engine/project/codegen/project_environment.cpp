#include "project/codegen/project_environment.h"

#include "base/platform_folders.h"
#include "project/codegen/product_version.h"

namespace velmora {

namespace {

// The workbench, whichever of the programs is running: a debugger starts it on the plug-in.
constexpr const char* WORKBENCH_PROGRAM = "velmora";

} // namespace

unsigned CProjectEnvironment::runningVersion() const
{
    return m_uRunningVersion != 0 ? m_uRunningVersion : runningVersionNumber();
}

CProjectEnvironment currentProjectEnvironment(ECompilerFamily eFamily)
{
    CProjectEnvironment environment;
    environment.m_programPath = programFolder() / WORKBENCH_PROGRAM;
    environment.m_baseClassFolder = programDataFolder("BaseClassFiles");
    environment.m_vstFilesFolder = programFolder() / "VSTFiles";
    environment.m_plugInsFolder = std::filesystem::absolute(userFolder() / "PlugIns");
    environment.m_projectsFolder = userFolder() / "VelmoraProjects";
    environment.m_eFamily = eFamily;
    return environment;
}

} // namespace velmora
