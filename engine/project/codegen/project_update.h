#pragma once

#include <filesystem>
#include <vector>

namespace velmora {

class CDSPProject;
class IUserDialogs;
struct CProjectEnvironment;

// What m_uPlugInEx[1] of a project of the present layer holds.
inline constexpr unsigned VSTGUI_LAYER_VERSION = 422;

// Copies the contract into a project that an old version wrote. Appends the files that changed.
void updateBaseFiles(const CDSPProject& project, const CProjectEnvironment& environment,
                     std::vector<std::filesystem::path>& changed);

// Brings an old project's files to the running version, block by block, and saves the project. A block
// that lacks a marker stops with a message, and its version word is not advanced, so that the next opening
// tries again. True if anything was changed; appends the files. [main]
bool updateProject(CDSPProject& project, const CProjectEnvironment& environment, IUserDialogs& dialogs,
                   std::vector<std::filesystem::path>& changed);

} // namespace velmora
