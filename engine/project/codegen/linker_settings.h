#pragma once

#include "project/codegen/compiler_family.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class CDSPProject;
class IUserDialogs;
struct CProjectEnvironment;

// What a family's .vcxproj names.
struct CLinkerLibraries
{
    ECompilerFamily m_eFamily;
    const char* m_pDebugLibrary; // the wrapper
    const char* m_pDebug;        // both, separated by a semicolon
    const char* m_pRelease;
    const char* m_pToolset; // "<PlatformToolset>v100"
};

// Null for a family without a .vcxproj of its own.
[[nodiscard]] const CLinkerLibraries* linkerLibraries(ECompilerFamily eFamily);

// Follows the chosen compiler: toolset and libraries in the .vcxproj, the libraries in the folder. Does
// nothing for other compilers. Called at opening, creation and change of compiler. False if the file lacks
// what is needed, which has been shown; appends the files that changed. [main]
bool updateLinkerSettings(const CDSPProject& project, const CProjectEnvironment& environment,
                          IUserDialogs& dialogs, std::vector<std::filesystem::path>& changed);

// Sets the family's libraries in the text of a .vcxproj. False, and the text is not changed, if a marker is
// missing, which has been shown with the file's name.
[[nodiscard]] bool setLinkerLibraries(std::string& sText, ECompilerFamily eFamily, std::string_view sFile,
                                      IUserDialogs& dialogs);

} // namespace velmora
