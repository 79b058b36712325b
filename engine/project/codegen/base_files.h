#pragma once

#include "project/codegen/compiler_family.h"

#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

namespace velmora {

struct CProjectEnvironment;

// The files that projects are given, as lists of names within BaseClassFiles. Those that the installation
// does not have are passed over, and so is one that cannot be copied. [main]

using CFileNames = std::span<const std::string_view>;

[[nodiscard]] CFileNames baseFileNames();     // every project has them
[[nodiscard]] CFileNames listedBaseFiles();   // of these, what project files list
[[nodiscard]] CFileNames contractFileNames(); // what a new contract replaces
[[nodiscard]] CFileNames guiFileNames();      // the GUI's views and controller
[[nodiscard]] CFileNames reverbObjectNames(); // stock objects, without suffix

// Wrapper and base libraries with their debug databases; none for a family that has no set.
[[nodiscard]] CFileNames librarySet(ECompilerFamily eFamily);

// A file that comes from us under this very name in every project, so that it is no source of the user's.
[[nodiscard]] bool isBaseFile(std::string_view sName);

// Copies a file unless the target has the same content. False if nothing was written.
bool copyFileIfDifferent(const std::filesystem::path& from, const std::filesystem::path& to,
                         std::vector<std::filesystem::path>& changed);

// Copies files of a list from BaseClassFiles into the folder, making subfolders.
void copyBaseFiles(CFileNames names, const CProjectEnvironment& environment,
                   const std::filesystem::path& folder, std::vector<std::filesystem::path>& changed);

// What a VST compatible project is given besides: every family's libraries, the module definition out of
// VSTFiles, the resources.
void copyVSTFiles(const CProjectEnvironment& environment, const std::filesystem::path& folder,
                  std::string_view sProjectName, std::vector<std::filesystem::path>& changed);

// Of these, all but the libraries, the GUI's sources being part of it.
void copyVSTResources(const CProjectEnvironment& environment, const std::filesystem::path& folder,
                      std::string_view sProjectName, std::vector<std::filesystem::path>& changed);

} // namespace velmora
