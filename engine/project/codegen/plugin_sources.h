#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class IUserDialogs;
struct CNewProjectRequest;
struct CProjectEnvironment;

// The user's own .h and .cpp, as they are made and as Edit Project changes them. [main]

// Writes both out of their skeletons. A failure is shown.
[[nodiscard]] bool writePlugInSources(const CNewProjectRequest& request,
                                      std::span<const std::string> includes,
                                      const CProjectEnvironment& environment, IUserDialogs& dialogs,
                                      std::vector<std::filesystem::path>& changed);

[[nodiscard]] bool includesFile(std::string_view sText, std::string_view sFile);

// Includes the files behind plugin.h, leaving out those that are included already. False if the text does not
// include plugin.h.
[[nodiscard]] bool addIncludes(std::string& sText, std::span<const std::string> files);

// Writes "name = true;" or "name = false;" wherever the opposite stands.
void switchFlag(std::string& sText, std::string_view sName, bool bOn);

// The two GUI flags and that of a synth. A source that does not set m_bUserCustomGUI yet gets a line for it.
void switchFlags(std::string& sText, const CNewProjectRequest& request);

} // namespace velmora
