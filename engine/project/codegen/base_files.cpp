#include "project/codegen/base_files.h"

#include "base/text.h"
#include "project/codegen/project_environment.h"
#include "project/codegen/project_text.h"
#include "project/codegen/text_surgery.h"

#include <algorithm>
#include <array>

namespace velmora {

namespace {

using CNames = const std::string_view[];

constexpr CNames BASE_FILES = {"plugin.h",
                               "plugin.cpp",
                               "pluginobjects.cpp",
                               "pluginconstants.h",
                               "synthfunctions.h",
                               "lookuptables.h",
                               "GUIViewAttributes.cpp",
                               "GUIViewAttributes.h",
                               "VSTGUIController.cpp",
                               "VSTGUIController.h"};
constexpr std::size_t LISTED_BASE_FILES = 6;

constexpr CNames CONTRACT_FILES = {"pluginobjects.cpp", "pluginconstants.h", "plugin.cpp", "plugin.h"};
constexpr CNames REVERB_OBJECTS = {"CombFilter", "Delay", "DelayAPF", "LPFCombFilter", "OnePoleLPF"};

constexpr CNames OTHER_BASE_FILES = {"VelmoraDLL.h", "VelmoraDLL.cpp", "resource.h", "VELMPlugInContainer.h",
                                     "Port2VSTFactory.h"};

constexpr CNames LIBRARIES_2008 = {"Port2VST3.lib", "Port2VST3d.lib", "port2vst3d.pdb", "port2vst3.pdb",
                                   "base_vc9.lib",  "base_vc9d.lib",  "base_vc9.pdb",   "base_vc9d.pdb"};
constexpr CNames LIBRARIES_2010 = {"Port2VST3d_vc10.lib", "Port2VST3_vc10.lib", "port2vst3d_vc10.pdb",
                                   "port2vst3_vc10.pdb",  "base_vc10.lib",      "base_vc10d.lib",
                                   "base_vc10.pdb",       "base_vc10d.pdb"};
constexpr CNames LIBRARIES_2012 = {"Port2VST3d_vc11.lib", "Port2VST3_vc11.lib", "port2vst3d_vc11.pdb",
                                   "port2vst3_vc11.pdb",  "base_vc11.lib",      "base_vc11d.lib",
                                   "base_vc11.pdb",       "base_vc11d.pdb"};
constexpr CNames LIBRARIES_2013 = {"Port2VST3d_vc12.lib", "Port2VST3_vc12.lib", "port2vst3d_vc12.pdb",
                                   "port2vst3_vc12.pdb",  "base_vc12.lib",      "base_vc12d.lib",
                                   "base_vc12.pdb",       "base_vc12d.pdb"};
constexpr CNames LIBRARIES_2015 = {"Port2VST3d_vc14.lib", "Port2VST3_vc14.lib", "port2vst3d_vc14.pdb",
                                   "port2vst3_vc14.pdb",  "base_vc14.lib",      "base_vc14d.lib",
                                   "base_vc14.pdb",       "base_vc14d.pdb"};

struct CLibrarySet
{
    ECompilerFamily m_eFamily;
    CFileNames m_names;
};

constexpr CLibrarySet LIBRARY_SETS[] = {{ECompilerFamily::visualStudio2008, LIBRARIES_2008},
                                        {ECompilerFamily::visualStudio2010, LIBRARIES_2010},
                                        {ECompilerFamily::visualStudio2012, LIBRARIES_2012},
                                        {ECompilerFamily::visualStudio2013, LIBRARIES_2013},
                                        {ECompilerFamily::visualStudio2015, LIBRARIES_2015}};

constexpr CNames VST_RESOURCES = {"resources/Port2VST3.res", "VELMPlugInContainer.h", "Velmora.uidesc",
                                  "resource.h", "resources/knobvst.png"};

} // namespace

CFileNames baseFileNames()
{
    return BASE_FILES;
}

CFileNames listedBaseFiles()
{
    return CFileNames(BASE_FILES).first(LISTED_BASE_FILES);
}

CFileNames contractFileNames()
{
    return CONTRACT_FILES;
}

CFileNames guiFileNames()
{
    return CFileNames(BASE_FILES).subspan(LISTED_BASE_FILES);
}

CFileNames reverbObjectNames()
{
    return REVERB_OBJECTS;
}

CFileNames librarySet(ECompilerFamily eFamily)
{
    for (const CLibrarySet& set : LIBRARY_SETS)
        if (set.m_eFamily == eFamily)
            return set.m_names;
    return {};
}

bool isBaseFile(std::string_view sName)
{
    const auto isName = [&](std::string_view sBase) { return equalsIgnoreCase(sBase, sName); };
    return std::ranges::any_of(BASE_FILES, isName) || std::ranges::any_of(OTHER_BASE_FILES, isName);
}

bool copyFileIfDifferent(const std::filesystem::path& from, const std::filesystem::path& to,
                         std::vector<std::filesystem::path>& changed)
{
    const auto text = readProjectFile(from);
    if (!text || readProjectFile(to) == text || !writeStringToFile(to, *text))
        return false;
    addChanged(changed, to);
    return true;
}

void copyBaseFiles(CFileNames names, const CProjectEnvironment& environment,
                   const std::filesystem::path& folder, std::vector<std::filesystem::path>& changed)
{
    for (const std::string_view sName : names) {
        const auto from = environment.m_baseClassFolder / sName;
        const auto to = folder / sName;
        std::error_code ignored;
        if (fileExists(from) && to.parent_path() != folder)
            std::filesystem::create_directory(to.parent_path(), ignored);
        copyFileIfDifferent(from, to, changed);
    }
}

void copyVSTResources(const CProjectEnvironment& environment, const std::filesystem::path& folder,
                      std::string_view sProjectName, std::vector<std::filesystem::path>& changed)
{
    std::error_code ignored;
    std::filesystem::create_directory(folder / "resources", ignored);
    copyFileIfDifferent(environment.m_vstFilesFolder / "vst3plug.def", folder / "vst3plug.def", changed);
    copyBaseFiles(VST_RESOURCES, environment, folder, changed);
    copyFileIfDifferent(environment.m_baseClassFolder / "TemplatePlugIn.rc",
                        folder / (std::string(sProjectName) + ".rc"), changed);
    copyBaseFiles(guiFileNames(), environment, folder, changed);
}

void copyVSTFiles(const CProjectEnvironment& environment, const std::filesystem::path& folder,
                  std::string_view sProjectName, std::vector<std::filesystem::path>& changed)
{
    for (const CLibrarySet& set : LIBRARY_SETS)
        copyBaseFiles(set.m_names, environment, folder, changed);
    copyVSTResources(environment, folder, sProjectName, changed);
}

} // namespace velmora
