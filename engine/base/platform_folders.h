#pragma once

#include <filesystem>

namespace velmora {

// The folder of the running executable. Empty if the platform does not tell.
[[nodiscard]] std::filesystem::path programFolder();

// The folder that holds the program's data, such as BaseClassFiles and examples: beside the executable,
// else ../share/velmora as installed. Empty if neither holds a folder of that name.
[[nodiscard]] std::filesystem::path programDataFolder(const char* pFolderName);

// The user folder: the environment variable APPDATA with "Velmora" behind it. Empty when the variable
// is unset or empty; paths below it are then relative to the current directory.
[[nodiscard]] std::filesystem::path userFolder();

// What the programs' own entry points call first: sets APPDATA, when it is unset, to XDG_DATA_HOME or
// else to .local/share in the home folder that HOME or the system's list of users names, as a desktop session
// would.
void provideApplicationDataVariable();

// The platform's suffix of a plug-in library, with its dot.
inline constexpr const char* PLUGIN_LIBRARY_SUFFIX = ".so";

} // namespace velmora
