#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class IUserDialogs;
struct CProjectEnvironment;

// The files for builds on this platform: the .cbp, the Makefile and its kin. All of them compile every *.cpp
// that lies directly in the project folder. [main]

// Writes those that the folder lacks - those for editors and version control only into a folder without a
// Makefile, so that they may be removed - and brings the output folder in those that it has to the present
// one; where the user has changed the line around it, it is his. Appends the files that changed. False if one
// cannot be written, which has been shown.
[[nodiscard]] bool provideLinuxProjectFiles(const std::filesystem::path& folder, const std::string& sName,
                                            const CProjectEnvironment& environment, IUserDialogs& dialogs,
                                            std::vector<std::filesystem::path>& changed);

// Adds an entry for the editor to the text of a .cbp, behind its last one. Nothing if it is listed. False if
// there is no such place.
[[nodiscard]] bool addCbpFile(std::string& sText, std::string_view sFile);

// Writes compile_commands.json for the folder, so that an editor's language server knows how each *.cpp is
// compiled: compiler, flags, "-c" and the source, all paths absolute. Only when it is different; true if it
// was written.
bool writeCompileCommands(const std::filesystem::path& folder, const std::string& sCompiler,
                          std::span<const std::string> flags);

} // namespace velmora
