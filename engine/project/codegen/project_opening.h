#pragma once

#include <filesystem>
#include <memory>
#include <vector>

namespace velmora {

class CDSPProject;
class IUserDialogs;
struct CProjectEnvironment;

struct COpenedProject
{
    std::unique_ptr<CDSPProject> m_pProject;      // null if it could not be loaded, which has been shown
    std::vector<std::filesystem::path> m_changed; // files that were written or removed, each once
};

// Open Project: loads the file, then repairs and updates what has become stale around it - a moved folder,
// the paths in the compilers' files, missing base files, a missing solution, an old version's project, the
// linker's libraries. Each only when different, so that a second opening changes nothing. The caller then
// makes it the open one, starts the compiler, and fills panel and plug-in list. [main]
[[nodiscard]] COpenedProject openProjectFile(const std::filesystem::path& file,
                                             const CProjectEnvironment& environment, IUserDialogs& dialogs);

} // namespace velmora
