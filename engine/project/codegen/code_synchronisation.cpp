#include "project/codegen/code_synchronisation.h"

#include "project/codegen/base_files.h"
#include "project/codegen/project_environment.h"
#include "project/dsp_project.h"

#include <array>

namespace velmora {

namespace {

constexpr std::array<std::string_view, 5> WRAPPER_FILES = {"Port2VST.lib", "Port2VSTd.lib", "Port2VST.res",
                                                           "Port2VSTFactory.h", "portvst.pdb"};

} // namespace

std::vector<std::filesystem::path> synchroniseFiles(const CDSPProject& project,
                                                    const CProjectEnvironment& environment)
{
    std::vector<std::filesystem::path> changed;
    copyBaseFiles(contractFileNames(), environment, project.folder(), changed);
    if (project.m_bVSTCompatible)
        copyBaseFiles(WRAPPER_FILES, environment, project.folder(), changed);
    return changed;
}

} // namespace velmora
