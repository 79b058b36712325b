#pragma once

#include <filesystem>

namespace velmora {

class CDSPProject;
class IUserDialogs;

inline constexpr const char* IMPORT_QUESTION =
    "This will delete your exising controls AND Velmora custom GUI (if you have one) and import them from "
    "another project.\n\nAre you sure you want to continue?";

// Clear Project: removes all controls and user variables. The caller rewrites the code.
void clearControls(CDSPProject& project);

// Import UI Controls after its question: replaces the project's controls, labels, GUI words, joystick
// program and button names by those of another project, and its GUI document if the other has one. False,
// and nothing is changed, if the file is none or cannot be read; that has been shown. The caller unloads
// the plug-in first and rewrites the code afterwards. [main]
[[nodiscard]] bool importControls(CDSPProject& project, const std::filesystem::path& otherProject,
                                  IUserDialogs& dialogs);

} // namespace velmora
