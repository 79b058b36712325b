#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

class IUserDialogs;
struct CNewProjectRequest;
struct CProjectEnvironment;

// The .vcproj and .vcxproj of a project with their companions. [main]

// What their texts call the folder of the plug-ins, with its closing separator: below the program's own.
[[nodiscard]] std::string visualStudioPlugInsFolder(const CProjectEnvironment& environment);

// Writes them out of their skeletons, listing the added files. A failure is shown.
[[nodiscard]] bool writeVisualStudioFiles(const CNewProjectRequest& request,
                                          const std::vector<std::string>& addedFiles,
                                          const CProjectEnvironment& environment, IUserDialogs& dialogs,
                                          std::vector<std::filesystem::path>& changed);

// Sets the linker entries of a VST compatible project in the text of a .vcxproj. False if a marker is
// missing, which has been shown with the file's name.
[[nodiscard]] bool setVSTLinkEntries(std::string& sText, const std::string& sFile, IUserDialogs& dialogs);

// Brings the paths in those that the folder has to the program's present place.
[[nodiscard]] bool renewVisualStudioPaths(const std::filesystem::path& folder, const std::string& sName,
                                          const CProjectEnvironment& environment, IUserDialogs& dialogs,
                                          std::vector<std::filesystem::path>& changed);

} // namespace velmora
