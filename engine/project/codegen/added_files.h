#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

class IUserDialogs;
struct CNewProjectRequest;
struct CProjectEnvironment;

// What the modules and stock objects of a request bring into a project, by names in its folder.
struct CAddedFiles
{
    std::vector<std::string> m_includes; // for the plug-in's header: one for each module and object
    std::vector<std::string> m_files;    // all sources and headers, each once
};

// Copies the files of the chosen modules, of the FFT and of the stock objects into the folder. A file
// of a module that would take the place of another stays out, with a note. Appends the files that changed.
// [main]
[[nodiscard]] CAddedFiles copyAddedFiles(const CNewProjectRequest& request,
                                         const std::filesystem::path& folder,
                                         const CProjectEnvironment& environment, IUserDialogs& dialogs,
                                         std::vector<std::filesystem::path>& changed);

// Lists them in the .vcproj, .vcxproj and .cbp that are there, behind the last entries. Appends the files
// that changed. False on failure, which has been shown.
[[nodiscard]] bool listFiles(const std::filesystem::path& folder, const std::string& sName,
                             const std::vector<std::string>& files, IUserDialogs& dialogs,
                             std::vector<std::filesystem::path>& changed);

} // namespace velmora
