#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class IUserDialogs;
struct CProjectEnvironment;

// What another project gives when it is added as a module: file names within its folder.
struct CModuleFiles
{
    std::filesystem::path m_folder;
    std::string m_sHeader;            // of the plug-in's class
    std::vector<std::string> m_files; // that header, its source, and the extra sources and headers; each once
};

// Reads the module's .prj, and looks the extra files up in its compiler project, .vcproj for a solution of
// format 10.00 and .vcxproj for any other; sources and headers that only lie in its folder come behind, since
// builds on this platform compile them too. Contract and library files are left out, and so is what does not
// lie in the folder. None if the .prj cannot be loaded, which has been shown. [main]
[[nodiscard]] std::optional<CModuleFiles> findModuleFiles(const std::filesystem::path& project,
                                                          IUserDialogs& dialogs);

// A stock object's header and source, and those of the stock objects that it includes, in the order in which
// they are met; empty if there is no such object.
[[nodiscard]] std::vector<std::string> stockObjectFiles(const CProjectEnvironment& environment,
                                                        std::string_view sName);

} // namespace velmora
