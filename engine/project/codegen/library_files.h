#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class IUserDialogs;
struct CProjectEnvironment;

// What VelmoraDLL.h and VelmoraDLL.cpp of a project say.
struct CLibraryFiles
{
    std::filesystem::path m_folder;
    std::string m_sProjectName;
    std::string m_sHeaderFile; // the plug-in's
    std::string m_sCompanyName;
    bool m_bVSTCompatible = false;
};

inline constexpr const char* VST_COMPATIBILITY_ENABLED = "VSTCompatibility: ENABLED";

// The line of VelmoraDLL.cpp that the ids stand behind.
inline constexpr std::string_view ID_MARKER = "static float g_fMUResult;";

// Writes both out of their skeletons, with two fresh ids for the VST3 classes. A failure is shown. [main]
[[nodiscard]] bool writeLibraryFiles(const CLibraryFiles& files, const CProjectEnvironment& environment,
                                     IUserDialogs& dialogs, std::vector<std::filesystem::path>& changed);

} // namespace velmora
