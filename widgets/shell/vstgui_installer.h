#pragma once

#include <filesystem>

namespace velmora {

class IUserDialogs;

// Whether there is something to install: BaseClassFiles holds the folder "vstgui4". An empty path holds none.
[[nodiscard]] bool hasVSTGUI4(const std::filesystem::path& baseClassFolder);

// "Install VSTGUI4": asks, copies the folder into the projects folder, tells how it ended. Files of the
// user's own in a folder that stood there stay; a failure leaves that folder as it was. [main]
void installVSTGUI4(const std::filesystem::path& baseClassFolder, const std::filesystem::path& projectsFolder,
                    IUserDialogs& dialogs);

} // namespace velmora
