#pragma once

#include "base/user_dialogs.h"

#include <filesystem>
#include <string>

namespace velmora {

class CDSPProject;

// The filter of the file choosers, and what they answer to a name without ".prj".
constexpr const char* PROJECT_FILE_FILTER = "DSP Project Files (*.prj)|*.prj||";
constexpr const char* NO_PROJECT_FILE = "Not a .PRJ file.";

// The project as its file holds it, in the newest schema. [main]
[[nodiscard]] std::string projectBytes(CDSPProject& project);

// Writes the project in the newest schema. The file is replaced only when the new one lies whole on the
// disk; on failure a message is shown and the old file stands as it was. [main]
[[nodiscard]] bool saveProject(CDSPProject& project, const std::filesystem::path& path,
                               IUserDialogs& dialogs);

// Loads a file of any schema in place of what the project holds. On failure a message is shown and the
// project is empty, like a fresh one. [main]
[[nodiscard]] bool loadProject(CDSPProject& project, const std::filesystem::path& path,
                               IUserDialogs& dialogs);

} // namespace velmora
